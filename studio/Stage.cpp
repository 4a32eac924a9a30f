#include "studio/Stage.h"

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

DrawnFrame drawOn(FrameOnDemand& stage, long frame, bool before,
                  const std::function<bool()>& aborted) {
    const AlphaHandling& alpha = stage.plan().alpha;
    if (before) {
        return {stage.input(frame).info(), carriedBy(alpha.source)};
    }
    const MemoryImage* const drawn = stage.render(frame, aborted);
    if (drawn == nullptr) {
        throw Superseded{};
    }
    return {drawn->info(), alpha.output};
}

FrameOnDemand& StageKeeper::full(const std::shared_ptr<const Scene>& scene,
                                 const ShapeConverter& convert) {
    const bool sameInput = m_full != nullptr && inputIsCurrent(scene->input);
    const bool sameShape = shapeIsCurrent(*scene);
    if (m_full != nullptr && sameInput && sameShape && scene == m_scene) {
        return *m_full;
    }
    if (!sameShape) {
        flushStrokeCache();
    }
    if (m_full != nullptr && sameInput && areAlike(*m_scene, *scene)) {
        restroke(*scene, convert);
    } else {
        plan(*scene, convert);
    }
    m_scene = scene;
    return *m_full;
}

DrawnFrame StageKeeper::drawFull(long frame, bool before, const std::function<bool()>& aborted) {
    if (!m_drawn || m_drawn->frame != frame || m_drawn->before != before) {
        m_drawn.reset();
        m_drawn.emplace(KeptFrame{frame, before, drawOn(*m_full, frame, before, aborted)});
    }
    return m_drawn->drawn;
}

/// A picture or a clip is looked at every time, as that costs nothing; a sequence when somebody
/// says that files have changed.
bool StageKeeper::inputIsCurrent(const SceneInput& input) {
    const std::string file = fileOf(input);
    const bool look = m_lookAgain.exchange(false) || !isSequence(file);
    return m_scene != nullptr && fileOf(m_scene->input) == file &&
           (!look || stampOfInput(file) == m_stamp);
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
void StageKeeper::restroke(const Scene& scene, const ShapeConverter& convert) {
    Problems problems;
    std::string shapeText;
    if (scene.needsConversion() && convert) {
        shapeText = convert(scene, &problems).value_or("");
        checkPresets(scene, &problems);
    } else {
        checkShapes(scene, &problems);
    }
    if (!problems.empty()) {
        throw BadScene{problems};
    }
    const std::string shapePath = scene.needsConversion() ? "" : scene.shape.value_or("");
    m_drawn.reset();
    m_full->takeStroke(storeOf(scene), shapePath, shapeText);
    if (m_reduced != nullptr) {
        m_reduced->takeStroke(storeOf(scene), shapePath, shapeText);
    }
}

void StageKeeper::plan(const Scene& scene, const ShapeConverter& convert) {
    m_drawn.reset();
    m_reduced.reset(); // reads from the full one's media
    m_full.reset();
    m_scene.reset();
    Problems problems;
    m_stamp = stampOfInput(fileOf(scene.input));
    std::optional<ScenePlan> planned = planScene(scene, 0, &problems, convert);
    if (!planned) {
        throw BadScene{problems};
    }
    m_full = std::make_unique<FrameOnDemand>(std::move(*planned));
}

FrameOnDemand* StageKeeper::reduced(FrameSize size) {
    if (!m_full->plan().rawFrame.empty()) {
        return nullptr;
    }
    if (m_reduced == nullptr || m_reduced->plan().size != size) {
        m_reduced = std::make_unique<FrameOnDemand>(reducedPlan(m_full->plan(), size));
    }
    return m_reduced.get();
}

} // namespace orbel::studio
