#include "media/FilmParts.h"

#include "media/FilmWriter.h"
#include "media/MediaError.h"
#include "media/VideoDecoder.h"

namespace orbel {

namespace {

/// What a part of a film holds.
OutputTarget partTarget(const OutputTarget& target) {
    OutputTarget part = target;
    part.kind = target.kind == OutputKind::Mp4 ? OutputKind::Mp4Frames : target.kind;
    return part;
}

} // namespace

PartKind partKind(const OutputTarget& target) {
    if (!target.isFilm) {
        return PartKind::Pictures;
    }
    return target.kind == OutputKind::Mp4 ? PartKind::Frames : PartKind::Coded;
}

std::string partEnding(const OutputTarget& target) {
    if (!target.isFilm) {
        return {};
    }
    return target.kind == OutputKind::Mov ? ".mov" : ".mkv";
}

std::unique_ptr<MediaWriter> openPart(const std::string& path, const WriterSpec& spec,
                                      const OutputTarget& target) {
    return std::make_unique<FilmWriter>(path, spec, partTarget(target));
}

std::string codedFrame(const std::string& part, long index) {
    VideoDecoder source(part, 1);
    const auto packet = libav::owned<libav::PacketPtr>(av_packet_alloc());
    for (long i = 0; source.nextPacket(*packet); ++i) {
        if (i == index) {
            return {reinterpret_cast<const char*>(packet->data),
                    static_cast<std::size_t>(packet->size)};
        }
    }
    throw MediaError(part, framePlace(index), "this part of the film has no such frame",
                     "render it again");
}

class FilmAssembly::Film {
public:
    Film(const std::string& path, const WriterSpec& spec)
        : m_target(checkOutput(path, 1)), m_threads(spec.threads), m_film(path, spec, m_target) {}

    void append(const std::string& part, long frames) {
        if (partKind(m_target) == PartKind::Frames) {
            codeFrames(part, frames);
        } else {
            copyPackets(part, frames);
        }
    }

    FilmWriter& film() { return m_film; }

private:
    [[noreturn]] static void refuse(const std::string& part, long frames, long found) {
        throw MediaError(part, "",
                         "this part of the film has " + std::to_string(found) + " frames, not " +
                             std::to_string(frames),
                         "render it again");
    }

    void copyPackets(const std::string& part, long frames) {
        VideoDecoder source(part, 1);
        const auto packet = libav::owned<libav::PacketPtr>(av_packet_alloc());
        long found = 0;
        while (source.nextPacket(*packet)) {
            if (++found > frames) {
                break;
            }
            m_film.append(*packet);
        }
        if (found != frames) {
            refuse(part, frames, found);
        }
    }

    void codeFrames(const std::string& part, long frames) {
        VideoDecoder source(part, m_threads);
        const auto frame = libav::owned<libav::FramePtr>(av_frame_alloc());
        long found = 0;
        while (source.next(*frame) == 1) {
            if (++found > frames) {
                break;
            }
            m_film.code(*frame);
            av_frame_unref(frame.get());
        }
        if (found != frames) {
            refuse(part, frames, found);
        }
    }

    OutputTarget m_target;
    int m_threads;
    FilmWriter m_film;
};

FilmAssembly::FilmAssembly(const std::string& path, const WriterSpec& spec)
    : m_film(std::make_unique<Film>(path, spec)) {}

FilmAssembly::~FilmAssembly() {
    if (m_film != nullptr) {
        m_film->film().abandon();
    }
}

void FilmAssembly::append(const std::string& part, long frames) {
    m_film->append(part, frames);
}

void FilmAssembly::finish() {
    m_film->film().finish();
    m_film.reset();
}

} // namespace orbel
