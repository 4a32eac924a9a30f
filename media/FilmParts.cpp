#include "media/FilmParts.h"

#include "media/ByteRaster.h"
#include "media/EvenFilmWriter.h"
#include "media/FilmWriter.h"
#include "media/LosslessFrames.h"
#include "media/MediaError.h"
#include "media/MediaReader.h"
#include "media/VideoDecoder.h"

#include <utility>

namespace orbel {

namespace {

/// The film that an .mp4 is coded from: its frames as its coder takes them.
std::unique_ptr<MediaWriter> openCoderInput(const std::string& path, const WriterSpec& spec,
                                            OutputTarget target, FilmWriter* follower) {
    target.kind = OutputKind::Mp4Frames;
    return openEvenFilm(spec, [&](const WriterSpec& even) {
        auto film = std::make_unique<FilmWriter>(path, even, target);
        film->setFollower(follower);
        return film;
    });
}

} // namespace

PartKind partKind(const OutputTarget& target) {
    switch (target.kind) {
    case OutputKind::Mov:
    case OutputKind::Mkv:
        return PartKind::Coded;
    case OutputKind::Mp4:
    case OutputKind::Mp4Frames:
        return PartKind::CoderInput;
    default:
        return target.isFilm ? PartKind::Frames : PartKind::Pictures;
    }
}

std::string partEnding(const OutputTarget& target) {
    if (!target.isFilm) {
        return {};
    }
    return target.kind == OutputKind::Mov ? ".mov" : ".mkv";
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
        : m_kind(partKind(checkOutput(path, 1))), m_threads(spec.threads) {
        if (m_kind == PartKind::Frames) {
            m_raster = std::make_unique<ByteRaster>(spec.width, spec.height);
            m_writer = openWriter(path, LosslessFrames::spec(spec));
        } else {
            const bool evens = m_kind == PartKind::CoderInput;
            auto film = std::make_unique<FilmWriter>(
                path, evens ? EvenFilmWriter::evenSpec(spec) : spec, targetOf(path));
            m_film = film.get();
            m_writer = std::move(film);
        }
    }

    void append(const std::string& part, long frames) {
        switch (m_kind) {
        case PartKind::Frames:
            writeFrames(part, frames);
            break;
        case PartKind::CoderInput:
            codeFrames(part, frames);
            break;
        default:
            copyPackets(part, frames);
        }
    }

    MediaWriter& film() { return *m_writer; }
    FilmWriter* coder() { return m_film; }

private:
    static void check(const std::string& part, long frames, long found) {
        if (found != frames) {
            throw MediaError(part, "",
                             "this part of the film has " + std::to_string(found) +
                                 " frames, not " + std::to_string(frames),
                             "render it again");
        }
    }

    void copyPackets(const std::string& part, long frames) {
        VideoDecoder source(part, 1);
        const auto packet = libav::owned<libav::PacketPtr>(av_packet_alloc());
        long found = 0;
        while (source.nextPacket(*packet)) {
            if (++found > frames) {
                break;
            }
            m_film->append(*packet);
        }
        check(part, frames, found);
    }

    void codeFrames(const std::string& part, long frames) {
        VideoDecoder source(part, m_threads);
        const auto frame = libav::owned<libav::FramePtr>(av_frame_alloc());
        long found = 0;
        while (source.next(*frame) == 1) {
            if (++found > frames) {
                break;
            }
            m_film->code(*frame);
            av_frame_unref(frame.get());
        }
        check(part, frames, found);
    }

    void writeFrames(const std::string& part, long frames) {
        const std::unique_ptr<MediaReader> source = openMedia(part, m_threads);
        check(part, frames, source->properties().frameCount.value_or(0));
        for (long index = 0; index < frames; ++index) {
            fillRaster(*source->readFrame(index), m_raster->info(), SourceAlpha::Straight);
            m_writer->write(m_raster->info(), index);
        }
    }

    PartKind m_kind;
    int m_threads;
    std::unique_ptr<MediaWriter> m_writer;
    FilmWriter* m_film = nullptr;         ///< the same, where it takes coded or converted frames
    std::unique_ptr<ByteRaster> m_raster; ///< where it takes rasters
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

std::unique_ptr<MediaWriter> openPart(const std::string& path, const WriterSpec& spec,
                                      const OutputTarget& target, FilmAssembly* film) {
    switch (partKind(target)) {
    case PartKind::CoderInput:
        return openCoderInput(path, spec, target,
                              film == nullptr ? nullptr : film->m_film->coder());
    case PartKind::Frames:
        return std::make_unique<LosslessFrames>(path, spec);
    default:
        return std::make_unique<FilmWriter>(path, spec, target);
    }
}

} // namespace orbel
