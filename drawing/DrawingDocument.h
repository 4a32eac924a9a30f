#pragma once

#include "drawing/Outline.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// A drawing that cannot be taken at all.
struct DrawingError {
    std::string message;
    std::string remedy;
};

/// A drawing made ready for the renderer.
struct DrawingDocument {
    std::string svg;
    /// Identifiers and titles of the drawn elements, by the number on their signs.
    std::vector<OutlineSource> sources;
    bool clips = false;             ///< something in it may be cut off
    std::vector<std::string> notes; ///< what it holds and has no outlines
};

/// Reads a drawing (plain or gzip) and rewrites it: pictures and what is fully transparent are
/// taken out, text becomes paths, and a sign stands before every drawn element, which tells in the
/// recording where the outlines after it come from. Opens nothing. Throws DrawingError.
[[nodiscard]] DrawingDocument prepareDrawing(std::string_view bytes);

/// The number on the sign that is painted in this colour; nothing for any other colour.
[[nodiscard]] std::optional<std::size_t> signNumber(const std::array<double, 4>& colour);

} // namespace orbel
