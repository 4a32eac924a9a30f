#include "tests/doors/HostedScene.h"

#include "film/ShapeFolder.h"
#include "scene/Diagnostics.h"
#include "scene/SceneReader.h"
#include "tests/support/Pictures.h"

#include <sstream>
#include <stdexcept>

namespace orbel::test {

namespace {

template<class Result>
Result checked(std::optional<Result> result, const Problems& problems) {
    if (!problems.empty()) {
        std::ostringstream text;
        print(problems, text);
        throw std::runtime_error(text.str());
    }
    return std::move(*result);
}

// A plug-in has a table of shapes of its own; a scene's names are looked up in the program's.
Scene readScene(const std::string& file) {
    prepareShapeTable();
    Problems problems;
    auto scene = readSceneFile(file, &problems);
    return checked(std::move(scene), problems);
}

ScenePlan planOf(const Scene& scene) {
    Problems problems;
    auto plan = planScene(scene, 1, &problems);
    ScenePlan good = checked(std::move(plan), problems);
    good.alpha = {};
    return good;
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
    paint(converted.info(), [&](int x, int y) { return pixelAt(native.info(), x, y); });
    return converted;
}

CoreFrame HostedScene::core(long frame) const {
    return {m_plan.parameters,
            m_plan.shapePath,
            {},
            static_cast<double>(frame),
            m_plan.renderScaleX,
            m_plan.renderScaleY,
            m_plan.pixelAspect,
            {}};
}

} // namespace orbel::test
