#include "doors/ofx/HostSuites.h"

#include "doors/ofx/platform/OfxNames.h"

#include <mutex>

namespace orbel::ofx {

namespace {

struct Connection {
    std::mutex mutex;
    const OfxHost* host = nullptr;
    SharedSuites suites;
};

// Never destroyed: a host may still have threads in here when the process ends.
Connection& connection() {
    static Connection& theOne = *new Connection;
    return theOne;
}

} // namespace

bool HostSuites::areComplete() const {
    return property != nullptr && effect != nullptr && parameter != nullptr &&
           // Properties
           property->propSetPointer != nullptr && property->propSetString != nullptr &&
           property->propSetDouble != nullptr && property->propSetInt != nullptr &&
           property->propGetPointer != nullptr && property->propGetString != nullptr &&
           property->propGetDouble != nullptr && property->propGetInt != nullptr &&
           // Effects, clips and images
           effect->getPropertySet != nullptr && effect->getParamSet != nullptr &&
           effect->clipDefine != nullptr && effect->clipGetHandle != nullptr &&
           effect->clipGetPropertySet != nullptr && effect->clipGetImage != nullptr &&
           effect->clipReleaseImage != nullptr && effect->clipGetRegionOfDefinition != nullptr &&
           effect->abort != nullptr &&
           // Parameters
           parameter->paramDefine != nullptr && parameter->paramGetHandle != nullptr &&
           parameter->paramGetPropertySet != nullptr && parameter->paramGetValueAtTime != nullptr &&
           parameter->paramSetValue != nullptr;
}

Properties HostSuites::ofEffect(OfxImageEffectHandle handle) const {
    OfxPropertySetHandle set = nullptr;
    const bool known = handle != nullptr && effect->getPropertySet(handle, &set) == STAT_OK;
    return properties(known ? set : nullptr);
}

Properties HostSuites::ofClip(OfxImageClipHandle handle) const {
    OfxPropertySetHandle set = nullptr;
    const bool known = handle != nullptr && effect->clipGetPropertySet(handle, &set) == STAT_OK;
    return properties(known ? set : nullptr);
}

Properties HostSuites::ofParam(OfxParamHandle handle) const {
    OfxPropertySetHandle set = nullptr;
    const bool known = handle != nullptr && parameter->paramGetPropertySet(handle, &set) == STAT_OK;
    return properties(known ? set : nullptr);
}

void rememberHost(const OfxHost* host) {
    const std::lock_guard lock(connection().mutex);
    connection().host = host;
}

bool fetchSuites() {
    const std::lock_guard lock(connection().mutex);
    const OfxHost* const host = connection().host;
    if (host == nullptr || host->fetchSuite == nullptr) {
        return false;
    }
    const auto fetch = [host](const char* name) { return host->fetchSuite(host->host, name, 1); };
    const HostSuites suites{host->host,
                            static_cast<const OfxPropertySuiteV1*>(fetch(PROPERTY_SUITE)),
                            static_cast<const OfxImageEffectSuiteV1*>(fetch(IMAGE_EFFECT_SUITE)),
                            static_cast<const OfxParameterSuiteV1*>(fetch(PARAMETER_SUITE))};
    if (!suites.areComplete()) {
        return false;
    }
    connection().suites = std::make_shared<const HostSuites>(suites);
    return true;
}

void dropSuites() {
    const std::lock_guard lock(connection().mutex);
    connection().suites.reset();
}

SharedSuites currentSuites() {
    const std::lock_guard lock(connection().mutex);
    return connection().suites;
}

} // namespace orbel::ofx
