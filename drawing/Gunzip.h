#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orbel {

/// What a packed drawing may become; a larger one is not taken.
inline constexpr std::size_t mostUnpackedBytes = std::size_t{64} << 20;

[[nodiscard]] bool isGzip(std::string_view bytes);

/// Unpacks gzip. Throws DrawingError where it is broken, ends early or becomes too large.
[[nodiscard]] std::string gunzip(std::string_view bytes);

} // namespace orbel
