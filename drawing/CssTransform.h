#pragma once

#include "drawing/Outline.h"

#include <optional>
#include <string_view>

namespace orbel {

/// Reads a list of transforms, as an attribute states it, or with `sheet` a style sheet, where
/// lengths and angles need units; percentages are of `width` and `height`. Nothing when it cannot
/// be read, and for three dimensions.
[[nodiscard]] std::optional<PlaneTransform> cssTransform(std::string_view text, double em,
                                                         double width, double height, bool sheet);

/// Reads the value of `transform-origin`: one or two words or lengths.
[[nodiscard]] PlanePoint cssOrigin(std::string_view text, double em, double width, double height);

/// The transform that does `inner` first.
[[nodiscard]] PlaneTransform combined(const PlaneTransform& outer, const PlaneTransform& inner);

} // namespace orbel
