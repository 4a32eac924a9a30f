#include "doors/ofx/Actions.h"

#include "doors/ofx/BundleFolder.h"
#include "doors/ofx/ClipPreferences.h"
#include "doors/ofx/EffectDescription.h"
#include "doors/ofx/EffectInstance.h"
#include "doors/ofx/FrameRender.h"
#include "doors/ofx/ParameterChange.h"
#include "doors/ofx/platform/OfxNames.h"
#include "shapes/ShapeCache.h"
#include "shapes/ShapeTable.h"

#include <new>
#include <string_view>

namespace orbel::ofx {

namespace {

struct Call {
    SharedSuites suites;
    OfxImageEffectHandle effect;
    Properties in;
    Properties out;
};

OfxStatus load() {
    if (!fetchSuites()) {
        return STAT_ERR_MISSING_HOST_FEATURE;
    }
    buildStaticSVGShapeInfo(bundleResources().c_str());
    return STAT_OK;
}

OfxStatus createInstance(const Call& call) {
    const OfxStatus status = EffectInstance::create(call.suites, call.effect);
    if (status == STAT_OK) {
        applyAllRules(*EffectInstance::behind(*call.suites, call.effect));
    }
    return status;
}

OfxStatus destroyInstance(const Call& call) {
    EffectInstance::destroy(*call.suites, call.effect);
    return STAT_OK;
}

// What descriptors are asked, and the making and unmaking of instances.
OfxStatus answerOfEffect(std::string_view action, const Call& call) {
    if (action == ACTION_DESCRIBE) {
        return describe(*call.suites, call.effect);
    }
    if (action == ACTION_DESCRIBE_IN_CONTEXT) {
        return describeInContext(*call.suites, call.effect, call.in);
    }
    if (action == ACTION_CREATE_INSTANCE) {
        return createInstance(call);
    }
    if (action == ACTION_DESTROY_INSTANCE) {
        return destroyInstance(call);
    }
    if (action == ACTION_PURGE_CACHES) {
        flushStrokeCache();
        return STAT_OK;
    }
    return STAT_REPLY_DEFAULT;
}

using InstanceAction = OfxStatus (*)(const EffectInstance&, const Call&);

struct NamedAction {
    std::string_view name;
    InstanceAction answer;
};

constexpr NamedAction INSTANCE_ACTIONS[] = {
    {ACTION_RENDER, [](const EffectInstance& instance,
                       const Call& call) { return renderFrame(instance, call.in); }},
    {ACTION_IS_IDENTITY, [](const EffectInstance& instance,
                            const Call& call) { return isIdentity(instance, call.in, call.out); }},
    {ACTION_GET_CLIP_PREFERENCES,
     [](const EffectInstance& instance, const Call& call) {
         return getClipPreferences(instance, call.out);
     }},
    {ACTION_GET_REGION_OF_DEFINITION,
     [](const EffectInstance& instance, const Call& call) {
         return getRegionOfDefinition(instance, call.out);
     }},
    {ACTION_GET_REGIONS_OF_INTEREST,
     [](const EffectInstance&, const Call& call) {
         return getRegionsOfInterest(call.in, call.out);
     }},
    {ACTION_INSTANCE_CHANGED, [](const EffectInstance& instance,
                                 const Call& call) { return instanceChanged(instance, call.in); }},
};

OfxStatus answer(std::string_view action, const Call& call) {
    for (const NamedAction& entry : INSTANCE_ACTIONS) {
        if (entry.name != action) {
            continue;
        }
        const EffectInstance* const instance = EffectInstance::behind(*call.suites, call.effect);
        return instance == nullptr ? STAT_ERR_BAD_HANDLE : entry.answer(*instance, call);
    }
    return answerOfEffect(action, call);
}

} // namespace

OfxStatus answerAction(const char* action, const void* handle, OfxPropertySetHandle inArgs,
                       OfxPropertySetHandle outArgs) noexcept try {
    if (action == nullptr) {
        return STAT_REPLY_DEFAULT;
    }
    const std::string_view name = action;
    if (name == ACTION_LOAD) {
        return load();
    }
    if (name == ACTION_UNLOAD) {
        dropSuites();
        return STAT_OK;
    }
    SharedSuites suites = currentSuites();
    if (suites == nullptr) {
        return STAT_ERR_MISSING_HOST_FEATURE;
    }
    // The interface hands every kind of handle over as if it were constant.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    auto* const effect = static_cast<OfxImageEffectHandle>(const_cast<void*>(handle));
    return answer(name, {suites, effect, suites->properties(inArgs), suites->properties(outArgs)});
} catch (const std::bad_alloc&) {
    return STAT_ERR_MEMORY;
} catch (...) {
    return STAT_FAILED;
}

} // namespace orbel::ofx
