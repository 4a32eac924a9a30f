#pragma once

#include "media/ByteRaster.h"
#include "media/FilmWriter.h"

#include <string>

namespace orbel {

/// Frames without loss in 8 bits and straight alpha, as a coder of 8 bits will take them.
class LosslessFrames final : public MediaWriter {
public:
    LosslessFrames(const std::string& path, const WriterSpec& whole);

    void write(const RasterInfo& raster, long frame) override;
    void finish() override { m_film.finish(); }
    void abandon() override { m_film.abandon(); }

    /// How frames of this layout and alpha are read and handed on.
    [[nodiscard]] static WriterSpec spec(WriterSpec whole);

private:
    OutputAlpha m_alpha;
    ByteRaster m_raster;
    FilmWriter m_film;
};

} // namespace orbel
