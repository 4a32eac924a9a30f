#pragma once

#include "host/ParameterReader.h"
#include "host/PluginHost.h"

namespace orbel {

/// Every value-carrying parameter of one render, read once at one time, as the user sees it:
/// percents stay percents, angles degrees, menus indices. The shape is resolved separately. Values
/// are not checked: a host may hand out what lies outside the declared ranges, infinities and NaN
/// too, and the drawing copes. Ranges and names stand in ParameterTable.h.
struct RenderArguments {
    double scaleX = 0.0;
    double scaleY = 0.0;
    bool strokeSequentially = false;
    double colorRed = 0.0;   ///< 0..1
    double colorGreen = 0.0; ///< 0..1
    double colorBlue = 0.0;  ///< 0..1
    double thickness = 0.0;
    double feather = 0.0; ///< percent
    double start = 0.0;   ///< percent
    double end = 0.0;     ///< percent
    double offset = 0.0;  ///< percent
    bool loop = false;
    bool enableTaper = false;
    bool compressToFit = false;
    double startThickness = 0.0; ///< percent
    double endThickness = 0.0;   ///< percent
    double taperStart = 0.0;     ///< percent
    double taperEnd = 0.0;       ///< percent
    double startShape = 0.0;
    double endShape = 0.0;
    int stepAdjustMethod = 0; ///< menu index
    double bend = 0.0;
    double bendAxis = 0.0; ///< degrees
    bool bendAroundCenter = false;
    double positionX = 0.0; ///< 0..1
    double positionY = 0.0; ///< 0..1, downwards
    double positionZ = 0.0;
    double rotationX = 0.0; ///< degrees
    double rotationY = 0.0; ///< degrees
    double rotationZ = 0.0; ///< degrees
    int order = 0;          ///< menu index
    bool enableRepeater = false;
    bool symmetricDoubler = false;
    double instances = 0.0;
    double repeaterOpacity = 0.0; ///< percent
    double repeaterScale = 0.0;   ///< percent
    double repeaterFactor = 0.0;
    double displaceX = 0.0;
    double displaceY = 0.0;
    double displaceZ = 0.0;
    double repeaterRotationX = 0.0; ///< degrees
    double repeaterRotationY = 0.0; ///< degrees
    double repeaterRotationZ = 0.0; ///< degrees
    double adjustStep = 0.0;        ///< percent
    bool exactStepMatch = false;
    double internalOpacity = 0.0; ///< percent
    double lowAlphaSatBoost = 0.0;
    double lowAlphaHueRotation = 0.0;
    double hiAlphaBrightBoost = 0.0;
    int view = 0; ///< menu index
    double zClipFront = 0.0;
    double zClipBack = 0.0;
    double startFade = 0.0;
    bool autoOrient = false;
    double cameraX = 0.0; ///< 0..1
    double cameraY = 0.0; ///< 0..1, downwards
    double cameraZ = 0.0;
    double zoom = 0.0;
    double cameraRotationX = 0.0; ///< degrees
    double cameraRotationY = 0.0; ///< degrees
    double cameraRotationZ = 0.0; ///< degrees
    int motionBlur = 0;           ///< menu index
    double shutterAngle = 0.0;    ///< degrees
    double shutterPhase = 0.0;    ///< degrees
    double levels = 0.0;
    double opacity = 0.0; ///< percent
    int transferMode = 0; ///< menu index
};

/// Reads parameters through the neutral getters of any host at one time in ticks.
class HostParameterReader final : public ParameterReader {
public:
    /// `host` must outlive the reader.
    HostParameterReader(PluginHost_API* host, const PluginHost_API::TimeObject& time)
        : m_host(host), m_time(time) {}
    void readFloat(int param, double& value) override;
    void readAngle(int param, double& degrees) override;
    void readToggle(int param, bool& value) override;
    void readMenu(int param, int& index) override;
    void readColor(int param, double& red, double& green, double& blue) override;
    void readPoint(int param, double& x, double& y) override;

private:
    PluginHost_API* m_host;
    PluginHost_API::TimeObject m_time;
};

/// A parameter read at "now": the host's current time and step.
[[nodiscard]] PluginHost_API::TimeObject currentTimeObject(PluginHost_API* host);

/// Fills `args` through `reader` in the order of the declaration list; a field that cannot be read
/// keeps what it held.
void readRenderArguments(ParameterReader& reader, RenderArguments* args);

/// Reads again, in the same order, what may move within a frame: every field but the toggles, the
/// menus, "ScaleX", "ScaleY", "Start Fade", the camera's and the shutter's.
void readSampledArguments(ParameterReader& reader, RenderArguments* args);

/// Whether all fields that `readSampledArguments` reads are exactly the same in both; a NaN differs
/// from everything.
[[nodiscard]] bool sameSampledArguments(const RenderArguments& a, const RenderArguments& b);

/// Fills `args` at the host's current time: through an FxPlug host's own reader, else through the
/// neutral getters. Always 1.
int ParamsRetrieveValues(PluginHost_API* host, RenderArguments* args);

/// Index of the "Motion Blur" menu at the current time; 1 ("On") when the host does not answer.
unsigned GetMBlurValue(PluginHost_API* host);

// Hooks for hosts with layers, masks and composition cameras of their own. No door of this build
// has any, so they answer constants.
int GetFloatColor(PluginHost_API* host, double* red, double* green, double* blue,
                  PluginHost_API::TimeObject* time);
/// 0: no mask layer.
int GetMaskID(PluginHost_API* host);
/// 0: no composition camera chosen.
int GetCompCameraParamValue(PluginHost_API* host);
/// 1: the shape comes from "Shape" and "Presets".
int HasFixedShapeProperty(PluginHost_API* host);

} // namespace orbel
