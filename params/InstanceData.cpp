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

int presetIndex(PluginHost_API* host) {
    int index = 0;
    host->GetIntValue(PARAM_PRESETS, 0, currentTimeObject(host), index);
    return index;
}

} // namespace

void setUserDataPath(Orbel_UserData* data, const char* path) {
    std::memset(data->path, 0, sizeof data->path);
    std::strncpy(data->path, path, sizeof data->path - 1);
}

Orbel_UserData* allocUserData() {
    return new Orbel_UserData;
}

void freeUserData(Orbel_UserData* data) {
    delete data;
}

int getUserData(PluginHost_API* host, Orbel_UserData* data) {
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        return record->readUserData(data);
    }
    const Orbel_UserData* const slot = slotOf(host);
    if (slot == nullptr) {
        return 1;
    }
    const int preset = presetIndex(host);
    if (preset > 0 && preset < g_numSVGShapes) {
        expandFormatText(data->path, sizeof data->path, g_svgShapes[preset].file);
        data->svg = {};
        return 0;
    }
    *data = *slot;
    return 0;
}

int setUserData(PluginHost_API* host, Orbel_UserData* data) {
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        return record->writeUserData(data);
    }
    Orbel_UserData* const slot = slotOf(host);
    if (slot == nullptr) {
        return 1;
    }
    *slot = *data;
    if (PluginUpdate_API* const update = host->makeUpdateApi()) {
        update->setIntValue(PARAM_PRESETS, 0, 0);
    }
    return 0;
}

} // namespace orbel
