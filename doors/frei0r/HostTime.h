#pragma once

#include <optional>
#include <string_view>

namespace orbel::frei0r {

enum class TimeUnit { Seconds, Milliseconds };

/// What a host counts time in, by the file whose code calls the plug-in: milliseconds in FFmpeg's
/// filter library and in programs that carry it within themselves, seconds everywhere else. The
/// same for every frame, in whatever order frames come.
[[nodiscard]] TimeUnit guessTimeUnit(std::string_view callingFile);

/// The unit that the control "Time Unit" names; nothing when it leaves it to a guess.
[[nodiscard]] std::optional<TimeUnit> namedTimeUnit(double number);

/// The frame at a time of the host. Less than a millisecond's rounding away from a whole frame is
/// that frame; times that are none, or beyond every film, count as the nearest that is.
[[nodiscard]] double frameAt(double time, TimeUnit unit, double framesPerSecond);

/// Frames per second from a text: a number or a fraction. Nothing for anything else and for rates
/// outside 0.001 to 1000000. 29.97 and its relatives stand for 30000/1001 and so on.
[[nodiscard]] std::optional<double> readFrameRate(std::string_view text);

/// The exact rate that a decimal one stands for.
[[nodiscard]] double exactRate(double framesPerSecond);

} // namespace orbel::frei0r
