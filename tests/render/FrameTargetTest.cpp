#include "render/BandTarget.h"
#include "render/RenderDispatch.h"
#include "tests/support/AccelerationSettings.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace orbel {
namespace {

using test::Frame;
using test::Scene;

RasterInfo rasterAt(std::uint8_t* data, int width, int height, int rowBytes) {
    RasterInfo info;
    info.data = data;
    info.pixelFormat = RF_RGBA8;
    info.width = width;
    info.height = height;
    info.rowBytes = rowBytes;
    info.bytesPerPixel = 4;
    return info;
}

// Addresses are compared and never followed.
TEST(FrameTarget, bandsNeedRowsSideBySide) {
    std::vector<std::uint8_t> memory(1 << 20);
    std::uint8_t* const begin = memory.data();
    std::uint8_t* const middle = begin + (1 << 19);
    const RasterInfo input = rasterAt(begin, 30, 20, 128);
    struct Row {
        const char* name;
        RasterInfo input;
        RasterInfo output;
        bool suits;
    };
    const auto deep = [](RasterInfo info) {
        info.bytesPerPixel = 8;
        return info;
    };
    const Row rows[] = {
        {"alike", input, rasterAt(middle, 30, 20, 128), true},
        {"other rows", input, rasterAt(middle, 30, 20, 160), true},
        {"bottom-up", input, rasterAt(middle, 30, 20, -128), true},
        {"one behind the other", input, rasterAt(begin + 19 * 128 + 120, 30, 20, 128), true},
        {"a byte of the last row", input, rasterAt(begin + 19 * 128 + 119, 30, 20, 128), false},
        {"ahead of the other", rasterAt(begin + 19 * 128 + 119, 30, 20, 128), input, false},
        {"bottom-up into the other", rasterAt(middle + 20 * 128, 30, 20, -128),
         rasterAt(middle, 30, 20, 128), false},
        {"the same", input, input, false},
        {"wider", input, rasterAt(middle, 31, 20, 128), false},
        {"lower", input, rasterAt(middle, 30, 19, 128), false},
        {"deeper", input, deep(rasterAt(middle, 30, 20, 256)), false},
        {"both deeper", deep(rasterAt(begin, 30, 20, 256)), deep(rasterAt(middle, 30, 20, 256)),
         false},
        {"without columns", rasterAt(begin, 0, 20, 128), rasterAt(middle, 0, 20, 128), false},
        {"without rows", rasterAt(begin, 30, 0, 128), rasterAt(middle, 30, 0, 128), false},
        {"the widest", rasterAt(begin, 32767, 1, 131072), rasterAt(middle, 32767, 1, 131072), true},
        {"too wide", rasterAt(begin, 32768, 1, 131072), rasterAt(middle, 32768, 1, 131072), false},
        {"the highest", rasterAt(begin, 1, 32767, 4), rasterAt(middle, 1, 32767, 4), true},
        {"too high", rasterAt(begin, 1, 32768, 4), rasterAt(middle, 1, 32768, 4), false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(BandTarget<PIXEL_RGBA8>::suits(row.input, row.output), row.suits) << row.name;
    }
}

/// A host whose rasters are not what a frame can be drawn into in bands.
class OddHost final : public test::PlainHost {
public:
    enum class Sample { Alike, Small, Shared };

    OddHost(Scene* scene, const Frame& frame, Sample sample)
        : test::PlainHost(scene, frame), m_sample(sample), m_output(frame.output.info()) {}

    using PluginHost_MEMORY_Impl::allocRaster;
    PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                  int flags) override {
        if (m_sample == Sample::Shared) {
            return PluginHost_MEMORY_Impl::allocRaster(&m_output);
        }
        return PluginHost_MEMORY_Impl::allocRaster(
            width, m_sample == Sample::Small ? height - 1 : height, type, rowBytes, flags);
    }

private:
    Sample m_sample;
    RasterInfo m_output;
};

TEST(FrameTarget, samplesNeedARasterLikeTheOutput) {
    const test::AccelerationSettings restored;
    Scene scene = Scene(test::CIRCLE).animate(PARAM_START, {0}, {90}).set(PARAM_MOTION_BLUR, 1);
    for (int level = 0; level <= bestAccelerationLevel(); ++level) {
        setAccelerationLevel(level);
        for (const auto& [sample, result] : {std::pair{OddHost::Sample::Alike, 0},
                                             {OddHost::Sample::Small, 1},
                                             {OddHost::Sample::Shared, 1}}) {
            const Frame frame(scene);
            OddHost host(&scene, frame, sample);
            EXPECT_EQ(Render(&host), result) << level;
        }
    }
}

// An input of another size, and an output that is the input.
TEST(FrameTarget, oddRastersGiveTheSameBytesAtEveryLevel) {
    const test::AccelerationSettings restored;
    for (const bool shared : {false, true}) {
        std::optional<Frame> expected;
        for (int level = 0; level <= bestAccelerationLevel(); ++level) {
            setAccelerationLevel(level);
            Scene scene = Scene(test::CIRCLE).set(PARAM_TRANSFER_MODE, 1).set(PARAM_THICKNESS, 4);
            Frame actual(scene);
            RasterInfo input = actual.input.info();
            input.width -= 9;
            PluginHost_MEMORY_Impl host(shared ? actual.output.info() : input, actual.output.info(),
                                        &scene.parameters, scene.settings);
            host.setUserData(&scene.shape);
            EXPECT_EQ(Render(&host), 0);
            EXPECT_TRUE(actual.input.guardsIntact() && actual.output.guardsIntact());
            if (!expected) {
                expected.emplace(std::move(actual));
                continue;
            }
            EXPECT_TRUE(test::sameBytes(actual.output.info(), expected->output.info())) << level;
            EXPECT_TRUE(test::sameBytes(actual.input.info(), expected->input.info())) << level;
        }
    }
}

} // namespace
} // namespace orbel
