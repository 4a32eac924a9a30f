#include "studio/Message.h"

#include "studio/Json.h"

#include <algorithm>

namespace orbel::studio {

std::size_t RequestHead::count(std::string_view name) const {
    return static_cast<std::size_t>(std::count_if(
        headers.begin(), headers.end(), [&](const Header& header) { return header.name == name; }));
}

std::string_view RequestHead::value(std::string_view name) const {
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [&](const Header& header) { return header.name == name; });
    return found == headers.end() ? std::string_view{} : found->value;
}

Answer answerOf(const Refusal& refusal) {
    Answer answer = answerOf({{"error", refusal.error}, {"remedy", refusal.remedy}});
    answer.status = refusal.status;
    return answer;
}

} // namespace orbel::studio
