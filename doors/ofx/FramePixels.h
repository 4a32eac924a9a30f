#pragma once

#include "doors/ofx/ClipImage.h"

#include <optional>

namespace orbel::ofx {

/// Rows of a frame counted from its bottom.
enum class Field {
    None,  ///< all rows
    Lower, ///< the even ones
    Upper, ///< the odd ones
};
/// The field behind the host's name for it; none for anything else.
[[nodiscard]] Field fieldNamed(const std::string& name);

/// An image of the host and how its rows belong to the frame.
struct FieldImage {
    const ClipImage* image = nullptr;
    /// The field whose rows alone the image holds, at half the frame's height.
    Field only = Field::None;
};

/// Fills the working copy, top row first, with the pixels of an image (null for none); what lies
/// outside its bounds becomes transparent black. Rows of a single field are doubled. `frame` gives
/// the copy's place among the host's pixels.
void copyIn(const FieldImage& from, const OfxRectI& frame, const RasterInfo& to);

/// The image itself as a working copy: where it is exactly the frame and its rows are aligned for
/// their components. Nothing where it takes a copy.
[[nodiscard]] std::optional<RasterInfo> asFrame(const FieldImage& image, const OfxRectI& frame);

/// Whether two images share memory.
[[nodiscard]] bool overlap(const RasterInfo& a, const RasterInfo& b);

/// What of a finished frame goes back to the host.
struct Delivery {
    OfxRectI window{};         ///< pixels of the host's image; clipped to its bounds
    Field field = Field::None; ///< leaves the rows of the other field alone
    bool opaque = false;       ///< sets every alpha to the maximum
};

/// Copies a finished frame out; pixels of the window outside the frame become transparent black.
void copyOut(const RasterInfo& from, const OfxRectI& frame, const FieldImage& to,
             const Delivery& delivery);

} // namespace orbel::ofx
