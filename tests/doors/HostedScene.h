#pragma once

#include "film/FrameInput.h"
#include "film/ScenePlan.h"
#include "scene/Scene.h"
#include "tests/doors/CoreFrame.h"

#include <optional>
#include <string>

namespace orbel::test {

/// A scene file, ready to be rendered by whatever host. Its pictures are premultiplied.
class HostedScene {
public:
    /// Throws `std::runtime_error` with the scene's problems.
    explicit HostedScene(const std::string& file);

    [[nodiscard]] const Scene& scene() const { return m_scene; }
    [[nodiscard]] const ScenePlan& plan() const { return m_plan; }
    /// The picture under the stroke in one of the six formats. Throws when a clip ends early.
    [[nodiscard]] MemoryImage input(long frame, RasterFormat format);
    /// An image of the scene's size and pixel aspect ratio.
    [[nodiscard]] MemoryImage image(RasterFormat format) const;
    /// What the core makes of a frame.
    [[nodiscard]] CoreFrame core(long frame) const;

private:
    explicit HostedScene(Scene scene);

    Scene m_scene;
    ScenePlan m_plan;
    std::optional<FrameInput> m_input;
};

} // namespace orbel::test
