#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

namespace orbel {

enum class PictureDepth { U8, U16, F32 };

/// A picture as it comes out of a file: straight (not premultiplied) alpha, components R, G, B, A,
/// rows top-down and tightly packed. Integer depths use their full range; float is 0..1 but may
/// leave it.
struct Picture {
    /// The alternatives stand in the order of `PictureDepth`.
    using Components =
        std::variant<std::vector<std::uint8_t>, std::vector<std::uint16_t>, std::vector<float>>;

    int width = 0;
    int height = 0;
    bool hasAlpha = false; ///< false: every alpha is the maximum
    Components components; ///< width × height × 4

    [[nodiscard]] PictureDepth depth() const {
        return static_cast<PictureDepth>(components.index());
    }
};

/// How a reader hands out pictures: shared, so that a still is decoded and copied once only.
using PicturePtr = std::shared_ptr<const Picture>;

/// Number of components of a picture of this size.
[[nodiscard]] inline std::size_t componentCount(int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
}

/// An empty picture, every component 0.
template<typename T>
[[nodiscard]] Picture makePicture(int width, int height, bool hasAlpha) {
    return {width, height, hasAlpha, std::vector<T>(componentCount(width, height))};
}

} // namespace orbel
