#pragma once

namespace orbel {

class ParameterReader;
struct Orbel_UserData;
struct Vx_Matrix4;

/// What the FxPlug door answers in its own way: the core asks these few questions of the record
/// that `PluginHost_API::getFXPLUGHost` yields, and every other host through the neutral getters.
struct FXPLUGHost {
    /// Reads through the host's own selectors at the frame being rendered; radians come out as
    /// degrees and Motion's upward points as downward ones. Owned by the record.
    virtual ParameterReader& reader() = 0;
    /// The shape path from the host's project: a preset first, else the chosen file. 0 on success.
    virtual int readUserData(Orbel_UserData* data) = 0;
    /// Stores the path and switches "Presets" to none. 0 on success.
    virtual int writeUserData(const Orbel_UserData* data) = 0;
    /// The host's scene camera at `time` ticks. 0 on success, 1 when there is none.
    virtual int cameraMatrix(long time, long timeScale, Vx_Matrix4* camera, double* zoom) = 0;

protected:
    ~FXPLUGHost() = default;
};

} // namespace orbel
