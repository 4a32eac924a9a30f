#pragma once

#include "media/ScalePicture.h"
#include "studio/Composite.h"
#include "studio/Drawings.h"
#include "studio/Message.h"
#include "studio/Stage.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

namespace orbel::studio {

using nlohmann::json;

/// A picture that a page asks for.
struct FrameWish {
    std::string text; ///< the scene as the page has it
    std::string file; ///< names the scene; where its paths start
    long frame = 0;
    int width = 0; ///< display size; 0 x 0 for the scene's own
    int height = 0;
    Ground ground;
    bool before = false; ///< the input alone
    bool exact = true;   ///< else it may be drawn at the display size
};

/// A picture for a page.
struct ShownFrame {
    ShownPicture picture;
    bool exact = true; ///< the film's own pixels, perhaps made smaller
};

/// Says whether a request is still the newest of its tab.
class Serial {
public:
    Serial(std::shared_ptr<std::atomic<std::uint64_t>> newest, std::uint64_t own)
        : m_newest(std::move(newest)), m_own(own) {}
    [[nodiscard]] std::uint64_t number() const { return m_own; }
    [[nodiscard]] bool isSuperseded() const { return *m_newest > m_own; }

private:
    std::shared_ptr<std::atomic<std::uint64_t>> m_newest;
    std::uint64_t m_own;
};

/// Draws what pages show. One picture at a time; of each tab only the newest. Any thread.
class Preview {
public:
    using Aborted = std::function<bool()>;

    /// Borrows the conversions.
    explicit Preview(Conversions* conversions) : m_conversions(conversions) {}

    /// Makes `number` the newest of its tab: whatever the tab wanted before is given up. 0 is as
    /// new as the newest.
    [[nodiscard]] Serial announce(const std::string& tab, std::uint64_t number);

    /// Throws BadScene, Superseded, MediaError, RenderError, std::bad_alloc.
    [[nodiscard]] ShownFrame draw(const FrameWish& wish, const Aborted& aborted);
    /// `{straight, premultiplied, format}` of one pixel in the scene's own format and full size.
    /// Throws what `draw` throws, and a Refusal for a place outside the picture.
    [[nodiscard]] json pixel(const FrameWish& wish, int x, int y, const Aborted& aborted);
    /// Does something with the plan of a scene in its full size while nothing is drawn.
    void withPlan(const FrameWish& wish, const Aborted& aborted,
                  const std::function<void(ScenePlan&)>& action);

    /// The part of a picture that differs from the one of its size that the tab has kept under
    /// `since`, with its head. Keeps the new one instead.
    [[nodiscard]] Answer answer(const std::string& tab, const Serial& serial,
                                std::optional<std::uint64_t> since, ShownFrame frame,
                                double milliseconds);

    /// Whether a page waits for a picture, or did a moment ago: a hand is moving something.
    [[nodiscard]] bool isBusy() const;
    /// The files that the scenes on show are made of; of a sequence its pattern.
    [[nodiscard]] std::set<std::string> filesOnShow();
    /// Some of them have changed.
    void filesChanged() { m_stages.lookAgain(); }

private:
    /// What a tab shows.
    struct Kept {
        std::uint64_t serial = 0;
        ShownPicture picture;
    };

    struct Tab {
        std::shared_ptr<std::atomic<std::uint64_t>> newest =
            std::make_shared<std::atomic<std::uint64_t>>(0);
        std::deque<Kept> kept; ///< one a size, newest first
        std::uint64_t used = 0;
    };

    /// A scene as it was read last.
    struct Reading {
        std::string text;
        std::string file;
        std::shared_ptr<const Scene> scene;
    };

    class Turn;

    Tab& tabOf(const std::string& name);
    [[nodiscard]] std::shared_ptr<const Scene> read(const FrameWish& wish);

    std::mutex m_tabsMutex;
    std::map<std::string, Tab> m_tabs;
    std::uint64_t m_uses = 0;
    std::mutex m_readingsMutex;
    std::deque<Reading> m_readings; ///< newest first, one a scene
    Conversions* m_conversions;
    std::atomic<int> m_waiting = 0;
    std::atomic<std::chrono::steady_clock::time_point> m_lastTurn{};
    std::mutex m_drawing;
    StageKeeper m_stages;
    PictureScaler m_scaler;
};

} // namespace orbel::studio
