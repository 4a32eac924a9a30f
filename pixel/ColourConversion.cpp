#include "pixel/ColourConversion.h"

#include "host/Numeric.h"

#include <algorithm>

namespace orbel {
namespace {

constexpr float nearlyNothing = 0.0001F;

float luma(float r, float g, float b) {
    return 0.299F * r + 0.587F * g + 0.114F * b;
}

/// The fully lit colour of a hue in sextants whose strongest component is `hi` and weakest `lo`.
void hueColour(float h, float hi, float lo, float& r, float& g, float& b) {
    const int sector = saturateTo<int>(h);
    const float fraction = h - static_cast<float>(sector);
    const float rising = lo + (hi - lo) * fraction;
    const float falling = lo + (hi - lo) * (1.0F - fraction);
    const auto assign = [&](float red, float green, float blue) {
        r = red;
        g = green;
        b = blue;
    };
    switch (sector) {
    case 0:
        return assign(hi, rising, lo);
    case 1:
        return assign(falling, hi, lo);
    case 2:
        return assign(lo, hi, rising);
    case 3:
        return assign(lo, falling, hi);
    case 4:
        return assign(rising, lo, hi);
    default:
        return assign(hi, lo, falling);
    }
}

} // namespace

float max3(float a, float b, float c) {
    return std::max(std::max(a, b), c);
}

float min3(float a, float b, float c) {
    return std::min(std::min(a, b), c);
}

void rgb2hsl(float r, float g, float b, float& h, float& s, float& l) {
    h = 0.0F;
    s = 0.0F;
    l = luma(r, g, b);
    const float mx = max3(r, g, b);
    const float mn = min3(r, g, b);
    if (mx < nearlyNothing) {
        l = 0.0F;
        return;
    }
    const float delta = mx - mn;
    if (delta < nearlyNothing) {
        return;
    }
    // The second denominator is 2 - (mx - mn), not 2 - mx - mn: meant.
    s = mx + mn < 1.0F ? delta / (mx + mn) : delta / (2.0F - delta);
    if (r == mx) {
        h = (g - b) / delta;
    } else if (g == mx) {
        h = 2.0F + (b - r) / delta;
    } else {
        h = 4.0F + (r - g) / delta;
    }
    if (h < 0.0F) {
        h += 6.0F;
    }
}

void hsl2rgb(float h, float s, float l, float& r, float& g, float& b) {
    const float hi = 0.5F + 0.5F * s;
    hueColour(h, hi, 1.0F - hi, r, g, b);
    const float y = luma(r, g, b);
    if (y >= l) {
        const float scale = l / y;
        r *= scale;
        g *= scale;
        b *= scale;
        return;
    }
    const auto lighten = [&](float c) { return 1.0F - (1.0F - c) * (1.0F - l) / (1.0F - y); };
    r = lighten(r);
    g = lighten(g);
    b = lighten(b);
}

void RGB_to_HSL(float r, float g, float b, float& h, float& s, float& v) {
    h = 0.0F;
    s = 0.0F;
    const float mx = max3(r, g, b);
    const float mn = min3(r, g, b);
    v = mx;
    if (!(mx > mn)) {
        return;
    }
    const float delta = mx - mn;
    s = static_cast<float>(delta * 100.0 / mx);
    const float k = 60.0F / delta;
    if (r == mx) {
        h = (g - b) * k + (b > g ? 360.0F : 0.0F);
    } else if (g == mx) {
        h = 120.0F + (b - r) * k;
    } else {
        h = 240.0F + (r - g) * k;
    }
}

void HSL_to_RGB(float h, float s, float v, float& r, float& g, float& b) {
    if (!(h >= 0.0F)) {
        return;
    }
    const float lo = (1.0F - s) * v;
    const float k = (v - lo) / 60.0F;
    const auto rising = [&](float from) { return (h - from) * k + lo; };
    const auto falling = [&](float to) { return -(h - to) * k + lo; };
    const auto assign = [&](float red, float green, float blue) {
        r = red;
        g = green;
        b = blue;
    };
    if (h <= 60.0F) {
        assign(v, rising(0.0F), lo);
    } else if (h <= 120.0F) {
        assign(falling(120.0F), v, lo);
    } else if (h <= 180.0F) {
        assign(lo, v, rising(120.0F));
    } else if (h <= 240.0F) {
        assign(lo, falling(240.0F), v);
    } else if (h <= 300.0F) {
        assign(rising(240.0F), lo, v);
    } else {
        assign(v, lo, falling(360.0F));
    }
}

} // namespace orbel
