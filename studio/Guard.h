#pragma once

#include "studio/Message.h"

#include <cstdint>
#include <optional>

namespace orbel::studio {

/// Who may ask at all: a page of this very server, addressed by a name of this machine. Looks at
/// the head alone; holds on every route. `port` is the server's own.
[[nodiscard]] std::optional<Refusal> refuseStranger(const RequestHead& head, std::uint16_t port);

/// Whether the body is declared to be JSON.
[[nodiscard]] bool isJson(const RequestHead& head);

} // namespace orbel::studio
