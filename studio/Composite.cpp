#include "studio/Composite.h"

#include "media/ComponentScale.h"
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

/// `premultiplied`: R, G, B, A in 8 bits.
void putOver(const std::array<std::uint8_t, 4>& premultiplied, const Ground& ground, int x, int y,
             std::uint8_t* shown) {
    const unsigned rest = opaque - premultiplied[3];
    for (std::size_t i = 0; i < 3; ++i) {
        const unsigned below = (groundAt(ground, x, y, i) * rest + opaque / 2) / opaque;
        shown[i] = static_cast<std::uint8_t>(std::min(premultiplied[i] + below, opaque));
    }
    shown[3] = opaque;
}

/// `pixelAt(x, y)` gives premultiplied 8-bit components.
template<typename PixelAt>
ShownPicture show(int width, int height, const Ground& ground, const PixelAt& pixelAt) {
    ShownPicture shown{width, height, std::vector<std::uint8_t>(componentCount(width, height))};
    std::uint8_t* to = shown.rgba.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, to += 4) {
            putOver(pixelAt(x, y), ground, x, y, to);
        }
    }
    return shown;
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

ShownPicture showRaster(const RasterInfo& raster, const Ground& ground) {
    ShownPicture shown;
    withTraits(raster.pixelFormat, [&](auto traits) {
        using P = decltype(traits);
        using Format = typename P::FORMAT;
        shown = show(raster.width, raster.height, ground, [&](int x, int y) {
            const void* const row = raster.row(y);
            const auto* const pixel = static_cast<const typename P::Component*>(row) + 4 * x;
            return std::array<std::uint8_t, 4>{scaleComponent<std::uint8_t>(pixel[Format::red]),
                                               scaleComponent<std::uint8_t>(pixel[Format::green]),
                                               scaleComponent<std::uint8_t>(pixel[Format::blue]),
                                               scaleComponent<std::uint8_t>(pixel[Format::alpha])};
        });
    });
    return shown;
}

ShownPicture showPicture(const Picture& picture, const Ground& ground) {
    const auto& components = std::get<std::vector<std::uint8_t>>(picture.components);
    return show(picture.width, picture.height, ground, [&](int x, int y) {
        const std::uint8_t* const pixel =
            components.data() + componentCount(picture.width, y) + 4 * static_cast<std::size_t>(x);
        const unsigned alpha = pixel[3];
        std::array<std::uint8_t, 4> premultiplied{0, 0, 0, pixel[3]};
        for (std::size_t i = 0; i < 3; ++i) {
            premultiplied[i] = static_cast<std::uint8_t>((pixel[i] * alpha + opaque / 2) / opaque);
        }
        return premultiplied;
    });
}

ShownRect changedRect(const ShownPicture& before, const ShownPicture& after) {
    const std::size_t row = componentCount(after.width, 1);
    int top = after.height;
    int bottom = 0;
    int left = after.width;
    int right = 0;
    for (int y = 0; y < after.height; ++y) {
        const std::uint8_t* const a = before.rgba.data() + static_cast<std::size_t>(y) * row;
        const std::uint8_t* const b = after.rgba.data() + static_cast<std::size_t>(y) * row;
        if (std::memcmp(a, b, row) == 0) {
            continue;
        }
        top = std::min(top, y);
        bottom = y + 1;
        const auto first = std::mismatch(a, a + row, b).first - a;
        auto last = static_cast<std::ptrdiff_t>(row) - 1;
        while (a[last] == b[last]) {
            --last;
        }
        left = std::min(left, static_cast<int>(first / 4));
        right = std::max(right, static_cast<int>(last / 4) + 1);
    }
    return bottom == 0 ? ShownRect{} : ShownRect{left, top, right - left, bottom - top};
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
