#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>

namespace orbel {

/// Writes a string as NUL-terminated ASCII. False, with an empty text, when there is no string, it
/// is no ASCII, or it does not fit.
[[nodiscard]] bool asciiText(NSString* string, char* text, std::size_t size);

} // namespace orbel
