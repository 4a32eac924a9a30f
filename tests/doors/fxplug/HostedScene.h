#pragma once

#include "doors/memory/MemoryImage.h"
#include "film/FrameInput.h"
#include "film/ScenePlan.h"
#include "scene/Scene.h"
#include "tests/doors/fxplug/LoadedEffect.h"

#include <optional>
#include <string>

namespace orbel::fxtest {

/// A scene file, ready to be rendered by whatever host.
class HostedScene {
public:
    /// Throws `std::runtime_error` with the scene's problems.
    explicit HostedScene(const std::string& file);

    [[nodiscard]] ScenePlan& plan() { return m_plan; }
    /// The picture under the stroke in one of the six formats. Throws when a clip ends early.
    [[nodiscard]] MemoryImage input(long frame, RasterFormat format);
    /// An image of the scene's size and pixel aspect ratio.
    [[nodiscard]] MemoryImage image(RasterFormat format) const;
    /// Puts the scene's parameters and shape into the effect's project.
    void applyTo(LoadedEffect& effect) const;
    /// A request for a frame of the scene; the lower field is half a frame later.
    [[nodiscard]] FrameRequest request(long frame, Field field) const;

private:
    explicit HostedScene(Scene scene);

    Scene m_scene;
    ScenePlan m_plan;
    std::optional<FrameInput> m_input;
};

} // namespace orbel::fxtest
