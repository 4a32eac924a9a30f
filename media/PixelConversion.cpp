#include "media/PixelConversion.h"

#include "media/ComponentScale.h"
#include "pixel/RowKernels.h"
#include "pixel/TraitsByFormat.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <type_traits>

namespace orbel {

namespace {

/// Calls `action` with the pixel traits of a layout.
template<typename Action>
void withPixel(RasterFormat format, const Action& action) {
    if (!withTraits(format, action)) {
        throw std::invalid_argument("a raster of this layout cannot be read or written");
    }
}

template<typename P>
typename P::Component* pixelsOf(const RasterInfo& raster, int y) {
    void* row = raster.row(y);
    return static_cast<typename P::Component*>(row);
}

/// Puts straight components, converted to the depth of the raster, where its layout has them.
template<typename P, typename Source>
void fillRow(const Source* source, typename P::Component* pixel, int width) {
    using Component = typename P::Component;
    using Format = typename P::FORMAT;
    for (int x = 0; x < width; ++x, source += 4, pixel += 4) {
        pixel[Format::red] = scaleComponent<Component>(source[0]);
        pixel[Format::green] = scaleComponent<Component>(source[1]);
        pixel[Format::blue] = scaleComponent<Component>(source[2]);
        pixel[Format::alpha] = scaleComponent<Component>(source[3]);
    }
}

/// `colour` / `alpha` as a component of type `To`.
template<typename To, typename From>
To divideByAlpha(From colour, From alpha) {
    if constexpr (std::is_floating_point_v<From>) {
        return alpha > From{0} ? scaleComponent<To>(colour / alpha) : To{0};
    } else {
        if (alpha == 0) {
            return 0;
        }
        const std::uint32_t part = std::min(colour, alpha);
        return static_cast<To>((part * componentMax<To> + alpha / 2U) / alpha);
    }
}

/// `colour` × `alpha` as a component of type `To`.
template<typename To, typename From>
To multiplyByAlpha(From colour, From alpha) {
    if constexpr (std::is_floating_point_v<From>) {
        return scaleComponent<To>(colour * alpha);
    } else if constexpr (std::is_floating_point_v<To>) {
        return scaleComponent<To>(colour) * scaleComponent<To>(alpha);
    } else {
        constexpr std::uint64_t whole = std::uint64_t{componentMax<From>} * componentMax<From>;
        return static_cast<To>((std::uint64_t{colour} * alpha * componentMax<To> + whole / 2) /
                               whole);
    }
}

// How a pixel leaves the raster. What the raster carries and what is wanted meet in `colour`.

struct KeptAlpha {
    template<typename To, typename From>
    static To alpha(From alpha) {
        return scaleComponent<To>(alpha);
    }
};

struct Divided : KeptAlpha {
    template<typename To, typename From>
    static To colour(From colour, From alpha) {
        return divideByAlpha<To>(colour, alpha);
    }
};

struct Kept : KeptAlpha {
    template<typename To, typename From>
    static To colour(From colour, From /*alpha*/) {
        return scaleComponent<To>(colour);
    }
};

struct KeptWhereSeen : KeptAlpha {
    template<typename To, typename From>
    static To colour(From colour, From alpha) {
        return alpha > From{0} ? scaleComponent<To>(colour) : To{0};
    }
};

struct Multiplied : KeptAlpha {
    template<typename To, typename From>
    static To colour(From colour, From alpha) {
        return multiplyByAlpha<To>(colour, alpha);
    }
};

template<typename Way>
struct OverBlack : Way {
    template<typename To, typename From>
    static To alpha(From /*alpha*/) {
        return componentMax<To>;
    }
};

template<typename Way, typename P, typename To>
void encodeRow(const typename P::Component* pixel, const EncodedView<To>& view, int y, int width) {
    using Format = typename P::FORMAT;
    std::ptrdiff_t at = y * view.rowStep;
    for (int x = 0; x < width; ++x, pixel += 4, at += view.pixelStep) {
        const auto alpha = pixel[Format::alpha];
        view.red[at] = Way::template colour<To>(pixel[Format::red], alpha);
        view.green[at] = Way::template colour<To>(pixel[Format::green], alpha);
        view.blue[at] = Way::template colour<To>(pixel[Format::blue], alpha);
        view.alpha[at] = Way::template alpha<To>(alpha);
    }
}

template<typename Way, typename To>
void encode(const RasterInfo& raster, const EncodedView<To>& view) {
    withPixel(raster.pixelFormat, [&](auto trait) {
        using P = decltype(trait);
        for (int y = 0; y < raster.height; ++y) {
            encodeRow<Way, P>(pixelsOf<P>(raster, y), view, y, raster.width);
        }
    });
}

/// One of two ways, by what the raster carries.
template<typename FromPremultiplied, typename FromStraight, typename To>
void encode(const RasterInfo& raster, OutputAlpha from, const EncodedView<To>& view) {
    if (from == OutputAlpha::Premultiplied) {
        encode<FromPremultiplied>(raster, view);
    } else {
        encode<FromStraight>(raster, view);
    }
}

/// A straight pixel that nobody sees has no colour, so that none shows where alpha gets lost.
template<typename P>
void clearUnseen(typename P::Component* pixel, int width) {
    using Format = typename P::FORMAT;
    for (int x = 0; x < width; ++x, pixel += 4) {
        if (!(pixel[Format::alpha] > typename P::Component{0})) {
            for (const int colour : Format::colours) {
                pixel[colour] = 0;
            }
        }
    }
}

} // namespace

void fillRaster(const Picture& picture, const RasterInfo& raster, SourceAlpha alpha) {
    if (picture.width != raster.width || picture.height != raster.height) {
        throw std::invalid_argument("a picture can only fill a raster of its own size");
    }
    const std::size_t rowLength = componentCount(picture.width, 1);
    const auto fill = [&](auto trait, const auto& components) {
        using P = decltype(trait);
        const RowKernels<P>& rows = rowKernels<P>();
        for (int y = 0; y < raster.height; ++y) {
            auto* const row = pixelsOf<P>(raster, y);
            fillRow<P>(components.data() + static_cast<std::size_t>(y) * rowLength, row,
                       raster.width);
            if (alpha == SourceAlpha::Premultiplied) {
                rows.premult(row, raster.width);
            } else if (picture.hasAlpha) {
                clearUnseen<P>(row, raster.width);
            }
        }
    };
    withPixel(raster.pixelFormat, [&](auto trait) {
        std::visit([&](const auto& components) { fill(trait, components); }, picture.components);
    });
}

void encodeStraight(const RasterInfo& raster, OutputAlpha from,
                    const EncodedView<std::uint8_t>& view) {
    encode<Divided, KeptWhereSeen>(raster, from, view);
}

void encodeStraight(const RasterInfo& raster, OutputAlpha from,
                    const EncodedView<std::uint16_t>& view) {
    encode<Divided, KeptWhereSeen>(raster, from, view);
}

void encodePremultiplied(const RasterInfo& raster, OutputAlpha from,
                         const EncodedView<float>& view) {
    encode<Kept, Multiplied>(raster, from, view);
}

void encodeOpaque(const RasterInfo& raster, OutputAlpha from,
                  const EncodedView<std::uint8_t>& view) {
    encode<OverBlack<Kept>, OverBlack<Multiplied>>(raster, from, view);
}

} // namespace orbel
