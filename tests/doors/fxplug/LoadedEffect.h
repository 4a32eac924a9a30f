#pragma once

#include "doors/memory/ParameterStore.h"
#include "host/PluginHost.h"

#include <memory>
#include <string>
#include <vector>

namespace orbel::fxtest {

enum class Application { FinalCutPro = 0, Motion = 1, FinalCutExpress = 2 };
enum class Field { None = 0, Upper = 1, Lower = 2 };

struct FrameRequest {
    double frame = 0.0;
    double scaleX = 1.0;
    double scaleY = 1.0;
    Field field = Field::None;
};

/// The rows of a frame that belong to a field: every second one from row 0 (upper) or 1 (lower).
[[nodiscard]] RasterInfo fieldRows(const RasterInfo& frame, Field field);

struct Project;

/// The effect as a host application holds it: loaded from the built bundle by its principal class,
/// its parameters declared into a project. One application per process at a time.
class LoadedEffect {
public:
    /// Throws `std::runtime_error` when the bundle does not load.
    LoadedEffect(const std::string& bundle, Application application);
    ~LoadedEffect();
    LoadedEffect(const LoadedEffect&) = delete;
    LoadedEffect& operator=(const LoadedEffect&) = delete;

    /// In the user's units.
    void setTrack(int param, const std::vector<Keyframe>& keys);
    /// Chooses a shape file.
    void setShape(const std::string& path);

    /// Has one image rendered as the application hands it over: rows upside down and ARGB in
    /// Motion, single fields of half the height and half the pixel aspect ratio in Final Cut. Both
    /// images top-down, of the same size and format; `pixelAspect` is the full frame's. False when
    /// the effect answers NO or writes behind a row.
    bool render(const FrameRequest& request, const RasterInfo& input, const RasterInfo& output);

    [[nodiscard]] Project& project();
    /// The Objective-C object, borrowed.
    [[nodiscard]] void* effect();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace orbel::fxtest
