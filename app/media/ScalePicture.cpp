#include "app/media/ScalePicture.h"

#include "app/media/ComponentScale.h"
#include "app/media/Libav.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>
#include <stdexcept>

namespace orbel::app {

namespace {

/// One component of a picture by itself, tightly packed.
template<typename T>
struct Plane {
    int width = 0;
    int height = 0;
    std::vector<T> values;
};

template<typename T>
Plane<T> makePlane(int width, int height) {
    return {width, height, std::vector<T>(componentCount(width, height) / 4)};
}

// --- Integer pictures: the scaling library, in 16 bits ---

libav::FramePtr toFrame(const Plane<std::uint16_t>& plane) {
    libav::FramePtr frame = libav::makeFrame(AV_PIX_FMT_GRAY16, plane.width, plane.height);
    const auto rowLength = static_cast<std::size_t>(plane.width);
    for (int y = 0; y < plane.height; ++y) {
        std::memcpy(frame->data[0] + static_cast<std::ptrdiff_t>(y) * frame->linesize[0],
                    plane.values.data() + static_cast<std::size_t>(y) * rowLength,
                    rowLength * sizeof(std::uint16_t));
    }
    return frame;
}

Plane<std::uint16_t> fromFrame(const AVFrame& frame) {
    Plane<std::uint16_t> plane = makePlane<std::uint16_t>(frame.width, frame.height);
    const auto rowLength = static_cast<std::size_t>(plane.width);
    for (int y = 0; y < plane.height; ++y) {
        std::memcpy(plane.values.data() + static_cast<std::size_t>(y) * rowLength,
                    frame.data[0] + static_cast<std::ptrdiff_t>(y) * frame.linesize[0],
                    rowLength * sizeof(std::uint16_t));
    }
    return plane;
}

Plane<std::uint16_t> scalePlane(const Plane<std::uint16_t>& plane, int width, int height) {
    libav::silenceLog();
    const libav::FramePtr from = toFrame(plane);
    const libav::FramePtr to = libav::makeFrame(AV_PIX_FMT_GRAY16, width, height);
    const auto scaler = libav::owned<libav::ScalerPtr>(sws_getContext(
        plane.width, plane.height, AV_PIX_FMT_GRAY16, width, height, AV_PIX_FMT_GRAY16,
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_BITEXACT, nullptr, nullptr, nullptr));
    if (sws_scale(scaler.get(), from->data, from->linesize, 0, plane.height, to->data,
                  to->linesize) < 0) {
        throw std::bad_alloc();
    }
    return fromFrame(*to);
}

// --- Float pictures: the library clips them to 0..1, so they are resampled here ---

/// The weights of the source samples that make one sample.
struct Taps {
    std::ptrdiff_t first = 0;
    std::vector<float> weights;
};

/// Bicubic kernel with B = 0, C = 0.6, the scaling library's own choice.
double bicubic(double x) {
    constexpr double c = 0.6;
    const double t = std::fabs(x);
    if (t < 1.0) {
        return ((2.0 - c) * t + (c - 3.0)) * t * t + 1.0;
    }
    return t < 2.0 ? ((-c * t + 5.0 * c) * t - 8.0 * c) * t + 4.0 * c : 0.0;
}

/// Samples lie in the middle of their pixels; the kernel widens when the picture shrinks. Weights
/// that fall outside go to the edge sample.
Taps tapsFor(int position, int from, int to) {
    const double ratio = static_cast<double>(from) / to;
    const double widening = std::max(1.0, ratio);
    const double centre = (position + 0.5) * ratio - 0.5;
    const auto low = static_cast<std::ptrdiff_t>(std::ceil(centre - 2.0 * widening));
    const auto high = static_cast<std::ptrdiff_t>(std::floor(centre + 2.0 * widening));
    Taps taps;
    taps.first = std::clamp<std::ptrdiff_t>(low, 0, from - 1);
    const std::ptrdiff_t last = std::clamp<std::ptrdiff_t>(high, 0, from - 1);
    std::vector<double> weights(static_cast<std::size_t>(last - taps.first + 1));
    double sum = 0.0;
    for (std::ptrdiff_t i = low; i <= high; ++i) {
        const double weight = bicubic((static_cast<double>(i) - centre) / widening);
        weights[static_cast<std::size_t>(std::clamp(i, taps.first, last) - taps.first)] += weight;
        sum += weight;
    }
    for (const double weight : weights) {
        taps.weights.push_back(static_cast<float>(weight / sum));
    }
    return taps;
}

std::vector<Taps> allTaps(int from, int to) {
    std::vector<Taps> taps;
    taps.reserve(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        taps.push_back(tapsFor(i, from, to));
    }
    return taps;
}

float weighted(const float* values, std::ptrdiff_t step, const Taps& taps) {
    float sum = 0.0F;
    const float* value = values + taps.first * step;
    for (const float weight : taps.weights) {
        sum += weight * *value;
        value += step;
    }
    return sum;
}

Plane<float> scaleRows(const Plane<float>& plane, int width) {
    Plane<float> result = makePlane<float>(width, plane.height);
    const std::vector<Taps> taps = allTaps(plane.width, width);
    auto out = result.values.begin();
    for (int y = 0; y < plane.height; ++y) {
        const float* row = plane.values.data() + static_cast<std::ptrdiff_t>(y) * plane.width;
        for (const Taps& each : taps) {
            *out++ = weighted(row, 1, each);
        }
    }
    return result;
}

Plane<float> scaleColumns(const Plane<float>& plane, int height) {
    Plane<float> result = makePlane<float>(plane.width, height);
    auto out = result.values.begin();
    for (const Taps& taps : allTaps(plane.height, height)) {
        for (int x = 0; x < plane.width; ++x) {
            *out++ = weighted(plane.values.data() + x, plane.width, taps);
        }
    }
    return result;
}

Plane<float> scalePlane(const Plane<float>& plane, int width, int height) {
    return scaleColumns(scaleRows(plane, width), height);
}

// --- Both: premultiplied planes in, premultiplied planes out ---

/// Integers are scaled at 16 bits, so that dividing by alpha again loses nothing at 8.
template<typename T>
using Working = std::conditional_t<std::is_floating_point_v<T>, float, std::uint16_t>;

template<typename W>
W multiplied(W colour, W alpha) {
    if constexpr (std::is_floating_point_v<W>) {
        return colour * alpha;
    } else {
        return static_cast<W>((std::uint32_t{colour} * alpha + 32767U) / 65535U);
    }
}

template<typename W>
W divided(W colour, W alpha) {
    if constexpr (std::is_floating_point_v<W>) {
        return alpha > 0.0F ? colour / alpha : 0.0F;
    } else if (alpha == 0) {
        return 0;
    } else {
        const std::uint32_t part = std::min(colour, alpha);
        return static_cast<W>((part * 65535U + alpha / 2U) / alpha);
    }
}

template<typename T>
Plane<Working<T>> takePlane(const Picture& picture, std::size_t channel) {
    using W = Working<T>;
    const std::span<const T> pixels = std::get<std::vector<T>>(picture.components);
    Plane<W> plane = makePlane<W>(picture.width, picture.height);
    for (std::size_t i = 0; i < plane.values.size(); ++i) {
        const W value = scaleComponent<W>(pixels[4 * i + channel]);
        const bool multiply = picture.hasAlpha && channel < 3;
        plane.values[i] =
            multiply ? multiplied(value, scaleComponent<W>(pixels[4 * i + 3])) : value;
    }
    return plane;
}

template<typename T>
Picture scaled(const Picture& picture, int width, int height) {
    using W = Working<T>;
    Picture result = makePicture<T>(width, height, picture.hasAlpha);
    const std::span<T> pixels = std::get<std::vector<T>>(result.components);
    Plane<W> alpha = makePlane<W>(width, height);
    if (picture.hasAlpha) {
        alpha = scalePlane(takePlane<T>(picture, 3), width, height);
    } else {
        std::fill(alpha.values.begin(), alpha.values.end(), componentMax<W>);
    }
    for (std::size_t i = 0; i < alpha.values.size(); ++i) {
        pixels[4 * i + 3] = scaleComponent<T>(alpha.values[i]);
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const Plane<W> plane = scalePlane(takePlane<T>(picture, channel), width, height);
        for (std::size_t i = 0; i < plane.values.size(); ++i) {
            pixels[4 * i + channel] = scaleComponent<T>(divided(plane.values[i], alpha.values[i]));
        }
    }
    return result;
}

} // namespace

Picture scalePicture(const Picture& picture, int width, int height) {
    if (width < 1 || height < 1 || picture.width < 1 || picture.height < 1) {
        throw std::invalid_argument("a picture has at least one pixel");
    }
    switch (picture.depth()) {
    case PictureDepth::U8:
        return scaled<std::uint8_t>(picture, width, height);
    case PictureDepth::U16:
        return scaled<std::uint16_t>(picture, width, height);
    default:
        return scaled<float>(picture, width, height);
    }
}

} // namespace orbel::app
