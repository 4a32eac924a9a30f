#pragma once

#include "host/RasterProxy.h"
#include "pixel/PixelWalk.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace orbel {

/// Whether two rasters have rows and pixels of the same size.
[[nodiscard]] inline bool haveSameShape(const RasterInfo& a, const RasterInfo& b) {
    return a.width == b.width && a.height == b.height && a.bytesPerPixel == b.bytesPerPixel;
}

/// Whether any byte may belong to rows of both rasters, which are not empty.
[[nodiscard]] inline bool shareMemory(const RasterInfo& a, const RasterInfo& b) {
    const auto span = [](const RasterInfo& raster) {
        const std::uint8_t* const top = raster.data;
        const std::uint8_t* const bottom = raster.row(raster.height - 1);
        const std::ptrdiff_t rowSize = std::ptrdiff_t{raster.width} * raster.bytesPerPixel;
        return std::pair{std::min(top, bottom, std::less<>()),
                         std::max(top, bottom, std::less<>()) + rowSize};
    };
    const auto [beginA, endA] = span(a);
    const auto [beginB, endB] = span(b);
    return std::less<>()(beginA, endB) && std::less<>()(beginB, endA);
}

/// The raster that the samples of a frame are drawn in before they are averaged in the output.
class SampleRaster {
public:
    explicit SampleRaster(PluginHost_API* host)
        : m_host(host), m_raster(host, nullptr, false, true) {}

    /// Gets a raster like the output from the host. 0, or 1 when the host has none, or one that is
    /// not like the output or lies in the same memory.
    int allocate(PluginRaster_API* output) {
        int rowBytes = 0;
        m_raster.setRaster(m_host->allocRaster(output->getWidth(), output->getHeight(),
                                               output->getPixelType(), rowBytes, 0),
                           true);
        if (m_raster.getImpl() == nullptr) {
            return 1;
        }
        m_info = describeRaster(m_host, m_raster.getImpl());
        const RasterInfo like = describeRaster(m_host, output);
        return haveSameShape(m_info, like) && !shareMemory(m_info, like) ? 0 : 1;
    }

    /// Null until there is one.
    [[nodiscard]] PluginRaster_API* raster() const { return m_raster.getImpl(); }
    [[nodiscard]] const RasterInfo& info() const { return m_info; }

private:
    PluginHost_API* m_host;
    PluginRasterProxy m_raster;
    RasterInfo m_info;
};

} // namespace orbel
