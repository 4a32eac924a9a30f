#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

namespace orbel {

/// The component that stands for 1.0.
template<typename T>
inline constexpr T componentMax = std::is_floating_point_v<T> ? T{1}
                                                              : std::numeric_limits<T>::max();

/// The same value at another depth. Integers are rounded to nearest; a float outside 0..1 is
/// clamped on its way to an integer, and NaN becomes 0.
template<typename To, typename From>
[[nodiscard]] constexpr To scaleComponent(From value) {
    if constexpr (std::is_same_v<To, From>) {
        return value;
    } else if constexpr (std::is_floating_point_v<To>) {
        return static_cast<To>(value) / static_cast<To>(componentMax<From>);
    } else if constexpr (std::is_floating_point_v<From>) {
        if (!(value > From{0})) {
            return To{0};
        }
        if (value >= From{1}) {
            return componentMax<To>;
        }
        return static_cast<To>(value * static_cast<From>(componentMax<To>) + From{0.5});
    } else {
        const std::uint32_t most = componentMax<From>;
        return static_cast<To>((value * std::uint32_t{componentMax<To>} + most / 2) / most);
    }
}

} // namespace orbel
