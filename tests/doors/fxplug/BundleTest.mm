#include "doors/memory/MemoryImage.h"
#include "tests/doors/fxplug/HostBitmaps.h"
#include "tests/doors/fxplug/LoadedEffect.h"
#include "tests/doors/fxplug/Pool.h"
#include "tests/doors/fxplug/StandInProject.h"
#include "tests/support/TestFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <fstream>

// The runtime's own count of living objects; its header hides it from release builds.
extern "C" BOOL GSDebugAllocationActive(BOOL active);
extern "C" int GSDebugAllocationCount(Class type);

@interface NSObject (ShapeValue)
- (const void*)getValue;
@end

// The effect as a host sees it: nothing but the bundle and its selectors.
namespace orbel::fxtest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr UInt32 SHAPE = 1;
constexpr UInt32 PRESETS = 83;

class Bundle : public testing::Test {
protected:
    Bundle() : application(Application::FinalCutPro) {}

    NSObject<FxFilter>* effect() { return static_cast<NSObject<FxFilter>*>(loaded.effect()); }
    Project& project() { return loaded.project(); }

    /// A parameter is changed by the user, and the effect is told.
    BOOL change(UInt32 param, double value) {
        if (project().parameters.contains(param)) {
            project().set(param, value);
        }
        project().log.clear();
        return [effect() parameterChanged:param];
    }

    Pool pool;
    Application application;
    LoadedEffect loaded{ORBEL_BUNDLE, application};
};

TEST_F(Bundle, isTheEffectClassWithItsProtocols) {
    EXPECT_TRUE([NSStringFromClass([effect() class]) isEqual:@"Orbel_FXPLUG_Plugin"]);
    for (Protocol* const protocol : {
             @protocol (FxBaseEffect), @protocol (FxFilter), @protocol (FxCustomParameterViewHost)
         }) {
        EXPECT_TRUE([effect() conformsToProtocol:protocol]);
    }
}

// Saved projects know the effect by these.
TEST_F(Bundle, isDescribedToTheHost) {
    NSString* const file = [[NSString stringWithUTF8String:ORBEL_BUNDLE]
        stringByAppendingPathComponent:@"Contents/Info.plist"];
    NSDictionary* const description = [NSDictionary dictionaryWithContentsOfFile:file];
    NSDictionary* const plugIn = [[description objectForKey:@"ProPlugPlugInList"] objectAtIndex:0];
    NSDictionary* const group =
        [[description objectForKey:@"ProPlugPlugInGroupList"] objectAtIndex:0];
    EXPECT_STREQ([[plugIn objectForKey:@"uuid"] UTF8String],
                 "3E6C4F2A-08E2-4154-8755-7ADBC6CC6353");
    EXPECT_STREQ([[plugIn objectForKey:@"group"] UTF8String],
                 "7DAB91D4-CB68-451B-BA2D-76DBAEFF4AB0");
    EXPECT_TRUE([[group objectForKey:@"uuid"] isEqual:[plugIn objectForKey:@"group"]]);
    EXPECT_TRUE([[plugIn objectForKey:@"className"] isEqual:@"Orbel_FXPLUG_Plugin"]);
    EXPECT_TRUE(
        [[plugIn objectForKey:@"protocolNames"] isEqual:[NSArray arrayWithObject:@"FxFilter"]]);
    EXPECT_EQ([[description objectForKey:@"ProPlugProtocolList"] count], 5U);
}

TEST_F(Bundle, declaresItsParametersInOrder) {
    std::ifstream file(ORBEL_DECLARATIONS);
    std::vector<std::string> expected;
    for (std::string line; std::getline(file, line);) {
        expected.push_back(line);
    }
    EXPECT_THAT(project().declarations, ElementsAreArray(expected));
}

TEST_F(Bundle, answersTheSmallQuestions) {
    NSDictionary* const properties = [effect() properties];
    EXPECT_EQ([properties count], 5U);
    EXPECT_TRUE([[properties objectForKey:@"SupportsRowBytes"] boolValue]);
    for (NSString* const key : {@"SupportsR408", @"SupportsR4fl", @"MayRemapTime"}) {
        EXPECT_NE([properties objectForKey:key], nil);
        EXPECT_FALSE([[properties objectForKey:key] boolValue]);
    }
    EXPECT_EQ([[properties objectForKey:@"EquivalentSMPTEWipeCode"] intValue], 0);
    EXPECT_FALSE([effect() variesOverTime]);
    EXPECT_TRUE([effect() frameCleanup]);
    BOOL hardware = YES;
    BOOL software = NO;
    EXPECT_TRUE([effect() frameSetup:FxRenderInfo {}
        inputInfo:FxImageInfo {}
        hardware:&hardware
        software:&software]);
    EXPECT_FALSE(hardware);
    EXPECT_TRUE(software);
}

TEST_F(Bundle, keepsTheInputsSize) {
    FxImageInfo input{};
    input.width = 720;
    input.height = 576;
    FxUInt width = 1;
    FxUInt height = 2;
    EXPECT_FALSE([effect() getOutputWidth:&width
                                   height:nullptr
                                withInput:input
                                 withInfo:FxRenderInfo{}]);
    EXPECT_EQ(width, 1U);
    EXPECT_TRUE([effect() getOutputWidth:&width
                                  height:&height
                               withInput:input
                                withInfo:FxRenderInfo{}]);
    EXPECT_THAT((std::vector{width, height}), ElementsAre(720U, 576U));
}

struct Rule {
    UInt32 changed;
    double on;
    double off;
    std::vector<UInt32> dependents;
};

TEST_F(Bundle, enablesExactlyTheParametersOfItsRules) {
    // Two rules are about parameters that no host is told of; a stand-in may still have them.
    for (const UInt32 retired : {2U, 46U, 47U}) {
        project().declare(retired, ValueKind::Toggle, 32, {0}, "");
    }
    const std::vector<Rule> rules{
        {2, 1, 0, {36}},
        {36, 0, 1, {78, 67}},
        {15, 1, 0, {16, 17, 18, 19, 20, 21, 22, 23, 24, 63, 64}},
        {41, 1, 0, {42, 43, 44}},
        {46, 1, 0, {47}},
    };
    project().currentTime = 12.5;
    for (const Rule& rule : rules) {
        for (const bool enable : {false, true, true}) {
            std::vector<std::string> expected{"start Orbel_FXPLUG_Plugin"};
            for (const UInt32 dependent : rule.dependents) {
                const UInt32 before = project().parameters.at(dependent).flags;
                const UInt32 after = enable ? before & ~4U : before | 4U;
                expected.push_back("flags " + std::to_string(dependent) + ": " +
                                   std::to_string(after));
            }
            expected.push_back("end Orbel_FXPLUG_Plugin");
            EXPECT_TRUE(change(rule.changed, enable ? rule.on : rule.off));
            EXPECT_EQ(project().log, expected) << rule.changed;
        }
    }
    // Anything but exactly on counts as off.
    change(15, 2);
    EXPECT_EQ(project().parameters.at(16).flags & 4U, 4U);
    EXPECT_EQ(project().strayAccesses, 0);
}

TEST_F(Bundle, leavesEverythingAloneWhenAnotherParameterChanges) {
    for (const auto& [param, declared] : project().parameters) {
        if (param != 36 && param != 15 && param != 41) {
            EXPECT_TRUE([effect() parameterChanged:param]);
        }
    }
    EXPECT_THAT(project().log, testing::Each(testing::HasSubstr("Orbel_FXPLUG_Plugin")));
}

TEST_F(Bundle, readsARuleAtTheTimeOfTheAction) {
    project().setTrack(15, {{0, {0}, Easing::Hold}, {10, {1}, Easing::Hold}});
    project().currentTime = 10;
    [effect() parameterChanged:15];
    EXPECT_EQ(project().parameters.at(16).flags & 4U, 0U);
    project().currentTime = 9;
    [effect() parameterChanged:15];
    EXPECT_EQ(project().parameters.at(16).flags & 4U, 4U);
}

// --- Saved projects ---

class SavedProject : public Bundle {
protected:
    static id restored(NSData* archive) {
        return [NSKeyedUnarchiver unarchiveObjectWithData:archive];
    }
    /// The value of "Shape" that a project with these bytes under its key holds.
    static id valueOf(const std::string& bytes) {
        NSMutableData* const data = [NSMutableData data];
        NSKeyedArchiver* const archiver =
            [[[NSKeyedArchiver alloc] initForWritingWithMutableData:data] autorelease];
        [archiver encodeBytes:reinterpret_cast<const std::uint8_t*>(bytes.data())
                       length:bytes.size()
                       forKey:bytes.empty() ? @"another key" : @"Vo_Orbel_CustomParamStuff"];
        [archiver finishEncoding];
        NSKeyedUnarchiver* const reader =
            [[[NSKeyedUnarchiver alloc] initForReadingWithData:data] autorelease];
        return
            [[[NSClassFromString(@"Vo_Orbel_CustomParam") alloc] initWithCoder:reader] autorelease];
    }
    static std::string bytesOf(id value) {
        return {static_cast<const char*>([value getValue]), 1024};
    }
};

TEST_F(SavedProject, keepsAll1024BytesOfTheName) {
    std::string name(1024, '\0');
    for (std::size_t i = 0; i < name.size(); ++i) {
        name[i] = static_cast<char>(i * 7 + 1);
    }
    name[40] = '\0';
    const id value = valueOf(name);
    EXPECT_EQ(bytesOf(value), name);
    EXPECT_EQ(bytesOf(restored([NSKeyedArchiver archivedDataWithRootObject:value])), name);
    EXPECT_EQ(bytesOf(project().parameters.at(SHAPE).custom), std::string(1024, '\0'));
}

TEST_F(SavedProject, fillsAShorterNameWithZeros) {
    EXPECT_EQ(bytesOf(valueOf("/a.svg")), "/a.svg" + std::string(1018, '\0'));
    EXPECT_EQ(bytesOf(valueOf("")), std::string(1024, '\0'));
    EXPECT_EQ(bytesOf(valueOf(std::string(1500, 'x'))), std::string(1024, 'x'));
}

// --- Rendering ---

constexpr int WIDTH = 40;
constexpr int HEIGHT = 30;

struct Picture {
    MemoryImage image;
    explicit Picture(RasterFormat format, int width = WIDTH, int height = HEIGHT)
        : image(width, height, format, RowLayout{}) {
        const std::size_t size = image.rowSize() * static_cast<std::size_t>(height);
        for (std::size_t i = 0; i < size; ++i) {
            image.info().data[i] = static_cast<std::uint8_t>(i % 200);
        }
    }
    [[nodiscard]] std::string bytes() const {
        const RasterInfo& info = image.info();
        return {reinterpret_cast<const char*>(info.data),
                image.rowSize() * static_cast<std::size_t>(info.height)};
    }
};

std::string shapeFile() {
    static const test::TestFolder folder;
    static const std::string file = folder.file("line.svg", "<svg><line x2='100' y2='100'/></svg>");
    return file;
}

class Rendering : public Bundle {
protected:
    Rendering() {
        loaded.setShape(shapeFile());
        project().set(35, 1); // "Normal"
    }

    /// What the effect answers; `output` receives the result.
    BOOL render(FxBitmap* input, FxBitmap* output, FxField field) {
        FxRenderInfo info{};
        info.scaleX = 1.0;
        info.scaleY = 1.0;
        info.field = field;
        project().hostIsCalling = true;
        const Pool inner;
        const BOOL answer = [effect() renderOutput:output withInput:input withInfo:info];
        project().hostIsCalling = false;
        return answer;
    }

    static FxBitmap* bitmap(const Picture& shown) {
        return [makeHostBitmap(shown.image.info(), false) autorelease];
    }
    static std::string pixels(FxBitmap* bitmap, const Picture& like) {
        Picture copy(like.image.info().pixelFormat, like.image.info().width,
                     like.image.info().height);
        copyFromHostBitmap(bitmap, copy.image.info());
        return copy.bytes();
    }

    const Picture picture{RF_RGBA8};
};

TEST_F(Rendering, drawsAndMarksTheOutputPremultiplied) {
    FxBitmap* const output = bitmap(picture);
    [output setIsPremultiplied:NO];
    EXPECT_TRUE(render(bitmap(picture), output, 0));
    EXPECT_TRUE([output isPremultiplied]);
    EXPECT_NE(pixels(output, picture), picture.bytes());
    EXPECT_EQ(manners().versionQuestions, 1);
    [output setIsPremultiplied:NO];
    manners().answersPremultiplied = false;
    EXPECT_TRUE(render(bitmap(picture), output, 0));
    EXPECT_FALSE([output isPremultiplied]);
}

TEST_F(Rendering, laysASmallerOrLargerInputIntoTheTopLeftCorner) {
    project().set(37, 100); // nothing to draw: the output is a copy of what it worked on
    for (const auto& [width, height] : {std::pair{25, 20}, {60, 20}, {25, 50}, {60, 50}}) {
        const Picture input(RF_RGBA8, width, height);
        FxBitmap* const output = bitmap(picture);
        ASSERT_TRUE(render(bitmap(input), output, 0));
        const std::string result = pixels(output, picture);
        const auto row = static_cast<std::size_t>(4 * WIDTH);
        const auto inputRow = static_cast<std::size_t>(4 * width);
        const std::size_t copied = std::min(row, inputRow);
        for (std::size_t y = 0; y < static_cast<std::size_t>(std::min(height, HEIGHT)); ++y) {
            for (std::size_t x = 3; x < row; x += 4) {
                const char expected = x < copied ? input.bytes()[y * inputRow + x] : '\0';
                ASSERT_EQ(result[y * row + x], expected) << width << ' ' << x << ' ' << y;
            }
        }
        EXPECT_TRUE(paddingIntact(output));
    }
}

TEST_F(Rendering, survivesAnInputOfAnotherDepth) {
    EXPECT_TRUE(render(bitmap(Picture(RF_RGBA8)), bitmap(Picture(RF_RGBA32F)), 0));
    EXPECT_TRUE(render(bitmap(Picture(RF_RGBA32F)), bitmap(Picture(RF_RGBA8)), 1));
}

TEST_F(Rendering, leavesLayoutsItDoesNotKnowAsTheyWere) {
    for (const FxUInt format : {1U, 3U, 4U, 5U, 99U}) {
        for (const FxUInt depth : {8U, 16U, 32U}) {
            FxImageInfo info{};
            info.width = 8;
            info.height = 4;
            info.depth = depth;
            info.pixelFormat = format;
            FxBitmap* const output = [[[FxBitmap alloc] initWithInfo:info] autorelease];
            const std::string before(static_cast<const char*>([output dataPtr]),
                                     std::size_t{4} * [output rowBytes]);
            for (const FxField field : {0U, 1U}) {
                EXPECT_TRUE(render(output, output, field));
            }
            EXPECT_EQ(std::memcmp([output dataPtr], before.data(), before.size()), 0);
            EXPECT_TRUE([output isPremultiplied]);
        }
    }
}

// --- What a host may lack ---

struct Lack {
    const char* protocol;
    BOOL declares;
    BOOL renders;
    BOOL reacts;
};

void PrintTo(const Lack& lack, std::ostream* out) {
    *out << lack.protocol;
}

class Missing : public Rendering, public testing::WithParamInterface<Lack> {};

TEST_P(Missing, isAnsweredAsStated) {
    const Lack& lack = GetParam();
    const int images = liveImages();
    project().missing = {lack.protocol};
    project().declarations.clear();
    project().hostIsCalling = true;
    EXPECT_EQ([effect() addParameters], lack.declares);
    project().hostIsCalling = false;
    EXPECT_EQ(project().declarations.empty(), !lack.declares);
    {
        const Pool inner;
        FxBitmap* const output = bitmap(picture);
        EXPECT_EQ(render(bitmap(picture), output, 0), lack.renders);
        EXPECT_EQ(pixels(output, picture) != picture.bytes(), lack.renders == YES);
    }
    EXPECT_EQ(change(15, 1), lack.reacts);
    EXPECT_EQ((project().parameters.at(16).flags & 4U) == 0, lack.reacts == YES);
    EXPECT_EQ(project().openActions, 0);
    EXPECT_EQ(liveImages(), images);
}

INSTANTIATE_TEST_SUITE_P(Interfaces, Missing,
                         testing::Values(Lack{"FxParameterCreationAPI", NO, YES, YES},
                                         Lack{"FxParameterRetrievalAPI", YES, NO, NO},
                                         Lack{"FxParameterSettingAPI", YES, YES, NO},
                                         Lack{"FxCustomParameterActionAPI", YES, YES, NO},
                                         Lack{"Fx3DAPI", YES, YES, YES}),
                         [](const auto& which) { return which.param.protocol; });

TEST_F(Rendering, goesOnWithoutACapabilitiesObject) {
    manners().describesItself = false;
    FxBitmap* const output = bitmap(picture);
    EXPECT_TRUE(render(bitmap(picture), output, 0));
    EXPECT_NE(pixels(output, picture), picture.bytes());
}

TEST_F(Rendering, answersYesWithoutBitmaps) {
    FxBitmap* const output = bitmap(picture);
    for (const FxField field : {0U, 1U}) {
        EXPECT_TRUE(render(nil, output, field));
        EXPECT_TRUE(render(bitmap(picture), nil, field));
        EXPECT_TRUE(render(nil, nil, field));
    }
    EXPECT_EQ(pixels(output, picture), picture.bytes());
}

// The first, second or third new bitmap fails: the resized input and the two doubled frames.
TEST_F(Rendering, leavesTheOutputWhenABitmapCannotBeMade) {
    const Pool inner;
    const Picture small(RF_RGBA8, 25, 20);
    FxBitmap* const input = bitmap(small);
    FxBitmap* const output = bitmap(picture);
    const int images = liveImages();
    for (const int before : {0, 1, 2}) {
        manners().bitmapsUntilFailure = before;
        EXPECT_TRUE(render(input, output, 1));
        EXPECT_EQ(pixels(output, picture), picture.bytes());
    }
    manners().bitmapsUntilFailure = 0;
    EXPECT_TRUE(render(input, output, 0));
    EXPECT_EQ(pixels(output, picture), picture.bytes());
    manners().bitmapsUntilFailure = 3;
    EXPECT_TRUE(render(input, output, 1));
    EXPECT_NE(pixels(output, picture), picture.bytes());
    EXPECT_EQ(liveImages(), images);
}

TEST_F(Bundle, survivesAnInstanceWithoutAManager) {
    for (const bool plain : {true, false}) {
        const id other = [[effect() class] alloc];
        NSObject<FxFilter>* const bare = plain ? [other init] : [other initWithAPIManager:nil];
        EXPECT_FALSE([bare addParameters]);
        EXPECT_FALSE([bare parameterChanged:15]);
        EXPECT_FALSE([bare renderOutput:nil withInput:nil withInfo:FxRenderInfo{}]);
        EXPECT_EQ([bare properties] != nil, true);
        [bare release];
    }
}

// Objects of the bundle's classes alive after many calls: as many as before.
TEST_F(Rendering, leavesNoObjectBehind) {
    GSDebugAllocationActive(YES);
    const auto alive = [] {
        std::vector<int> counts;
        for (NSString* const name : {@"Orbel_FXPLUG_Plugin", @"Vo_Orbel_CustomParam", @"FxBitmap",
                                     @"FxHostCapabilities"}) {
            counts.push_back(GSDebugAllocationCount(NSClassFromString(name)));
        }
        return counts;
    };
    const auto before = alive();
    for (int round = 0; round < 3; ++round) {
        const Pool inner;
        LoadedEffect another(ORBEL_BUNDLE, Application::FinalCutPro);
        another.setShape("/x.svg");
        for (const FxField field : {0U, 2U}) {
            render(bitmap(Picture(RF_ARGB32F, 20, 10)), bitmap(Picture(RF_ARGB32F)), field);
        }
    }
    EXPECT_EQ(alive(), before);
    GSDebugAllocationActive(NO);
}

} // namespace
} // namespace orbel::fxtest
