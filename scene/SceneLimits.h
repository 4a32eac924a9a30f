#pragma once

#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <optional>
#include <string>
#include <string_view>

/// The ranges of everything in a scene that is no parameter, shared by the file and the options.
/// Each reports what is outside and returns nothing.
namespace orbel {

/// The largest frame number: its time in ticks still fits the host's 32 bits.
inline constexpr long lastFrame = 10'000'000;

[[nodiscard]] std::optional<RasterFormat> checkedFormat(std::string_view name, const Site& site);
[[nodiscard]] std::optional<FrameSize> checkedSize(double width, double height, const Site& site);
[[nodiscard]] std::optional<FrameRange> checkedFrames(double first, double last, const Site& site);
[[nodiscard]] std::optional<double> checkedFramesPerSecond(double value, const Site& site);
/// A ratio or scale: positive and at most 1000. `what` is its name.
[[nodiscard]] std::optional<double> checkedRatio(double value, const std::string& what,
                                                 const Site& site);

} // namespace orbel
