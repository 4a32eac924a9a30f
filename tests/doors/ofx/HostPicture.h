#pragma once

#include "host/PluginHost.h"
#include "tests/doors/ofx/HostProperties.h"

#include <cstdint>
#include <vector>

namespace orbel::ofxtest {

/// How a host lays a picture out.
struct PictureLayout {
    OfxRectI bounds{}; ///< the pixels that exist
    OfxRectI region{}; ///< the full frame
    int padding = 0;   ///< bytes after each row
    bool negative = false;
    std::string alpha = "OfxImageAlphaPremultiplied";
    std::string field = "OfxFieldNone";
    double aspect = 1.0;
};

/// A picture of the host amid guard bytes, with the properties a plug-in sees.
class HostPicture {
public:
    HostPicture(RasterFormat format, const PictureLayout& layout);
    ~HostPicture() = default;
    HostPicture(const HostPicture&) = delete;
    HostPicture& operator=(const HostPicture&) = delete;

    PropertySet properties;

    [[nodiscard]] const PictureLayout& layout() const { return m_layout; }
    [[nodiscard]] int bytesPerPixel() const { return m_bytesPerPixel; }
    /// First byte of the row at `y`.
    [[nodiscard]] const std::uint8_t* row(int y) const { return m_bytes.data() + offset(y); }
    /// Takes its pixels from a frame, top row first, that covers the region; `rowStep` 2 takes
    /// every second row from the bottom on, starting with `firstRow`.
    void takeFrom(const RasterInfo& frame, int rowStep = 1, int firstRow = 0);
    /// Whether nothing but pixels of the window was written.
    [[nodiscard]] bool intactOutside(const OfxRectI& window) const;

private:
    [[nodiscard]] std::size_t offset(int y) const;
    [[nodiscard]] std::size_t rowSize(int pixels) const {
        return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(m_bytesPerPixel);
    }
    [[nodiscard]] int width() const { return m_layout.bounds.x2 - m_layout.bounds.x1; }

    PictureLayout m_layout;
    int m_bytesPerPixel;
    int m_stride;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace orbel::ofxtest
