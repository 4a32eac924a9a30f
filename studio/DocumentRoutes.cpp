#include "film/ScenePlan.h"
#include "scene/PixelFormats.h"
#include "scene/SceneReader.h"
#include "studio/Drop.h"
#include "studio/Routes.h"

namespace orbel::studio {

namespace {

/// What a new scene is: something that can be seen at once.
constexpr const char* emptyScene = R"({
  "orbel": 1,
  "size": [1280, 720],
  "fps": 30,
  "frames": [0, 89],
  "parameters": {
    "Presets": "Basic Star",
    "Transfer Mode": "Normal"
  }
}
)";

json sceneJson(SceneFolder& folder, const std::string& name) {
    const std::optional<std::string> text =
        SceneFolder::read(folder.pathOf(name, {FileKind::Scene}));
    std::error_code error;
    return {{"name", name},
            {"path", (folder.path() / name).string()},
            {"folder", std::filesystem::weakly_canonical(folder.path(), error).string()},
            {"text", text.value_or(emptyScene)},
            {"revision", revisionOf(text)},
            {"exists", text.has_value()},
            {"journal", folder.journal(name)},
            {"files", folder.list()}};
}

std::string sceneName(const Call& call) {
    return textMember(call.body, "name", call.studio.sceneOf(call.tab));
}

json sizeJson(FrameSize size) {
    return {size.width, size.height};
}

json inputJson(const Scene& scene, const ScenePlan& plan) {
    if (plan.media == nullptr) {
        const bool raw = std::holds_alternative<RawInput>(scene.input);
        return {{"kind", raw ? "raw" : "colour"}};
    }
    const MediaProperties& media = plan.media->properties();
    const char* const kind = media.kind == MediaKind::Clip       ? "clip"
                             : media.kind == MediaKind::Sequence ? "sequence"
                                                                 : "picture";
    json input{{"kind", kind}, {"size", sizeJson({media.width, media.height})}};
    if (media.frameRate) {
        input["fps"] = media.frameRate->perSecond();
    }
    if (media.frameCount) {
        input["frames"] = *media.frameCount;
    }
    return input;
}

json planJson(const Scene& scene, const ScenePlan& plan) {
    return {{"size", sizeJson(plan.size)},
            {"fps", plan.frameRate.perSecond()},
            {"frames", {plan.frames.first, plan.frames.last}},
            {"format", nameOf(plan.format)},
            {"input", inputJson(scene, plan)}};
}

} // namespace

Answer tellScene(const Call& call) {
    return answerOf(sceneJson(call.studio.folder(), call.studio.sceneOf(call.tab)));
}

Answer openScene(const Call& call) {
    const std::string name = textMember(call.body, "name");
    json scene = sceneJson(call.studio.folder(), name);
    call.studio.setScene(call.tab, name);
    return answerOf(scene);
}

Answer tellRevision(const Call& call) {
    const auto file = call.studio.folder().pathOf(textMember(call.body, "name"));
    return answerOf({{"revision", revisionOf(SceneFolder::read(file))}});
}

Answer tellLetters(const Call& call) {
    return answerOf(call.studio.letters());
}

Answer tellShape(const Call& call) {
    const std::string file = call.studio.folder().pathOf(sceneName(call)).string();
    Problems problems;
    const std::optional<Scene> scene = readScene(textMember(call.body, "text"), file, &problems);
    if (!scene || !problems.empty()) {
        throw BadScene{problems};
    }
    return answerOf(shapeJson(*scene, call.studio.conversions(), call.request.isGone));
}

Answer checkScene(const Call& call) {
    const std::string file = call.studio.folder().pathOf(sceneName(call)).string();
    Problems problems;
    const std::optional<Scene> scene = readScene(textMember(call.body, "text"), file, &problems);
    json plan = nullptr;
    if (scene && problems.empty()) {
        if (const std::optional<ScenePlan> planned = planScene(
                *scene, 0, &problems, call.studio.conversions().until(call.request.isGone))) {
            plan = planJson(*scene, *planned);
        }
    }
    return answerOf({{"problems", problemsJson(problems)}, {"plan", std::move(plan)}});
}

Answer saveScene(const Call& call) {
    SceneFolder& folder = call.studio.folder();
    const std::string name = sceneName(call);
    const std::filesystem::path file = folder.pathOf(name, {FileKind::Scene});
    const std::string text = textMember(call.body, "text");
    const std::optional<std::string> onDisk = SceneFolder::read(file);
    const bool same = revisionOf(onDisk) == textMember(call.body, "revision");
    if (!same && !flagMember(call.body, "overwrite")) {
        Answer conflict =
            answerOf({{"error", inQuotes(name) + " has been changed by somebody else"},
                      {"remedy", "take the other version, or overwrite it"},
                      {"text", onDisk ? json(*onDisk) : json(nullptr)},
                      {"revision", revisionOf(onDisk)}});
        conflict.status = 409;
        return conflict;
    }
    SceneFolder::write(file, text, onDisk ? Overwrite::Yes : Overwrite::No);
    return answerOf({{"revision", revisionOf(text)}});
}

Answer saveSceneAs(const Call& call) {
    SceneFolder& folder = call.studio.folder();
    const std::string name = textMember(call.body, "name");
    const std::string text = textMember(call.body, "text");
    SceneFolder::write(folder.pathOf(name, {FileKind::Scene}), text,
                       flagMember(call.body, "overwrite") ? Overwrite::Yes : Overwrite::No);
    call.studio.setScene(call.tab, name);
    return answerOf({{"name", name}, {"revision", revisionOf(text)}});
}

Answer keepJournal(const Call& call) {
    SceneFolder& folder = call.studio.folder();
    const std::string name = sceneName(call);
    static_cast<void>(folder.pathOf(name, {FileKind::Scene}));
    const std::filesystem::path journal = folder.journalOf(name);
    if (flagMember(call.body, "clear")) {
        std::error_code ignored;
        std::filesystem::remove(journal, ignored);
    } else {
        SceneFolder::write(journal, textMember(call.body, "text"), Overwrite::Yes);
    }
    return answerOf(json::object());
}

Answer dropFile(const Call& call) {
    const std::string name = textMember(call.body, "name");
    const bool isText = hasMember(call.body, "text");
    std::string bytes = textMember(call.body, isText ? "text" : "base64");
    if (!isText) {
        bytes = bytesOfBase64(std::move(bytes));
    }
    if (bytes.size() > largestDrop) {
        throw Refusal{413, inQuotes(name) + " is larger than the 64 MiB that can be dropped",
                      "put it into the scene's folder yourself"};
    }
    return answerOf(takeDrop(call.studio.folder(), name, bytes));
}

Answer listFiles(const Call& call) {
    return answerOf({{"files", call.studio.folder().list()}});
}

} // namespace orbel::studio
