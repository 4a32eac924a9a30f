#pragma once

#include "doors/memory/MemoryImage.h"
#include "doors/memory/ParameterStore.h"
#include "host/AlphaHandling.h"

#include <string>

namespace orbel::test {

/// A frame as the core draws it without any door between: what every door must deliver.
struct CoreFrame {
    ParameterStore parameters;
    std::string shapeFile;
    std::string shapeText;
    double time = 0.0; ///< in frames
    double scaleX = 1.0;
    double scaleY = 1.0;
    double aspect = 1.0; ///< of a pixel
    AlphaHandling alpha{};

    CoreFrame& set(int param, double value) {
        parameters.set(param, value);
        return *this;
    }
    /// The frame over a picture, which stays as it is. Built-in shapes are the source tree's own.
    [[nodiscard]] MemoryImage over(const RasterInfo& picture) const;
};

} // namespace orbel::test
