#include "doors/ofx/FrameRender.h"

#include "doors/memory/MemoryImage.h"
#include "doors/ofx/FramePixels.h"
#include "doors/ofx/platform/OfxNames.h"
#include "host/Numeric.h"
#include "render/RenderDispatch.h"
#include "render/StrokeFrame.h"

#include <cmath>
#include <limits>

namespace orbel::ofx {

namespace {

constexpr int TRANSFER_NONE = 0; // menu index

double usable(double value, double fallback) {
    return std::isfinite(value) && value > 0.0 ? value : fallback;
}

/// The frame's height at the scale of the render as the host knows it beside its images; 0 when it
/// does not.
double fullHeight(const EffectInstance& instance, const OFXRenderTime& when) {
    for (auto* const clip : {instance.source(), instance.output()}) {
        OfxRectD region{};
        if (clip != nullptr && instance.suites().effect->clipGetRegionOfDefinition(
                                   clip, when.time, &region) == STAT_OK) {
            const double height = (region.y2 - region.y1) * when.scaleY;
            if (std::isfinite(height) && height > 0.0) {
                return height;
            }
        }
    }
    return 0.0;
}

// A field at half height, or one that the host stretched to the full one: only the height tells.
FieldImage describeFields(const ClipImage& image, double full) {
    const OfxRectI& rect = isUsableFrame(image.region()) ? image.region() : image.bounds();
    const bool tall = full > 0.0 && rect.y2 - rect.y1 > 0.75 * full;
    return {&image, tall ? Field::None : fieldNamed(image.field())};
}

OfxRectI inFullRows(const OfxRectI& rect, Field only) {
    return only == Field::None ? rect : OfxRectI{rect.x1, 2 * rect.y1, rect.x2, 2 * rect.y2};
}

// The project's frame in pixels, for images without a useful region of their own.
OfxRectI projectFrame(const EffectInstance& instance, const OFXRenderTime& when, float aspect) {
    const Properties effect = instance.properties();
    const double scaleX = when.scaleX / static_cast<double>(aspect);
    const double x = effect.getDouble(PROP_PROJECT_OFFSET, 0.0, 0) * scaleX;
    const double y = effect.getDouble(PROP_PROJECT_OFFSET, 0.0, 1) * when.scaleY;
    const double width = effect.getDouble(PROP_PROJECT_SIZE, 0.0, 0) * scaleX;
    const double height = effect.getDouble(PROP_PROJECT_SIZE, 0.0, 1) * when.scaleY;
    return {saturateTo<int>(std::floor(x)), saturateTo<int>(std::floor(y)),
            saturateTo<int>(std::ceil(x + width)), saturateTo<int>(std::ceil(y + height))};
}

/// One frame on its way: the host's images, the working copies, and what the host wants back.
class FrameRender {
public:
    FrameRender(const EffectInstance& instance, const Properties& arguments)
        : m_instance(instance),
          m_arguments(arguments),
          m_when(renderTime(arguments)),
          m_source(instance.suites(), instance.source(), m_when.time),
          m_output(instance.suites(), instance.output(), m_when.time) {}

    OfxStatus render() {
        if (!m_output.exists()) {
            return STAT_FAILED;
        }
        if (!m_output.format() || (m_source.exists() && m_source.format() != m_output.format())) {
            return STAT_ERR_IMAGE_FORMAT;
        }
        const double full = fullHeight(m_instance, m_when);
        const FieldImage target = describeFields(m_output, full);
        const FieldImage origin =
            m_source.exists() ? describeFields(m_source, full) : FieldImage{nullptr};
        const OfxRectI frame = chooseFrame(target, origin);

        const Delivery wanted = delivery(target);
        const PlainPictures pictures = prepare(origin, target, frame, wanted);
        PluginHost_OFX_Impl host(&m_instance, m_when, pictures);
        const int error = Render(&host);
        if (error != 0) {
            // Nobody looks at a frame that was given up.
            return host.wasAborted() ? STAT_OK : STAT_FAILED;
        }
        if (pictures.output.data == m_outputCopy.info().data) {
            copyOut(pictures.output, frame, target, wanted);
        }
        return STAT_OK;
    }

private:
    // The output's own region: what the host asks for is a part of it, whatever it has in memory.
    [[nodiscard]] OfxRectI chooseFrame(const FieldImage& target, const FieldImage& origin) const {
        const OfxRectI candidates[] = {
            inFullRows(m_output.region(),
                       isUsableFrame(m_output.region()) ? target.only : Field::None),
            inFullRows(m_source.region(),
                       isUsableFrame(m_source.region()) ? origin.only : Field::None),
            projectFrame(m_instance, m_when, m_output.pixelAspect())};
        for (const OfxRectI& candidate : candidates) {
            if (isUsableFrame(candidate)) {
                return candidate;
            }
        }
        return inFullRows(m_output.bounds(), target.only);
    }

    // The host's own images where that comes to the same: the output where all of it is wanted, the
    // source where the core has nothing to change in it.
    PlainPictures prepare(const FieldImage& origin, const FieldImage& target, const OfxRectI& frame,
                          const Delivery& wanted) {
        PlainPictures pictures{{}, {}, alpha()};
        std::optional<RasterInfo> output = asFrame(target, frame);
        if (!output || !isWhole(wanted)) {
            m_outputCopy = buffer(frame);
            output = m_outputCopy.info();
        }
        pictures.output = *output;
        const std::optional<RasterInfo> input = asFrame(origin, frame);
        if (input && pictures.alpha.source == SourceAlpha::Straight && !overlap(*input, *output)) {
            pictures.input = *input;
        } else {
            m_inputCopy = buffer(frame);
            pictures.input = m_inputCopy.info();
            copyIn(origin, frame, pictures.input);
        }
        return pictures;
    }

    [[nodiscard]] bool isWhole(const Delivery& wanted) const {
        const OfxRectI& bounds = m_output.bounds();
        const OfxRectI& window = wanted.window;
        return wanted.field == Field::None && !wanted.opaque && window.x1 <= bounds.x1 &&
               window.y1 <= bounds.y1 && window.x2 >= bounds.x2 && window.y2 >= bounds.y2;
    }

    [[nodiscard]] MemoryImage buffer(const OfxRectI& frame) const {
        MemoryImage image(frame.x2 - frame.x1, frame.y2 - frame.y1, *m_output.format(), RowLayout{},
                          NewPixels::Undefined);
        image.setPixelAspect(m_output.pixelAspect());
        return image;
    }

    // The output clip's own answer comes first; without any the output is as the source is.
    [[nodiscard]] std::string outputState() const {
        std::string state =
            m_instance.suites().ofClip(m_instance.output()).getString(PROP_PREMULTIPLICATION);
        if (state.empty()) {
            state = m_output.premultiplication();
        }
        return state.empty() ? m_source.premultiplication() : state;
    }

    [[nodiscard]] AlphaHandling alpha() const {
        AlphaHandling handling;
        const std::string& source = m_source.premultiplication();
        if (!m_source.exists() || source == IMAGE_UNPREMULTIPLIED) {
            handling.source = SourceAlpha::Straight; // nothing is straight, too
        } else if (source == IMAGE_OPAQUE) {
            handling.source = SourceAlpha::Opaque;
        }
        const std::string output = outputState();
        // Over an opaque picture the result is opaque: there is nothing to multiply by.
        const bool opaque = output == IMAGE_OPAQUE && handling.source == SourceAlpha::Opaque &&
                            m_instance.intValue(PARAM_TRANSFER_MODE, m_when.time) != TRANSFER_NONE;
        if (output == IMAGE_UNPREMULTIPLIED || opaque) {
            handling.output = OutputAlpha::Straight;
        }
        return handling;
    }

    [[nodiscard]] Delivery delivery(const FieldImage& target) const {
        Delivery delivery{m_arguments.getRect(PROP_RENDER_WINDOW)};
        if (delivery.window.x1 >= delivery.window.x2 || delivery.window.y1 >= delivery.window.y2) {
            delivery.window = m_output.bounds();
        }
        if (target.only == Field::None) {
            delivery.field = fieldNamed(m_arguments.getString(PROP_FIELD_TO_RENDER));
        }
        delivery.opaque = outputState() == IMAGE_OPAQUE;
        return delivery;
    }

    const EffectInstance& m_instance;
    const Properties& m_arguments;
    OFXRenderTime m_when;
    ClipImage m_source;
    ClipImage m_output;
    MemoryImage m_inputCopy;
    MemoryImage m_outputCopy;
};

} // namespace

OFXRenderTime renderTime(const Properties& arguments) {
    const double time = arguments.getDouble(PROP_TIME, 0.0);
    return {std::isfinite(time) ? time : 0.0,
            usable(arguments.getDouble(PROP_RENDER_SCALE, 1.0, 0), 1.0),
            usable(arguments.getDouble(PROP_RENDER_SCALE, 1.0, 1), 1.0),
            arguments.getInt(PROP_QUALITY_DRAFT, 0) != 0};
}

OfxStatus renderFrame(const EffectInstance& instance, const Properties& arguments) {
    return FrameRender(instance, arguments).render();
}

OfxStatus isIdentity(const EffectInstance& instance, const Properties& arguments,
                     const Properties& answer) {
    const OFXRenderTime when = renderTime(arguments);
    PluginHost_OFX_Impl host(&instance, when, {});
    // Under "None" nothing drawn is nothing at all, and the source is something else.
    if (!StrokeFrame(&host).drawsNothing() ||
        instance.intValue(PARAM_TRANSFER_MODE, when.time) == TRANSFER_NONE) {
        return STAT_REPLY_DEFAULT;
    }
    const HostSuites& suites = instance.suites();
    if (suites.ofClip(instance.source()).getString(PROP_PREMULTIPLICATION) !=
            suites.ofClip(instance.output()).getString(PROP_PREMULTIPLICATION) ||
        !answer.setString(PROP_NAME, CLIP_SOURCE)) {
        return STAT_REPLY_DEFAULT;
    }
    answer.setDouble(PROP_TIME, when.time);
    return STAT_OK;
}

} // namespace orbel::ofx
