#include "tests/doors/fxplug/LoadedEffect.h"
#include "tests/doors/fxplug/Pool.h"
#include "tests/doors/fxplug/StandInProject.h"
#include "tests/support/TestFolder.h"

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

@interface NSObject (ShapeValue)
- (const void*)getValue;
@end

namespace {

std::function<void()> answerOfTheUser;

} // namespace

// The user in front of a modal panel, on the main thread.
@interface PanelUser : NSObject
- (void)answer:(id)ignored;
@end

@implementation PanelUser

- (void)answer:(id)ignored {
    static_cast<void>(ignored);
    answerOfTheUser();
    // The modal loop looks up only when an event arrives.
    [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0]
             atStart:NO];
}

@end

namespace orbel::fxtest {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr UInt32 SHAPE = 1;
constexpr UInt32 PRESETS = 83;

class Dialog : public testing::Test {
protected:
    Dialog() {
        [NSApplication sharedApplication];
        for (const char* const name :
             {"shape.svg", "picture.png", "UPPER.SVG", "sch\xC3\xB6n.svg"}) {
            static_cast<void>(temp.file(name, "<svg/>"));
        }
    }

    id effect() { return static_cast<id>(loaded.effect()); }
    Project& project() { return loaded.project(); }

    NSButton* button() {
        return [static_cast<NSButton*>([effect() createViewForParm:SHAPE]) autorelease];
    }

    /// Runs `call`, which brings up a modal panel; `answer` is what the user does with it.
    static void withUser(std::function<void()> answer, const std::function<void()>& call) {
        answerOfTheUser = std::move(answer);
        PanelUser* const user = [[[PanelUser alloc] init] autorelease];
        std::thread hand([user] {
            const Pool inner;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            [user performSelectorOnMainThread:@selector(answer:)
                                   withObject:nil
                                waitUntilDone:NO
                                        modes:[NSArray arrayWithObject:NSModalPanelRunLoopMode]];
        });
        call();
        hand.join();
    }

    void click(const std::function<void(NSOpenPanel*)>& answer) {
        withUser([&] { answer(static_cast<NSOpenPanel*>([NSApp modalWindow])); },
                 [this] { [button() performClick:nil]; });
    }

    static void choose(NSOpenPanel* panel, const fs::path& file) {
        NSString* const path = [NSString stringWithUTF8String:file.c_str()];
        NSBrowser* const browser = browserIn([panel contentView]);
        [browser setPath:path];
        [panel ok:nil];
    }

    static NSBrowser* browserIn(NSView* view) {
        if ([view isKindOfClass:[NSBrowser class]]) {
            return static_cast<NSBrowser*>(view);
        }
        for (NSUInteger i = 0; i < [[view subviews] count]; ++i) {
            if (NSBrowser* const found = browserIn([[view subviews] objectAtIndex:i])) {
                return found;
            }
        }
        return nil;
    }

    std::string shape() {
        const id value = project().parameters.at(SHAPE).custom;
        return static_cast<const char*>([value getValue]);
    }

    Pool pool;
    const test::TestFolder temp;
    const fs::path& folder = temp.path();
    LoadedEffect loaded{ORBEL_BUNDLE, Application::FinalCutPro};
};

// A button of this runtime does not tell its type.
unsigned givenType = 0;
void takeType(id /*button*/, SEL /*selector*/, NSButtonType type) {
    givenType = static_cast<unsigned>(type);
}

TEST_F(Dialog, hasOneButtonForTheShape) {
    const Method setter = class_getInstanceMethod([NSButton class], @selector(setButtonType:));
    const IMP former =
        method_setImplementation(setter, reinterpret_cast<IMP>(reinterpret_cast<void*>(&takeType)));
    NSButton* const first = static_cast<NSButton*>([effect() createViewForParm:SHAPE]);
    method_setImplementation(setter, former);
    const NSUInteger held = [first retainCount];
    NSButton* const second = static_cast<NSButton*>([effect() createViewForParm:SHAPE]);
    EXPECT_EQ(first, second);
    EXPECT_EQ([first retainCount], held + 1);
    EXPECT_TRUE(NSEqualRects([first frame], NSMakeRect(0, 0, 256, 25)));
    EXPECT_STREQ([[first title] UTF8String], "Open File...");
    EXPECT_EQ([first target], effect());
    EXPECT_TRUE(sel_isEqual([first action], @selector(loadFile:)));
    EXPECT_EQ([first imagePosition], 0);
    EXPECT_EQ(givenType, 7U);
    EXPECT_EQ([first bezelStyle], 1);
    [first release];
    [second release];
    for (const UInt32 other : {0U, 2U, PRESETS}) {
        EXPECT_EQ([effect() createViewForParm:other], nil);
    }
}

TEST_F(Dialog, releasesTheButtonWithTheEffect) {
    NSButton* view = nil;
    NSUInteger held = 0;
    {
        const Pool inner;
        LoadedEffect other(ORBEL_BUNDLE, Application::Motion);
        view = static_cast<NSButton*>([static_cast<id>(other.effect()) createViewForParm:SHAPE]);
        held = [view retainCount];
    }
    EXPECT_EQ([view retainCount], held - 1);
    [view release];
}

TEST_F(Dialog, takesTheChosenFileAndSwitchesThePresetOff) {
    project().set(PRESETS, 5);
    std::vector<std::string> types;
    click([&](NSOpenPanel* panel) {
        NSArray* const allowed = [panel allowedFileTypes];
        for (NSUInteger i = 0; i < [allowed count]; ++i) {
            types.emplace_back([[allowed objectAtIndex:i] UTF8String]);
        }
        EXPECT_FALSE([panel canChooseDirectories]);
        EXPECT_FALSE([panel allowsMultipleSelection]);
        choose(panel, folder / "shape.svg");
    });
    EXPECT_THAT(types, ElementsAre("svg"));
    EXPECT_EQ(shape(), (folder / "shape.svg").string());
    EXPECT_EQ(project().value(PRESETS, 0)[0], 0);
    EXPECT_THAT(project().log, ElementsAre("start Orbel_FXPLUG_Plugin", "custom 1",
                                           "int 83 at 0: 0", "end Orbel_FXPLUG_Plugin"));
    EXPECT_EQ(project().strayAccesses, 0);
}

TEST_F(Dialog, changesNothingWhenTheUserCancels) {
    loaded.setShape("/before.svg");
    project().set(PRESETS, 5);
    click([](NSOpenPanel* panel) { [panel cancel:nil]; });
    EXPECT_EQ(shape(), "/before.svg");
    EXPECT_EQ(project().value(PRESETS, 0)[0], 5);
    EXPECT_THAT(project().log, ElementsAre("start Orbel_FXPLUG_Plugin", "end Orbel_FXPLUG_Plugin"));
}

TEST_F(Dialog, storesNoPathThatIsNoAscii) {
    loaded.setShape("/before.svg");
    click([&](NSOpenPanel* panel) { choose(panel, folder / "sch\xC3\xB6n.svg"); });
    EXPECT_EQ(shape(), "");
}

TEST_F(Dialog, opensNoPanelWhenAnInterfaceIsMissing) {
    loaded.setShape("/before.svg");
    for (const char* const protocol : {"FxParameterRetrievalAPI", "FxParameterSettingAPI"}) {
        project().missing = {protocol};
        project().log.clear();
        [button() performClick:nil];
        EXPECT_THAT(project().log,
                    ElementsAre("start Orbel_FXPLUG_Plugin", "end Orbel_FXPLUG_Plugin"));
    }
    project().missing = {"FxParameterRetrievalAPI", "FxCustomParameterActionAPI"};
    [button() performClick:nil];
    EXPECT_EQ(shape(), "/before.svg");
}

// A host that says nothing about itself in a process of any name.
TEST_F(Dialog, tellsTheUserThatTheHostIsUnknown) {
    manners().kind = 9;
    id made = nil;
    withUser(
        [] {
            EXPECT_NE([NSApp modalWindow], nil);
            [NSApp stopModalWithCode:NSAlertDefaultReturn];
        },
        [&] { made = [static_cast<id>([[effect() class] alloc]) initWithAPIManager:nil]; });
    EXPECT_NE(made, nil);
    [made release];
}

} // namespace
} // namespace orbel::fxtest
