#pragma once

#include "drawing/Outline.h"
#include "shapes/ImportOptions.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// A drawing or a piece of writing that has become a shape.
struct ConvertedShape {
    struct Part {
        OutlineSource source;
        bool closed = false;
        std::size_t segments = 0;
    };
    std::string svg; ///< represented exactly by the shape reader, shown alike by every browser
    double width = 0.0;
    double height = 0.0;
    double baseline = 0.0;          ///< of the first line of a writing, from the top
    std::vector<Part> outlines;     ///< in the order of the file
    std::vector<std::string> notes; ///< what was left out or is missing, a sentence each
};

/// A shape, or why there is none.
struct Conversion {
    std::optional<ConvertedShape> shape;
    std::string message; ///< empty with a shape
    std::string remedy;
};

/// Asked many times a second while a conversion runs; true ends it, without a shape. May be empty.
using StopConversion = std::function<bool()>;

/// Turns any SVG drawing (plain or gzip) into outlines, in a process of its own with limits on time
/// and memory (1 GiB). Opens no file. Safe to call with any bytes.
[[nodiscard]] Conversion importDrawing(std::string_view bytes, const ImportOptions& options,
                                       const StopConversion& stopped = {});

/// The same for a file: a regular one of at most 64 MiB.
[[nodiscard]] Conversion importDrawingFile(const std::string& file, const ImportOptions& options,
                                           const StopConversion& stopped = {});

} // namespace orbel
