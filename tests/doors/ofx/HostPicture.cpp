#include "tests/doors/ofx/HostPicture.h"

#include "doors/memory/MemoryImage.h"

#include <cstring>

namespace orbel::ofxtest {

namespace {

constexpr int MARGIN = 64;
constexpr std::uint8_t GUARD = 0xCD;

std::vector<PropertyValue> edges(const OfxRectI& rect) {
    return {rect.x1, rect.y1, rect.x2, rect.y2};
}

std::string depthOf(RasterFormat format) {
    return format == RF_RGBA8    ? "OfxBitDepthByte"
           : format == RF_RGBA16 ? "OfxBitDepthShort"
                                 : "OfxBitDepthFloat";
}

} // namespace

HostPicture::HostPicture(RasterFormat format, const PictureLayout& layout)
    : m_layout(layout),
      m_bytesPerPixel(orbel::bytesPerPixel(format)),
      m_stride(width() * m_bytesPerPixel + layout.padding),
      m_bytes(
          static_cast<std::size_t>((layout.bounds.y2 - layout.bounds.y1) * m_stride + 2 * MARGIN),
          GUARD) {
    properties.readOnly = true;
    properties.set("OfxPropType", {std::string("OfxTypeImage")});
    properties.set("OfxImagePropData",
                   {static_cast<void*>(m_bytes.data() + offset(layout.bounds.y1))});
    properties.set("OfxImagePropBounds", edges(layout.bounds));
    properties.set("OfxImagePropRegionOfDefinition", edges(layout.region));
    properties.set("OfxImagePropRowBytes", {layout.negative ? -m_stride : m_stride});
    properties.set("OfxImageEffectPropPixelDepth", {depthOf(format)});
    properties.set("OfxImageEffectPropComponents", {std::string("OfxImageComponentRGBA")});
    properties.set("OfxImageEffectPropPreMultiplication", {layout.alpha});
    properties.set("OfxImagePropPixelAspectRatio", {layout.aspect});
    properties.set("OfxImagePropField", {layout.field});
}

std::size_t HostPicture::offset(int y) const {
    const OfxRectI& bounds = m_layout.bounds;
    const int index = m_layout.negative ? bounds.y2 - 1 - y : y - bounds.y1;
    return MARGIN + static_cast<std::size_t>(index) * static_cast<std::size_t>(m_stride);
}

void HostPicture::takeFrom(const RasterInfo& frame, int rowStep, int firstRow) {
    const OfxRectI& bounds = m_layout.bounds;
    for (int y = bounds.y1; y < bounds.y2; ++y) {
        const int fromBottom = (y - m_layout.region.y1) * rowStep + firstRow;
        const std::uint8_t* const source =
            frame.row(frame.height - 1 - fromBottom) +
            std::ptrdiff_t{bounds.x1 - m_layout.region.x1} * m_bytesPerPixel;
        std::memcpy(m_bytes.data() + offset(y), source, rowSize(width()));
    }
}

bool HostPicture::intactOutside(const OfxRectI& window) const {
    std::vector<std::uint8_t> bytes = m_bytes;
    for (int y = window.y1; y < window.y2; ++y) {
        std::memset(bytes.data() + offset(y) +
                        std::ptrdiff_t{window.x1 - m_layout.bounds.x1} * m_bytesPerPixel,
                    GUARD, rowSize(window.x2 - window.x1));
    }
    return bytes == std::vector<std::uint8_t>(bytes.size(), GUARD);
}

} // namespace orbel::ofxtest
