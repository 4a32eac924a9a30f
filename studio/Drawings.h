#pragma once

#include "film/ScenePlan.h"
#include "studio/Json.h"

#include <string_view>

namespace orbel::studio {

/// The same converter, which does not convert anew what it converted last: a page asks for a scene
/// many times over while something else in it changes. Any thread.
[[nodiscard]] ShapeConverter remembering(ShapeConverter convert);

/// What the shape reader takes of an SVG text, as `{paths, size}` to be drawn small: outlines as
/// path data in a square box.
[[nodiscard]] json outlinesJson(std::string_view svg);

/// What a drawing becomes when it is imported: `{paths, size, notes}`, or `{error, remedy}`.
[[nodiscard]] json importJson(std::string_view svg);

} // namespace orbel::studio
