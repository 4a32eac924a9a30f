#include "host/frei0r/SceneText.h"

#include "app/Diagnostics.h"
#include "app/SceneReader.h"
#include "app/SceneShapes.h"

#include <cstdio>

namespace orbel::frei0r {

namespace {

std::optional<app::Scene> readTextOrFile(const std::string& text, app::Problems* problems) {
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != std::string::npos && text[start] == '{') {
        return app::readScene(text, "Scene", problems);
    }
    return app::readSceneFile(text, problems);
}

} // namespace

void tell(const std::string& message) {
    const std::string line = "orbel: " + message + "\n";
    static_cast<void>(std::fputs(line.c_str(), stderr));
}

std::optional<app::Scene> readSceneText(const std::string& text) {
    if (text.empty()) {
        return app::Scene{};
    }
    app::Problems problems;
    std::optional<app::Scene> scene = readTextOrFile(text, &problems);
    if (scene) {
        app::checkShapes(*scene, &problems);
    }
    if (problems.empty()) {
        return scene;
    }
    const std::size_t more = problems.items().size() - 1 + problems.left();
    tell("this scene is not used: " + app::sentence(problems.items().front()) +
         (more == 0 ? "" : " (and " + std::to_string(more) + " more)"));
    return std::nullopt;
}

} // namespace orbel::frei0r
