#pragma once

#include "tests/doors/CoreFrame.h"
#include "tests/doors/ofx/HostPicture.h"
#include "tests/doors/ofx/LoadedPlugin.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orbel::ofxtest {

/// A frame as a host that loads the bundle asks for it, and what the core makes of it.
struct Shot : test::CoreFrame {
    RasterFormat format = RF_RGBA8;
    OfxRectI frame{0, 0, 52, 38};

    Shot();
    Shot& set(int param, double value) {
        parameters.set(param, value);
        return *this;
    }
    [[nodiscard]] int width() const { return frame.x2 - frame.x1; }
    [[nodiscard]] int height() const { return frame.y2 - frame.y1; }
    /// The picture under the stroke, as everything that follows shows it.
    [[nodiscard]] MemoryImage picture() const;
    [[nodiscard]] MemoryImage rendered(const MemoryImage& input) const {
        return over(input.info());
    }
    [[nodiscard]] MemoryImage rendered() const { return rendered(picture()); }
};

/// The host's pictures of a shot; the layouts' frames are the shot's unless told otherwise.
struct Layouts {
    PictureLayout source;
    PictureLayout output;

    explicit Layouts(const Shot& shot);
};

/// An instance with a shot's parameters and clips, ready to render into its own pictures. The
/// source has the shot's picture, unless it lies in a frame of another size.
class Stage {
public:
    Stage(const LoadedPlugin* plugin, const Shot& shot, const Layouts& layouts,
          const std::string& context = "OfxImageEffectContextFilter");

    HostPicture source;
    HostPicture output;
    HostedInstance instance;
    PropertySet arguments; ///< of the render action

    void setWindow(const OfxRectI& window);
    OfxStatus render() { return instance.call("OfxImageEffectActionRender", &arguments); }

private:
    ParameterStore m_parameters;
};

/// Puts a store's values behind the parameters of an instance, points with y upwards.
void connectParameters(const ParameterStore* store, Effect& effect);

/// Whether the pixels of a window are those of a frame, top row first, whose lower left pixel is at
/// (x1, y1) of `frame`; transparent black is expected outside it.
[[nodiscard]] testing::AssertionResult shows(const HostPicture& actual, const RasterInfo& expected,
                                             const OfxRectI& frame, const OfxRectI& window);

} // namespace orbel::ofxtest
