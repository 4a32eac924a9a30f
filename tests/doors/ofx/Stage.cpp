#include "tests/doors/ofx/Stage.h"

#include "doors/ofx/ParameterNames.h"
#include "params/ParameterTable.h"
#include "tests/support/Pictures.h"

#include <cstring>

namespace orbel::ofxtest {

namespace {

std::string stateOf(SourceAlpha alpha) {
    return alpha == SourceAlpha::Straight ? "OfxImageAlphaUnPremultiplied"
           : alpha == SourceAlpha::Opaque ? "OfxImageOpaque"
                                          : "OfxImageAlphaPremultiplied";
}

std::string stateOf(OutputAlpha alpha) {
    return alpha == OutputAlpha::Straight ? "OfxImageAlphaUnPremultiplied"
                                          : "OfxImageAlphaPremultiplied";
}

} // namespace

Shot::Shot() {
    parameters.set(PARAM_PRESETS, 3);
    parameters.set(PARAM_THICKNESS, 4);
    parameters.set(PARAM_TRANSFER_MODE, 1);
    parameters.set(PARAM_COLOR, {0.9, 0.4, 0.2});
    parameters.set(PARAM_POSITION_XY, {0.625, 0.5625});
    parameters.set(PARAM_FEATHER, 40);
}

MemoryImage Shot::picture() const {
    MemoryImage image(width(), height(), format, RowLayout{});
    image.setPixelAspect(static_cast<float>(aspect));
    test::paint(image.info(), [this](int x, int y) {
        const double u = static_cast<double>(x) / width();
        const double v = static_cast<double>(y) / height();
        const double cover = x < width() / 2 ? 1.0 : v;
        return test::Rgba{u * cover, v * cover, (1 - u) * cover, cover};
    });
    return image;
}

Layouts::Layouts(const Shot& shot) {
    source.bounds = source.region = output.bounds = output.region = shot.frame;
    source.alpha = stateOf(shot.alpha.source);
    output.alpha = stateOf(shot.alpha.output);
    source.aspect = output.aspect = shot.aspect;
}

Stage::Stage(const LoadedPlugin* plugin, const Shot& shot, const Layouts& layouts,
             const std::string& context)
    : source(shot.format, layouts.source),
      output(shot.format, layouts.output),
      instance(plugin, context),
      m_parameters(shot.parameters) {
    EXPECT_EQ(instance.created(), 0);
    const OfxRectI& region = layouts.source.region;
    if (region.x2 - region.x1 == shot.width() && region.y2 - region.y1 == shot.height()) {
        source.takeFrom(shot.picture().info());
    }
    connectParameters(&m_parameters, instance.effect());
    instance.param("shapeFile").text = shot.shapeFile;
    instance.param("shapeText").text = shot.shapeText;
    const std::pair<const char*, HostPicture*> pictures[] = {{"Source", &source},
                                                             {"Output", &output}};
    for (const auto& [name, picture] : pictures) {
        Clip& clip = instance.clip(name);
        clip.image = [found = &picture->properties](OfxTime) { return found; };
        clip.properties.set("OfxImageClipPropConnected", {1});
        clip.properties.set("OfxImageEffectPropPreMultiplication", {picture->layout().alpha});
        clip.region = {static_cast<double>(shot.frame.x1) * shot.aspect / shot.scaleX,
                       static_cast<double>(shot.frame.y1) / shot.scaleY,
                       static_cast<double>(shot.frame.x2) * shot.aspect / shot.scaleX,
                       static_cast<double>(shot.frame.y2) / shot.scaleY};
    }
    arguments.readOnly = true;
    arguments.set("OfxPropTime", {shot.time});
    arguments.set("OfxImageEffectPropRenderScale", {shot.scaleX, shot.scaleY});
    arguments.set("OfxImageEffectPropFieldToRender", {std::string("OfxFieldBoth")});
    setWindow(layouts.output.bounds);
}

void Stage::setWindow(const OfxRectI& window) {
    arguments.set("OfxImageEffectPropRenderWindow", {window.x1, window.y1, window.x2, window.y2});
}

void connectParameters(const ParameterStore* store, Effect& effect) {
    for (const ParameterRow& row : parameterTable()) {
        if (!row.isParameter() || row.kind == RowKind::Custom) {
            continue;
        }
        effect.params.at(ofx::parameterName(row.id))->value = [store, &row](OfxTime time) {
            ParameterValue value{};
            store->evaluate(row.id, time, value);
            if (row.kind == RowKind::Point) {
                value[1] = 1.0 - value[1];
            }
            return value;
        };
    }
}

testing::AssertionResult shows(const HostPicture& actual, const RasterInfo& expected,
                               const OfxRectI& frame, const OfxRectI& window) {
    const auto bytes = static_cast<std::size_t>(actual.bytesPerPixel());
    const std::vector<std::uint8_t> nothing(bytes, 0);
    for (int y = window.y1; y < window.y2; ++y) {
        for (int x = window.x1; x < window.x2; ++x) {
            const bool inside = x >= frame.x1 && x < frame.x2 && y >= frame.y1 && y < frame.y2;
            const std::uint8_t* const pixel =
                inside ? expected.row(frame.y2 - 1 - y) +
                             static_cast<std::size_t>(x - frame.x1) * bytes
                       : nothing.data();
            const std::uint8_t* const found =
                actual.row(y) + static_cast<std::size_t>(x - actual.layout().bounds.x1) * bytes;
            if (std::memcmp(found, pixel, bytes) != 0) {
                return testing::AssertionFailure() << "pixel " << x << ", " << y << " differs";
            }
        }
    }
    return actual.intactOutside(window) ? testing::AssertionSuccess()
                                        : testing::AssertionFailure() << "written outside";
}

} // namespace orbel::ofxtest
