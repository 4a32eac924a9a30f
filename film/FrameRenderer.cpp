#include "film/FrameRenderer.h"

#include "film/ShapeFolder.h"
#include "render/RenderDispatch.h"

#include <utility>

namespace orbel {

FrameRenderer::FrameRenderer(ScenePlan* plan, std::function<bool()> aborted,
                             std::function<void(const std::string&)> warning)
    : m_plan(plan), m_aborted(std::move(aborted)), m_warning(std::move(warning)) {
    prepareShapeTable();
    setUserDataPath(&m_userData, plan->shapePath.c_str());
}

MemoryImage FrameRenderer::makeImage() const {
    MemoryImage image(m_plan->size.width, m_plan->size.height, m_plan->format, RowLayout{});
    image.setPixelAspect(static_cast<float>(m_plan->pixelAspect));
    return image;
}

MemoryHostSettings FrameRenderer::settingsAt(long frame) const {
    MemoryHostSettings settings;
    settings.frame = static_cast<double>(frame);
    settings.renderScaleX = m_plan->renderScaleX;
    settings.renderScaleY = m_plan->renderScaleY;
    settings.alpha = m_plan->alpha;
    return settings;
}

WorkEstimate FrameRenderer::estimate(long frame) {
    const MemoryImage image = makeImage();
    PluginHost_MEMORY_Impl host(image.info(), image.info(), &m_plan->parameters, settingsAt(frame));
    host.setUserData(&m_userData);
    return estimateWork(&host);
}

int FrameRenderer::render(long frame, const MemoryImage& input, const MemoryImage& output) {
    PluginHost_MEMORY_Impl host(input.info(), output.info(), &m_plan->parameters,
                                settingsAt(frame));
    host.setUserData(&m_userData);
    host.setShapeText(m_plan->shapeText);
    if (m_aborted) {
        host.setProgress(
            [this](long /*done*/, long /*total*/) { return m_aborted() ? abortCode : 0; });
    }
    if (m_warning) {
        host.setWarning(m_warning);
    }
    return Render(&host);
}

} // namespace orbel
