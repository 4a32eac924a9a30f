#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace orbel {

/// Truncates toward zero through a wide integer and keeps the low bits, so that a value outside the
/// range of `T` wraps instead of being undefined. NaN and magnitudes from 2^63 up give 0.
/// For a floating `T` the value is only rounded to `T`.
template<typename T, typename V>
[[nodiscard]] constexpr T truncateTo(V value) {
    if constexpr (std::is_floating_point_v<T> || std::is_integral_v<V>) {
        return static_cast<T>(value);
    } else {
        constexpr V limit = static_cast<V>(9223372036854775808.0);
        if (!(value > -limit && value < limit)) {
            return T{0};
        }
        return static_cast<T>(static_cast<std::int64_t>(value));
    }
}

/// Truncates toward zero and saturates at the ends of `T`; NaN gives 0.
template<typename T>
[[nodiscard]] constexpr T saturateTo(double value) {
    constexpr double low = std::numeric_limits<T>::min();
    constexpr double high = std::numeric_limits<T>::max();
    if (value >= high) {
        return std::numeric_limits<T>::max();
    }
    if (value <= low) {
        return std::numeric_limits<T>::min();
    }
    return value == value ? static_cast<T>(value) : T{0};
}

} // namespace orbel
