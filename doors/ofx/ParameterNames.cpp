#include "doors/ofx/ParameterNames.h"

#include "params/ParameterTable.h"

namespace orbel::ofx {

namespace {

struct NamedId {
    int id;
    const char* name;
};

// Plain words that a host keeps for itself (start, end, position, length) are avoided: some hosts
// put their own properties and those of the effect into one list.
constexpr NamedId NAMES[] = {
    {PARAM_SHAPE, "shapeFile"},
    {PARAM_PRESETS, "shapePreset"},
    {PARAM_SCALE_X, "shapeScaleX"},
    {PARAM_SCALE_Y, "shapeScaleY"},
    {PARAM_STROKE_SEQUENTIALLY, "strokeSequentially"},
    {PARAM_COLOR, "strokeColor"},
    {PARAM_THICKNESS, "strokeThickness"},
    {PARAM_FEATHER, "strokeFeather"},
    {PARAM_START, "strokeStart"},
    {PARAM_END, "strokeEnd"},
    {PARAM_OFFSET, "strokeOffset"},
    {PARAM_LOOP, "strokeLoop"},
    {PARAM_GROUP_TAPER, "taperGroup"},
    {PARAM_ENABLE_TAPER, "taperEnable"},
    {PARAM_COMPRESS_TO_FIT, "taperCompressToFit"},
    {PARAM_START_THICKNESS, "taperStartThickness"},
    {PARAM_END_THICKNESS, "taperEndThickness"},
    {PARAM_TAPER_START, "taperStartLength"},
    {PARAM_TAPER_END, "taperEndLength"},
    {PARAM_START_SHAPE, "taperStartShape"},
    {PARAM_END_SHAPE, "taperEndShape"},
    {PARAM_STEP_ADJUST_METHOD, "taperStepAdjust"},
    {PARAM_GROUP_TRANSFORM, "transformGroup"},
    {PARAM_BEND, "bendAmount"},
    {PARAM_BEND_AXIS, "bendAxis"},
    {PARAM_BEND_AROUND_CENTER, "bendAroundCenter"},
    {PARAM_POSITION_XY, "transformXY"},
    {PARAM_POSITION_Z, "transformZ"},
    {PARAM_ROTATION_X, "transformRotationX"},
    {PARAM_ROTATION_Y, "transformRotationY"},
    {PARAM_ROTATION_Z, "transformRotationZ"},
    {PARAM_ORDER, "transformOrder"},
    {PARAM_GROUP_REPEATER, "repeaterGroup"},
    {PARAM_ENABLE_REPEATER, "repeaterEnable"},
    {PARAM_SYMMETRIC_DOUBLER, "repeaterSymmetric"},
    {PARAM_INSTANCES, "repeaterInstances"},
    {PARAM_REPEATER_OPACITY, "repeaterOpacity"},
    {PARAM_REPEATER_SCALE, "repeaterScale"},
    {PARAM_REPEATER_FACTOR, "repeaterFactor"},
    {PARAM_DISPLACE_X, "repeaterDisplaceX"},
    {PARAM_DISPLACE_Y, "repeaterDisplaceY"},
    {PARAM_DISPLACE_Z, "repeaterDisplaceZ"},
    {PARAM_REPEATER_ROTATION_X, "repeaterRotationX"},
    {PARAM_REPEATER_ROTATION_Y, "repeaterRotationY"},
    {PARAM_REPEATER_ROTATION_Z, "repeaterRotationZ"},
    {PARAM_GROUP_ADVANCED, "advancedGroup"},
    {PARAM_ADJUST_STEP, "advancedAdjustStep"},
    {PARAM_EXACT_STEP_MATCH, "advancedExactStepMatch"},
    {PARAM_INTERNAL_OPACITY, "advancedInternalOpacity"},
    {PARAM_LOW_ALPHA_SAT_BOOST, "advancedLowAlphaSatBoost"},
    {PARAM_LOW_ALPHA_HUE_ROTATION, "advancedLowAlphaHueRotation"},
    {PARAM_HI_ALPHA_BRIGHT_BOOST, "advancedHiAlphaBrightBoost"},
    {PARAM_GROUP_CAMERA, "cameraGroup"},
    {PARAM_VIEW, "cameraView"},
    {PARAM_Z_CLIP_FRONT, "cameraZClipFront"},
    {PARAM_Z_CLIP_BACK, "cameraZClipBack"},
    {PARAM_START_FADE, "cameraStartFade"},
    {PARAM_AUTO_ORIENT, "cameraAutoOrient"},
    {PARAM_CAMERA_XY, "cameraXY"},
    {PARAM_CAMERA_Z, "cameraZ"},
    {PARAM_ZOOM, "cameraZoom"},
    {PARAM_CAMERA_ROTATION_X, "cameraRotationX"},
    {PARAM_CAMERA_ROTATION_Y, "cameraRotationY"},
    {PARAM_CAMERA_ROTATION_Z, "cameraRotationZ"},
    {PARAM_GROUP_MOTION_BLUR, "motionBlurGroup"},
    {PARAM_MOTION_BLUR, "motionBlur"},
    {PARAM_SHUTTER_ANGLE, "motionBlurShutterAngle"},
    {PARAM_SHUTTER_PHASE, "motionBlurShutterPhase"},
    {PARAM_LEVELS, "motionBlurLevels"},
    {PARAM_OPACITY, "layerOpacity"},
    {PARAM_TRANSFER_MODE, "layerTransferMode"},
};

} // namespace

const char* parameterName(int id) {
    for (const NamedId& entry : NAMES) {
        if (entry.id == id) {
            return entry.name;
        }
    }
    return nullptr;
}

int parameterId(std::string_view name) {
    for (const NamedId& entry : NAMES) {
        if (name == entry.name) {
            return entry.id;
        }
    }
    return 0;
}

} // namespace orbel::ofx
