#include "studio/Composite.h"

#include "media/ComponentScale.h"
#include "media/PixelConversion.h"
#include "pixel/TraitsByFormat.h"

#include <algorithm>
#include <cstring>

namespace orbel::studio {

namespace {

constexpr int gridSquare = 8;
constexpr std::array<std::uint8_t, 2> gridGreys{44, 54};
constexpr unsigned opaque = 255;

std::optional<unsigned> hexDigit(char c) {
    constexpr std::string_view digits = "0123456789abcdef";
    const std::size_t at = digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c);
    return at == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(at));
}

unsigned groundAt(const Ground& ground, int x, int y, std::size_t component) {
    if (!ground.grid) {
        return ground.colour[component];
    }
    return gridGreys[static_cast<std::size_t>((x / gridSquare + y / gridSquare) & 1)];
}

/// Lays a pixel that is over black already, `alpha` its own, on the ground.
void putOnGround(std::uint8_t* pixel, unsigned alpha, const Ground& ground, int x, int y) {
    const unsigned rest = opaque - alpha;
    pixel[3] = opaque;
    if (rest == 0) {
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const unsigned below = (groundAt(ground, x, y, i) * rest + opaque / 2) / opaque;
        pixel[i] = static_cast<std::uint8_t>(std::min(pixel[i] + below, opaque));
    }
}

ShownPicture emptyPicture(int width, int height) {
    return {width, height, std::vector<std::uint8_t>(componentCount(width, height))};
}

} // namespace

std::optional<Ground> groundOf(std::string_view text) {
    if (text == "grid") {
        return Ground{};
    }
    if (text == "black") {
        return Ground{false, {0, 0, 0}};
    }
    if (text == "white") {
        return Ground{false, {opaque, opaque, opaque}};
    }
    if (text.size() != 7 || text.front() != '#') {
        return std::nullopt;
    }
    Ground ground{false, {}};
    for (std::size_t i = 0; i < 3; ++i) {
        const auto high = hexDigit(text[1 + 2 * i]);
        const auto low = hexDigit(text[2 + 2 * i]);
        if (!high || !low) {
            return std::nullopt;
        }
        ground.colour[i] = static_cast<std::uint8_t>(*high * 16 + *low);
    }
    return ground;
}

ShownPicture showRaster(const RasterInfo& raster, OutputAlpha alpha, const Ground& ground) {
    ShownPicture shown = emptyPicture(raster.width, raster.height);
    std::uint8_t* const to = shown.rgba.data();
    encodeOpaque(raster, alpha, {to, to + 1, to + 2, to + 3, 4, std::ptrdiff_t{4} * raster.width});
    withTraits(raster.pixelFormat, [&](auto traits) {
        using P = decltype(traits);
        std::uint8_t* pixel = to;
        for (int y = 0; y < raster.height; ++y) {
            const void* const row = raster.row(y);
            const auto* from = static_cast<const typename P::Component*>(row) + P::FORMAT::alpha;
            for (int x = 0; x < raster.width; ++x, from += 4, pixel += 4) {
                putOnGround(pixel, scaleComponent<std::uint8_t>(*from), ground, x, y);
            }
        }
    });
    return shown;
}

ShownPicture showPicture(const Picture& picture, const Ground& ground) {
    const auto& components = std::get<std::vector<std::uint8_t>>(picture.components);
    ShownPicture shown = emptyPicture(picture.width, picture.height);
    std::size_t i = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x, i += 4) {
            const unsigned alpha = components[i + 3];
            for (std::size_t c = 0; c < 3; ++c) {
                shown.rgba[i + c] =
                    static_cast<std::uint8_t>((components[i + c] * alpha + opaque / 2) / opaque);
            }
            putOnGround(&shown.rgba[i], alpha, ground, x, y);
        }
    }
    return shown;
}

ShownRect changedRect(const ShownPicture& before, const ShownPicture& after) {
    const std::size_t row = componentCount(after.width, 1);
    int top = after.height;
    int bottom = 0;
    std::size_t left = row; // components outside of which no row has changed yet
    std::size_t right = 0;
    for (int y = 0; y < after.height; ++y) {
        const std::uint8_t* const a = before.rgba.data() + static_cast<std::size_t>(y) * row;
        const std::uint8_t* const b = after.rgba.data() + static_cast<std::size_t>(y) * row;
        if (std::memcmp(a, b, row) == 0) {
            continue;
        }
        top = std::min(top, y);
        bottom = y + 1;
        left = static_cast<std::size_t>(std::mismatch(a, a + left, b).first - a);
        std::size_t last = row;
        while (last > right && a[last - 1] == b[last - 1]) {
            --last;
        }
        right = last;
    }
    const int x = static_cast<int>(left / 4);
    return bottom == 0 ? ShownRect{}
                       : ShownRect{x, top, static_cast<int>((right + 3) / 4) - x, bottom - top};
}

std::string cut(const ShownPicture& picture, const ShownRect& rect) {
    std::string bytes;
    const std::size_t row = componentCount(rect.width, 1);
    bytes.reserve(row * static_cast<std::size_t>(rect.height));
    for (int y = rect.y; y < rect.y + rect.height; ++y) {
        const std::uint8_t* const from =
            picture.rgba.data() + componentCount(picture.width, y) + componentCount(rect.x, 1);
        bytes.append(reinterpret_cast<const char*>(from), row);
    }
    return bytes;
}

} // namespace orbel::studio
