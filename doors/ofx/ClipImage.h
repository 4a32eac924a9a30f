#pragma once

#include "doors/ofx/HostSuites.h"
#include "host/PluginHost.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orbel::ofx {

/// An image of a clip at a time, fetched from the host and released when it goes out of scope. A
/// host may deliver none, or one that lacks anything; what is there is checked before it is used.
class ClipImage {
public:
    ClipImage(const HostSuites& suites, OfxImageClipHandle clip, OfxTime time);
    ~ClipImage();
    ClipImage(const ClipImage&) = delete;
    ClipImage& operator=(const ClipImage&) = delete;

    /// Whether there is an image with pixels in memory.
    [[nodiscard]] bool exists() const { return m_data != nullptr; }
    /// Byte, short or float RGBA with room for its pixels; nothing for any other layout.
    [[nodiscard]] std::optional<RasterFormat> format() const { return m_format; }
    /// The pixels that exist; y upwards, right and top exclusive.
    [[nodiscard]] const OfxRectI& bounds() const { return m_bounds; }
    /// The full frame that the image is of; all zero where the host does not say.
    [[nodiscard]] const OfxRectI& region() const { return m_region; }
    /// 1 where the host says nothing of use.
    [[nodiscard]] float pixelAspect() const { return m_pixelAspect; }
    /// The state of the alpha as the host calls it; empty where it does not say.
    [[nodiscard]] const std::string& premultiplication() const { return m_premultiplication; }
    /// The field that the image holds as the host calls it.
    [[nodiscard]] const std::string& field() const { return m_field; }
    [[nodiscard]] int rowBytes() const { return m_rowBytes; }
    /// First byte of the row at `y`, which lies within the bounds; needs a format.
    [[nodiscard]] std::uint8_t* row(int y) const;

private:
    void read(const Properties& image, const Properties& clip);

    const HostSuites& m_suites;
    OfxPropertySetHandle m_handle = nullptr;
    std::uint8_t* m_data = nullptr;
    int m_rowBytes = 0;
    OfxRectI m_bounds{};
    OfxRectI m_region{};
    float m_pixelAspect = 1.0F;
    std::optional<RasterFormat> m_format;
    std::string m_premultiplication;
    std::string m_field;
};

/// Whether a rectangle is the frame of an image that can be rendered.
[[nodiscard]] bool isUsableFrame(const OfxRectI& rect);

} // namespace orbel::ofx
