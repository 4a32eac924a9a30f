#include "tests/fxplug/HostedScene.h"

#include "app/Diagnostics.h"
#include "app/SceneReader.h"
#include "pixel/RasterFormats.h"

#include <cmath>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace orbel::fxtest {

namespace {

void throwProblems(const app::Problems& problems) {
    if (!problems.empty()) {
        std::ostringstream text;
        app::print(problems, text);
        throw std::runtime_error(text.str());
    }
}

app::Scene readScene(const std::string& file) {
    app::Problems problems;
    auto scene = app::readSceneFile(file, &problems);
    throwProblems(problems);
    return std::move(*scene);
}

app::ScenePlan planOf(const app::Scene& scene) {
    app::Problems problems;
    auto plan = app::planScene(scene, 1, &problems);
    throwProblems(problems);
    return std::move(*plan);
}

// A component as a fraction of its maximum; `bytes` is its size.
double component(const std::uint8_t* at, std::size_t bytes) {
    if (bytes == 1) {
        return *at / 255.0;
    }
    if (bytes == 2) {
        std::uint16_t value = 0;
        std::memcpy(&value, at, sizeof value);
        return value / 65535.0;
    }
    float value = 0;
    std::memcpy(&value, at, sizeof value);
    return static_cast<double>(value);
}

void setComponent(std::uint8_t* at, std::size_t bytes, double fraction) {
    if (bytes == 1) {
        *at = static_cast<std::uint8_t>(std::lround(fraction * 255.0));
    } else if (bytes == 2) {
        const auto value = static_cast<std::uint16_t>(std::lround(fraction * 65535.0));
        std::memcpy(at, &value, sizeof value);
    } else {
        const auto value = static_cast<float>(fraction);
        std::memcpy(at, &value, sizeof value);
    }
}

void convert(const RasterInfo& from, const RasterInfo& to) {
    int source[4];
    int target[4];
    getRasterChannelOrder(from.pixelFormat, source[0], source[1], source[2], source[3]);
    getRasterChannelOrder(to.pixelFormat, target[0], target[1], target[2], target[3]);
    const auto a = static_cast<std::size_t>(from.bytesPerPixel / 4);
    const auto b = static_cast<std::size_t>(to.bytesPerPixel / 4);
    for (int y = 0; y < to.height; ++y) {
        for (std::size_t x = 0; x < static_cast<std::size_t>(to.width); ++x) {
            for (std::size_t c = 0; c < 4; ++c) {
                const std::size_t read = 4 * x + static_cast<std::size_t>(source[c]);
                const std::size_t write = 4 * x + static_cast<std::size_t>(target[c]);
                setComponent(to.row(y) + b * write, b, component(from.row(y) + a * read, a));
            }
        }
    }
}

} // namespace

HostedScene::HostedScene(const std::string& file) : HostedScene(readScene(file)) {}

HostedScene::HostedScene(app::Scene scene)
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
    convert(native.info(), converted.info());
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
