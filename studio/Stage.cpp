#include "studio/Stage.h"

#include "film/FrameRenderer.h"
#include "film/RenderPipeline.h"
#include "scene/SceneReader.h"
#include "scene/SceneShapes.h"
#include "shapes/ShapeCache.h"
#include "studio/FileStamp.h"

#include <utility>

namespace orbel::studio {

namespace {

/// The frames of somebody else's reader.
class BorrowedMedia final : public MediaReader {
public:
    explicit BorrowedMedia(MediaReader* media) : m_media(media) {
        m_properties = media->properties();
    }
    PicturePtr readFrame(long index) override { return m_media->readFrame(index); }
    void fillFrame(long index, const RasterInfo& raster, SourceAlpha alpha) override {
        m_media->fillFrame(index, raster, alpha);
    }

private:
    MediaReader* m_media;
};

ParameterStore storeOf(const Scene& scene) {
    ParameterStore store;
    for (const auto& [id, keys] : scene.parameters) {
        store.setKeys(id, keys);
    }
    return store;
}

std::string fileOf(const SceneInput& input) {
    if (const auto* const raw = std::get_if<RawInput>(&input)) {
        return raw->path;
    }
    const auto* const media = std::get_if<MediaInput>(&input);
    return media == nullptr ? "" : media->path;
}

bool isSameInput(const SceneInput& a, const SceneInput& b) {
    const auto* const mediaA = std::get_if<MediaInput>(&a);
    const auto* const mediaB = std::get_if<MediaInput>(&b);
    if (mediaA != nullptr && mediaB != nullptr && mediaA->first != mediaB->first) {
        return false;
    }
    const auto* const colourA = std::get_if<ColorInput>(&a);
    const auto* const colourB = std::get_if<ColorInput>(&b);
    return a.index() == b.index() && fileOf(a) == fileOf(b) &&
           (colourA == nullptr || colourB == nullptr || colourA->rgba == colourB->rgba);
}

/// Nothing but the stroke is different.
bool areAlike(const Scene& a, const Scene& b) {
    return a.file == b.file && a.size == b.size && a.format == b.format &&
           a.framesPerSecond == b.framesPerSecond && a.frames == b.frames &&
           a.pixelAspect == b.pixelAspect && a.renderScaleX == b.renderScaleX &&
           a.renderScaleY == b.renderScaleY && isSameInput(a.input, b.input);
}

ScenePlan reducedPlan(const ScenePlan& full, FrameSize size) {
    ScenePlan plan;
    plan.sceneFile = full.sceneFile;
    plan.size = full.size;
    plan.format = full.format;
    plan.frameRate = full.frameRate;
    plan.frames = full.frames;
    plan.pixelAspect = full.pixelAspect;
    plan.renderScaleX = full.renderScaleX;
    plan.renderScaleY = full.renderScaleY;
    plan.shapePath = full.shapePath;
    plan.shapeText = full.shapeText;
    plan.parameters = full.parameters;
    plan.color = full.color;
    plan.alpha = full.alpha;
    if (full.media != nullptr) {
        plan.media = std::make_unique<BorrowedMedia>(full.media.get());
    }
    resize(&plan, size);
    return plan;
}

OutputAlpha carriedBy(SourceAlpha alpha) {
    return alpha == SourceAlpha::Premultiplied ? OutputAlpha::Premultiplied : OutputAlpha::Straight;
}

} // namespace

Stage::Stage(ScenePlan plan) : m_plan(std::move(plan)), m_reader(&m_plan) {
    const FrameRenderer renderer(&m_plan, {}, {});
    m_input = renderer.makeImage();
    m_output = renderer.makeImage();
}

void Stage::takeStroke(const Scene& scene, const std::string& shapeText) {
    m_plan.parameters = storeOf(scene);
    m_plan.shapePath = scene.needsConversion() ? "" : scene.shape.value_or("");
    m_plan.shapeText = shapeText;
}

DrawnFrame Stage::draw(long frame, bool before, const std::function<bool()>& aborted) {
    m_reader.fill(frame, m_input);
    if (before) {
        return {m_input.info(), carriedBy(m_plan.alpha.source)};
    }
    FrameRenderer renderer(&m_plan, aborted, {});
    const int code = renderer.render(frame, m_input, m_output);
    if (code != 0 && aborted && aborted()) {
        throw Superseded{};
    }
    if (code != 0) {
        throw RenderError(code);
    }
    return {m_output.info(), m_plan.alpha.output};
}

Stage& StageKeeper::full(const std::string& text, const std::string& file) {
    if (m_full != nullptr && m_scene && text == m_text && file == m_scene->file &&
        stampOf(fileOf(m_scene->input)) == m_stamp && shapeIsCurrent(*m_scene)) {
        return *m_full;
    }
    Problems problems;
    std::optional<Scene> scene = readScene(text, file, &problems);
    if (!scene || !problems.empty()) {
        throw BadScene{problems};
    }
    const std::string stamp = stampOf(fileOf(scene->input));
    if (!shapeIsCurrent(*scene)) {
        flushStrokeCache();
    }
    if (m_full != nullptr && m_scene && areAlike(*m_scene, *scene) && stamp == m_stamp) {
        restroke(*scene);
    } else {
        plan(*scene);
    }
    m_text = text;
    m_stamp = stamp;
    m_scene = std::move(scene);
    return *m_full;
}

bool StageKeeper::shapeIsCurrent(const Scene& scene) {
    if (!scene.shape) {
        return true;
    }
    const std::string stamp = stampOf(*scene.shape);
    std::string& known = m_shapeStamps[*scene.shape];
    const bool current = known.empty() || known == stamp;
    known = stamp;
    return current;
}

/// Gives another stroke to the stages that there are.
void StageKeeper::restroke(const Scene& scene) {
    Problems problems;
    std::string shapeText;
    if (scene.needsConversion() && m_convert) {
        shapeText = m_convert(scene, &problems).value_or("");
        checkPresets(scene, &problems);
    } else {
        checkShapes(scene, &problems);
    }
    if (!problems.empty()) {
        throw BadScene{problems};
    }
    m_full->takeStroke(scene, shapeText);
    if (m_reduced != nullptr) {
        m_reduced->takeStroke(scene, shapeText);
    }
}

void StageKeeper::plan(const Scene& scene) {
    m_reduced.reset(); // reads from the full one's media
    m_full.reset();
    m_scene.reset();
    Problems problems;
    std::optional<ScenePlan> planned = planScene(scene, 0, &problems, m_convert);
    if (!planned) {
        throw BadScene{problems};
    }
    m_full = std::make_unique<Stage>(std::move(*planned));
}

Stage* StageKeeper::reduced(FrameSize size) {
    if (!m_full->plan().rawFrame.empty()) {
        return nullptr;
    }
    if (m_reduced == nullptr || m_reduced->plan().size != size) {
        m_reduced = std::make_unique<Stage>(reducedPlan(m_full->plan(), size));
    }
    return m_reduced.get();
}

} // namespace orbel::studio
