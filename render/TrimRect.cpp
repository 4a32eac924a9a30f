#include "render/TrimRect.h"

#include "host/Numeric.h"

namespace orbel {

namespace {

bool raise(std::int16_t* edge, int lowest) {
    if (*edge >= lowest) {
        return false;
    }
    *edge = saturateTo<std::int16_t>(lowest);
    return true;
}

bool lower(std::int16_t* edge, int highest) {
    if (*edge <= highest) {
        return false;
    }
    *edge = saturateTo<std::int16_t>(highest);
    return true;
}

} // namespace

int Vx_TrimRect(Vx_Rect* rect, int width, int height) {
    bool trimmed = raise(&rect->left, 0);
    trimmed |= lower(&rect->right, width - 1);
    trimmed |= raise(&rect->top, 0);
    trimmed |= lower(&rect->bottom, height - 1);
    if (rect->left >= rect->right || rect->top >= rect->bottom) {
        return 0;
    }
    return trimmed ? 2 : 1;
}

} // namespace orbel
