#include "params/RenderArguments.h"

#include "host/FxPlugHost.h"
#include "params/ParameterTable.h"

namespace orbel {

void HostParameterReader::readFloat(int param, double& value) {
    m_host->GetFloatValue(param, 0, m_time, value);
}

void HostParameterReader::readAngle(int param, double& degrees) {
    m_host->GetAngleValue(param, 0, m_time, degrees);
}

void HostParameterReader::readToggle(int param, bool& value) {
    m_host->GetBoolValue(param, 0, m_time, value);
}

void HostParameterReader::readMenu(int param, int& index) {
    m_host->GetIntValue(param, 0, m_time, index);
}

void HostParameterReader::readColor(int param, double& red, double& green, double& blue) {
    m_host->GetColorValue(param, 0, m_time, red, green, blue);
}

void HostParameterReader::readPoint(int param, double& x, double& y) {
    m_host->GetPoint2DValue(param, 0, m_time, x, y);
}

PluginHost_API::TimeObject currentTimeObject(PluginHost_API* host) {
    return {host->getCurrentTime(), host->getTimeStep(), 0};
}

void readRenderArguments(ParameterReader& reader, RenderArguments* args) {
    reader.readFloat(PARAM_SCALE_X, args->scaleX);
    reader.readFloat(PARAM_SCALE_Y, args->scaleY);
    reader.readToggle(PARAM_STROKE_SEQUENTIALLY, args->strokeSequentially);
    reader.readColor(PARAM_COLOR, args->colorRed, args->colorGreen, args->colorBlue);
    reader.readFloat(PARAM_THICKNESS, args->thickness);
    reader.readFloat(PARAM_FEATHER, args->feather);
    reader.readFloat(PARAM_START, args->start);
    reader.readFloat(PARAM_END, args->end);
    reader.readFloat(PARAM_OFFSET, args->offset);
    reader.readToggle(PARAM_LOOP, args->loop);
    reader.readToggle(PARAM_ENABLE_TAPER, args->enableTaper);
    reader.readToggle(PARAM_COMPRESS_TO_FIT, args->compressToFit);
    reader.readFloat(PARAM_START_THICKNESS, args->startThickness);
    reader.readFloat(PARAM_END_THICKNESS, args->endThickness);
    reader.readFloat(PARAM_TAPER_START, args->taperStart);
    reader.readFloat(PARAM_TAPER_END, args->taperEnd);
    reader.readFloat(PARAM_START_SHAPE, args->startShape);
    reader.readFloat(PARAM_END_SHAPE, args->endShape);
    reader.readMenu(PARAM_STEP_ADJUST_METHOD, args->stepAdjustMethod);
    reader.readFloat(PARAM_BEND, args->bend);
    reader.readAngle(PARAM_BEND_AXIS, args->bendAxis);
    reader.readToggle(PARAM_BEND_AROUND_CENTER, args->bendAroundCenter);
    reader.readPoint(PARAM_POSITION_XY, args->positionX, args->positionY);
    reader.readFloat(PARAM_POSITION_Z, args->positionZ);
    reader.readAngle(PARAM_ROTATION_X, args->rotationX);
    reader.readAngle(PARAM_ROTATION_Y, args->rotationY);
    reader.readAngle(PARAM_ROTATION_Z, args->rotationZ);
    reader.readMenu(PARAM_ORDER, args->order);
    reader.readToggle(PARAM_ENABLE_REPEATER, args->enableRepeater);
    reader.readToggle(PARAM_SYMMETRIC_DOUBLER, args->symmetricDoubler);
    reader.readFloat(PARAM_INSTANCES, args->instances);
    reader.readFloat(PARAM_REPEATER_OPACITY, args->repeaterOpacity);
    reader.readFloat(PARAM_REPEATER_SCALE, args->repeaterScale);
    reader.readFloat(PARAM_REPEATER_FACTOR, args->repeaterFactor);
    reader.readFloat(PARAM_DISPLACE_X, args->displaceX);
    reader.readFloat(PARAM_DISPLACE_Y, args->displaceY);
    reader.readFloat(PARAM_DISPLACE_Z, args->displaceZ);
    reader.readAngle(PARAM_REPEATER_ROTATION_X, args->repeaterRotationX);
    reader.readAngle(PARAM_REPEATER_ROTATION_Y, args->repeaterRotationY);
    reader.readAngle(PARAM_REPEATER_ROTATION_Z, args->repeaterRotationZ);
    reader.readFloat(PARAM_ADJUST_STEP, args->adjustStep);
    reader.readToggle(PARAM_EXACT_STEP_MATCH, args->exactStepMatch);
    reader.readFloat(PARAM_INTERNAL_OPACITY, args->internalOpacity);
    reader.readFloat(PARAM_LOW_ALPHA_SAT_BOOST, args->lowAlphaSatBoost);
    reader.readFloat(PARAM_LOW_ALPHA_HUE_ROTATION, args->lowAlphaHueRotation);
    reader.readFloat(PARAM_HI_ALPHA_BRIGHT_BOOST, args->hiAlphaBrightBoost);
    reader.readMenu(PARAM_VIEW, args->view);
    reader.readFloat(PARAM_Z_CLIP_FRONT, args->zClipFront);
    reader.readFloat(PARAM_Z_CLIP_BACK, args->zClipBack);
    reader.readFloat(PARAM_START_FADE, args->startFade);
    reader.readToggle(PARAM_AUTO_ORIENT, args->autoOrient);
    reader.readPoint(PARAM_CAMERA_XY, args->cameraX, args->cameraY);
    reader.readFloat(PARAM_CAMERA_Z, args->cameraZ);
    reader.readFloat(PARAM_ZOOM, args->zoom);
    reader.readAngle(PARAM_CAMERA_ROTATION_X, args->cameraRotationX);
    reader.readAngle(PARAM_CAMERA_ROTATION_Y, args->cameraRotationY);
    reader.readAngle(PARAM_CAMERA_ROTATION_Z, args->cameraRotationZ);
    reader.readMenu(PARAM_MOTION_BLUR, args->motionBlur);
    reader.readFloat(PARAM_SHUTTER_ANGLE, args->shutterAngle);
    reader.readFloat(PARAM_SHUTTER_PHASE, args->shutterPhase);
    reader.readFloat(PARAM_LEVELS, args->levels);
    reader.readFloat(PARAM_OPACITY, args->opacity);
    reader.readMenu(PARAM_TRANSFER_MODE, args->transferMode);
}

int ParamsRetrieveValues(PluginHost_API* host, RenderArguments* args) {
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        readRenderArguments(record->reader(), args);
        return 1;
    }
    HostParameterReader reader(host, currentTimeObject(host));
    readRenderArguments(reader, args);
    return 1;
}

unsigned GetMBlurValue(PluginHost_API* host) {
    int index = 1;
    host->GetIntValue(PARAM_MOTION_BLUR, 0, currentTimeObject(host), index);
    return static_cast<unsigned>(index);
}

int GetFloatColor(PluginHost_API* /*host*/, double* /*red*/, double* /*green*/, double* /*blue*/,
                  PluginHost_API::TimeObject* /*time*/) {
    return 0;
}

int GetMaskID(PluginHost_API* /*host*/) {
    return 0;
}

int GetCompCameraParamValue(PluginHost_API* /*host*/) {
    return 0;
}

int HasFixedShapeProperty(PluginHost_API* /*host*/) {
    return 1;
}

} // namespace orbel
