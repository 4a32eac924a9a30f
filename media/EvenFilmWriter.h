#pragma once

#include "media/MediaWriter.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace orbel {

/// A film whose width and height are even, out of frames where one is not: the last column and the
/// last row come twice. Players know H.264 with halved chroma alone, which has no odd sizes.
class EvenFilmWriter final : public MediaWriter {
public:
    /// `open` gets the even size.
    template<typename Open>
    EvenFilmWriter(const WriterSpec& spec, const Open& open)
        : m_film(open(evenSpec(spec))), m_pixels(pixelsOf(spec)) {}

    [[nodiscard]] static bool isNeeded(const WriterSpec& spec) {
        return spec.width % 2 != 0 || spec.height % 2 != 0;
    }

    void write(const RasterInfo& raster, long frame) override;
    void finish() override { m_film->finish(); }
    void abandon() override { m_film->abandon(); }

    /// What the film of such frames is opened with.
    [[nodiscard]] static WriterSpec evenSpec(WriterSpec spec);

private:
    static std::vector<std::uint64_t> pixelsOf(const WriterSpec& spec);

    std::unique_ptr<MediaWriter> m_film;
    std::vector<std::uint64_t> m_pixels; ///< of one frame, aligned for every layout
};

/// Opens a film through `open`, for frames of any size.
template<typename Open>
std::unique_ptr<MediaWriter> openEvenFilm(const WriterSpec& spec, const Open& open) {
    if (EvenFilmWriter::isNeeded(spec)) {
        return std::make_unique<EvenFilmWriter>(spec, open);
    }
    return open(spec);
}

} // namespace orbel
