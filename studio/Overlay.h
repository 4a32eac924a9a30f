#pragma once

#include "film/ScenePlan.h"
#include "studio/Json.h"

namespace orbel::studio {

/// What the page draws over a frame in its full size, in pixels of the picture: `{paths, start,
/// end, position, positionAxes, camera}`; lines as `[x, y, x, y, ...]`.
[[nodiscard]] json overlayJson(ScenePlan& plan, long frame);

} // namespace orbel::studio
