#pragma once

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "tests/support/Pictures.h"

#include <string>

namespace orbel::test {

inline constexpr const char* CIRCLE = "<circle cx='50' cy='50' r='40'/>";
inline constexpr const char* LINE = "<line x2='100' y2='100'/>";
inline constexpr const char* OPEN_CURVE = "<path d='M0 0 C60 0 0 60 60 90'/>";
inline constexpr const char* TWO_OUTLINES =
    "<circle cx='20' cy='50' r='15'/><polyline points='50,20 90,30 70,90'/>";

/// A shape file for as long as the test program runs, the same one for the same content.
[[nodiscard]] std::string shapeFile(const std::string& svgContent);

/// One effect instance and what its frames look like: defaults over a half-transparent picture.
struct Scene {
    int width = 64;
    int height = 48;
    RasterFormat format = RF_RGBA8;
    RowLayout layout{16, false};
    ParameterStore parameters;
    Orbel_UserData shape;
    MemoryHostSettings settings;

    explicit Scene(const std::string& svgContent) {
        setUserDataPath(&shape, shapeFile(svgContent).c_str());
    }
    Scene& set(int param, double value) {
        parameters.set(param, value);
        return *this;
    }
    /// Moves a value evenly from frame 0 to frame 10.
    Scene& animate(int param, const ParameterValue& from, const ParameterValue& to) {
        parameters.setKeys(param, {{0, from, Easing::Linear}, {10, to, Easing::Linear}});
        return *this;
    }
};

/// The images of one frame of a scene.
struct Frame {
    GuardedImage input;
    GuardedImage output;
    int result = -1;

    explicit Frame(const Scene& scene);
    [[nodiscard]] const RasterInfo& picture() const { return output.info(); }
};

/// A memory host over a scene and a frame of it, both borrowed.
template<typename Host>
class SceneHost : public Host {
public:
    SceneHost(Scene* scene, const Frame& frame)
        : Host(frame.input.info(), frame.output.info(), &scene->parameters, scene->settings) {
        this->setUserData(&scene->shape);
    }
};
using PlainHost = SceneHost<PluginHost_MEMORY_Impl>;

/// Renders the scene through the dispatcher.
[[nodiscard]] Frame render(Scene scene);

} // namespace orbel::test
