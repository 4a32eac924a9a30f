#include "scene/SceneLimits.h"

#include "scene/NearestName.h"
#include "scene/PixelFormats.h"

#include <cmath>
#include <vector>

namespace orbel {

namespace {

constexpr double largestSide = 32767;
constexpr double largestRate = 1'000'000;
constexpr double smallestRate = 0.001;
constexpr double largestRatio = 1000;

bool isWhole(double value, double least, double most) {
    return value >= least && value <= most && value == std::floor(value);
}

} // namespace

std::optional<RasterFormat> checkedFormat(std::string_view name, const Site& site) {
    const std::optional<RasterFormat> format = formatOf(name);
    if (!format) {
        std::vector<std::string> names;
        names.reserve(namedFormats.size());
        for (const NamedFormat& known : namedFormats) {
            names.emplace_back(known.name);
        }
        site.report("the pixel format " + inQuotes(name) + " is not known",
                    "the nearest is " + inQuotes(nearestName(name, names)) +
                        " of argb8, rgba8, argb16, rgba16, argb32f and rgba32f");
    }
    return format;
}

std::optional<FrameSize> checkedSize(double width, double height, const Site& site) {
    if (!isWhole(width, 1, largestSide) || !isWhole(height, 1, largestSide)) {
        site.report("the size " + numberText(width) + " x " + numberText(height) +
                        " is out of range",
                    "give width and height as whole numbers from 1 to 32767");
        return std::nullopt;
    }
    return FrameSize{static_cast<int>(width), static_cast<int>(height)};
}

std::optional<FrameRange> checkedFrames(double first, double last, const Site& site) {
    constexpr auto most = static_cast<double>(lastFrame);
    if (!isWhole(first, 0, most) || !isWhole(last, 0, most)) {
        site.report("the frames " + numberText(first) + " to " + numberText(last) +
                        " are out of range",
                    "give whole numbers from 0 to " + std::to_string(lastFrame));
        return std::nullopt;
    }
    if (last < first) {
        site.report("the last frame, " + numberText(last) + ", comes before the first, " +
                        numberText(first),
                    "put the smaller number first");
        return std::nullopt;
    }
    return FrameRange{static_cast<long>(first), static_cast<long>(last)};
}

std::optional<double> checkedFramesPerSecond(double value, const Site& site) {
    if (!(value >= smallestRate && value <= largestRate)) {
        site.report(numberText(value) + " frames per second are out of range",
                    "give a number from 0.001 to 1000000, such as 25 or 29.97");
        return std::nullopt;
    }
    return value;
}

std::optional<double> checkedRatio(double value, const std::string& what, const Site& site) {
    // As a float, which is what the image record holds, it must still be above zero.
    if (!(static_cast<float>(value) > 0.0F && value <= largestRatio)) {
        site.report("the " + what + " " + numberText(value) + " is out of range",
                    "give a number above 0, at most 1000");
        return std::nullopt;
    }
    return value;
}

} // namespace orbel
