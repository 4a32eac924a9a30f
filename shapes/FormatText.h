#pragma once

#include <cstddef>

namespace orbel {

/// Copies `format` into `out`, reading it as format text without arguments: `%%` becomes `%`, every
/// other directive (flags, width, precision, length and conversion) expands to nothing. The result
/// is NUL-terminated and cut to `size` - 1 bytes; with `size` 0 nothing is written.
void expandFormatText(char* out, std::size_t size, const char* format);

} // namespace orbel
