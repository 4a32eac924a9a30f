#include "scene/JsonDocument.h"

#include <algorithm>
#include <vector>

namespace orbel {

namespace {

using nlohmann::json;

constexpr std::size_t deepest = 64;

std::string lineAndColumn(std::string_view text, std::size_t bytesRead) {
    // The parser has read the offending byte already.
    const std::size_t at = std::min(bytesRead == 0 ? 0 : bytesRead - 1, text.size());
    const std::string_view before = text.substr(0, at);
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    return "line " + std::to_string(lines + 1) + ", column " + std::to_string(at - lineStart + 1);
}

/// The library's words without its codes and its own account of the place.
std::string reasonOf(const std::string& what) {
    const std::size_t syntax = what.find("syntax error");
    if (syntax != std::string::npos) {
        return what.substr(syntax);
    }
    const std::size_t bracket = what.find("] ");
    return bracket == std::string::npos ? what : what.substr(bracket + 2);
}

/// Builds the document and keeps an eye on what the format leaves open: twice the same key, depth.
class DocumentBuilder final : public json::json_sax_t {
public:
    DocumentBuilder(std::string_view text, const std::string& file, Problems* problems)
        : m_text(text), m_file(file), m_problems(problems) {}

    [[nodiscard]] json takeRoot() { return std::move(m_root); }

    bool null() override { return put(nullptr) != nullptr; }
    bool boolean(bool value) override { return put(value) != nullptr; }
    bool number_integer(number_integer_t value) override { return put(value) != nullptr; }
    bool number_unsigned(number_unsigned_t value) override { return put(value) != nullptr; }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return put(value) != nullptr;
    }
    bool string(string_t& value) override { return put(std::move(value)) != nullptr; }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return open(json::object()); }
    bool start_array(std::size_t /*size*/) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override {
        Level& level = m_levels.back();
        level.key = std::move(name);
        if (level.node->contains(level.key)) {
            m_problems->add({m_file, pointer(),
                             "the key " + inQuotes(level.key) + " appears twice in one object",
                             "keep one of the two"});
        }
        return true;
    }

    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        m_problems->add({m_file, lineAndColumn(m_text, position),
                         "this is not JSON: " + reasonOf(error.what()), "correct the text there"});
        return false;
    }

private:
    struct Level {
        json* node;
        std::string key; // of the member that comes next, in an object
    };

    json* put(json value) {
        if (m_levels.empty()) {
            m_root = std::move(value);
            return &m_root;
        }
        Level& level = m_levels.back();
        if (level.node->is_array()) {
            level.node->push_back(std::move(value));
            return &level.node->back();
        }
        json& member = (*level.node)[level.key];
        member = std::move(value);
        return &member;
    }

    bool open(json container) {
        if (m_levels.size() == deepest) {
            m_problems->add({m_file, pointer(),
                             "nested more than " + std::to_string(deepest) + " levels deep",
                             "a scene needs five"});
            return false;
        }
        m_levels.push_back({put(std::move(container)), {}});
        return true;
    }

    bool close() {
        m_levels.pop_back();
        return true;
    }

    [[nodiscard]] std::string pointer() const {
        json::json_pointer place;
        for (const Level& level : m_levels) {
            if (level.node->is_array()) {
                place /= level.node->empty() ? 0 : level.node->size() - 1;
            } else {
                place /= level.key;
            }
        }
        return place.to_string();
    }

    std::string_view m_text;
    const std::string& m_file;
    Problems* m_problems;
    json m_root;
    std::vector<Level> m_levels;
};

} // namespace

std::optional<json> parseJson(std::string_view text, const std::string& file, Problems* problems) {
    DocumentBuilder builder(text, file, problems);
    if (!json::sax_parse(text.begin(), text.end(), &builder)) {
        return std::nullopt;
    }
    return builder.takeRoot();
}

} // namespace orbel
