#include "studio/Preview.h"

#include "media/PixelConversion.h"
#include "pixel/TraitsByFormat.h"
#include "scene/PixelFormats.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <utility>

namespace orbel::studio {

namespace {

constexpr std::size_t mostKeptTabs = 8;

/// Never larger than the scene: enlarging is the page's business.
FrameSize shownSize(const FrameWish& wish, FrameSize scene) {
    if (wish.width <= 0 || wish.height <= 0) {
        return scene;
    }
    return {std::min(wish.width, scene.width), std::min(wish.height, scene.height)};
}

Picture straightPicture(const DrawnFrame& drawn) {
    const RasterInfo& raster = drawn.raster;
    Picture picture = makePicture<std::uint8_t>(raster.width, raster.height, true);
    auto* const to = std::get<std::vector<std::uint8_t>>(picture.components).data();
    encodeStraight(raster, drawn.alpha,
                   {to, to + 1, to + 2, to + 3, 4, std::ptrdiff_t{4} * raster.width});
    return picture;
}

/// The components as the format counts them. What the picture does not hold is computed, and
/// rounded where the format is of whole numbers.
template<typename P>
std::array<double, 4> converted(const std::array<double, 4>& pixel, double factor) {
    std::array<double, 4> result = pixel;
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] *= factor;
        if constexpr (std::is_integral_v<typename P::Component>) {
            result[i] = std::min(std::round(result[i]), static_cast<double>(P::MAX_VALUE()));
        }
    }
    return result;
}

json pixelOf(const DrawnFrame& drawn, int x, int y) {
    json answer;
    withTraits(drawn.raster.pixelFormat, [&](auto traits) {
        using P = decltype(traits);
        using Format = typename P::FORMAT;
        const void* const row = drawn.raster.row(y);
        const auto* const at = static_cast<const typename P::Component*>(row) + 4 * x;
        const auto value = [&](int index) { return static_cast<double>(at[index]); };
        const std::array<double, 4> held{value(Format::red), value(Format::green),
                                         value(Format::blue), value(Format::alpha)};
        const auto most = static_cast<double>(P::MAX_VALUE());
        const bool premultiplied = drawn.alpha == OutputAlpha::Premultiplied;
        const double shrink = held[3] / most;
        const double factor = premultiplied ? (held[3] > 0 ? 1 / shrink : 0.0) : shrink;
        const std::array<double, 4> other = converted<P>(held, factor);
        answer["premultiplied"] = premultiplied ? held : other;
        answer["straight"] = premultiplied ? other : held;
    });
    answer["format"] = nameOf(drawn.raster.pixelFormat);
    return answer;
}

} // namespace

Preview::Tab& Preview::tabOf(const std::string& name) {
    const auto found = m_tabs.find(name);
    if (found == m_tabs.end() && m_tabs.size() == mostKeptTabs) {
        const auto oldest =
            std::min_element(m_tabs.begin(), m_tabs.end(), [](const auto& a, const auto& b) {
                return a.second.used < b.second.used;
            });
        m_tabs.erase(oldest);
    }
    Tab& tab = m_tabs[name];
    tab.used = ++m_uses;
    return tab;
}

Serial Preview::announce(const std::string& tab, std::uint64_t number) {
    const std::lock_guard lock(m_tabsMutex);
    const auto& newest = tabOf(tab).newest;
    if (number > *newest) {
        *newest = number;
    }
    return {newest, number == 0 ? newest->load() : number};
}

ShownFrame Preview::draw(const FrameWish& wish, const Aborted& aborted) {
    const std::lock_guard lock(m_drawing);
    if (aborted()) {
        throw Superseded{};
    }
    Stage& full = m_stages.full(wish.text, wish.file);
    const FrameSize whole = full.plan().size;
    const FrameSize size = shownSize(wish, whole);
    Stage* const reduced = size == whole || wish.exact ? nullptr : m_stages.reduced(size);
    Stage& stage = reduced != nullptr ? *reduced : full;
    const DrawnFrame drawn = stage.draw(wish.frame, wish.before, aborted);
    if (reduced != nullptr || size == whole) {
        return {showRaster(drawn.raster, drawn.alpha, wish.ground), reduced == nullptr};
    }
    const Picture straight = straightPicture(drawn);
    return {showPicture(m_scaler.scale(straight, size.width, size.height), wish.ground), true};
}

json Preview::pixel(const FrameWish& wish, int x, int y, const Aborted& aborted) {
    const std::lock_guard lock(m_drawing);
    if (aborted()) {
        throw Superseded{};
    }
    Stage& stage = m_stages.full(wish.text, wish.file);
    const FrameSize size = stage.plan().size;
    if (x >= size.width || y >= size.height) {
        throw Refusal{400, "this place is outside the picture", ""};
    }
    return pixelOf(stage.draw(wish.frame, wish.before, aborted), x, y);
}

void Preview::withPlan(const FrameWish& wish, const std::function<void(ScenePlan&)>& action) {
    const std::lock_guard lock(m_drawing);
    action(m_stages.full(wish.text, wish.file).plan());
}

Answer Preview::answer(const std::string& tab, const Serial& serial,
                       std::optional<std::uint64_t> since, ShownFrame frame, double milliseconds) {
    const std::lock_guard lock(m_tabsMutex);
    Tab& kept = tabOf(tab);
    ShownPicture& picture = frame.picture;
    const bool comparable = since && *since == kept.keptSerial &&
                            picture.width == kept.kept.width && picture.height == kept.kept.height;
    const ShownRect rect = comparable ? changedRect(kept.kept, picture)
                                      : ShownRect{0, 0, picture.width, picture.height};
    Answer answer;
    answer.type = "application/octet-stream";
    answer.body = cut(picture, rect);
    answer.headers = {{"X-Orbel-Width", std::to_string(picture.width)},
                      {"X-Orbel-Height", std::to_string(picture.height)},
                      {"X-Orbel-Rect", std::to_string(rect.x) + " " + std::to_string(rect.y) + " " +
                                           std::to_string(rect.width) + " " +
                                           std::to_string(rect.height)},
                      {"X-Orbel-Serial", std::to_string(serial.number())},
                      {"X-Orbel-Exact", frame.exact ? "1" : "0"},
                      {"X-Orbel-Milliseconds", std::to_string(milliseconds)}};
    kept.kept = std::move(picture);
    kept.keptSerial = serial.number();
    return answer;
}

} // namespace orbel::studio
