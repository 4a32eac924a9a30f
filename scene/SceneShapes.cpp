#include "scene/SceneShapes.h"

#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "shapes/ShapeFile.h"
#include "shapes/ShapeTable.h"

#include <set>

namespace orbel {

namespace {

bool isUnreadable(const std::string& path) {
    return fileExists(path.c_str()) != 1;
}

void checkOwnShape(const Scene& scene, Problems* problems) {
    const std::string& path = *scene.shape;
    const Site site = siteIn(scene, "/shape", "--shape", problems);
    if (path.size() >= sizeof Orbel_UserData::path) {
        site.report("the path of the shape file is longer than 1023 bytes",
                    "put the file elsewhere");
    } else if (isUnreadable(path)) {
        site.report("the shape file " + inQuotes(path) + " does not exist or cannot be read",
                    "check its name; it is relative to the scene file");
    }
}

} // namespace

Site siteIn(const Scene& scene, const char* pointer, const char* option, Problems* problems) {
    return {scene.file, scene.file == commandLine ? option : pointer, problems};
}

std::vector<int> chosenPresets(const Scene& scene) {
    std::set<int> presets;
    if (const auto track = scene.parameters.find(PARAM_PRESETS); track != scene.parameters.end()) {
        for (const Keyframe& key : track->second) {
            presets.insert(static_cast<int>(key.value[0]));
        }
    }
    presets.erase(0);
    return {presets.begin(), presets.end()};
}

std::string presetFile(int index) {
    Orbel_UserData data;
    setPresetPath(&data, index);
    return data.path;
}

void checkPresets(const Scene& scene, Problems* problems) {
    for (const int preset : chosenPresets(scene)) {
        const std::string file = presetFile(preset);
        if (isUnreadable(file)) {
            siteIn(scene, "/parameters", "--shape", problems)
                .report("the file of the built-in shape " + inQuotes(g_svgShapes[preset].name) +
                            ", " + inQuotes(file) + ", does not exist or cannot be read",
                        "set QUARVEX_ORBEL_SVG_DIR to the folder of the built-in shapes");
        }
    }
}

void checkShapes(const Scene& scene, Problems* problems) {
    if (scene.needsConversion()) {
        siteIn(scene, "/shape", "--import", problems)
            .report(scene.lettering ? "a text is no shape yet" : "a drawing is no shape yet",
                    scene.lettering ? "write it with \"orbel text\", and name what that made"
                                    : "convert it with \"orbel import\", and name what that made");
    } else if (scene.shape) {
        checkOwnShape(scene, problems);
    }
    checkPresets(scene, problems);
}

} // namespace orbel
