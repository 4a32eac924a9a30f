#include "shapes/FormatText.h"

#include <cstring>

namespace orbel {

namespace {

const char* skipAny(const char* text, const char* set) {
    return text + std::strspn(text, set);
}

/// The first byte behind the directive whose "%" stands just before `text`.
const char* skipDirective(const char* text) {
    text = skipAny(text, "-+ #0'");
    text = skipAny(text, "*0123456789");
    if (*text == '.') {
        text = skipAny(text + 1, "*0123456789");
    }
    text = skipAny(text, "hlLqjzt");
    return *text == '\0' ? text : text + 1;
}

} // namespace

void expandFormatText(char* out, std::size_t size, const char* format) {
    if (size == 0) {
        return;
    }
    const char* const last = out + size - 1;
    while (*format != '\0' && out != last) {
        if (*format != '%') {
            *out++ = *format++;
        } else if (format[1] == '%') {
            *out++ = '%';
            format += 2;
        } else {
            format = skipDirective(format + 1);
        }
    }
    *out = '\0';
}

} // namespace orbel
