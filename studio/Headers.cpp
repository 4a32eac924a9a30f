#include "studio/Headers.h"

namespace orbel::studio {

namespace {

constexpr std::pair<std::string_view, std::string_view> protection[] = {
    {"Content-Security-Policy",
     "default-src 'self'; img-src 'self' data: blob:; media-src 'self' blob:; object-src 'none'; "
     "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Frame-Options", "DENY"},
    {"X-Content-Type-Options", "nosniff"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Referrer-Policy", "no-referrer"},
    {"Cache-Control", "no-store"},
};

} // namespace

std::span<const std::pair<std::string_view, std::string_view>> protectingHeaders() {
    return protection;
}

} // namespace orbel::studio
