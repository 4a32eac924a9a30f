#include "render/AnimatedParameters.h"

#include "params/ParameterTable.h"
#include "render/Units.h"

namespace orbel {

AnimatedParameters animatedParameters(const RenderArguments& args) {
    AnimatedParameters p{};
    p.thickness = args.thickness;
    p.feather = args.feather;
    p.opacity = args.opacity;
    p.start = args.start;
    p.end = args.end;
    p.red = args.colorRed;
    p.green = args.colorGreen;
    p.blue = args.colorBlue;
    p.positionX = args.positionX;
    p.positionY = args.positionY;
    p.positionZ = args.positionZ;
    p.rotationX = args.rotationX;
    p.rotationY = args.rotationY;
    p.rotationZ = args.rotationZ;
    p.instances = args.instances;
    p.repeaterScale = args.repeaterScale;
    p.displaceX = args.displaceX;
    p.displaceY = args.displaceY;
    p.displaceZ = args.displaceZ;
    p.repeaterRotationX = args.repeaterRotationX;
    p.repeaterRotationY = args.repeaterRotationY;
    p.repeaterRotationZ = args.repeaterRotationZ;
    p.repeaterOpacity = args.repeaterOpacity;
    p.repeaterFactor = args.repeaterFactor;
    p.adjustStep = args.adjustStep;
    p.internalOpacity = args.internalOpacity;
    p.lowAlphaSatBoost = args.lowAlphaSatBoost;
    p.lowAlphaHueRotation = args.lowAlphaHueRotation;
    p.hiAlphaBrightBoost = args.hiAlphaBrightBoost;
    p.zClipFront = args.zClipFront;
    p.zClipBack = args.zClipBack;
    p.bend = args.bend;
    p.startThickness = args.startThickness;
    p.endThickness = args.endThickness;
    p.taperStart = args.taperStart;
    p.taperEnd = args.taperEnd;
    p.startShape = args.startShape;
    p.endShape = args.endShape;
    p.offset = args.offset;
    p.bendAxis = args.bendAxis;
    return p;
}

AnimatedParameters animatedParametersAt(PluginHost_API* host, long time,
                                        const AnimatedParameters& now) {
    HostParameterReader reader(host, timeObjectAt(host, time));
    AnimatedParameters p = now;
    reader.readFloat(PARAM_THICKNESS, p.thickness);
    reader.readFloat(PARAM_FEATHER, p.feather);
    reader.readFloat(PARAM_OPACITY, p.opacity);
    reader.readFloat(PARAM_START, p.start);
    reader.readFloat(PARAM_END, p.end);
    reader.readColor(PARAM_COLOR, p.red, p.green, p.blue);
    reader.readPoint(PARAM_POSITION_XY, p.positionX, p.positionY);
    reader.readFloat(PARAM_POSITION_Z, p.positionZ);
    reader.readAngle(PARAM_ROTATION_X, p.rotationX);
    reader.readAngle(PARAM_ROTATION_Y, p.rotationY);
    reader.readAngle(PARAM_ROTATION_Z, p.rotationZ);
    reader.readFloat(PARAM_INSTANCES, p.instances);
    reader.readFloat(PARAM_REPEATER_SCALE, p.repeaterScale);
    reader.readFloat(PARAM_DISPLACE_X, p.displaceX);
    reader.readFloat(PARAM_DISPLACE_Y, p.displaceY);
    reader.readFloat(PARAM_DISPLACE_Z, p.displaceZ);
    reader.readAngle(PARAM_REPEATER_ROTATION_X, p.repeaterRotationX);
    reader.readAngle(PARAM_REPEATER_ROTATION_Y, p.repeaterRotationY);
    reader.readAngle(PARAM_REPEATER_ROTATION_Z, p.repeaterRotationZ);
    reader.readFloat(PARAM_REPEATER_OPACITY, p.repeaterOpacity);
    reader.readFloat(PARAM_REPEATER_FACTOR, p.repeaterFactor);
    reader.readFloat(PARAM_ADJUST_STEP, p.adjustStep);
    reader.readFloat(PARAM_INTERNAL_OPACITY, p.internalOpacity);
    reader.readFloat(PARAM_LOW_ALPHA_SAT_BOOST, p.lowAlphaSatBoost);
    reader.readFloat(PARAM_LOW_ALPHA_HUE_ROTATION, p.lowAlphaHueRotation);
    reader.readFloat(PARAM_HI_ALPHA_BRIGHT_BOOST, p.hiAlphaBrightBoost);
    reader.readFloat(PARAM_Z_CLIP_FRONT, p.zClipFront);
    reader.readFloat(PARAM_Z_CLIP_BACK, p.zClipBack);
    reader.readFloat(PARAM_BEND, p.bend);
    reader.readFloat(PARAM_START_THICKNESS, p.startThickness);
    reader.readFloat(PARAM_END_THICKNESS, p.endThickness);
    reader.readFloat(PARAM_TAPER_START, p.taperStart);
    reader.readFloat(PARAM_TAPER_END, p.taperEnd);
    reader.readFloat(PARAM_START_SHAPE, p.startShape);
    reader.readFloat(PARAM_END_SHAPE, p.endShape);
    reader.readFloat(PARAM_OFFSET, p.offset);
    reader.readAngle(PARAM_BEND_AXIS, p.bendAxis);
    return p;
}

} // namespace orbel
