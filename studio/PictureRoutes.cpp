#include "scene/SceneLimits.h"
#include "studio/Overlay.h"
#include "studio/Playback.h"
#include "studio/Routes.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace orbel::studio {

namespace {

using Clock = std::chrono::steady_clock;

constexpr long largestSerial = 1L << 52;

FrameWish wishOf(const Call& call) {
    FrameWish wish;
    wish.text = textMember(call.body, "text");
    wish.file = call.studio.folder()
                    .pathOf(textMember(call.body, "name", call.studio.sceneOf(call.tab)))
                    .string();
    wish.frame = numberMember(call.body, "frame", 0, lastFrame, 0);
    wish.width = static_cast<int>(numberMember(call.body, "width", 0, largestSide, 0));
    wish.height = static_cast<int>(numberMember(call.body, "height", 0, largestSide, 0));
    const std::optional<Ground> ground = groundOf(textMember(call.body, "ground", "grid"));
    if (!ground) {
        throw Refusal{400, "this is no ground to show a picture on",
                      "choose grid, black, white or #rrggbb"};
    }
    wish.ground = *ground;
    wish.before = flagMember(call.body, "before");
    wish.exact = flagMember(call.body, "exact");
    return wish;
}

double millisecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

} // namespace

Answer drawFrame(const Call& call) {
    const Clock::time_point begin = Clock::now();
    const auto number = numberMember(call.body, "serial", 0, largestSerial, 0);
    const Serial serial =
        call.studio.preview().announce(call.tab, static_cast<std::uint64_t>(number));
    const FrameWish wish = wishOf(call);
    const long since = numberMember(call.body, "since", -1, largestSerial, -1);
    ShownFrame frame = call.studio.preview().draw(
        wish, [&] { return serial.isSuperseded() || call.request.isGone(); });
    return call.studio.preview().answer(
        call.tab, serial,
        since < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(since)),
        std::move(frame), millisecondsSince(begin));
}

Answer playScene(const Call& call) {
    Preview& preview = call.studio.preview();
    const auto number = numberMember(call.body, "serial", 0, largestSerial, 0);
    const Serial serial = preview.announce(call.tab, static_cast<std::uint64_t>(number));
    FrameWish wish = wishOf(call);
    wish.exact = false;
    PlayedRange range;
    range.loop = flagMember(call.body, "loop");
    preview.withPlan(wish, call.request.isGone, [&](ScenePlan& plan) {
        range.frames = plan.frames;
        range.rate = plan.frameRate.perSecond();
    });
    FrameRange& frames = range.frames;
    frames.first = numberMember(call.body, "from", 0, lastFrame, frames.first);
    frames.last =
        numberMember(call.body, "to", frames.first, lastFrame, std::max(frames.first, frames.last));
    const auto playback =
        std::make_shared<Playback>(&preview, wish, serial, call.request.isGone, range);
    Answer answer;
    answer.type = "application/octet-stream";
    answer.stream = [playback](BodySink& sink) { playback->run(sink); };
    return answer;
}

Answer tellPath(const Call& call) {
    json overlay;
    const FrameWish wish = wishOf(call);
    call.studio.preview().withPlan(wish, call.request.isGone, [&](ScenePlan& plan) {
        overlay = overlayJson(plan, wish.frame);
    });
    return answerOf(overlay);
}

Answer readPixel(const Call& call) {
    const int x = static_cast<int>(numberMember(call.body, "x", 0, largestSide));
    const int y = static_cast<int>(numberMember(call.body, "y", 0, largestSide));
    return answerOf(call.studio.preview().pixel(wishOf(call), x, y, call.request.isGone));
}

} // namespace orbel::studio
