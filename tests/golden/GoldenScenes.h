#pragma once

#include "doors/memory/MemoryImage.h"
#include "film/ScenePlan.h"

#include <string>
#include <vector>

namespace orbel::golden {

/// The frames of a golden scene, rows top-down, tightly packed, in the scene's own format.
struct Frames {
    RasterFormat format = RF_RGBA8;
    FrameSize size;
    long first = 0;
    std::vector<std::string> bytes; ///< one for each frame
};

/// The golden scenes by name, sorted.
[[nodiscard]] std::vector<std::string> sceneNames();

/// A scene's name as a parameter's name in a test.
[[nodiscard]] std::string testName(const std::string& scene);

[[nodiscard]] std::string sceneFile(const std::string& scene);

/// A scene, ready to be rendered. Throws `std::runtime_error` with the scene's problems.
[[nodiscard]] ScenePlan planOf(const std::string& scene);

/// Renders a scene. Throws `std::runtime_error` with the scene's problems.
[[nodiscard]] Frames render(const std::string& scene);

/// The stored frames; as many as `like` has, in the same layout. Fewer when the file is shorter.
[[nodiscard]] Frames stored(const std::string& scene, const Frames& like);

/// Replaces the stored frames. Throws `std::runtime_error` when they cannot be written.
void store(const std::string& scene, const Frames& frames);

/// Writes a frame as expected, as rendered and their difference (amplified, alpha shown as opaque)
/// and returns the folder.
std::string writeDifference(const std::string& scene, const Frames& expected, const Frames& actual,
                            std::size_t index);

} // namespace orbel::golden
