#include "film/FrameOnDemand.h"

#include "film/RenderPipeline.h"

#include <utility>

namespace orbel {

FrameOnDemand::FrameOnDemand(ScenePlan plan) : m_plan(std::move(plan)), m_frameInput(&m_plan) {
    makeRenderer();
    m_input = m_renderer->makeImage();
    m_output = m_renderer->makeImage();
}

void FrameOnDemand::makeRenderer() {
    m_renderer.emplace(
        &m_plan, [this] { return m_cancelled && m_cancelled(); },
        std::function<void(const std::string&)>{});
}

void FrameOnDemand::takeStroke(ParameterStore parameters, std::string shapePath,
                               std::string shapeText) {
    m_plan.parameters = std::move(parameters);
    m_plan.shapePath = std::move(shapePath);
    m_plan.shapeText = std::move(shapeText);
    makeRenderer();
}

const MemoryImage& FrameOnDemand::input(long frame) {
    m_frameInput.fill(frame, m_input);
    return m_input;
}

const MemoryImage* FrameOnDemand::render(long frame, const std::function<bool()>& cancelled) {
    m_cancelled = cancelled;
    m_frameInput.fill(frame, m_input);
    const int code = m_renderer->render(frame, m_input, m_output);
    if (m_cancelled && m_cancelled()) {
        return nullptr;
    }
    if (code != 0) {
        throw RenderError(code);
    }
    return &m_output;
}

} // namespace orbel
