#include "studio/Preview.h"

#include "media/PixelConversion.h"
#include "pixel/TraitsByFormat.h"
#include "scene/PixelFormats.h"
#include "scene/SceneReader.h"
#include "studio/FileStamp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <utility>

namespace orbel::studio {

namespace {

constexpr std::size_t mostKeptTabs = 8;
/// The size while something moves, and that of the exact picture.
constexpr std::size_t keptSizes = 2;
constexpr std::size_t mostReadings = 8;
/// How long a hand may rest between two pictures and still move something.
constexpr std::chrono::milliseconds restOfHand{250};

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

std::shared_ptr<const Scene> Preview::read(const FrameWish& wish) {
    const std::lock_guard lock(m_readingsMutex);
    const auto known =
        std::find_if(m_readings.begin(), m_readings.end(),
                     [&](const Reading& reading) { return reading.file == wish.file; });
    if (known != m_readings.end() && known->text == wish.text) {
        return known->scene;
    }
    Problems problems;
    std::optional<Scene> scene = readScene(wish.text, wish.file, &problems);
    if (!scene || !problems.empty()) {
        throw BadScene{problems};
    }
    if (known != m_readings.end()) {
        m_readings.erase(known);
    }
    m_readings.push_front({wish.text, wish.file, std::make_shared<const Scene>(std::move(*scene))});
    if (m_readings.size() > mostReadings) {
        m_readings.pop_back();
    }
    return m_readings.front().scene;
}

std::set<std::string> Preview::filesOnShow() {
    const std::lock_guard lock(m_readingsMutex);
    std::set<std::string> files;
    for (const Reading& reading : m_readings) {
        files.insert(fileOf(reading.scene->input));
        files.insert(reading.scene->shape.value_or(""));
    }
    files.erase("");
    return files;
}

bool Preview::isBusy() const {
    return m_waiting > 0 || std::chrono::steady_clock::now() - m_lastTurn.load() < restOfHand;
}

/// A request's turn to draw. Whatever takes long, the conversion of a drawing, is done before, so
/// that it keeps nobody else waiting.
class Preview::Turn {
public:
    Turn(Preview* preview, const FrameWish& wish, const Aborted& aborted)
        : m_preview(preview), m_aborted(aborted) {
        ++preview->m_waiting;
        try {
            m_scene = preview->read(wish);
            m_convert = preview->m_conversions->until(aborted);
            convertAhead();
            m_lock = std::unique_lock(preview->m_drawing);
            endIfAborted();
        } catch (...) {
            leave();
            throw;
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { leave(); }

    [[nodiscard]] FrameOnDemand& full() { return m_preview->m_stages.full(m_scene, m_convert); }

private:
    void convertAhead() const {
        Problems problems;
        if (m_scene->needsConversion() && m_convert && !m_convert(*m_scene, &problems)) {
            endIfAborted();
            throw BadScene{problems};
        }
    }
    void endIfAborted() const {
        if (m_aborted && m_aborted()) {
            throw Superseded{};
        }
    }
    void leave() const {
        m_preview->m_lastTurn = std::chrono::steady_clock::now();
        --m_preview->m_waiting;
    }

    Preview* m_preview;
    const Aborted& m_aborted;
    std::shared_ptr<const Scene> m_scene;
    ShapeConverter m_convert;
    std::unique_lock<std::mutex> m_lock;
};

ShownFrame Preview::draw(const FrameWish& wish, const Aborted& aborted) {
    Turn turn(this, wish, aborted);
    FrameOnDemand& full = turn.full();
    const FrameSize whole = full.plan().size;
    const FrameSize size = shownSize(wish, whole);
    FrameOnDemand* const reduced = size == whole || wish.exact ? nullptr : m_stages.reduced(size);
    const DrawnFrame drawn = reduced != nullptr
                                 ? drawOn(*reduced, wish.frame, wish.before, aborted)
                                 : m_stages.drawFull(wish.frame, wish.before, aborted);
    if (reduced != nullptr || size == whole) {
        return {showRaster(drawn.raster, drawn.alpha, wish.ground), reduced == nullptr};
    }
    const Picture straight = straightPicture(drawn);
    return {showPicture(m_scaler.scale(straight, size.width, size.height), wish.ground), true};
}

json Preview::pixel(const FrameWish& wish, int x, int y, const Aborted& aborted) {
    Turn turn(this, wish, aborted);
    const FrameSize size = turn.full().plan().size;
    if (x >= size.width || y >= size.height) {
        throw Refusal{400, "this place is outside the picture", ""};
    }
    return pixelOf(m_stages.drawFull(wish.frame, wish.before, aborted), x, y);
}

void Preview::withPlan(const FrameWish& wish, const Aborted& aborted,
                       const std::function<void(ScenePlan&)>& action) {
    Turn turn(this, wish, aborted);
    action(turn.full().plan());
}

Answer Preview::answer(const std::string& tab, const Serial& serial,
                       std::optional<std::uint64_t> since, ShownFrame frame, double milliseconds) {
    const std::lock_guard lock(m_tabsMutex);
    std::deque<Kept>& kept = tabOf(tab).kept;
    ShownPicture& picture = frame.picture;
    const auto old = std::find_if(kept.begin(), kept.end(), [&](const Kept& one) {
        return one.picture.width == picture.width && one.picture.height == picture.height;
    });
    const bool comparable = old != kept.end() && since && *since == old->serial;
    const ShownRect rect = comparable ? changedRect(old->picture, picture)
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
    if (old != kept.end()) {
        kept.erase(old);
    }
    kept.push_front({serial.number(), std::move(picture)});
    if (kept.size() > keptSizes) {
        kept.pop_back();
    }
    return answer;
}

} // namespace orbel::studio
