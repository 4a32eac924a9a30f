#include "media/ScalePicture.h"

#include "media/AlignedPlane.h"
#include "media/ComponentScale.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <tuple>
#include <type_traits>

namespace orbel {

namespace {

template<typename T>
zimgxx::zimage_format planeFormat(int width, int height) {
    zimgxx::zimage_format format;
    format.width = static_cast<unsigned>(width);
    format.height = static_cast<unsigned>(height);
    format.color_family = ZIMG_COLOR_GREY;
    format.pixel_range = ZIMG_RANGE_FULL;
    format.depth = sizeof(T) * 8;
    format.pixel_type = std::is_floating_point_v<T> ? ZIMG_PIXEL_FLOAT
                        : sizeof(T) == 1            ? ZIMG_PIXEL_BYTE
                                                    : ZIMG_PIXEL_WORD;
    return format;
}

/// Scales the components of a picture, each by itself, from one size to another.
template<typename T>
class PlaneScaler {
public:
    /// The planes for red, green, blue and alpha.
    using Planes = std::array<Plane<T>, 4>;

    /// Prepares scaling between these sizes, unless that was done for the last picture.
    void prepare(const Picture& from, int width, int height) try {
        const std::array<int, 4> sizes{from.width, from.height, width, height};
        if (m_sizes == sizes) {
            return;
        }
        m_sizes = {}; // nothing is prepared until everything is
        zimgxx::zfilter_graph_builder_params how = bicubic();
        if constexpr (std::is_floating_point_v<T>) {
            how.cpu_type = ZIMG_CPU_NONE; // vectors round floats in their own way on each processor
        }
        m_graph = zimgxx::FilterGraph::build(planeFormat<T>(from.width, from.height),
                                             planeFormat<T>(width, height), &how);
        m_scratch.resize(cellsFor(m_graph.get_tmp_size()));
        for (std::size_t c = 0; c < m_from.size(); ++c) {
            m_from[c].resize(from.width, from.height);
            m_to[c].resize(width, height);
        }
        m_sizes = sizes;
    } catch (const zimgxx::zerror& error) {
        failToScale(error);
    }

    [[nodiscard]] Planes& from() { return m_from; }
    [[nodiscard]] Planes& to() { return m_to; }

    /// Scales the first planes.
    void run(std::size_t planes) try {
        for (std::size_t c = 0; c < planes; ++c) {
            m_graph.process(m_from[c].view().as_const(), m_to[c].view(), m_scratch.data());
        }
    } catch (const zimgxx::zerror& error) {
        failToScale(error);
    }

private:
    zimgxx::FilterGraph m_graph;
    std::array<int, 4> m_sizes{};
    Planes m_from;
    Planes m_to;
    Cells m_scratch;
};

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

/// Calls `visit(pixel, red, green, blue, alpha)` for every pixel of a picture and its samples in
/// planes of the same size.
template<typename Pixel, typename T, typename Visit>
void forEachPixel(Pixel* __restrict pixel, int width, int height, std::array<Plane<T>, 4>& planes,
                  const Visit& visit) {
    for (int y = 0; y < height; ++y, pixel += std::ptrdiff_t{4} * width) {
        T* const __restrict red = planes[0].row(y);
        T* const __restrict green = planes[1].row(y);
        T* const __restrict blue = planes[2].row(y);
        T* const __restrict alpha = planes[3].row(y);
        for (std::ptrdiff_t x = 0; x < width; ++x) {
            visit(pixel + 4 * x, red[x], green[x], blue[x], alpha[x]);
        }
    }
}

} // namespace

class PictureScaler::Workspace {
public:
    template<typename T>
    const Picture& scaled(const Picture& picture, int width, int height) {
        if (m_result.depth() != picture.depth() || m_result.width != width ||
            m_result.height != height) {
            m_result = makePicture<T>(width, height, picture.hasAlpha);
        }
        m_result.hasAlpha = picture.hasAlpha;
        if (picture.hasAlpha) {
            scaleWithAlpha<T>(picture);
        } else {
            scaleOpaque<T>(picture);
        }
        return m_result;
    }

private:
    /// Integers with an alpha are scaled at 16 bits, so that dividing by it again loses nothing at
    /// 8.
    template<typename T>
    using Working = std::conditional_t<std::is_floating_point_v<T>, float, std::uint16_t>;

    template<typename T>
    void scaleOpaque(const Picture& picture) {
        const T* const pixels = std::get<std::vector<T>>(picture.components).data();
        T* const result = std::get<std::vector<T>>(m_result.components).data();
        auto& scaler = std::get<PlaneScaler<T>>(m_scalers);
        scaler.prepare(picture, m_result.width, m_result.height);
        forEachPixel(pixels, picture.width, picture.height, scaler.from(),
                     [](const T* pixel, T& red, T& green, T& blue, T& /*alpha*/) {
                         red = pixel[0];
                         green = pixel[1];
                         blue = pixel[2];
                     });
        scaler.run(3);
        forEachPixel(result, m_result.width, m_result.height, scaler.to(),
                     [](T* pixel, T red, T green, T blue, T /*alpha*/) {
                         pixel[0] = red;
                         pixel[1] = green;
                         pixel[2] = blue;
                         pixel[3] = componentMax<T>;
                     });
    }

    template<typename T>
    void scaleWithAlpha(const Picture& picture) {
        using W = Working<T>;
        const T* const pixels = std::get<std::vector<T>>(picture.components).data();
        T* const result = std::get<std::vector<T>>(m_result.components).data();
        auto& scaler = std::get<PlaneScaler<W>>(m_scalers);
        scaler.prepare(picture, m_result.width, m_result.height);
        forEachPixel(pixels, picture.width, picture.height, scaler.from(),
                     [](const T* pixel, W& red, W& green, W& blue, W& alpha) {
                         alpha = scaleComponent<W>(pixel[3]);
                         red = multiplied(scaleComponent<W>(pixel[0]), alpha);
                         green = multiplied(scaleComponent<W>(pixel[1]), alpha);
                         blue = multiplied(scaleComponent<W>(pixel[2]), alpha);
                     });
        scaler.run(4);
        forEachPixel(result, m_result.width, m_result.height, scaler.to(),
                     [](T* pixel, W red, W green, W blue, W alpha) {
                         pixel[0] = scaleComponent<T>(divided(red, alpha));
                         pixel[1] = scaleComponent<T>(divided(green, alpha));
                         pixel[2] = scaleComponent<T>(divided(blue, alpha));
                         pixel[3] = scaleComponent<T>(alpha);
                     });
    }

    std::tuple<PlaneScaler<std::uint8_t>, PlaneScaler<std::uint16_t>, PlaneScaler<float>> m_scalers;
    Picture m_result;
};

PictureScaler::PictureScaler() : m_workspace(std::make_unique<Workspace>()) {}

PictureScaler::~PictureScaler() = default;

const Picture& PictureScaler::scale(const Picture& picture, int width, int height) {
    if (width < 1 || height < 1 || picture.width < 1 || picture.height < 1) {
        throw std::invalid_argument("a picture has at least one pixel");
    }
    switch (picture.depth()) {
    case PictureDepth::U8:
        return m_workspace->scaled<std::uint8_t>(picture, width, height);
    case PictureDepth::U16:
        return m_workspace->scaled<std::uint16_t>(picture, width, height);
    default:
        return m_workspace->scaled<float>(picture, width, height);
    }
}

} // namespace orbel
