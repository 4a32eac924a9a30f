#include "media/FilmParts.h"

#include "media/FilmWriter.h"
#include "media/MediaError.h"
#include "media/MediaReader.h"
#include "media/PixelConversion.h"
#include "media/VideoDecoder.h"

#include <utility>
#include <vector>

namespace orbel {

namespace {

constexpr std::size_t componentsPerPixel = 4;

/// A raster of opaque 8-bit pixels: what an H.264 film is coded from.
class OpaqueFrame {
public:
    OpaqueFrame(int width, int height)
        : m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                   componentsPerPixel) {
        m_info.data = m_pixels.data();
        m_info.pixelFormat = RF_RGBA8;
        m_info.width = width;
        m_info.height = height;
        m_info.rowBytes = width * static_cast<int>(componentsPerPixel);
        m_info.bytesPerPixel = static_cast<int>(componentsPerPixel);
    }

    [[nodiscard]] const RasterInfo& info() const { return m_info; }
    void fill(const RasterInfo& raster, OutputAlpha alpha) {
        auto* const pixels = m_pixels.data();
        encodeOpaque(raster, alpha,
                     {pixels, pixels + 1, pixels + 2, pixels + 3, 4, m_info.rowBytes});
    }

private:
    std::vector<std::uint8_t> m_pixels;
    RasterInfo m_info;
};

WriterSpec opaqueSpec(WriterSpec spec) {
    spec.format = RF_RGBA8;
    spec.alpha = OutputAlpha::Premultiplied; // the same for opaque pixels, and the shorter way
    return spec;
}

OutputTarget losslessTarget() {
    OutputTarget target;
    target.kind = OutputKind::Mkv;
    target.isFilm = true;
    return target;
}

/// Frames without loss, as the coder of the whole film will take them.
class FramesWriter final : public MediaWriter {
public:
    FramesWriter(const std::string& path, const WriterSpec& spec)
        : m_alpha(spec.alpha),
          m_opaque(spec.width, spec.height),
          m_film(path, opaqueSpec(spec), losslessTarget()) {}

    void write(const RasterInfo& raster, long frame) override {
        m_opaque.fill(raster, m_alpha);
        m_film.write(m_opaque.info(), frame);
    }
    void finish() override { m_film.finish(); }

private:
    OutputAlpha m_alpha;
    OpaqueFrame m_opaque;
    FilmWriter m_film;
};

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
    if (partKind(target) == PartKind::Frames) {
        return std::make_unique<FramesWriter>(path, spec);
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
        : m_target(checkOutput(path, 1)),
          m_threads(spec.threads),
          m_opaque(spec.width, spec.height),
          m_film(path, partKind(m_target) == PartKind::Frames ? opaqueSpec(spec) : spec, m_target) {
    }

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
        const std::unique_ptr<MediaReader> source = openMedia(part, m_threads);
        const long found = source->properties().frameCount.value_or(0);
        if (found != frames) {
            refuse(part, frames, found);
        }
        for (long index = 0; index < frames; ++index) {
            fillRaster(*source->readFrame(index), m_opaque.info(), SourceAlpha::Straight);
            m_film.write(m_opaque.info(), index);
        }
    }

    OutputTarget m_target;
    int m_threads;
    OpaqueFrame m_opaque;
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
