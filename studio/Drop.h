#pragma once

#include "studio/SceneFolder.h"

#include <string>
#include <string_view>

namespace orbel::studio {

/// What a drop may hold.
inline constexpr std::size_t largestDrop = std::size_t{64} << 20;

/// The bytes of a text in base 64. Throws a Refusal for anything else.
[[nodiscard]] std::string bytesOfBase64(std::string text);

/// Puts a file that was dropped on the page beside the scene, under its own name or, when another
/// file has it, one with a number: `{name, losses: [{line, message, count}]}`. Losses are what the
/// reader of shapes will not draw of an SVG file; where there are any, `before` shows what it does
/// draw and `after` what it draws of the file when it is imported. Throws a Refusal.
[[nodiscard]] json takeDrop(SceneFolder& folder, const std::string& name, std::string_view bytes);

} // namespace orbel::studio
