#pragma once

#include "doors/memory/MemoryImage.h"
#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "film/ScenePlan.h"
#include "params/InstanceData.h"
#include "render/WorkEstimate.h"

#include <functional>
#include <string>

namespace orbel {

/// Draws the frames of a plan through the in-memory host. One thread at a time; the effect's own
/// lock lets only one frame be drawn at once anyway.
class FrameRenderer {
public:
    /// Borrows the plan. `aborted` is asked now and then during a frame; `warning` takes the texts
    /// that the effect would show to a user. Both may be empty.
    FrameRenderer(ScenePlan* plan, std::function<bool()> aborted,
                  std::function<void(const std::string&)> warning);

    /// A black image of the plan's size, format and pixel aspect ratio.
    [[nodiscard]] MemoryImage makeImage() const;

    /// Renders a frame: `input` is worked in and is of no use afterwards, `output` is overwritten
    /// whole. 0 on success, otherwise the effect's error code; `abortCode` when it was aborted.
    int render(long frame, const MemoryImage& input, const MemoryImage& output);

    /// About how much work a frame is, without drawing it.
    [[nodiscard]] WorkEstimate estimate(long frame);

    static constexpr int abortCode = -1;

private:
    [[nodiscard]] MemoryHostSettings settingsAt(long frame) const;

    ScenePlan* m_plan;
    std::function<bool()> m_aborted;
    std::function<void(const std::string&)> m_warning;
    Orbel_UserData m_userData;
};

} // namespace orbel
