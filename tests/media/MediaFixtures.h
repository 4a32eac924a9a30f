#pragma once

#include "media/MediaWriter.h"
#include "media/Picture.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestFolder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orbel {

using test::readBytes;
using test::TestFolder;
using test::writeBytes;

enum class RowOrder { Tight, Padded, BottomUp };

/// A raster with storage: premultiplied noise that differs from frame to frame, with stretches of
/// opaque and of transparent pixels.
class TestRaster {
public:
    TestRaster(RasterFormat format, int width, int height, RowOrder order);

    void fillNoise(unsigned frame) const;
    /// Straight components in R, G, B, A, 0..1, premultiplied with plain rounding.
    void fillColour(double red, double green, double blue, double alpha) const;

    [[nodiscard]] const RasterInfo& info() const { return m_image.info(); }
    /// Premultiplied component of a pixel, 0..1; channels in R, G, B, A.
    [[nodiscard]] double at(int x, int y, int channel) const {
        return test::pixelAt(info(), x, y)[static_cast<std::size_t>(channel)];
    }

private:
    test::GuardedImage m_image;
};

/// What a writer of such rasters is told.
WriterSpec specFor(const TestRaster& raster);

/// Writes so many frames of noise, numbered from `first`.
void writeNoise(const std::string& path, const TestRaster& raster, const WriterSpec& spec,
                long first, long count);

/// Component of a picture as a fraction of its maximum.
double componentOf(const Picture& picture, int x, int y, int channel);

/// Straight alpha of the raster as it should be found in a picture: 0 where alpha is 0.
double straightOf(const TestRaster& raster, int x, int y, int channel);

/// The largest difference between a picture and the straight alpha of a raster.
double largestDifference(const Picture& picture, const TestRaster& raster);

inline constexpr auto& sixFormats = test::RENDERED_FORMATS;

} // namespace orbel
