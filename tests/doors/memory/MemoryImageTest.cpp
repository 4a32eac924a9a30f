#include "doors/memory/MemoryImage.h"

#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orbel {
namespace {

TEST(MemoryImage, laysRowsOutAsAsked) {
    const int sizes[] = {4, 4, 8, 8, 16, 16};
    for (std::size_t i = 0; i < test::RENDERED_FORMATS.size(); ++i) {
        for (const bool bottomUp : {false, true}) {
            const MemoryImage image(5, 3, test::RENDERED_FORMATS[i], {12, bottomUp});
            const RasterInfo& info = image.info();
            const int stride = 5 * sizes[i] + 12;
            EXPECT_EQ(info.bytesPerPixel, sizes[i]);
            EXPECT_EQ(info.rowBytes, bottomUp ? -stride : stride);
            EXPECT_EQ(info.row(0) - info.row(2), -2L * info.rowBytes);
            EXPECT_EQ(image.rowSize(), static_cast<std::size_t>(5 * sizes[i]));
            EXPECT_EQ(info.pixelAspect, 1.0F);
            EXPECT_EQ(test::alphaSum(info), 0.0); // zero-filled, and every row inside
        }
    }
}

TEST(MemoryImage, refusesWhatCannotBeRendered) {
    struct Row {
        int width;
        int height;
        RasterFormat format;
        int padding;
    };
    const Row rows[] = {{0, 1, RF_RGBA8, 0},     {1, 0, RF_RGBA8, 0},    {-1, 1, RF_RGBA8, 0},
                        {32768, 1, RF_RGBA8, 0}, {1, 1, RF_RGBA8, -4},   {1, 32768, RF_RGBA8, 0},
                        {1, 1, RF_BGRA8, 0},     {1, 1, RF_ARGB8_ALT, 0}};
    for (const Row& row : rows) {
        EXPECT_THROW(MemoryImage(row.width, row.height, row.format, {row.padding, false}),
                     std::invalid_argument);
    }
    EXPECT_NO_THROW(MemoryImage(32767, 1, RF_RGBA8, {}));
}

TEST(MemoryImage, copiesBetweenRowLayouts) {
    const MemoryImage from(4, 3, RF_ARGB16, {8, true});
    test::paint(from.info(), [](int x, int y) { return test::Rgba{x / 4.0, y / 3.0, 0.5, 1.0}; });
    MemoryImage to(4, 3, RF_ARGB16, {});
    to.copyFrom(from);
    EXPECT_TRUE(test::samePicture(to.info(), from.info(), 0.0));
}

} // namespace
} // namespace orbel
