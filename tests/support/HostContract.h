#pragma once

#include "host/RasterProxy.h"
#include "host/RasterRows.h"
#include "params/ParameterTable.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace orbel::test {

/// What every door's host object has to keep to, whatever its host is like. `Door` is made of an
/// input, an output (RGBA8, top row first) and a frame; `host()` is its host object and `settle()`
/// brings the host's pictures back to where they came from.
template<class Door>
class HostContract : public testing::Test {
protected:
    HostContract() {
        number(input.info(), 1);
        number(output.info(), 101);
    }

    // Every byte of the pixel at (x, y) is `first` + 8 y + x.
    static void number(const RasterInfo& picture, int first) {
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                std::memset(picture.row(y) + std::ptrdiff_t{4} * x, first + 8 * y + x, 4);
            }
        }
    }
    static int numberAt(const RasterInfo& picture, int x, int y) {
        return picture.row(y)[std::ptrdiff_t{4} * x];
    }
    static RasterInfo infoOf(PluginHost_API& host, PluginRaster_API* raster) {
        RasterInfo info;
        host.getRasterInfo(raster, &info);
        return info;
    }
    static PluginRaster_API* alloc(PluginHost_API& host, int width, int height) {
        int rowBytes = 7;
        return host.allocRaster(width, height, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0);
    }
    // A raster over a block that the host made, as anybody may hand it over.
    static PluginRaster_API* wrap(PluginHost_API& host, int width, int height, float aspect) {
        auto record = std::make_unique<RasterInfo>();
        record->width = width;
        record->height = height;
        record->rowBytes = 4 * width;
        record->bytesPerPixel = 4;
        record->pixelFormat = RF_RGBA8;
        record->pixelAspect = aspect;
        record->data = static_cast<std::uint8_t*>(host.allocMemory(-4 * width * height));
        return host.allocRaster(record.release());
    }

    const GuardedImage input{8, 5, RF_RGBA8, {16, false}};
    const GuardedImage output{8, 5, RF_RGBA8, {16, false}};
};
TYPED_TEST_SUITE_P(HostContract);

struct CopyCase {
    Vx_Rect from; // top, left, bottom, right
    Vx_Rect to;
    int copied;
    int firstX; ///< where the first copied pixel goes, and the number it has
    int firstY;
    int first;
};

TYPED_TEST_P(HostContract, copiesRectanglesWithAllFourEdges) {
    const CopyCase cases[] = {
        {{1, 2, 3, 4}, {0, 1, 0, 1}, 9, 1, 0, 11}, {{1, 2, 1, 2}, {4, 7, 9, 9}, 1, 7, 4, 11},
        {{1, 2, 4, 7}, {3, 6, 4, 7}, 4, 6, 3, 11}, {{-9, -9, 99, 99}, {0, 0, 0, 0}, 40, 0, 0, 1},
        {{3, 3, 2, 5}, {0, 0, 9, 9}, 0, 0, 0, 0},  {{0, 0, 4, 7}, {5, 8, 9, 9}, 0, 0, 0, 0},
    };
    for (CopyCase c : cases) {
        this->number(this->output.info(), 101);
        TypeParam door(this->input.info(), this->output.info(), 0.0);
        PluginHost_API& host = door.host();
        {
            const PluginRasterProxy from(&host, host.getInputRaster(0), true, true);
            const PluginRasterProxy to(&host, host.getOutputRaster(), true, true);
            host.copy(from.getImpl(), to.getImpl(), &c.from, &c.to);
        }
        door.settle();
        int copied = 0;
        for (int i = 0; i < 40; ++i) {
            copied += this->numberAt(this->output.info(), i % 8, i / 8) < 101 ? 1 : 0;
        }
        EXPECT_EQ(copied, c.copied) << c.from.top << ' ' << c.to.top;
        if (copied > 0) {
            EXPECT_EQ(this->numberAt(this->output.info(), c.firstX, c.firstY), c.first);
        }
        EXPECT_TRUE(this->output.guardsIntact());
    }
}

TYPED_TEST_P(HostContract, fillsRectanglesWithAllFourEdges) {
    struct FillCase {
        Vx_Rect rect;
        int cleared;
    };
    const FillCase cases[] = {{{1, 2, 3, 4}, 9},   {{-5, -5, 2, 3}, 12}, {{4, 6, 100, 100}, 2},
                              {{0, 0, 4, 7}, 40},  {{3, 3, 3, 3}, 1},    {{3, 5, 4, 3}, 0},
                              {{9, 9, 12, 12}, 0}, {{-9, -9, -1, -1}, 0}};
    TypeParam door(this->input.info(), this->output.info(), 0.0);
    PluginHost_API& host = door.host();
    const PluginRasterProxy raster(&host, this->wrap(host, 8, 5, 1.0F), true, true);
    const RasterInfo info = this->infoOf(host, raster.getImpl());
    for (FillCase c : cases) {
        this->number(info, 1);
        host.fill(raster.getImpl(), &c.rect);
        int cleared = 0;
        for (int i = 0; i < 40; ++i) {
            cleared += this->numberAt(info, i % 8, i / 8) == 0 ? 1 : 0;
        }
        EXPECT_EQ(cleared, c.cleared) << c.rect.top << ' ' << c.rect.left;
    }
    host.fill(raster.getImpl(), nullptr);
    EXPECT_EQ(this->numberAt(info, 7, 4), 0);
}

TYPED_TEST_P(HostContract, copiesTheInputToTheHostsOwnOutput) {
    TypeParam door(this->input.info(), this->output.info(), 0.0);
    PluginHost_API& host = door.host();
    const PluginRasterProxy other(&host, this->wrap(host, 3, 2, 1.0F), true, true);
    const RasterInfo info = this->infoOf(host, other.getImpl());
    this->number(info, 201);
    host.setOutputRaster(other.getImpl());
    EXPECT_EQ(host.getOutputWidth(), 3);
    EXPECT_EQ(host.getOutputHeight(), 2);
    {
        const PluginRasterProxy shown(&host, host.getOutputRaster(), true, true);
        EXPECT_EQ(this->infoOf(host, shown.getImpl()).data, info.data);
    }
    host.copyInputToOutput();
    EXPECT_EQ(this->numberAt(info, 2, 1), 211); // and its pixels outlive the raster over them
    host.fillOutput();
    EXPECT_EQ(this->numberAt(info, 2, 1), 0);
    host.setOutputRaster(nullptr);
    EXPECT_EQ(host.getOutputWidth(), 8);
    door.settle();
    EXPECT_TRUE(sameBytes(this->output.info(), this->input.info()));
    EXPECT_TRUE(this->output.guardsIntact());
}

TYPED_TEST_P(HostContract, copiesAsFarAsBothReach) {
    TypeParam door(this->input.info(), this->output.info(), 0.0);
    PluginHost_API& host = door.host();
    const PluginRasterProxy source(&host, host.getInputRaster(0), true, true);
    for (const auto& [width, height] : {std::pair{3, 9}, {12, 2}}) {
        const PluginRasterProxy raster(&host, this->wrap(host, width, height, 1.0F), true, true);
        const RasterInfo info = this->infoOf(host, raster.getImpl());
        this->number(info, 150);
        host.copy(source.getImpl(), raster.getImpl());
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const bool reached = x < 8 && y < 5;
                EXPECT_EQ(this->numberAt(info, x, y), (reached ? 1 : 150) + 8 * y + x);
            }
        }
    }
}

// Under the sanitizers a block that is freed twice, or never, ends the test.
TYPED_TEST_P(HostContract, frees) {
    TypeParam door(this->input.info(), this->output.info(), 0.0);
    PluginHost_API& host = door.host();
    PluginRaster_API* const rasters[] = {this->alloc(host, 5, 6), this->wrap(host, 5, 6, 2.0F),
                                         host.getInputRaster(0), host.getOutputRaster()};
    for (PluginRaster_API* const raster : rasters) {
        ASSERT_NE(raster, nullptr);
        host.deallocRaster(raster);
        delete raster;
    }
    host.deallocRaster(nullptr);
    const PluginRasterProxy source(&host, host.getInputRaster(0), true, true);
    EXPECT_EQ(this->numberAt(this->infoOf(host, source.getImpl()), 7, 4), 40);
    // Upwards: the block begins with the last row.
    auto record = std::make_unique<RasterInfo>();
    record->width = record->height = 2;
    record->rowBytes = -8;
    record->bytesPerPixel = 4;
    record->data = static_cast<std::uint8_t*>(host.allocMemory(16)) + 8;
    const PluginRasterProxy upwards(&host, host.allocRaster(record.release()), true, true);
    host.fill(upwards.getImpl());
}

TYPED_TEST_P(HostContract, rastersTellTheAspectOfTheirRecord) {
    const RasterInfo wide = [this] {
        RasterInfo info = this->output.info();
        info.pixelAspect = 0.75F;
        return info;
    }();
    TypeParam door(this->input.info(), wide, 0.0);
    PluginHost_API& host = door.host();
    const PluginRasterProxy made(&host, this->alloc(host, 5, 6), true, true);
    EXPECT_EQ(host.geAspectRatio(made.getImpl()), 0.75);
    EXPECT_EQ(made->getWidth(), 5);
    EXPECT_EQ(made->getHeight(), 6);
    EXPECT_GE(made->getRowBytes(), 20);
    const PluginRasterProxy wrapped(&host, this->wrap(host, 5, 6, 2.5F), true, true);
    EXPECT_EQ(host.geAspectRatio(wrapped.getImpl()), 2.5);
    EXPECT_EQ(host.geAspectRatio(nullptr), 1.0);
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {1 << 30, 1 << 30}}) {
        EXPECT_EQ(this->alloc(host, width, height), nullptr);
    }
}

TYPED_TEST_P(HostContract, leavesAloneWhatItCannotDescribe) {
    TypeParam door(this->input.info(), this->output.info(), 0.0);
    PluginHost_API& host = door.host();
    SilentRaster silent;
    for (PluginRaster_API* const raster :
         {static_cast<PluginRaster_API*>(&silent), static_cast<PluginRaster_API*>(nullptr)}) {
        RasterInfo info;
        info.width = -7;
        host.getRasterInfo(raster, &info);
        EXPECT_EQ(info.width, -7);
        Vx_Rect rect{0, 0, 3, 3};
        host.fill(raster);
        host.fill(raster, &rect);
        host.copy(raster, raster);
        host.copy(raster, raster, &rect, &rect);
        host.copy(raster, raster, nullptr, nullptr);
        EXPECT_EQ(host.geAspectRatio(raster), 1.0);
    }
    host.setOutputRaster(&silent);
    host.fillOutput();
    for (const int param : {0, 2, 84, static_cast<int>(PARAM_GROUP_CAMERA)}) {
        EXPECT_TRUE(answersNothing(host, param)) << param;
    }
}

TYPED_TEST_P(HostContract, countsTimeInWholeTicks) {
    for (const auto& [frame, ticks] :
         {std::pair{3.0, 300}, {2.999, 299}, {-0.999, -99}, {1e300, 2147483647}}) {
        TypeParam door(this->input.info(), this->output.info(), frame);
        PluginHost_API& host = door.host();
        EXPECT_EQ(host.getCurrentTime(), ticks) << frame;
        EXPECT_EQ(host.getTimeScale(), 3000);
        EXPECT_EQ(host.getTimeStep(), 100);
        EXPECT_EQ(host.getLocalTimeStep(), 100);
        EXPECT_EQ(host.getFrameLength(), 3000);
        EXPECT_FALSE(host.isFieldRendering());
    }
}

template<class Number>
void expectTheLibrarysMaths(PluginHost_API& host, Number x, Number y) {
    const auto single = [](double value) { return static_cast<Number>(value); };
    const auto a = static_cast<double>(x);
    const auto b = static_cast<double>(y);
    EXPECT_EQ(host.math_sqrt(x), single(std::sqrt(a)));
    EXPECT_EQ(host.math_floor(x), single(std::floor(a)));
    EXPECT_EQ(host.math_exp(x), single(std::exp(a)));
    EXPECT_EQ(host.math_atan2(x, y), single(std::atan2(a, b)));
    EXPECT_EQ(host.math_fabs(y), single(std::fabs(b)));
    EXPECT_EQ(host.math_sin(x), single(std::sin(a)));
    EXPECT_EQ(host.math_cos(x), single(std::cos(a)));
    EXPECT_EQ(host.math_fmod(y, x), single(std::fmod(b, a)));
    EXPECT_EQ(host.math_pow(x, y), single(std::pow(a, b)));
    EXPECT_EQ(host.math_ceil(x), single(std::ceil(a)));
    EXPECT_EQ(host.math_log(x), single(std::log(a)));
}

TYPED_TEST_P(HostContract, offersTheLibraryAndOnePlaceForEachThing) {
    TypeParam door(this->input.info(), this->output.info(), 0.0);
    PluginHost_API& host = door.host();
    expectTheLibrarysMaths(host, 2.3, -7.7);
    expectTheLibrarysMaths(host, 2.3F, -7.7F);
    int x = 0;
    int y = 0;
    host.setOrigin(3, 4);
    host.getOrigin(x, y);
    EXPECT_EQ(10 * x + y, 34);
    host.setUserData(&x);
    EXPECT_EQ(host.getUserData(), &x);
    EXPECT_EQ(host.getPathAPI(), nullptr);
    void* const memory = host.allocMemory(100);
    EXPECT_EQ(host.lockMemory(memory), memory);
    host.unlockMemory(memory);
    host.deallocMemory(memory);
    host.getSourceLayerDimensions(x, y);
    EXPECT_EQ(10 * x + y, 85);
    EXPECT_EQ(host.lockTemporalRaster(0.0, false, false), nullptr);
    EXPECT_EQ(host.checkoutLayer(5, 0), nullptr);
    EXPECT_EQ(host.progress(1, 2), 0);
    EXPECT_FALSE(host.doAbort());
    host.showWarning("nobody listens");
}

REGISTER_TYPED_TEST_SUITE_P(HostContract, copiesRectanglesWithAllFourEdges,
                            fillsRectanglesWithAllFourEdges, copiesTheInputToTheHostsOwnOutput,
                            copiesAsFarAsBothReach, frees, rastersTellTheAspectOfTheirRecord,
                            leavesAloneWhatItCannotDescribe, countsTimeInWholeTicks,
                            offersTheLibraryAndOnePlaceForEachThing);

} // namespace orbel::test
