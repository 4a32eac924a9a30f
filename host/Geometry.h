#pragma once

#include <cstdint>

namespace orbel {

/// A pixel rectangle of the host interface: signed 16-bit edges, all four of which belong to it.
struct Vx_Rect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};

/// A host's 3 x 3 float matrix; only passed through to hosts that transform images themselves.
struct Vx_FloatMatrix;

} // namespace orbel
