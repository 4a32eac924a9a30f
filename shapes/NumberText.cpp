#include "shapes/NumberText.h"

#include <clocale>
#include <cstdlib>

#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale is POSIX
#ifdef __APPLE__
#include <xlocale.h>
#endif

namespace orbel {

double parseNumber(const char* text) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, nullptr, plain);
}

} // namespace orbel
