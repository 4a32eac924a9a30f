// The three functions that a host finds in the binary, and nothing else.

#include "doors/ofx/Actions.h"
#include "doors/ofx/EffectDescription.h"
#include "doors/ofx/HostSuites.h"
#include "doors/ofx/platform/OfxNames.h"

#define ORBEL_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

void setHost(OfxHost* host) {
    orbel::ofx::rememberHost(host);
}

OfxStatus mainEntry(const char* action, const void* handle, OfxPropertySetHandle inArgs,
                    OfxPropertySetHandle outArgs) {
    return orbel::ofx::answerAction(action, handle, inArgs, outArgs);
}

OfxPlugin plugin = {orbel::ofx::IMAGE_EFFECT_API,
                    orbel::ofx::IMAGE_EFFECT_API_VERSION,
                    orbel::ofx::PLUGIN_IDENTIFIER,
                    ORBEL_VERSION_MAJOR,
                    ORBEL_VERSION_MINOR,
                    setHost,
                    mainEntry};

} // namespace

ORBEL_EXPORT int OfxGetNumberOfPlugins() {
    return 1;
}

ORBEL_EXPORT OfxPlugin* OfxGetPlugin(int nth) {
    return nth == 0 ? &plugin : nullptr;
}

/// Newer hosts say who they are before they ask for anything.
ORBEL_EXPORT OfxStatus OfxSetHost(const OfxHost* host) {
    orbel::ofx::rememberHost(host);
    return orbel::ofx::STAT_OK;
}
