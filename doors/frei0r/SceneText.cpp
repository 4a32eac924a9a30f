#include "doors/frei0r/SceneText.h"

#include "scene/Diagnostics.h"
#include "scene/SceneReader.h"
#include "scene/SceneShapes.h"

#include <cstdio>

namespace orbel::frei0r {

namespace {

std::optional<Scene> readTextOrFile(const std::string& text, Problems* problems) {
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != std::string::npos && text[start] == '{') {
        return readScene(text, "Scene", problems);
    }
    return readSceneFile(text, problems);
}

} // namespace

void tell(const std::string& message) {
    const std::string line = "orbel: " + message + "\n";
    static_cast<void>(std::fputs(line.c_str(), stderr));
}

std::optional<Scene> readSceneText(const std::string& text) {
    if (text.empty()) {
        return Scene{};
    }
    Problems problems;
    std::optional<Scene> scene = readTextOrFile(text, &problems);
    if (scene) {
        checkShapes(*scene, &problems);
    }
    if (problems.empty()) {
        return scene;
    }
    const std::size_t more = problems.items().size() - 1 + problems.left();
    tell("this scene is not used: " + sentence(problems.items().front()) +
         (more == 0 ? "" : " (and " + std::to_string(more) + " more)"));
    return std::nullopt;
}

} // namespace orbel::frei0r
