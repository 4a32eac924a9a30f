// The passes over a whole raster that every frame makes, and one transfer mode of each kind.

#include "bench/FrameCopy.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "pixel/ColourOps.h"
#include "pixel/TransferModes.h"

#include <array>
#include <string>

namespace orbel::bench {

namespace {

/// Two rasters of a picture: soft gradients of every component.
struct Rasters {
    MemoryImage firstImage;
    MemoryImage secondImage;
    PluginRaster_MEMORY_Impl first;
    PluginRaster_MEMORY_Impl second;
    ParameterStore parameters;
    PluginHost_MEMORY_Impl host{firstImage.info(), secondImage.info(), &parameters, {}};

    Rasters(const Size& size, RasterFormat format)
        : firstImage(size.width, size.height, format, {}),
          secondImage(size.width, size.height, format, {}),
          first(firstImage.info()),
          second(secondImage.info()) {}
    template<typename T>
    void paint(T maximum) {
        const std::size_t count =
            firstImage.rowSize() * static_cast<std::size_t>(firstImage.info().height) / sizeof(T);
        auto* const a = reinterpret_cast<T*>(firstImage.info().data);
        auto* const b = reinterpret_cast<T*>(secondImage.info().data);
        for (std::size_t i = 0; i < count; ++i) {
            a[i] = static_cast<T>(static_cast<double>(i % 1009) / 1009 * maximum);
            b[i] = static_cast<T>(static_cast<double>(i % 1511) / 1511 * maximum);
        }
    }
};

template<class P>
using Pass = void (*)(Rasters&);

template<class P, class T, class W, class F, class Format>
struct Passes {
    static constexpr std::array<double, 4> COLOUR{0.9, 0.4, 0.2, 0.0};

    static void fill(Rasters& r) {
        FillColor<P, T, W, F, Format>(P{}, &r.host, COLOUR.data(), &r.first);
    }
    static void unPremultiply(Rasters& r) { UnPremult<P, T, W, F, Format>(P{}, &r.host, &r.first); }
    static void premultiply(Rasters& r) { Premult<P, T, W, F, Format>(P{}, &r.host, &r.first); }
    static void multiplyAlpha(Rasters& r) {
        MultiplyAlpha<P, T, W, F, Format>(P{}, &r.host, 0.5F, &r.first);
    }
    static void modulate(Rasters& r) {
        HSLModulate<P, T, W, F, Format>(P{}, &r.host, &r.first, 0.1, 0.2, 0.3);
    }
    static void crossFade(Rasters& r) {
        BlendImages<P, T, W, F, Format>(P{}, &r.host, 0.25F, &r.first, &r.second);
    }
    template<int Code>
    static void composite(Rasters& r) {
        TransferComposite<P, T, W, F, Format>(P{}, T{}, W{}, F{}, Format{}, &r.host, Code, 0.9, 1.0,
                                              &r.first, &r.second, &r.first, false, false, false);
    }
};

template<class P>
void pass(benchmark::State& state, const Size& size, RasterFormat format, Pass<P> run) {
    Rasters rasters(size, format);
    const auto paint = [&] {
        rasters.paint(static_cast<typename PixelTypes<P>::Component>(P::MAX_VALUE()));
    };
    paint();
    measure(
        state, rasters.firstImage.info(), [] {}, [&] { run(rasters); });
}

template<class P>
void registerFormat(const Size& size, RasterFormat format, const std::string& formatName) {
    using All = Passes<P, typename PixelTypes<P>::Component, typename PixelTypes<P>::Wide,
                       typename PixelTypes<P>::Float, typename P::FORMAT>;
    const std::pair<const char*, Pass<P>> passes[] = {
        {"fill", All::fill},
        {"unpremultiply", All::unPremultiply},
        {"premultiply", All::premultiply},
        {"multiply-alpha", All::multiplyAlpha},
        {"modulate", All::modulate},
        {"cross-fade", All::crossFade},
        {"mode-in-front", All::template composite<2>},
        {"mode-multiply", All::template composite<5>},
        {"mode-soft-light", All::template composite<8>},
        {"mode-colour-dodge", All::template composite<23>},
        {"mode-luminosity", All::template composite<16>},
    };
    for (const auto& [name, run] : passes) {
        const std::string full = std::string("pass/") + name + "/" + size.name + "/" + formatName;
        benchmark::RegisterBenchmark(full.c_str(), pass<P>, size, format, run)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
}

const bool g_registered = [] {
    registerFormat<PIXEL_RGBA8>(SIZES[0], RF_RGBA8, "8-bit");
    registerFormat<PIXEL_RGBA16>(SIZES[0], RF_RGBA16, "16-bit");
    registerFormat<PIXEL_RGBA32>(SIZES[0], RF_RGBA32F, "float");
    registerFormat<PIXEL_RGBA8>(SIZES[1], RF_RGBA8, "8-bit");
    return true;
}();

} // namespace

} // namespace orbel::bench
