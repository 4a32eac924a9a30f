#include "scene/SceneLimits.h"
#include "scene/SceneReader.h"
#include "studio/Results.h"
#include "studio/Routes.h"

namespace orbel::studio {

namespace {

constexpr long highestJob = 1L << 31;

ExportWish exportWishOf(const json& body) {
    ExportWish wish;
    wish.name = textMember(body, "name");
    if (hasMember(body, "from") || hasMember(body, "to")) {
        const long first = numberMember(body, "from", 0, lastFrame);
        wish.frames = FrameRange{first, numberMember(body, "to", first, lastFrame)};
    }
    if (hasMember(body, "width") || hasMember(body, "height")) {
        wish.size = FrameSize{static_cast<int>(numberMember(body, "width", 1, largestSide)),
                              static_cast<int>(numberMember(body, "height", 1, largestSide))};
    }
    wish.overwrite = flagMember(body, "overwrite") ? Overwrite::Yes : Overwrite::No;
    return wish;
}

} // namespace

Answer exportFilm(const Call& call) {
    const std::string name = textMember(call.body, "scene", call.studio.sceneOf(call.tab));
    const std::string file = call.studio.folder().pathOf(name).string();
    Problems problems;
    const std::optional<Scene> scene = readScene(textMember(call.body, "text"), file, &problems);
    if (!scene || !problems.empty()) {
        throw BadScene{problems};
    }
    return answerOf({{"job", call.studio.exports().add(*scene, exportWishOf(call.body))}});
}

Answer listJobs(const Call& call) {
    return answerOf({{"jobs", call.studio.exports().list()}});
}

Answer cancelJob(const Call& call) {
    if (!call.studio.exports().cancel(numberMember(call.body, "job", 0, highestJob))) {
        throw Refusal{404, "there is no such film", ""};
    }
    return answerOf(json::object());
}

Answer makeTicket(const Call& call) {
    const std::string result =
        call.studio.exports().resultOf(numberMember(call.body, "job", 0, highestJob));
    if (result.empty()) {
        throw Refusal{404, "this film is not finished", "wait for it"};
    }
    return answerOf({{"ticket", call.studio.results().add(result)}});
}

} // namespace orbel::studio
