#pragma once

#include "scene/Scene.h"

#include <string>

namespace orbel {

/// A scene as a file's text: whatever it states, in full, so that reading it gives the same scene
/// again. Paths are written as they are; whoever puts the text elsewhere makes them absolute first.
[[nodiscard]] std::string sceneText(const Scene& scene);

} // namespace orbel
