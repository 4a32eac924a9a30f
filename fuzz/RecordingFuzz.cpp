#include "drawing/RecordingReader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const orbel::PaintedPath& painted : orbel::readRecording(text)) {
        if (painted.curves.empty()) {
            __builtin_trap();
        }
        for (const orbel::OutlineCurve& curve : painted.curves) {
            if (!std::isfinite(curve.end().x) || !std::isfinite(curve.end().y)) {
                __builtin_trap();
            }
        }
    }
    return 0;
}
