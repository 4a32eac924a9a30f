#include "scene/SceneWriter.h"

#include "params/ParameterTable.h"
#include "scene/ParameterValues.h"
#include "scene/PixelFormats.h"
#include "scene/ShapeKeys.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace orbel {

namespace {

using nlohmann::json;

json inputOf(const SceneInput& input) {
    if (const auto* const color = std::get_if<ColorInput>(&input)) {
        return {{"color", color->rgba}};
    }
    if (const auto* const raw = std::get_if<RawInput>(&input)) {
        return {{"raw", raw->path}};
    }
    const auto& media = std::get<MediaInput>(input);
    json file{{"file", media.path}};
    if (media.first) {
        file["first"] = *media.first;
    }
    return file;
}

json valueOf(const ParameterRow& row, const ParameterValue& value) {
    if (row.components() == 1) {
        return value[0];
    }
    return std::vector<double>(value.begin(), value.begin() + row.components());
}

json trackOf(const ParameterRow& row, const std::vector<Keyframe>& keys) {
    if (keys.size() == 1) {
        return valueOf(row, keys.front().value);
    }
    json list = json::array();
    for (const Keyframe& key : keys) {
        list.push_back({key.frame, valueOf(row, key.value), nameOf(key.easing)});
    }
    return {{"keys", list}};
}

} // namespace

std::string sceneText(const Scene& scene) {
    json text{{"orbel", 1},
              {"format", nameOf(scene.format)},
              {"pixelAspect", scene.pixelAspect},
              {"renderScale", {scene.renderScaleX, scene.renderScaleY}},
              {"input", inputOf(scene.input)}};
    if (scene.size) {
        text["size"] = {scene.size->width, scene.size->height};
    }
    if (scene.framesPerSecond) {
        text["fps"] = *scene.framesPerSecond;
    }
    if (scene.frames) {
        text["frames"] = {scene.frames->first, scene.frames->last};
    }
    if (json shape = shapeKeys(scene); !shape.is_null()) {
        text["shape"] = std::move(shape);
    }
    json parameters = json::object();
    for (const auto& [id, keys] : scene.parameters) {
        const ParameterRow& row = *findParameter(id);
        parameters[fullName(row)] = trackOf(row, keys);
    }
    text["parameters"] = std::move(parameters);
    return text.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

} // namespace orbel
