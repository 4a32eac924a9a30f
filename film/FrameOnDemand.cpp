#include "film/FrameOnDemand.h"

#include "film/RenderPipeline.h"

#include <utility>

namespace orbel {

FrameOnDemand::FrameOnDemand(ScenePlan plan)
    : m_plan(std::move(plan)),
      m_frameInput(&m_plan),
      m_renderer(&m_plan, [this] { return m_cancelled && m_cancelled(); }, {}),
      m_input(m_renderer.makeImage()),
      m_output(m_renderer.makeImage()) {}

const MemoryImage* FrameOnDemand::render(long frame, const std::function<bool()>& cancelled) {
    m_cancelled = cancelled;
    m_frameInput.fill(frame, m_input);
    const int code = m_renderer.render(frame, m_input, m_output);
    if (m_cancelled && m_cancelled()) {
        return nullptr;
    }
    if (code != 0) {
        throw RenderError(code);
    }
    return &m_output;
}

} // namespace orbel
