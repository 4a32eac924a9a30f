#include "doors/fxplug/AsciiText.h"

namespace orbel {

bool asciiText(NSString* string, char* text, std::size_t size) {
    // Asked first: a conversion that fails raises in one of the runtimes.
    if ([string canBeConvertedToEncoding:NSASCIIStringEncoding] &&
        [string getCString:text maxLength:size encoding:NSASCIIStringEncoding]) {
        return true;
    }
    text[0] = '\0';
    return false;
}

} // namespace orbel
