#include "params/InstanceData.h"

#include "host/FxPlugHost.h"
#include "params/ParameterTable.h"
#include "params/RenderArguments.h"
#include "shapes/FormatText.h"
#include "shapes/ShapeTable.h"

#include <cstring>

namespace orbel {

namespace {

Orbel_UserData* slotOf(PluginHost_API* host) {
    return static_cast<Orbel_UserData*>(host->getUserData());
}

int presetOf(PluginHost_API* host) {
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        return record->readPreset();
    }
    int index = 0;
    host->GetIntValue(PARAM_PRESETS, 0, currentTimeObject(host), index);
    return index;
}

bool keepsShape(PluginHost_API* host) {
    return host->getFXPLUGHost() != nullptr || slotOf(host) != nullptr;
}

} // namespace

void setUserDataPath(Orbel_UserData* data, const char* path) {
    std::memset(data->path, 0, sizeof data->path);
    std::strncpy(data->path, path, sizeof data->path - 1);
}

bool setPresetPath(Orbel_UserData* data, int preset) {
    if (preset < 1 || preset >= g_numSVGShapes) {
        return false;
    }
    expandFormatText(data->path, sizeof data->path, g_svgShapes[preset].file);
    return true;
}

Orbel_UserData* allocUserData() {
    return new Orbel_UserData;
}

void freeUserData(Orbel_UserData* data) {
    delete data;
}

int getUserData(PluginHost_API* host, Orbel_UserData* data) {
    if (!keepsShape(host)) {
        return 1;
    }
    if (setPresetPath(data, presetOf(host))) {
        return 0;
    }
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        record->readShapeFile(data);
    } else {
        *data = *slotOf(host);
    }
    return 0;
}

int setUserData(PluginHost_API* host, Orbel_UserData* data) {
    if (!keepsShape(host)) {
        return 1;
    }
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        record->writeShapeFile(data);
        return 0;
    }
    *slotOf(host) = *data;
    if (PluginUpdate_API* const update = host->makeUpdateApi()) {
        update->setIntValue(PARAM_PRESETS, 0, 0);
    }
    return 0;
}

} // namespace orbel
