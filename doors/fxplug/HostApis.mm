#include "doors/fxplug/HostApis.h"

#include "doors/fxplug/AsciiText.h"

#include <cstring>

namespace orbel {

namespace {

constexpr int FINAL_CUT_PRO = 0;
constexpr int MOTION = 1;
constexpr int FINAL_CUT_EXPRESS = 2;
constexpr int UNDECIDED = -1;

// The host's own protocol object where it has registered one; ours stands in under the same name.
id api(id<PROAPIAccessing> manager, Protocol* declared) {
    Protocol* registered = NSProtocolFromString(NSStringFromProtocol(declared));
    return [manager apiForProtocol:registered != nil ? registered : declared];
}

int indexFromCapabilities(id<PROAPIAccessing> manager) {
    const Owned<FxHostCapabilities*> capabilities = makeHostCapabilities(manager);
    FxHostCapabilities* const host = capabilities.get();
    if (host == nil) {
        return UNDECIDED;
    }
    if ([host hostIsFCP]) {
        return FINAL_CUT_PRO;
    }
    if ([host hostIsMotion]) {
        return MOTION;
    }
    // Older hosts do not know this question.
    if ([host respondsToSelector:@selector(hostIsFCE)] && [host hostIsFCE]) {
        return FINAL_CUT_EXPRESS;
    }
    return UNDECIDED;
}

int indexFromProcessName() {
    char name[256];
    if (!asciiText([[NSProcessInfo processInfo] processName], name, sizeof name)) {
        return UNDECIDED;
    }
    if (std::strstr(name, "Motion") != nullptr) {
        return MOTION;
    }
    if (std::strstr(name, "Final Cut Pro") != nullptr) {
        return FINAL_CUT_PRO;
    }
    return std::strstr(name, "Final Cut Express") != nullptr ? FINAL_CUT_EXPRESS : UNDECIDED;
}

} // namespace

id<FxParameterCreationAPI> creationApi(id<PROAPIAccessing> manager) {
    return api(manager, @protocol(FxParameterCreationAPI));
}

id<FxParameterRetrievalAPI> retrievalApi(id<PROAPIAccessing> manager) {
    return api(manager, @protocol(FxParameterRetrievalAPI));
}

id<FxParameterSettingAPI> settingApi(id<PROAPIAccessing> manager) {
    return api(manager, @protocol(FxParameterSettingAPI));
}

id<FxCustomParameterActionAPI> actionApi(id<PROAPIAccessing> manager) {
    return api(manager, @protocol(FxCustomParameterActionAPI));
}

id<Fx3DAPI> threeDApi(id<PROAPIAccessing> manager) {
    return api(manager, @protocol(Fx3DAPI));
}

Owned<FxHostCapabilities*> makeHostCapabilities(id<PROAPIAccessing> manager) {
    const Class found = NSClassFromString(@"FxHostCapabilities");
    return Owned<FxHostCapabilities*>(
        [static_cast<FxHostCapabilities*>([found alloc]) initWithAPIManager:manager]);
}

int GetHostIndex(id<PROAPIAccessing> manager) {
    int index = indexFromCapabilities(manager);
    if (index == UNDECIDED) {
        index = indexFromProcessName();
    }
    if (index == UNDECIDED) {
        // Two spaces between the sentences are meant.
        NSRunAlertPanel(@"Host Error", @"Unable to figure out your host.  Assuming Final Cut Pro.",
                        @"OK", nil, nil);
        index = FINAL_CUT_PRO;
    }
    return index;
}

} // namespace orbel
