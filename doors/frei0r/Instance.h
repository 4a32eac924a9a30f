#pragma once

#include "doors/frei0r/Controls.h"
#include "doors/frei0r/HostTime.h"
#include "doors/memory/ParameterStore.h"
#include "params/InstanceData.h"
#include "scene/Scene.h"

#include <cstdint>
#include <mutex>
#include <vector>

namespace orbel::frei0r {

/// One effect in a host: its controls and frames of one size. Instances share nothing but the
/// core's own shape cache; one may be used from several threads, one after the other.
class Instance {
public:
    /// Frames of a size that the core does not draw pass through.
    Instance(unsigned width, unsigned height);

    /// Sets a control from a value in the interface's layout. A scene that is wrong leaves the
    /// last good one in force.
    void set(std::size_t control, const void* value);

    /// Hands out what was set last. Texts are valid until they are set again.
    void get(std::size_t control, void* value);

    /// Draws the frame at a time of the host. Both pictures are RGBA, straight, tightly packed, top
    /// row first; `input` is not changed, may be `output`, and stands for nothing when null.
    /// A frame that cannot be drawn shows the input. `unit` is what the host seems to count in.
    void update(double time, TimeUnit unit, const std::uint32_t* input, std::uint32_t* output);

private:
    void setScene(const std::string& text);
    void setFrameRate(const std::string& text);
    void settle();
    [[nodiscard]] double frameOf(double time, TimeUnit unit) const;
    [[nodiscard]] const ControlValue& valueOf(ControlRole role) const;
    /// Whether it worked; the output may be unfinished when it did not.
    bool draw(double frame, const std::uint32_t* input, std::uint32_t* output);

    std::mutex m_mutex;
    std::size_t m_width;
    std::size_t m_height;
    std::vector<ControlValue> m_values;
    std::optional<double> m_frameRate;
    Scene m_scene;

    // What follows from scene and controls together.
    bool m_settled = false;
    ParameterStore m_parameters;
    Orbel_UserData m_userData;
};

} // namespace orbel::frei0r
