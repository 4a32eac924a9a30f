#pragma once

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "pixel/PixelTraits.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <list>
#include <random>
#include <vector>

namespace orbel::test {

using AllPixelFormats = testing::Types<PIXEL_ARGB8, PIXEL_RGBA8, PIXEL_ARGB16, PIXEL_RGBA16,
                                       PIXEL_ARGB32, PIXEL_RGBA32>;

template<typename P>
constexpr RasterFormat rasterFormat() {
    constexpr bool alphaFirst = P::FORMAT::alpha == 0;
    if constexpr (sizeof(typename P::Component) == 1) {
        return alphaFirst ? RF_ARGB8 : RF_RGBA8;
    } else if constexpr (sizeof(typename P::Component) == 2) {
        return alphaFirst ? RF_ARGB16 : RF_RGBA16;
    } else {
        return alphaFirst ? RF_ARGB32F : RF_RGBA32F;
    }
}

/// Red, green, blue, alpha, whatever their order in memory.
template<typename T>
using Components = std::array<T, 4>;

/// A guarded image of one format, told and asked in its own components.
template<typename P>
class PixelImage : public GuardedImage {
public:
    using T = typename P::Component;

    PixelImage(int width, int height, RowLayout layout)
        : GuardedImage(width, height, rasterFormat<P>(), layout) {}

    using GuardedImage::info;
    RasterInfo& info() { return m_info; }
    Components<T> get(int x, int y) const {
        const T* const pixel = at(x, y);
        using Order = typename P::FORMAT;
        return {pixel[Order::red], pixel[Order::green], pixel[Order::blue], pixel[Order::alpha]};
    }
    void set(int x, int y, const Components<T>& value) {
        T* const pixel = at(x, y);
        using Order = typename P::FORMAT;
        pixel[Order::red] = value[0];
        pixel[Order::green] = value[1];
        pixel[Order::blue] = value[2];
        pixel[Order::alpha] = value[3];
    }
    std::vector<Components<T>> pixels() const {
        std::vector<Components<T>> all;
        for (int i = 0; i < info().width * info().height; ++i) {
            all.push_back(get(i % info().width, i / info().width));
        }
        return all;
    }
    void fillFrom(const std::vector<Components<T>>& all) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            const auto index = static_cast<int>(i);
            set(index % info().width, index / info().width, all[i]);
        }
    }
    PluginRaster_API* raster() { return &m_rasters.emplace_back(info()); }

private:
    T* at(int x, int y) const {
        return static_cast<T*>(static_cast<void*>(info().row(y))) + std::ptrdiff_t{4} * x;
    }

    std::list<PluginRaster_MEMORY_Impl> m_rasters;
};

/// The row layouts that every pass is tried on.
inline const std::vector<RowLayout> rowLayouts{{0, false}, {48, false}, {0, true}, {48, true}};

/// A host that has nothing but rasters.
struct RasterHost {
    ParameterStore parameters;
    PluginHost_MEMORY_Impl host{RasterInfo{}, RasterInfo{}, &parameters, MemoryHostSettings{}};

    PluginHost_API* get() { return &host; }
};

/// Repeatable pixels in which transparent and opaque ones and both ends of the range are frequent;
/// float components leave the range 0 to 1.
template<typename P>
std::vector<Components<typename P::Component>> randomPixels(std::size_t count, unsigned seed) {
    using T = typename P::Component;
    constexpr double maximum = P::MAX_VALUE();
    std::mt19937 engine(seed);
    const auto draw = [&](double low, double high) {
        const double unit = static_cast<double>(engine()) / 4294967296.0;
        return static_cast<T>(low + (high - low) * unit);
    };
    const auto component = [&]() -> T {
        switch (engine() % 8) {
        case 0:
            return T{0};
        case 1:
            return static_cast<T>(maximum);
        default:
            return P::is32Bit() ? draw(-0.3, 1.4) : draw(0.0, maximum + 1.0);
        }
    };
    std::vector<Components<T>> pixels(count);
    for (auto& pixel : pixels) {
        pixel = {component(), component(), component(), component()};
        const auto kind = engine() % 4;
        if (kind < 2) {
            pixel[3] = kind == 0 ? T{0} : static_cast<T>(maximum);
        } else if (pixel[3] < T{0}) {
            pixel[3] = T{0};
        }
    }
    return pixels;
}

/// Pixels whose float components are NaN, infinite and huge; the ends of the range elsewhere.
template<typename P>
std::vector<Components<typename P::Component>> wildPixels() {
    using T = typename P::Component;
    std::vector<T> values{T{0}, T{1}, std::numeric_limits<T>::max()};
    if constexpr (P::is32Bit()) {
        const T infinity = std::numeric_limits<T>::infinity();
        values = {T{0},      T{1},      std::numeric_limits<T>::quiet_NaN(),
                  infinity,  -infinity, T{1e30F},
                  T{-1e30F}, T{1e-40F}};
    }
    std::vector<Components<T>> pixels;
    for (const T a : values) {
        for (const T b : values) {
            for (const T alpha : values) {
                pixels.push_back({a, b, a, alpha});
            }
        }
    }
    return pixels;
}

/// Opacities and amounts no caller should pass, but might.
inline const std::vector<float> wildAmounts{0.0F,
                                            0.5F,
                                            -1.0F,
                                            300.0F,
                                            -1e6F,
                                            1e30F,
                                            -1e30F,
                                            std::numeric_limits<float>::infinity(),
                                            std::numeric_limits<float>::quiet_NaN()};

} // namespace orbel::test
