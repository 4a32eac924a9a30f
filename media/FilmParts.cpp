#include "media/FilmParts.h"

#include "media/ByteRaster.h"
#include "media/FilmWriter.h"
#include "media/LosslessFrames.h"
#include "media/MediaError.h"
#include "media/MediaReader.h"
#include "media/VideoDecoder.h"

#include <utility>

namespace orbel {

PartKind partKind(const OutputTarget& target) {
    if (!target.isFilm) {
        return PartKind::Pictures;
    }
    const bool isCoded = target.kind == OutputKind::Mov || target.kind == OutputKind::Mkv;
    return isCoded ? PartKind::Coded : PartKind::Frames;
}

std::string partEnding(const OutputTarget& target) {
    if (!target.isFilm) {
        return {};
    }
    return target.kind == OutputKind::Mov ? ".mov" : ".mkv";
}

std::unique_ptr<MediaWriter> openPart(const std::string& path, const WriterSpec& spec,
                                      const OutputTarget& target) {
    if (partKind(target) == PartKind::Frames) {
        return std::make_unique<LosslessFrames>(path, spec, target.kind);
    }
    return std::make_unique<FilmWriter>(path, spec, target);
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
        : m_target(checkOutput(path, 1)), m_threads(spec.threads) {
        if (partKind(m_target) == PartKind::Frames) {
            m_raster = std::make_unique<ByteRaster>(spec.width, spec.height);
            m_film = openWriter(path, LosslessFrames::spec(spec, m_target.kind));
        } else {
            auto film = std::make_unique<FilmWriter>(path, spec, m_target);
            m_packets = film.get();
            m_film = std::move(film);
        }
    }

    void append(const std::string& part, long frames) {
        if (partKind(m_target) == PartKind::Frames) {
            codeFrames(part, frames);
        } else {
            copyPackets(part, frames);
        }
    }

    MediaWriter& film() { return *m_film; }

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
            m_packets->append(*packet);
        }
        if (found != frames) {
            refuse(part, frames, found);
        }
    }

    void codeFrames(const std::string& part, long frames) {
        const std::unique_ptr<MediaReader> source = openMedia(part, m_threads);
        const long found = source->properties().frameCount.value_or(0);
        if (found != frames) {
            refuse(part, frames, found);
        }
        for (long index = 0; index < frames; ++index) {
            fillRaster(*source->readFrame(index), m_raster->info(), SourceAlpha::Straight);
            m_film->write(m_raster->info(), index);
        }
    }

    OutputTarget m_target;
    int m_threads;
    std::unique_ptr<ByteRaster> m_raster; ///< of films that are coded here
    std::unique_ptr<MediaWriter> m_film;
    FilmWriter* m_packets = nullptr; ///< the same, when coded parts go on
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
