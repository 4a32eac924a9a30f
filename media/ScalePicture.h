#pragma once

#include "media/Picture.h"

#include <memory>

namespace orbel {

/// Brings pictures to another size, bicubic (B = 0, C = 0.6), depth kept. Alpha is taken along
/// correctly: transparent pixels lend no colour to their neighbours. Floats keep values outside
/// 0..1. Gives the same pixels on every machine. One thread at a time.
///
/// What one picture needed is kept for the next: a clip is scaled without preparing or allocating
/// anything again.
class PictureScaler {
public:
    PictureScaler();
    PictureScaler(const PictureScaler&) = delete;
    PictureScaler& operator=(const PictureScaler&) = delete;
    ~PictureScaler();

    /// The result stays valid until the next call. Throws std::invalid_argument for an empty size,
    /// std::runtime_error for one that cannot be scaled to, and std::bad_alloc.
    [[nodiscard]] const Picture& scale(const Picture& picture, int width, int height);

private:
    class Workspace;

    std::unique_ptr<Workspace> m_workspace;
};

} // namespace orbel
