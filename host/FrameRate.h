#pragma once

namespace orbel {

/// Frames per second as an exact fraction; both parts are positive.
struct FrameRate {
    int numerator = 30;
    int denominator = 1;

    /// Frames per second, rounded to a double.
    [[nodiscard]] double perSecond() const {
        return static_cast<double>(numerator) / static_cast<double>(denominator);
    }
    friend bool operator==(const FrameRate&, const FrameRate&) = default;
};

} // namespace orbel
