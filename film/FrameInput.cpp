#include "film/FrameInput.h"

#include "host/Numeric.h"
#include "pixel/TraitsByFormat.h"

#include <cstring>

namespace orbel {

namespace {

/// Straight components truncated to the format, then premultiplied with its own arithmetic, exactly
/// as the effect's passes do it.
template<typename P>
void fillColor(const std::array<double, 4>& rgba, const MemoryImage& image) {
    using Component = typename P::Component;
    using Float = typename PixelTypes<P>::Float;
    using Format = typename P::FORMAT;
    const auto alpha = truncateTo<Component>(P::MAX_VALUE() * rgba[3]);
    std::array<Component, componentsPerPixel> pixel{};
    pixel[Format::alpha] = alpha;
    for (std::size_t i = 0; i < Format::colours.size(); ++i) {
        const auto straight = truncateTo<Component>(P::MAX_VALUE() * rgba[i]);
        pixel[static_cast<std::size_t>(Format::colours[i])] = truncateTo<Component>(
            P::multiply(static_cast<Float>(straight), static_cast<Float>(alpha)));
    }
    const RasterInfo& info = image.info();
    for (int y = 0; y < info.height; ++y) {
        std::uint8_t* const row = info.row(y);
        for (std::size_t x = 0; x < image.rowSize(); x += sizeof pixel) {
            std::memcpy(row + x, pixel.data(), sizeof pixel);
        }
    }
}

void fillRaw(const std::vector<std::uint8_t>& frame, const MemoryImage& image) {
    const std::uint8_t* source = frame.data();
    for (int y = 0; y < image.info().height; ++y, source += image.rowSize()) {
        std::memcpy(image.info().row(y), source, image.rowSize());
    }
}

} // namespace

FrameInput::FrameInput(ScenePlan* plan) : m_plan(plan) {
    const bool moves = plan->media != nullptr && plan->media->properties().kind != MediaKind::Still;
    if (!moves) {
        m_still.emplace(plan->size.width, plan->size.height, plan->format, RowLayout{});
        fillStill(*m_still);
    }
}

void FrameInput::fillStill(const MemoryImage& image) {
    if (m_plan->media != nullptr) {
        m_plan->media->fillFrame(0, image.info(), m_plan->alpha.source);
    } else if (!m_plan->rawFrame.empty()) {
        fillRaw(m_plan->rawFrame, image);
    } else {
        withTraits(image.info().pixelFormat,
                   [&](auto traits) { fillColor<decltype(traits)>(m_plan->color.rgba, image); });
    }
}

void FrameInput::fill(long frame, const MemoryImage& image) {
    if (m_still) {
        for (int y = 0; y < image.info().height; ++y) {
            std::memcpy(image.info().row(y), m_still->info().row(y), image.rowSize());
        }
        return;
    }
    const long index = mediaFrame(m_plan->media->properties(), m_plan->frameRate, frame);
    m_plan->media->fillFrame(index, image.info(), m_plan->alpha.source);
}

} // namespace orbel
