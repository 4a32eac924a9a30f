#include "studio/Guard.h"

#include <algorithm>
#include <array>
#include <string>

namespace orbel::studio {

namespace {

constexpr std::array<std::string_view, 3> ownNames{"127.0.0.1", "localhost", "[::1]"};

/// A host and a port, nothing else.
bool isWellFormed(std::string_view host) {
    return !host.empty() && host.size() <= 255 && std::all_of(host.begin(), host.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '.' || c == ':' || c == '-' || c == '_' || c == '[' || c == ']';
    });
}

bool isOwn(std::string_view host, std::uint16_t port) {
    return std::any_of(ownNames.begin(), ownNames.end(), [&](std::string_view name) {
        return host == std::string(name) + ":" + std::to_string(port);
    });
}

std::optional<Refusal> refuseHost(const RequestHead& head, std::uint16_t port) {
    if (head.count("host") != 1 || !isWellFormed(head.value("host"))) {
        return Refusal{400, "the request names no host, or no sound one", ""};
    }
    if (!isOwn(head.value("host"), port)) {
        return Refusal{403, "the studio answers to its own address only",
                       "open http://127.0.0.1:" + std::to_string(port) +
                           "; through a tunnel, use the same port at both ends"};
    }
    return std::nullopt;
}

std::optional<Refusal> refuseOrigin(const RequestHead& head) {
    if (head.count("origin") == 0) {
        return std::nullopt;
    }
    constexpr std::string_view scheme = "http://";
    const std::string_view origin = head.value("origin");
    const bool http = origin.substr(0, scheme.size()) == scheme;
    const std::size_t slashes = origin.find("://");
    const bool sound = origin == "null" || (slashes != std::string_view::npos &&
                                            isWellFormed(origin.substr(slashes + 3)));
    if (head.count("origin") != 1 || !sound) {
        return Refusal{400, "the request's origin cannot be read", ""};
    }
    if (!http || origin.substr(scheme.size()) != head.value("host")) {
        return Refusal{403, "another page asked for this", "use the studio's own page"};
    }
    return std::nullopt;
}

} // namespace

std::optional<Refusal> refuseStranger(const RequestHead& head, std::uint16_t port) {
    if (auto refusal = refuseHost(head, port)) {
        return refusal;
    }
    if (auto refusal = refuseOrigin(head)) {
        return refusal;
    }
    const std::string_view site = head.value("sec-fetch-site");
    if (head.count("sec-fetch-site") > 1 || site == "cross-site" || site == "same-site") {
        return Refusal{403, "another site asked for this", "open the address that orbel printed"};
    }
    return std::nullopt;
}

bool isJson(const RequestHead& head) {
    const std::string_view type = head.value("content-type");
    return head.count("content-type") == 1 &&
           (type == "application/json" || type.substr(0, 17) == "application/json;");
}

} // namespace orbel::studio
