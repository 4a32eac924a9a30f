#include "doors/ofx/EffectDescription.h"

#include "doors/ofx/ParameterNames.h"
#include "doors/ofx/ParamsSetup.h"
#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterTable.h"

#include <string>

namespace orbel::ofx {

namespace {

// Null where the host refuses the clip.
Properties defineClip(const HostSuites& suites, OfxImageEffectHandle descriptor, const char* name) {
    OfxPropertySetHandle handle = nullptr;
    const OfxStatus status = suites.effect->clipDefine(descriptor, name, &handle);
    const Properties clip = suites.properties(status == STAT_OK ? handle : nullptr);
    clip.setString(PROP_SUPPORTED_COMPONENTS, COMPONENT_RGBA);
    clip.setInt(PROP_SUPPORTS_TILES, 0);
    clip.setInt(PROP_TEMPORAL_ACCESS, 0);
    // A stroke has its right shape at full height only.
    clip.setString(PROP_FIELD_EXTRACTION, FIELD_DOUBLED);
    return clip;
}

} // namespace

OfxStatus describe(const HostSuites& suites, OfxImageEffectHandle descriptor) {
    const Properties effect = suites.ofEffect(descriptor);
    if (!effect) {
        return STAT_ERR_BAD_HANDLE;
    }
    // The label resets the other two.
    effect.setString(PROP_LABEL, "Orbel");
    effect.setString(PROP_SHORT_LABEL, "Orbel");
    effect.setString(PROP_LONG_LABEL, "Orbel 3D Stroke");
    effect.setString(PROP_GROUPING, "Orbel");
    effect.setString(PROP_PLUGIN_DESCRIPTION,
                     "Draws animated three-dimensional strokes along vector paths.");
    effect.setString(PROP_SUPPORTED_CONTEXTS, CONTEXT_FILTER, 0);
    effect.setString(PROP_SUPPORTED_CONTEXTS, CONTEXT_GENERAL, 1);
    effect.setString(PROP_SUPPORTED_DEPTHS, DEPTH_BYTE, 0);
    effect.setString(PROP_SUPPORTED_DEPTHS, DEPTH_SHORT, 1);
    effect.setString(PROP_SUPPORTED_DEPTHS, DEPTH_FLOAT, 2);
    effect.setString(PROP_THREAD_SAFETY, RENDER_FULLY_SAFE);
    // A window of the frame costs as much as all of it.
    effect.setInt(PROP_SUPPORTS_TILES, 0);
    effect.setInt(PROP_HOST_FRAME_THREADING, 0);
    effect.setInt(PROP_SUPPORTS_MULTI_RESOLUTION, 1);
    effect.setInt(PROP_SINGLE_INSTANCE, 0);
    effect.setInt(PROP_TEMPORAL_ACCESS, 0);
    effect.setInt(PROP_MULTIPLE_DEPTHS, 0);
    effect.setInt(PROP_MULTIPLE_PARS, 0);
    effect.setInt(PROP_RENDER_TWICE, 0);
    effect.setString(PROP_PREFERENCES_SLAVE, parameterName(PARAM_TRANSFER_MODE), 0);
    effect.setString(PROP_PREFERENCES_SLAVE, parameterName(PARAM_MOTION_BLUR), 1);
    return STAT_OK;
}

OfxStatus describeInContext(const HostSuites& suites, OfxImageEffectHandle descriptor,
                            const Properties& arguments) {
    const std::string context = arguments.getString(PROP_CONTEXT);
    if (context != CONTEXT_FILTER && context != CONTEXT_GENERAL) {
        return STAT_ERR_UNSUPPORTED;
    }
    const Properties source = defineClip(suites, descriptor, CLIP_SOURCE);
    const Properties output = defineClip(suites, descriptor, CLIP_OUTPUT);
    if (!source || !output) {
        return STAT_FAILED;
    }
    // A stroke may stand over nothing where the host has a way to say so.
    source.setInt(PROP_OPTIONAL, context == CONTEXT_GENERAL ? 1 : 0);
    return declareParameters(suites, descriptor);
}

} // namespace orbel::ofx
