#pragma once

#include "film/ScenePlan.h"

#include <functional>
#include <string>

namespace orbel::app {

/// Converts the drawing or the text that a scene names as its shape. `note` is told what was left
/// out of it; `stopped` is asked while it lasts, and true ends it. Both may be empty.
[[nodiscard]] ShapeConverter shapeConverter(std::function<void(const std::string&)> note,
                                            std::function<bool()> stopped = {});

} // namespace orbel::app
