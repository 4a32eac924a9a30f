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
    /// The index of "Presets" at the frame being rendered; 0 where the host has none.
    virtual int readPreset() = 0;
    /// The chosen file's path as the host's project holds it; untouched where it holds none.
    virtual void readShapeFile(Orbel_UserData* data) = 0;
    /// Stores the path and switches "Presets" to none.
    virtual void writeShapeFile(const Orbel_UserData* data) = 0;
    /// The host's scene camera at `time` ticks. 0 on success, 1 when there is none.
    virtual int cameraMatrix(long time, long timeScale, Vx_Matrix4* camera, double* zoom) = 0;

protected:
    ~FXPLUGHost() = default;
};

} // namespace orbel
