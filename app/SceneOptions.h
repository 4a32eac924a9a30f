#pragma once

#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <optional>
#include <string>
#include <vector>

namespace orbel::app {

/// The options that describe a scene, as they were typed. Each replaces what a scene file states.
struct SceneOptions {
    std::optional<std::string> shape;  ///< built-in name or file
    bool import = false;               ///< the shape is any drawing
    std::optional<std::string> input;  ///< picture, sequence, clip, #rrggbb or #rrggbbaa
    std::optional<std::string> first;  ///< number of a sequence's first file
    std::optional<std::string> size;   ///< 1280x720
    std::optional<std::string> fps;    ///< 25
    std::optional<std::string> frames; ///< 0-59 or 12
    std::optional<std::string> format;
    std::vector<std::string> set;     ///< NAME=VALUE
    std::vector<std::string> animate; ///< NAME=FRAME:VALUE[:EASING],...
};

/// Puts the options into the scene. Reports everything that is wrong with them, the option as the
/// place.
///
/// In `set` and `animate` the components of points and colours are separated by "/" (0.3/0.5);
/// colours may be written #rrggbb, toggles as true, false, on, off, 1 or 0, menus as index or
/// entry.
void applyOptions(const SceneOptions& options, Scene* scene, Problems* problems);

} // namespace orbel::app
