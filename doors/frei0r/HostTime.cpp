#include "doors/frei0r/HostTime.h"

#include "scene/RationalRate.h"
#include "scene/SceneLimits.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace orbel::frei0r {

namespace {

std::optional<double> numberIn(std::string_view text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (read.ec != std::errc{} || read.ptr != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

TimeUnit guessTimeUnit(std::string_view callingFile) {
    const std::string_view name = callingFile.substr(callingFile.rfind('/') + 1); // npos + 1 is 0
    const bool isFFmpeg = name.find("avfilter") != std::string_view::npos ||
                          name.starts_with("ffmpeg") || name.starts_with("ffplay") ||
                          name.starts_with("mpv");
    return isFFmpeg ? TimeUnit::Milliseconds : TimeUnit::Seconds;
}

std::optional<TimeUnit> namedTimeUnit(double number) {
    if (!(number >= 0.25)) {
        return std::nullopt;
    }
    return number < 0.75 ? TimeUnit::Seconds : TimeUnit::Milliseconds;
}

double frameAt(double time, TimeUnit unit, double framesPerSecond) {
    constexpr auto most = static_cast<double>(lastFrame);
    if (std::isnan(time)) {
        return 0.0;
    }
    const double seconds = unit == TimeUnit::Milliseconds ? time / 1000.0 : time;
    const double frame = std::clamp(seconds * framesPerSecond, -most, most);
    // A host may know its times to the millisecond only, and rounds them up or down.
    const double rounding = 0.0005 * framesPerSecond + 1e-6;
    const double whole = std::round(frame);
    return std::fabs(frame - whole) <= rounding ? whole : frame;
}

std::optional<double> readFrameRate(std::string_view text) {
    const std::size_t slash = text.find('/');
    const std::optional<double> above = numberIn(text.substr(0, slash));
    const std::optional<double> below =
        slash == std::string_view::npos ? 1.0 : numberIn(text.substr(slash + 1));
    if (!above || !below) {
        return std::nullopt;
    }
    const double rate = *above / *below;
    if (!(rate >= 0.001 && rate <= 1'000'000.0)) {
        return std::nullopt;
    }
    return exactRate(rate);
}

double exactRate(double framesPerSecond) {
    return rationalRate(framesPerSecond).perSecond();
}

} // namespace orbel::frei0r
