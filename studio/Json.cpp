#include "studio/Json.h"

#include <cmath>

namespace orbel::studio {

namespace {

[[noreturn]] void refuse(const char* name, const std::string& wanted) {
    throw Refusal{400, "the request's \"" + std::string(name) + "\" must be " + wanted,
                  "reload the page"};
}

} // namespace

std::string textOf(const json& document) {
    return document.dump(-1, ' ', false, json::error_handler_t::replace);
}

Answer answerOf(const json& document) {
    Answer answer;
    answer.body = textOf(document);
    return answer;
}

bool hasMember(const json& body, const char* name) {
    const auto member = body.find(name);
    return member != body.end() && !member->is_null();
}

std::string textMember(const json& body, const char* name) {
    if (!hasMember(body, name) || !body[name].is_string()) {
        refuse(name, "a text");
    }
    return body[name].get<std::string>();
}

std::string textMember(const json& body, const char* name, std::string_view otherwise) {
    return !hasMember(body, name) ? std::string(otherwise) : textMember(body, name);
}

bool flagMember(const json& body, const char* name) {
    if (!hasMember(body, name)) {
        return false;
    }
    if (!body[name].is_boolean()) {
        refuse(name, "true or false");
    }
    return body[name].get<bool>();
}

long numberMember(const json& body, const char* name, long least, long most) {
    const double number =
        hasMember(body, name) && body[name].is_number() ? body[name].get<double>() : NAN;
    if (!(number >= static_cast<double>(least) && number <= static_cast<double>(most)) ||
        number != std::floor(number)) {
        refuse(name,
               "a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return static_cast<long>(number);
}

long numberMember(const json& body, const char* name, long least, long most, long otherwise) {
    return !hasMember(body, name) ? otherwise : numberMember(body, name, least, most);
}

} // namespace orbel::studio
