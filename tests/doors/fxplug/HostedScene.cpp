#include "tests/doors/fxplug/HostedScene.h"

#include "film/ShapeFolder.h"
#include "scene/Diagnostics.h"
#include "scene/SceneReader.h"
#include "tests/support/Pictures.h"

#include <sstream>
#include <stdexcept>

namespace orbel::fxtest {

namespace {

void throwProblems(const Problems& problems) {
    if (!problems.empty()) {
        std::ostringstream text;
        print(problems, text);
        throw std::runtime_error(text.str());
    }
}

// The bundle has a table of shapes of its own; a scene's names are looked up in the program's.
Scene readScene(const std::string& file) {
    prepareShapeTable();
    Problems problems;
    auto scene = readSceneFile(file, &problems);
    throwProblems(problems);
    return std::move(*scene);
}

ScenePlan planOf(const Scene& scene) {
    Problems problems;
    auto plan = planScene(scene, 1, &problems);
    throwProblems(problems);
    return std::move(*plan);
}

} // namespace

HostedScene::HostedScene(const std::string& file) : HostedScene(readScene(file)) {}

HostedScene::HostedScene(Scene scene)
    : m_scene(std::move(scene)), m_plan(planOf(m_scene)), m_input(&m_plan) {}

MemoryImage HostedScene::image(RasterFormat format) const {
    MemoryImage image(m_plan.size.width, m_plan.size.height, format, RowLayout{});
    image.setPixelAspect(static_cast<float>(m_plan.pixelAspect));
    return image;
}

MemoryImage HostedScene::input(long frame, RasterFormat format) {
    MemoryImage native = image(m_plan.format);
    m_input->fill(frame, native);
    if (format == m_plan.format) {
        return native;
    }
    MemoryImage converted = image(format);
    test::paint(converted.info(), [&](int x, int y) { return test::pixelAt(native.info(), x, y); });
    return converted;
}

void HostedScene::applyTo(LoadedEffect& effect) const {
    for (const auto& [param, keys] : m_scene.parameters) {
        effect.setTrack(param, keys);
    }
    effect.setShape(m_plan.shapePath);
}

FrameRequest HostedScene::request(long frame, Field field) const {
    const double second = field == Field::Lower ? 0.5 : 0.0;
    return {static_cast<double>(frame) + second, m_plan.renderScaleX, m_plan.renderScaleY, field};
}

} // namespace orbel::fxtest
