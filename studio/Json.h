#pragma once

#include "studio/Message.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace orbel::studio {

using nlohmann::json;

/// The text of a document; bytes that are no UTF-8, as in names of files, are replaced.
[[nodiscard]] std::string textOf(const json& document);

/// A document as the body of an answer.
[[nodiscard]] Answer answerOf(const json& document);

// Members of a request's body. Each throws a Refusal for a value of another type; a member that is
// missing gives `otherwise`, and where there is no such argument a Refusal, too.

[[nodiscard]] std::string textMember(const json& body, const char* name);
[[nodiscard]] std::string textMember(const json& body, const char* name,
                                     std::string_view otherwise);
[[nodiscard]] bool flagMember(const json& body, const char* name);
/// Whether the member is there and not null.
[[nodiscard]] bool hasMember(const json& body, const char* name);
/// A whole number from `least` to `most`.
[[nodiscard]] long numberMember(const json& body, const char* name, long least, long most);
[[nodiscard]] long numberMember(const json& body, const char* name, long least, long most,
                                long otherwise);

} // namespace orbel::studio
