#pragma once

#include "app/media/Picture.h"
#include "host/PluginHost.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orbel::app {

/// A folder of its own for one test, removed with everything in it.
class TestFolder {
public:
    TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder();

    [[nodiscard]] std::string operator/(const std::string& name) const;
    [[nodiscard]] std::size_t fileCount() const;

private:
    std::filesystem::path m_path;
};

enum class RowOrder { Tight, Padded, BottomUp };

/// A raster with storage: premultiplied noise that differs from frame to frame, with stretches of
/// opaque and of transparent pixels.
class TestRaster {
public:
    TestRaster(RasterFormat format, int width, int height, RowOrder order);

    void fillNoise(unsigned frame);
    /// Straight components in R, G, B, A, 0..1, premultiplied with plain rounding.
    void fillColour(double red, double green, double blue, double alpha);

    [[nodiscard]] const RasterInfo& info() const { return m_info; }
    /// Premultiplied component of a pixel, 0..1; channels in R, G, B, A.
    [[nodiscard]] double at(int x, int y, int channel) const;

private:
    void put(int x, int y, int channel, double value);
    [[nodiscard]] std::uint8_t* place(int x, int y, int channel) const;

    std::vector<std::uint8_t> m_bytes;
    RasterInfo m_info;
};

/// Component of a picture as a fraction of its maximum.
double componentOf(const Picture& picture, int x, int y, int channel);

/// Straight alpha of the raster as it should be found in a picture: 0 where alpha is 0.
double straightOf(const TestRaster& raster, int x, int y, int channel);

/// The largest difference between a picture and the straight alpha of a raster.
double largestDifference(const Picture& picture, const TestRaster& raster);

void writeBytes(const std::string& path, const std::string& bytes);
std::string readBytes(const std::string& path);

inline constexpr RasterFormat sixFormats[] = {RF_ARGB8,  RF_RGBA8,   RF_ARGB16,
                                              RF_RGBA16, RF_ARGB32F, RF_RGBA32F};

} // namespace orbel::app
