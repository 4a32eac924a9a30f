#pragma once

#include "studio/Preview.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace orbel::studio {

/// What is played.
struct PlayedRange {
    FrameRange frames;
    double rate = 0.0; ///< frames per second
    bool loop = false; ///< over and over, until nobody looks any more
};

/// Frames of a scene at its own rate, as they become due. What cannot be drawn in time is left out;
/// while one is sent the next is drawn. Each is 16 bytes (frame, width, height, bytes, as 32-bit
/// little-endian numbers) and its pixels.
class Playback {
public:
    /// `preview` is borrowed; `isGone` may be asked by any thread.
    Playback(Preview* preview, FrameWish wish, Serial serial, std::function<bool()> isGone,
             const PlayedRange& range);

    /// Plays until the end, or until the tab wants something newer.
    void run(BodySink& sink);

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] Clock::time_point dueTime(long step) const;
    [[nodiscard]] long nextStep(long step) const;
    [[nodiscard]] std::optional<ShownPicture> draw(long frame);

    Preview* m_preview;
    FrameWish m_wish;
    Serial m_serial;
    std::function<bool()> m_isGone;
    PlayedRange m_range;
    Clock::time_point m_begin;
};

} // namespace orbel::studio
