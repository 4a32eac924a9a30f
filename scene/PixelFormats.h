#pragma once

#include "host/PluginHost.h"

#include <array>
#include <optional>
#include <string_view>

namespace orbel {

/// A pixel format under the name that scene files and options use.
struct NamedFormat {
    std::string_view name;
    RasterFormat format;
};

inline constexpr std::array<NamedFormat, 6> namedFormats{{{"argb8", RF_ARGB8},
                                                          {"rgba8", RF_RGBA8},
                                                          {"argb16", RF_ARGB16},
                                                          {"rgba16", RF_RGBA16},
                                                          {"argb32f", RF_ARGB32F},
                                                          {"rgba32f", RF_RGBA32F}}};

[[nodiscard]] constexpr std::optional<RasterFormat> formatOf(std::string_view name) {
    for (const NamedFormat& known : namedFormats) {
        if (known.name == name) {
            return known.format;
        }
    }
    return std::nullopt;
}

/// Empty for a format that is not rendered.
[[nodiscard]] constexpr std::string_view nameOf(RasterFormat format) {
    for (const NamedFormat& known : namedFormats) {
        if (known.format == format) {
            return known.name;
        }
    }
    return {};
}

} // namespace orbel
