#include "doors/fxplug/FieldLines.h"
#include "doors/fxplug/HostApis.h"
#include "doors/fxplug/ParamsSetup.h"
#include "doors/fxplug/PluginHost_FXPLUG_Impl.h"
#include "doors/fxplug/PluginUpdate_FXPLUG_Impl.h"
#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "host/HostIndex.h"
#include "host/RasterProxy.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "render/Matrix4.h"
#include "shapes/ShapeTable.h"
#include "tests/doors/fxplug/HostBitmaps.h"
#include "tests/doors/fxplug/Pool.h"
#include "tests/doors/fxplug/StandInProject.h"
#include "tests/support/HostContract.h"

#include <gmock/gmock.h>

#include <cstring>
#include <numeric>
#include <optional>

#ifdef __GLIBC__
#include <malloc.h>
#endif

// The door from inside: linked, not loaded.
namespace orbel::fxtest {

std::vector<std::string> alerts;

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// Autoreleased; every byte of pixel row y is `first` + y.
FxBitmap* rows(FxUInt width, FxUInt height, FxUInt depth, FxUInt format, int first) {
    FxImageInfo info{};
    info.width = width;
    info.height = height;
    info.depth = depth;
    info.pixelFormat = format;
    info.pixelAspect = 0.75;
    FxBitmap* const bitmap = [[[FxBitmap alloc] initWithInfo:info] autorelease];
    for (FxUInt y = 0; y < height; ++y) {
        std::memset(static_cast<char*>([bitmap dataPtr]) + std::size_t{y} * [bitmap rowBytes],
                    first + static_cast<int>(y), std::size_t{4} * [bitmap bytes] * width);
    }
    return bitmap;
}

std::vector<int> firstBytes(const RasterInfo& info) {
    std::vector<int> bytes;
    for (int y = 0; y < info.height; ++y) {
        bytes.push_back(*info.row(y));
    }
    return bytes;
}

/// A host object over images of the host's own making, for what holds for every door.
template<int Kind>
class FxPlugDoor {
public:
    FxPlugDoor(const RasterInfo& input, const RasterInfo& output, double frame) : m_target(output) {
        resetManners(Kind);
        g_hostIndex = Kind;
        m_project.hostIsCalling = true;
        StandInApi* const api = [[[StandInApi alloc] initWithProject:&m_project] autorelease];
        m_info.frame = frame;
        m_output = [makeHostBitmap(output, false) autorelease];
        FxBitmap* const source = [makeHostBitmap(input, false) autorelease];
        m_host.emplace(api, api, source, m_output, &m_info, api, api);
    }
    ~FxPlugDoor() { g_hostIndex = 0; }
    FxPlugDoor(const FxPlugDoor&) = delete;
    FxPlugDoor& operator=(const FxPlugDoor&) = delete;

    PluginHost_API& host() { return *m_host; }
    void settle() {
        EXPECT_TRUE(paddingIntact(m_output));
        copyFromHostBitmap(m_output, m_target);
    }

private:
    Pool m_pool;
    Project m_project;
    RasterInfo m_target;
    FxBitmap* m_output = nil;
    FxRenderInfo m_info{};
    std::optional<PluginHost_FXPLUG_Impl> m_host;
};

} // namespace
} // namespace orbel::fxtest

namespace orbel::test {
INSTANTIATE_TYPED_TEST_SUITE_P(FinalCut, HostContract, fxtest::FxPlugDoor<0>);
INSTANTIATE_TYPED_TEST_SUITE_P(Motion, HostContract, fxtest::FxPlugDoor<1>);
} // namespace orbel::test

namespace orbel::fxtest {
namespace {

/// A host object over a project, an input and an output.
class Binding : public testing::Test {
protected:
    Binding() {
        resetManners(0);
        g_hostIndex = 0;
        project.hostIsCalling = true;
        api = [[[StandInApi alloc] initWithProject:&project] autorelease];
        info.frame = 3.0;
        info.qualityLevel = kFxQuality_HIGH;
        info.scaleX = 1.0;
        info.scaleY = 1.0;
    }
    ~Binding() override { g_hostIndex = 0; }

    PluginHost_FXPLUG_Impl host(FxBitmap* input, FxBitmap* output) {
        PluginHost_FXPLUG_Impl made(api, api, input, output, &info, api, api);
        made.setActionApi(api);
        made.set3DApi(api);
        return made;
    }
    PluginHost_FXPLUG_Impl host() { return host(rows(4, 20, 8, 2, 0), rows(4, 20, 8, 2, 0)); }
    static RasterInfo infoOf(PluginHost_API& owner, PluginRaster_API* raster) {
        RasterInfo record;
        owner.getRasterInfo(raster, &record);
        return record;
    }

    Pool pool;
    Project project;
    StandInApi* api;
    FxRenderInfo info{};
};

// --- Images ---

struct Layout {
    FxUInt depth;
    FxUInt format;
    int finalCut; ///< -1: unknown
    int motion;
    bool alternative;
};

TEST_F(Binding, namesTheLayoutOfEveryImage) {
    const Layout layouts[] = {
        {8, 2, 0, 0, false},    {8, 4, 19, 19, true},   {8, 0, 2, 0, false},
        {16, 2, 7, 7, false},   {16, 0, 8, 7, false},   {32, 2, 9, 9, false},
        {32, 5, 20, 20, true},  {32, 0, 10, 9, false},  {8, 5, -1, -1, false},
        {16, 4, -1, -1, false}, {32, 4, -1, -1, false}, {8, 1, -1, -1, false},
    };
    for (const Layout& layout : layouts) {
        for (const bool inMotion : {false, true}) {
            g_hostIndex = inMotion ? 1 : 0;
            RasterInfo record;
            record.width = -7;
            const int code = inMotion ? layout.motion : layout.finalCut;
            FxBitmap* const bitmap = rows(3, 2, layout.depth, layout.format, 0);
            PluginHost_FXPLUG_Impl binding = host(bitmap, bitmap);
            binding.getOutputRasterInfo(&record);
            if (code < 0) {
                EXPECT_EQ(record.width, -7);
                continue;
            }
            EXPECT_EQ(record.pixelFormat, code) << layout.depth << ' ' << layout.format;
            EXPECT_EQ(record.hasAltLayout, layout.alternative);
            EXPECT_EQ(record.bytesPerPixel, static_cast<int>(layout.depth / 2));
            EXPECT_EQ(record.pixelAspect, 0.75F);
        }
    }
}

TEST_F(Binding, tellsDepthClassesOfBitmapsAndOnlyOneOfMemory) {
    for (const auto& [depth, type, inMemory] :
         {std::tuple{8U, 0, 0}, std::tuple{16U, 3, 2}, std::tuple{32U, 4, 0}}) {
        FxBitmap* const bitmap = rows(2, 2, depth, 2, 0);
        PluginHost_FXPLUG_Impl binding = host(bitmap, bitmap);
        const PluginRasterProxy image(&binding, binding.getOutputRaster(), true, true);
        EXPECT_EQ(image->getPixelType(), type);
        EXPECT_EQ(binding.geAspectRatio(image.getImpl()), 1.0); // it has no record of its own
        int rowBytes = 9;
        const PluginRasterProxy memory(
            &binding, binding.allocRaster(5, 6, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0), true,
            true);
        EXPECT_EQ(memory->getPixelType(), inMemory);
        EXPECT_EQ(rowBytes, 0);
        EXPECT_GE(memory->getRowBytes(), 5 * static_cast<int>(depth) / 2);
    }
}

TEST_F(Binding, makesDoWithNothing) {
    int rowBytes = 0;
    PluginHost_FXPLUG_Impl bare(nil, nil, nil, nil, nullptr, nil, nil);
    EXPECT_EQ(bare.allocRaster(4, 4, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0), nullptr);
    EXPECT_EQ(bare.getInputRaster(0), nullptr);
    EXPECT_EQ(bare.getOutputRaster(), nullptr);
    EXPECT_EQ(bare.checkoutLayer(5, 0), nullptr);
    EXPECT_EQ(bare.lockTemporalRaster(3.0, true, false), nullptr);
    bare.fillOutput();
    bare.copyInputToOutput();
    EXPECT_TRUE(test::answersNothing(bare, 4));
}

// --- Images at other times ---

struct WeaveCase {
    const char* what;
    bool layer; ///< else the input
    bool fieldMode;
    bool odd;
    FxUInt width;
    FxUInt height;
    int first; ///< row where the first field starts; -1: taken as a frame
};

TEST_F(Binding, weavesFieldsIntoFrames) {
    // The output is 4 x 20.
    const WeaveCase cases[] = {
        {"layer: frame", true, true, true, 4, 20, -1},
        {"layer: nearly a frame", true, true, true, 4, 14, -1},
        {"layer: hardly a frame", true, true, true, 4, 13, 1},
        {"layer: field", true, true, true, 4, 10, 1},
        {"layer: narrow", true, true, true, 3, 10, -1},
        {"layer: taller than a frame", true, true, true, 4, 40, -1},
        {"input: field", false, true, true, 4, 10, 1},
        {"input: even field first", false, true, false, 4, 10, 0},
        {"input: no field wanted", false, false, true, 4, 10, -1},
        {"input: nearly a frame", false, true, true, 4, 14, -1},
        {"input: hardly a frame", false, true, true, 4, 13, 1},
        {"input: little taller", false, true, true, 4, 26, -1},
        {"input: much taller", false, true, true, 4, 27, 1},
    };
    for (const WeaveCase& c : cases) {
        std::vector<double> times;
        project.input = [&](double time) {
            times.push_back(time);
            return [rows(c.width, c.height, 8, 2, time == 2.0 ? 0 : 100) retain];
        };
        project.layer = [this](UInt32, double time) { return project.input(time); };
        PluginHost_FXPLUG_Impl binding = host();
        PluginRaster_API* const raster = c.layer
                                             ? binding.checkoutLayer(5, 2.7, 0)
                                             : binding.lockTemporalRaster(2.7, c.fieldMode, c.odd);
        std::vector<int> expected;
        for (int y = 0; y < static_cast<int>(c.height); ++y) {
            expected.push_back(c.first == 1 ? 100 + y : y);
            if (c.first >= 0) {
                expected.push_back(c.first == 1 ? y : 100 + y);
            }
        }
        EXPECT_THAT(firstBytes(infoOf(binding, raster)), ElementsAreArray(expected)) << c.what;
        EXPECT_EQ(times, c.first < 0 ? std::vector{2.0} : std::vector({2.0, 2.5})) << c.what;
        binding.unlockTemporalRaster(raster);
    }
    double asked = -1.0;
    project.input = [&](double time) {
        asked = time;
        return static_cast<FxBitmap*>(nil);
    };
    EXPECT_EQ(host().lockTemporalRaster(-3.2, false, false), nullptr);
    EXPECT_EQ(asked, 0.0);
}

/// In use now, where the C library tells.
std::size_t heapBytes() {
#ifdef __GLIBC__
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

TEST_F(Binding, yieldsNothingAndKeepsNothingWithoutTheSecondField) {
    project.layer = [](UInt32, double time) {
        return time == 3.0 ? [rows(4, 10, 8, 2, 0) retain] : static_cast<FxBitmap*>(nil);
    };
    project.input = [](double time) {
        return time == 3.0 ? [rows(4, 10, 8, 2, 0) retain] : static_cast<FxBitmap*>(nil);
    };
    const int images = liveImages();
    const std::size_t heap = heapBytes();
    for (int i = 0; i < 500; ++i) {
        const Pool inner;
        PluginHost_FXPLUG_Impl binding = host();
        EXPECT_EQ(binding.checkoutLayer(5, 0), nullptr);
        EXPECT_EQ(binding.lockTemporalRaster(3.0, true, false), nullptr);
    }
    EXPECT_EQ(liveImages(), images);
    EXPECT_LT(heapBytes(), heap + 500 * 320) << "a field of 320 bytes is lost every time";
    project.layer = nullptr;
    EXPECT_EQ(host().checkoutLayer(5, 0), nullptr);
}

// Only Motion delivers the input at full size there. Column x of row y holds 10 y + x.
TEST_F(Binding, resamplesTheInputForAReducedMotion) {
    project.input = [](double) {
        FxBitmap* const image = [rows(8, 6, 8, 2, 0) retain];
        for (int i = 0; i < 48; ++i) {
            static_cast<char*>(
                [image dataPtr])[i / 8 * static_cast<int>([image rowBytes]) + i % 8 * 4] =
                static_cast<char>(i / 8 * 10 + i % 8);
        }
        return image;
    };
    for (const auto& [kind, scale, width] :
         {std::tuple{1, 0.5, 4}, {1, 0.98, 4}, {1, 0.99, 8}, {1, 1.0, 8}, {0, 0.5, 8}}) {
        g_hostIndex = kind;
        info.scaleX = scale;
        PluginHost_FXPLUG_Impl binding = host(rows(4, 4, 8, 2, 0), rows(4, 4, 8, 2, 0));
        PluginRaster_API* const raster = binding.lockTemporalRaster(1.0, false, true);
        ASSERT_EQ(raster->getWidth(), width) << kind << ' ' << scale;
        const RasterInfo made = infoOf(binding, raster);
        if (width == 4) {
            // Rows 0, 1, 3 and 4 of six, counted from the top: the last in memory.
            EXPECT_THAT(firstBytes(made), ElementsAre(50, 40, 20, 10));
            EXPECT_THAT((std::vector<int>{made.row(0)[4], made.row(0)[8], made.row(0)[12]}),
                        ElementsAre(52, 54, 56));
        }
        binding.unlockTemporalRaster(raster);
    }
}

// --- The request ---

TEST_F(Binding, answersFromTheRequest) {
    PluginHost_FXPLUG_Impl binding = host();
    EXPECT_TRUE(binding.isQualityHigh());
    EXPECT_EQ(binding.getCurrentTime(), 300);
    info.frame = 2.999;
    EXPECT_EQ(binding.getCurrentTime(), 299);
    EXPECT_EQ(binding.getScaleY(), 1.0);
    info.field = kFxField_LOWER;
    info.qualityLevel = kFxQuality_MEDIUM;
    EXPECT_FALSE(binding.isQualityHigh());
    EXPECT_TRUE(binding.isFieldRendering());
    EXPECT_EQ(binding.getScaleX(), 1.0);
    EXPECT_EQ(binding.getScaleY(), 0.5);
    int height = 0;
    int step = 0;
    int phase = 0;
    for (const auto& [time, expected] : {std::pair{3.49, 1}, {3.48, 0}, {-0.52, 0}, {-0.5, 1}}) {
        binding.getFullFrameInfo(time, 240, height, step, phase);
        EXPECT_THAT((std::vector{height, step, phase}), ElementsAre(480, 2, expected)) << time;
    }
    PluginHost_FXPLUG_Impl idle(nil, nil, nil, nil, nullptr, nil, nil);
    idle.setFallbackFrame(4.5);
    EXPECT_EQ(idle.getCurrentTime(), 450);
    EXPECT_EQ(idle.getScaleX() + idle.getScaleY(), 2.0);
    idle.getFullFrameInfo(3.6, 240, height, step, phase);
    EXPECT_THAT((std::vector{height, step, phase}), ElementsAre(240, 1, 0));
    idle.setFallbackFrame(1e300);
    EXPECT_EQ(idle.getCurrentTime(), std::numeric_limits<int>::max());
}

TEST_F(Binding, knowsItsApplicationAndVersion) {
    const long finalCut = 0x46435052;
    const long motion = 0x4D4F544E;
    for (const auto& [index, isFinalCut, isMotion] :
         {std::tuple{0, true, false}, std::tuple{1, false, true}, std::tuple{2, false, false}}) {
        g_hostIndex = index;
        EXPECT_EQ(host().isApplication(finalCut), isFinalCut);
        EXPECT_EQ(host().isApplication(motion), isMotion);
        EXPECT_EQ(host().hasCamera(), isMotion);
    }
    PluginHost_FXPLUG_Impl binding = host();
    int minor = -1;
    int major = -1;
    const auto version = [&](UInt32 number) {
        manners().version = number;
        binding.setHostVersionNum(nil);
        binding.getHostVersionNum(minor, major);
        return std::pair{major, minor};
    };
    EXPECT_EQ(version(0), (std::pair{0, 0}));
    EXPECT_EQ(version(0x04560000), (std::pair{4, 5}));
    EXPECT_EQ(version(0), (std::pair{4, 5}));
    EXPECT_EQ(version(0x3BC00000), (std::pair{0xB, 0xC}));
}

TEST_F(Binding, tellsTheHostsApart) {
    const auto detect = [](int kind, const char* process) {
        manners().kind = kind;
        [[NSProcessInfo processInfo] setProcessName:[NSString stringWithUTF8String:process]];
        return GetHostIndex(nil);
    };
    alerts.clear();
    EXPECT_THAT((std::vector{detect(0, "Motion"), detect(1, "x"), detect(2, "Motion")}),
                ElementsAre(0, 1, 2));
    manners().knowsExpress = false;
    EXPECT_THAT((std::vector{detect(2, "Final Cut Express HD"), detect(2, "My Final Cut Pro"),
                             detect(9, "Final Cut Pro in Motion"), detect(9, "Motion")}),
                ElementsAre(2, 0, 1, 1));
    manners().describesItself = false;
    EXPECT_EQ(detect(1, "Final Cut Express"), 2);
    EXPECT_THAT(alerts, IsEmpty());
    const std::string long256(256, 'x');
    for (const char* const process : {"tests", long256.c_str(), "Mot\xC3\xAFon Motion"}) {
        alerts.clear();
        EXPECT_EQ(detect(9, process), 0);
        EXPECT_THAT(alerts, ElementsAre("Host Error|Unable to figure out your host.  Assuming "
                                        "Final Cut Pro.|OK"));
    }
}

// --- Parameters ---

class Values : public Binding {
protected:
    Values() {
        project.declare(7, ValueKind::Point, 0, {0, 0}, "");
        project.declare(9, ValueKind::Angle, 0, {0}, "");
        project.declare(3, ValueKind::Color, 0, {0.1, 0.2, 0.3}, "");
        project.declare(4, ValueKind::Float, 0, {5}, "");
        project.declare(12, ValueKind::Menu, 0, {1}, "");
        project.declare(15, ValueKind::Toggle, 8, {1}, "");
        project.set(7, {0.2, 0.3});
        project.set(9, 1.5707963267948966);
    }
    const PluginHost_API::TimeObject now{300, 100, 0};
};

TEST_F(Values, meanTheSameThroughReaderAndGetters) {
    for (const auto& [index, y] : {std::pair{0, 0.3}, {1, 0.7}, {2, 0.3}}) {
        g_hostIndex = index;
        PluginHost_FXPLUG_Impl binding = host();
        double x = 0;
        double read = 0;
        binding.GetPoint2DValue(7, 0, now, x, read);
        EXPECT_DOUBLE_EQ(read, y);
        binding.reader().readPoint(7, x, read);
        EXPECT_DOUBLE_EQ(read, y);
        EXPECT_EQ(x, 0.2);
        binding.GetAngleValue(9, 0, now, read);
        EXPECT_DOUBLE_EQ(read, 90);
        binding.reader().readAngle(9, x);
        EXPECT_EQ(x, read);
        binding.SetPoint2DValue(7, 0, 0.2, y);
        EXPECT_NEAR(project.value(7, 0)[1], 0.3, 1e-15);
    }
}

TEST_F(Values, areReadAtTheTimeAskedFor) {
    project.setTrack(4, {{0, {0}, Easing::Linear}, {10, {100}, Easing::Linear}});
    info.frame = 3.256; // between two ticks of the frame
    PluginHost_FXPLUG_Impl binding = host();
    double value = 0;
    binding.reader().readFloat(4, value);
    EXPECT_DOUBLE_EQ(value, 32.56);
    binding.GetFixedFloatValue(4, 0, {325, 100, 0}, value);
    EXPECT_EQ(value, 32.5);
}

TEST_F(Values, countAsWrittenWhateverTheHostAnswers) {
    project.deniesWhatItWrites = true;
    g_hostIndex = 1;
    PluginHost_FXPLUG_Impl binding = host();
    double degrees = 1.5707963267948966;
    EXPECT_NE(binding.GetAngleValue(9, 0, now, degrees), 0);
    EXPECT_DOUBLE_EQ(degrees, 90);
    double x = 0;
    double y = 0.3;
    EXPECT_NE(binding.GetPoint2DValue(7, 0, now, x, y), 0);
    EXPECT_EQ(x, 0.2);
    EXPECT_EQ(y, 0.7);
    double rgb[3] = {};
    EXPECT_NE(binding.GetColorValue(3, 0, now, rgb[0], rgb[1], rgb[2]), 0);
    EXPECT_THAT(rgb, ElementsAre(0.1, 0.2, 0.3));
    int menu = 0;
    EXPECT_NE(binding.GetIntValue(12, 0, now, menu), 0);
    EXPECT_EQ(menu, 1);
    bool on = false;
    EXPECT_NE(binding.GetBoolValue(15, 0, now, on), 0);
    EXPECT_TRUE(on);
}

TEST_F(Values, countAToggleAsOnOnlyWhenItIsOne) {
    PluginHost_FXPLUG_Impl binding = host();
    for (const auto& [stored, on] : {std::pair{0.0, false}, {1.0, true}, {2.0, false}}) {
        project.set(15, stored);
        bool value = !on;
        EXPECT_EQ(binding.GetBoolValue(15, 0, now, value), 0);
        EXPECT_EQ(value, on);
        value = !on;
        binding.reader().readToggle(15, value);
        EXPECT_EQ(value, on);
    }
}

TEST_F(Values, areWrittenAtTheTimeOfTheAction) {
    project.currentTime = 8;
    PluginHost_FXPLUG_Impl binding = host();
    PluginUpdate_FXPLUG_Impl update(&binding);
    EXPECT_TRUE(update.isValid());
    double ninety = 90;
    binding.SetAngleValue(9, 0, ninety);
    binding.SetFloatValue(4, 0, ninety);
    update.setFloatValue(4, 0, 1.5);
    update.setAngleValue(9, 0, 180);
    update.setIntValue(12, 0, 0);
    update.setEnumValue(12, 0, 1);
    update.setBoolValue(15, 0, true);
    update.setPoint2DValue(7, 0, 0.5, 0.25);
    update.setColorValue(3, 0, 1, 0, 0);
    update.setParamNameEnable(15, 0, "ignored", false);
    update.setEnable(15, 0, true);
    update.setGroupOpen(15, 0, true);
    update.setGroupOpen(15, 0, false);
    update.setEnable(99, 0, true); // unknown to the host
    EXPECT_THAT(project.log,
                ElementsAre("float 9 at 8: 1.5708", "float 4 at 8: 90", "float 4 at 8: 1.5",
                            "float 9 at 8: 3.14159", "int 12 at 8: 0", "int 12 at 8: 1",
                            "bool 15 at 8: 1", "point 7 at 8: 0.5", "color 3 at 8: 1",
                            "flags 15: 12", "flags 15: 8", "flags 15: 0", "flags 15: 8"));
    PluginHost_FXPLUG_Impl bare(nil, nil, nil, nil, nullptr, nil, nil);
    PluginUpdate_FXPLUG_Impl nothing(&bare);
    EXPECT_FALSE(nothing.isValid());
    nothing.setEnable(15, 0, true);
    nothing.setFloatValue(4, 0, 1);
}

// --- Instance data and camera ---

class Shape : public Binding {
protected:
    Shape() {
        PluginHost_FXPLUG_Impl binding = host();
        AddPathProperty(&binding);
        AddPathPresetProperty(&binding);
    }
    std::string read() {
        PluginHost_FXPLUG_Impl binding = host();
        Orbel_UserData data;
        EXPECT_EQ(getUserData(&binding, &data), 0);
        return data.path;
    }
};

TEST_F(Shape, isThePresetFirstAndTheFileSecond) {
    Orbel_UserData data;
    setUserDataPath(&data, "/my file.svg");
    project.set(PARAM_PRESETS, 5);
    PluginHost_FXPLUG_Impl binding = host();
    EXPECT_EQ(setUserData(&binding, &data), 0);
    EXPECT_THAT(project.log, ElementsAre("custom 1", "int 83 at 3: 0"));
    for (const auto& [preset, path] :
         {std::pair{0, "/my file.svg"},
          {5, "/Library/Plug-ins/FxPlug/Tessaly/SVG/Circle Cutout.svg"},
          {40, "/Library/Plug-ins/FxPlug/Tessaly/SVG/Wrinkled Petals.svg"},
          {41, "/my file.svg"},
          {-1, "/my file.svg"}}) {
        project.set(PARAM_PRESETS, preset);
        EXPECT_EQ(read(), path);
    }
}

TEST_F(Shape, isSafeFromDamagedProjects) {
    char endless[1024];
    std::memset(endless, 'x', sizeof endless);
    PluginHost_FXPLUG_Impl binding = host();
    Orbel_UserData data;
    std::memcpy(data.path, endless, sizeof endless);
    setUserData(&binding, &data);
    EXPECT_EQ(read(), std::string(1023, 'x'));
    project.setCustom(PARAM_SHAPE, @"not a shape at all");
    EXPECT_EQ(read(), "");
    project.setCustom(PARAM_SHAPE, nil);
    EXPECT_EQ(read(), "");
}

TEST_F(Binding, declaresNothingWithoutARecord) {
    ParameterStore parameters;
    PluginHost_MEMORY_Impl other(RasterInfo{}, RasterInfo{}, &parameters, {});
    EXPECT_EQ(ParamsSetup(&other), 1);
    EXPECT_EQ(AddPathProperty(&other), 1);
    EXPECT_EQ(AddPathPresetProperty(&other), 1);
    EXPECT_EQ(AddCompCameraParam(&other), 0);
    EXPECT_EQ(AddMBlurPopup(&other), 0);
    EXPECT_THAT(project.declarations, IsEmpty());
}

TEST_F(Binding, transposesTheSceneCamera) {
    Vx_Matrix4 camera{};
    double zoom = 0;
    PluginHost_FXPLUG_Impl binding = host();
    EXPECT_EQ(binding.cameraMatrix(150, 3000, &camera, &zoom), 1);
    double columns[16];
    std::iota(columns, columns + 16, 0.0);
    project.layerMatrix = [NSData dataWithBytes:columns length:sizeof columns - 1];
    EXPECT_EQ(binding.cameraMatrix(150, 3000, &camera, &zoom), 1);
    project.layerMatrix = [NSData dataWithBytes:columns length:sizeof columns];
    EXPECT_EQ(binding.cameraMatrix(150, 3000, &camera, &zoom), 0);
    EXPECT_EQ(project.matrixTimes.back(), 0.05);
    EXPECT_EQ(zoom, 900.0);
    EXPECT_EQ(camera.m[3][1], 7.0);
    EXPECT_EQ(camera.m[1][3], 13.0);
    binding.set3DApi(nil);
    EXPECT_EQ(binding.cameraMatrix(150, 3000, &camera, &zoom), 1);
}

// --- Lines of fields ---

std::vector<int> rowsOf(FxBitmap* bitmap) {
    RasterInfo record;
    describeBitmap(bitmap, false, &record);
    return firstBytes(record);
}

TEST_F(Binding, doublesLines) {
    for (const FxUInt height : {1U, 3U}) {
        const Owned<FxBitmap*> doubled = render_lineDouble(rows(4, height, 16, 2, 7));
        FxBitmap* const frame = doubled.get();
        EXPECT_THAT(rowsOf(frame),
                    height == 1 ? std::vector({7, 7}) : std::vector({7, 7, 8, 8, 9, 9}));
        EXPECT_EQ([frame pixelAspect], 0.75);
        EXPECT_TRUE(paddingIntact(frame));
    }
    FxBitmap* const field = rows(1, 1, 8, 2, 0);
    manners().bitmapsUntilFailure = 0;
    EXPECT_EQ(render_lineDouble(field).get(), nil);
    EXPECT_EQ(render_lineDouble(nil).get(), nil);
}

TEST_F(Binding, halvesLines) {
    for (const auto& [odd, expected] :
         {std::pair{true, std::vector{1, 3, 5}}, std::pair{false, std::vector{0, 2, 4}}}) {
        FxBitmap* const field = rows(5, 3, 8, 2, 100);
        render_lineHalf(rows(4, 6, 8, 2, 0), field, odd);
        EXPECT_EQ(rowsOf(field), expected);
        EXPECT_EQ(static_cast<std::uint8_t*>([field dataPtr])[16], 100); // the wider part
        EXPECT_TRUE(paddingIntact(field));
    }
    FxBitmap* const longer = rows(4, 3, 8, 2, 100);
    render_lineHalf(rows(6, 2, 8, 2, 0), longer, true);
    EXPECT_THAT(rowsOf(longer), ElementsAre(1, 101, 102));
    render_lineHalf(nil, longer, true);
}

} // namespace
} // namespace orbel::fxtest

// Answers for the panel that nobody is there to close.
NSInteger NSRunAlertPanel(NSString* title, NSString* message, NSString* defaultButton,
                          NSString* alternateButton, NSString* otherButton, ...) {
    std::string text;
    for (NSString* const part : {title, message, defaultButton}) {
        text.append(text.empty() ? "" : "|").append([part UTF8String]);
    }
    EXPECT_EQ(alternateButton, nil);
    EXPECT_EQ(otherButton, nil);
    orbel::fxtest::alerts.push_back(text);
    return 1;
}
