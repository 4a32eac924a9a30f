#include "pixel/RasterFormats.h"

#include <gtest/gtest.h>

#include <array>

namespace orbel {
namespace {

using Order = std::array<int, 4>;
constexpr Order argb{1, 2, 3, 0};
constexpr Order bgra{2, 1, 0, 3};
constexpr Order rgba{0, 1, 2, 3};
constexpr Order untouched{-7, -7, -7, -7};

struct Expected {
    int format;
    int type;
    int depth;
    Order order;
};

const std::array table{
    Expected{0, 0, 8, argb},       Expected{1, 0, 8, bgra},       Expected{2, 0, 8, rgba},
    Expected{3, 1, 15, argb},      Expected{4, 1, 15, bgra},      Expected{5, 2, 14, argb},
    Expected{6, 2, 14, bgra},      Expected{7, 3, 16, argb},      Expected{8, 3, 16, rgba},
    Expected{9, 4, 32, argb},      Expected{10, 4, 32, rgba},     Expected{11, 4, 32, bgra},
    Expected{12, 0, 8, bgra},      Expected{13, 1, 15, bgra},     Expected{14, 4, 32, bgra},
    Expected{15, 0, 8, bgra},      Expected{16, 0, 8, bgra},      Expected{17, 2, 14, bgra},
    Expected{18, 2, 14, bgra},     Expected{19, 0, 8, argb},      Expected{20, 4, 32, argb},
    Expected{21, 0, 8, untouched}, Expected{-1, 0, 8, untouched}, Expected{1000, 0, 8, untouched},
};

TEST(RasterFormats, TableByNumber) {
    for (const Expected& expected : table) {
        const auto format = static_cast<RasterFormat>(expected.format);
        SCOPED_TRACE(expected.format);
        EXPECT_EQ(static_cast<int>(convertToPixelType(format)), expected.type);
        EXPECT_EQ(convertToPixelDepth(format), expected.depth);
        Order order = untouched;
        getRasterChannelOrder(format, order[0], order[1], order[2], order[3]);
        EXPECT_EQ(order, expected.order);
    }
}

TEST(RasterFormats, ComponentSizes) {
    const std::array sizes{8, 15, 14, 16, 32};
    for (int type = 0; type < 5; ++type) {
        EXPECT_EQ(getPixelComponentSize(static_cast<PluginRaster_API::PixelType>(type)),
                  sizes[static_cast<std::size_t>(type)]);
    }
    EXPECT_EQ(getPixelComponentSize(static_cast<PluginRaster_API::PixelType>(5)), 0);
    EXPECT_EQ(getPixelComponentSize(static_cast<PluginRaster_API::PixelType>(-1)), 0);
}

} // namespace
} // namespace orbel
