#include "render/Camera.h"

#include "host/FxPlugHost.h"
#include "params/ParameterTable.h"
#include "render/Units.h"

namespace orbel {

namespace {

// The scene camera of the host; 1 when there is none.
int GetCameraMatrix(PluginHost_API* host, long time, long timeScale, Vx_Matrix4* camera,
                    double* zoom) {
    FXPLUGHost* const record = host->getFXPLUGHost();
    return record == nullptr ? 1 : record->cameraMatrix(time, timeScale, camera, zoom);
}

Vx_Vector3 readRotation(ParameterReader& reader) {
    Vx_Vector3 degrees{};
    reader.readAngle(PARAM_CAMERA_ROTATION_X, degrees.x);
    reader.readAngle(PARAM_CAMERA_ROTATION_Y, degrees.y);
    reader.readAngle(PARAM_CAMERA_ROTATION_Z, degrees.z);
    return degrees * RADIANS_PER_DEGREE;
}

Vx_Vector3 readPosition(ParameterReader& reader, const FrameGeometry& frame) {
    Vx_Vector3 position{};
    reader.readPoint(PARAM_CAMERA_XY, position.x, position.y);
    reader.readFloat(PARAM_CAMERA_Z, position.z);
    position.x = position.x * frame.width / frame.scaleX;
    position.y = position.y * frame.height / frame.scaleY;
    return position;
}

// Turns the camera toward the centre of the frame.
void autoOrient(PluginHost_API* host, Vx_Matrix4* camera, const Vx_Vector3& position,
                const FrameGeometry& frame) {
    const Vx_Vector3 d = frame.centre - position;
    const double yaw = host->math_atan2(-d.x, d.z);
    const double pitch = host->math_atan2(d.y, host->math_sqrt(d.x * d.x + d.z * d.z));
    Vx_Matrix4 turn;
    BuildRotateXMatrix(host, &turn, -pitch);
    MultiplyMatrix4(camera, &turn, camera);
    BuildRotateYMatrix(host, &turn, -yaw);
    MultiplyMatrix4(camera, &turn, camera);
}

} // namespace

int UGetCameraMatrix(PluginHost_API* host, const RenderArguments* args, Vx_Matrix4* camera,
                     double* zoom, long time, long timeScale, const FrameGeometry& frame) {
    if (host->hasCamera() && GetCompCameraParamValue(host) != 0 &&
        GetCameraMatrix(host, time, timeScale, camera, zoom) == 0) {
        return 0;
    }
    HostParameterReader reader(host, timeObjectAt(host, time));
    const Vx_Vector3 position = readPosition(reader, frame);
    reader.readFloat(PARAM_ZOOM, *zoom);
    IdentityMatrix4(camera);
    rotateZYX(host, camera, readRotation(reader));
    if (args->autoOrient) {
        autoOrient(host, camera, position, frame);
    }
    camera->m[3][0] = position.x;
    camera->m[3][1] = position.y;
    camera->m[3][2] = position.z;
    return 0;
}

} // namespace orbel
