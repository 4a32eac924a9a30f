#include "doors/ofx/ClipPreferences.h"

#include "doors/ofx/platform/OfxNames.h"

#include <algorithm>
#include <cmath>

namespace orbel::ofx {

namespace {

// Where parameters hold still or do not exist the frame the host asks about is any frame.
constexpr OfxTime ANY_TIME = 0.0;

bool isAnimating(const EffectInstance& instance, int param) {
    return instance.suites().ofParam(instance.param(param)).getInt(PARAM_PROP_IS_ANIMATING, 0) != 0;
}

// A blurred frame depends on what parameters are shortly before and after it, which a host that
// keeps frames by the values at their own time does not see.
bool isFrameVarying(const EffectInstance& instance) {
    if (instance.intValue(PARAM_MOTION_BLUR, ANY_TIME) == 0) {
        return false;
    }
    return std::ranges::any_of(parameterTable(), [&instance](const ParameterRow& row) {
        return row.isParameter() && isAnimating(instance, row.id);
    });
}

// A layer without the picture below it is transparent, whatever the source is.
bool mayShowLayerAlone(const EffectInstance& instance) {
    return !instance.isSourceConnected() || isAnimating(instance, PARAM_TRANSFER_MODE) ||
           instance.intValue(PARAM_TRANSFER_MODE, ANY_TIME) == 0;
}

} // namespace

OfxStatus getClipPreferences(const EffectInstance& instance, const Properties& answer) {
    bool any = answer.setInt(PROP_FRAME_VARYING, isFrameVarying(instance) ? 1 : 0);
    const std::string source =
        instance.suites().ofClip(instance.source()).getString(PROP_PREMULTIPLICATION);
    if ((!instance.isSourceConnected() || source == IMAGE_OPAQUE) && mayShowLayerAlone(instance)) {
        any = answer.setString(PROP_PREMULTIPLICATION, IMAGE_PREMULTIPLIED) || any;
    }
    return any ? STAT_OK : STAT_REPLY_DEFAULT;
}

OfxStatus getRegionOfDefinition(const EffectInstance& instance, const Properties& answer) {
    if (instance.isSourceConnected()) {
        return STAT_REPLY_DEFAULT;
    }
    const Properties effect = instance.properties();
    const double x = effect.getDouble(PROP_PROJECT_OFFSET, 0.0, 0);
    const double y = effect.getDouble(PROP_PROJECT_OFFSET, 0.0, 1);
    const double width = effect.getDouble(PROP_PROJECT_SIZE, 0.0, 0);
    const double height = effect.getDouble(PROP_PROJECT_SIZE, 0.0, 1);
    if (!(width > 0.0 && height > 0.0) || !std::isfinite(x + y + width + height)) {
        return STAT_REPLY_DEFAULT;
    }
    bool all = true;
    int index = 0;
    for (const double edge : {x, y, x + width, y + height}) {
        all = answer.setDouble(PROP_REGION_OF_DEFINITION, edge, index++) && all;
    }
    return all ? STAT_OK : STAT_REPLY_DEFAULT;
}

OfxStatus getRegionsOfInterest(const Properties& arguments, const Properties& answer) {
    const double nowhere = std::nan("");
    bool all = true;
    for (int edge = 0; edge < 4; ++edge) {
        const double place = arguments.getDouble(PROP_REGION_OF_INTEREST, nowhere, edge);
        all = all && !std::isnan(place) &&
              answer.setDouble(PROP_SOURCE_REGION_OF_INTEREST, place, edge);
    }
    return all ? STAT_OK : STAT_REPLY_DEFAULT;
}

} // namespace orbel::ofx
