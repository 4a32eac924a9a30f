#pragma once

#include "drawing/DrawingDocument.h"
#include "drawing/RecordingReader.h"

#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// What a drawing paints, on its page in pixels.
struct RecordedDrawing {
    double width = 0.0;
    double height = 0.0;
    std::vector<PaintedPath> painted;
};

/// Lets the renderer paint a drawing into a recording and reads that: every path at its place,
/// nothing cut off, no dashes, no filters. Throws DrawingError. Only in a process of its own: a
/// drawing may bring the libraries down.
class SvgRecorder {
public:
    /// With `clipped`, what clips and viewports hide wholly is not painted.
    SvgRecorder(const std::string& svg, bool clipped);
    ~SvgRecorder();
    SvgRecorder(const SvgRecorder&) = delete;
    SvgRecorder& operator=(const SvgRecorder&) = delete;

    [[nodiscard]] RecordedDrawing record() const;

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};

} // namespace orbel
