#include "doors/fxplug/ShapeDialog.h"

#include "doors/fxplug/AsciiText.h"
#include "doors/fxplug/FxPlugInterface.h"
#include "params/InstanceData.h"

namespace orbel {

namespace {

constexpr NSInteger CONFIRMED = 1;

// Nil when the user cancels.
NSURL* chooseFile() {
    NSOpenPanel* const panel = [NSOpenPanel openPanel];
    [panel setCanChooseFiles:YES];
    [panel setCanChooseDirectories:NO];
    [panel setAllowsMultipleSelection:NO];
    if (panel == nil || [panel runModalForTypes:[NSArray arrayWithObject:@"svg"]] != CONFIRMED) {
        return nil;
    }
    NSArray* const chosen = [panel URLs];
    return [chosen count] > 0 ? [chosen objectAtIndex:0] : nil;
}

} // namespace

int loadSVGShape(PluginHost_API* host) {
    Orbel_UserData* const data = allocUserData();
    getUserData(host, data);
    if (NSURL* const url = chooseFile()) {
        char path[sizeof data->path];
        // A path that cannot be told leaves the instance without a shape.
        static_cast<void>(asciiText([url path], path, sizeof path));
        setUserDataPath(data, path);
        setUserData(host, data);
    }
    freeUserData(data);
    return 0;
}

} // namespace orbel
