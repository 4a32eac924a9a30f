#include "pixel/RasterFormats.h"

#include <array>
#include <cstddef>

namespace orbel {
namespace {

struct ChannelOrder {
    int red;
    int green;
    int blue;
    int alpha;
};

struct Layout {
    PluginRaster_API::PixelType type;
    ChannelOrder order;
};

constexpr ChannelOrder argb{1, 2, 3, 0};
constexpr ChannelOrder bgra{2, 1, 0, 3};
constexpr ChannelOrder rgba{0, 1, 2, 3};

constexpr auto bits8 = PluginRaster_API::PIXEL_TYPE_8;
constexpr auto bits15 = PluginRaster_API::PIXEL_TYPE_15;
constexpr auto bits14 = PluginRaster_API::PIXEL_TYPE_14;
constexpr auto bits16 = PluginRaster_API::PIXEL_TYPE_16;
constexpr auto bits32 = PluginRaster_API::PIXEL_TYPE_FLOAT;

// Indexed by layout code.
constexpr std::array<Layout, 21> layouts{{
    {bits8, argb},  // RF_ARGB8
    {bits8, bgra},  // RF_BGRA8
    {bits8, rgba},  // RF_RGBA8
    {bits15, argb}, // RF_ARGB15
    {bits15, bgra}, // RF_BGRA15
    {bits14, argb}, // RF_ARGB14
    {bits14, bgra}, // RF_BGRA14
    {bits16, argb}, // RF_ARGB16
    {bits16, rgba}, // RF_RGBA16
    {bits32, argb}, // RF_ARGB32F
    {bits32, rgba}, // RF_RGBA32F
    {bits32, bgra}, // RF_BGRA32F
    {bits8, bgra},  // RF_BGRA8_12
    {bits15, bgra}, // RF_BGRA15_13
    {bits32, bgra}, // RF_BGRA32F_14
    {bits8, bgra},  // RF_BGRA8_15
    {bits8, bgra},  // RF_BGRA8_16
    {bits14, bgra}, // RF_BGRA14_17
    {bits14, bgra}, // RF_BGRA14_18
    {bits8, argb},  // RF_ARGB8_ALT
    {bits32, argb}, // RF_ARGB32F_ALT
}};

constexpr std::array<int, 5> componentSizes{8, 15, 14, 16, 32};

const Layout* findLayout(RasterFormat format) {
    const auto index = static_cast<std::size_t>(format);
    return index < layouts.size() ? &layouts[index] : nullptr;
}

} // namespace

PluginRaster_API::PixelType convertToPixelType(PluginHost_API::RasterFormat format) {
    const Layout* layout = findLayout(format);
    return layout != nullptr ? layout->type : bits8;
}

int convertToPixelDepth(PluginHost_API::RasterFormat format) {
    return getPixelComponentSize(convertToPixelType(format));
}

int getPixelComponentSize(PluginRaster_API::PixelType type) {
    const auto index = static_cast<std::size_t>(type);
    return index < componentSizes.size() ? componentSizes[index] : 0;
}

void getRasterChannelOrder(PluginHost_API::RasterFormat format, int& red, int& green, int& blue,
                           int& alpha) {
    const Layout* layout = findLayout(format);
    if (layout == nullptr) {
        return;
    }
    red = layout->order.red;
    green = layout->order.green;
    blue = layout->order.blue;
    alpha = layout->order.alpha;
}

} // namespace orbel
