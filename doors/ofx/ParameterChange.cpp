#include "doors/ofx/ParameterChange.h"

#include "doors/ofx/ParameterNames.h"
#include "doors/ofx/PluginUpdate_OFX_Impl.h"
#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterRules.h"

#include <cmath>

namespace orbel::ofx {

namespace {

void applyRules(const EffectInstance& instance, int changed, OfxTime time) {
    PluginUpdate_OFX_Impl update(&instance);
    applyEnablingRules(
        changed,
        [&](const EnablingRule& rule) {
            return instance.param(rule.changed) == nullptr
                       ? std::nullopt
                       : std::optional(instance.intValue(rule.changed, time));
        },
        update);
}

} // namespace

void applyAllRules(const EffectInstance& instance) {
    for (const EnablingRule& rule : enablingRules()) {
        applyRules(instance, rule.changed, 0.0);
    }
}

OfxStatus instanceChanged(const EffectInstance& instance, const Properties& arguments) {
    if (arguments.getString(PROP_TYPE) != TYPE_PARAMETER) {
        return STAT_REPLY_DEFAULT;
    }
    const double asked = arguments.getDouble(PROP_TIME, 0.0);
    const OfxTime time = std::isfinite(asked) ? asked : 0.0;
    const std::string name = arguments.getString(PROP_NAME);
    const int id = parameterId(name);
    // What the effect itself changes comes back here and must not be answered again.
    const bool byUser = arguments.getString(PROP_CHANGE_REASON) == CHANGE_USER_EDITED;
    const bool chosen = (id == PARAM_SHAPE && !instance.shapeFile(time).empty()) ||
                        (name == SHAPE_TEXT && !instance.shapeText(time).empty());
    if (byUser && chosen && instance.intValue(PARAM_PRESETS, time) != 0) {
        PluginUpdate_OFX_Impl(&instance).setIntValue(PARAM_PRESETS, 0, 0);
    }
    applyRules(instance, id, time);
    return id != 0 || name == SHAPE_TEXT ? STAT_OK : STAT_REPLY_DEFAULT;
}

} // namespace orbel::ofx
