#include "studio/Playback.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <future>
#include <string_view>
#include <thread>
#include <utility>

namespace orbel::studio {

namespace {

std::string headOf(long frame, const ShownPicture& picture) {
    const std::array<std::uint32_t, 4> numbers{static_cast<std::uint32_t>(frame),
                                               static_cast<std::uint32_t>(picture.width),
                                               static_cast<std::uint32_t>(picture.height),
                                               static_cast<std::uint32_t>(picture.rgba.size())};
    std::string head;
    for (const std::uint32_t number : numbers) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            head += static_cast<char>((number >> shift) & 255U);
        }
    }
    return head;
}

std::string_view bytesOf(const ShownPicture& picture) {
    return {reinterpret_cast<const char*>(picture.rgba.data()), picture.rgba.size()};
}

} // namespace

Playback::Playback(Preview* preview, FrameWish wish, Serial serial, std::function<bool()> isGone,
                   const PlayedRange& range)
    : m_preview(preview),
      m_wish(std::move(wish)),
      m_serial(std::move(serial)),
      m_isGone(std::move(isGone)),
      m_range(range) {}

void Playback::run(BodySink& sink) {
    m_begin = Clock::now();
    const long count = m_range.frames.count();
    std::future<bool> sending;
    for (long step = 0; step < count || m_range.loop; step = nextStep(step)) {
        const long frame = m_range.frames.first + step % count;
        std::optional<ShownPicture> picture = draw(frame);
        const bool sent = !sending.valid() || sending.get();
        if (!picture || !sent) {
            return;
        }
        std::this_thread::sleep_until(dueTime(step));
        sending = std::async(std::launch::async, [&sink, frame, shown = std::move(*picture)] {
            return sink.write(headOf(frame, shown)) && sink.write(bytesOf(shown));
        });
    }
}

Playback::Clock::time_point Playback::dueTime(long step) const {
    const std::chrono::duration<double> passed(static_cast<double>(step) / m_range.rate);
    return m_begin + std::chrono::duration_cast<Clock::duration>(passed);
}

long Playback::nextStep(long step) const {
    const std::chrono::duration<double> passed = Clock::now() - m_begin;
    return std::max(step + 1, static_cast<long>(passed.count() * m_range.rate));
}

/// Nothing when nobody waits for it any more.
std::optional<ShownPicture> Playback::draw(long frame) {
    m_wish.frame = frame;
    try {
        return m_preview->draw(m_wish, [this] { return m_serial.isSuperseded() || m_isGone(); })
            .picture;
    } catch (const Superseded&) {
        return std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt; // where the clip ends, most likely: that frame alone tells why
    }
}

} // namespace orbel::studio
