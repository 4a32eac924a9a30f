#include "drawing/Cascade.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <tuple>

namespace orbel {

namespace {

constexpr std::string_view blanks = " \t\r\n\f";

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

std::string withoutComments(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t comment = text.find("/*", at);
        result += text.substr(at, comment - at);
        if (comment == std::string_view::npos) {
            break;
        }
        const std::size_t end = text.find("*/", comment + 2);
        at = end == std::string_view::npos ? text.size() : end + 2;
    }
    return result;
}

std::string_view unquoted(std::string_view text) {
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
        text.back() == text.front()) {
        return text.substr(1, text.size() - 2);
    }
    return text;
}

/// Reads one selector: compounds with combinators between them.
class SelectorReader {
public:
    explicit SelectorReader(std::string_view text) : m_text(trimmed(text)) {}

    Cascade::Rule read() {
        while (m_at < m_text.size()) {
            compound();
            combinator();
        }
        return std::move(m_rule);
    }
    [[nodiscard]] bool looksAtSiblings() const { return m_siblings; }

private:
    std::string name() {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && isNameCharacter(m_text[m_at])) {
            ++m_at;
        }
        return std::string(m_text.substr(start, m_at - start));
    }

    void combinator() {
        m_combinator = ' ';
        while (m_at < m_text.size() &&
               (blanks.find(m_text[m_at]) != std::string_view::npos || m_text[m_at] == '>' ||
                m_text[m_at] == '+' || m_text[m_at] == '~')) {
            if (blanks.find(m_text[m_at]) == std::string_view::npos) {
                m_combinator = m_text[m_at];
            }
            ++m_at;
        }
        m_siblings = m_siblings || m_combinator == '+' || m_combinator == '~';
    }

    void compound() {
        Cascade::Compound part;
        part.combinator = m_combinator;
        const std::size_t start = m_at;
        while (m_at < m_text.size() && simple(&part)) {
        }
        if (m_at == start) {
            part.unknown = true;
            m_at = m_text.size();
        }
        m_rule.selector.push_back(std::move(part));
    }

    bool simple(Cascade::Compound* part) {
        const char c = m_text[m_at];
        if (c == '*') {
            ++m_at;
        } else if (isNameCharacter(c)) {
            part->type = name();
            m_rule.specificity += 1;
        } else if (c == '#') {
            ++m_at;
            part->ids.push_back(name());
            m_rule.specificity += 10000;
        } else if (c == '.') {
            ++m_at;
            part->classes.push_back(name());
            m_rule.specificity += 100;
        } else if (c == '[') {
            attribute(part);
        } else if (c == ':') {
            pseudo(part);
        } else {
            return false;
        }
        return true;
    }

    void attribute(Cascade::Compound* part) {
        const std::size_t end = std::min(m_text.find(']', m_at), m_text.size());
        const std::string_view inside = m_text.substr(m_at + 1, end - m_at - 1);
        const std::size_t equals = inside.find('=');
        m_at = std::min(end + 1, m_text.size());
        m_rule.specificity += 100;
        Cascade::Attribute wanted;
        std::string_view name = inside.substr(0, equals);
        if (equals != std::string_view::npos) {
            wanted.comparison = '=';
            wanted.value = unquoted(trimmed(inside.substr(equals + 1)));
            if (!name.empty() &&
                std::string_view("~|^$*").find(name.back()) != std::string_view::npos) {
                wanted.comparison = name.back();
                name.remove_suffix(1);
            }
        }
        wanted.name = trimmed(name);
        part->attributes.push_back(std::move(wanted));
    }

    void pseudo(Cascade::Compound* part) {
        ++m_at;
        m_siblings = true;
        m_rule.specificity += 100;
        std::string kind = name();
        std::string_view inside;
        if (m_at < m_text.size() && m_text[m_at] == '(') {
            const std::size_t end = std::min(m_text.find(')', m_at), m_text.size());
            inside = trimmed(m_text.substr(m_at + 1, end - m_at - 1));
            m_at = std::min(end + 1, m_text.size());
        }
        Cascade::Position place;
        place.ofType = takeEnd(&kind, "-of-type");
        place.fromEnd = kind.starts_with("last") || kind.starts_with("nth-last");
        const bool counted = kind.starts_with("nth");
        if ((place.ofType || takeEnd(&kind, "-child")) &&
            (kind == "first" || kind == "last" || kind == "nth" || kind == "nth-last") &&
            (!counted || readPlaces(inside, &place))) {
            part->positions.push_back(place);
        } else {
            part->unknown = true;
        }
    }

    static bool takeEnd(std::string* word, std::string_view end) {
        const bool there = word->ends_with(end);
        word->resize(word->size() - (there ? end.size() : 0));
        return there;
    }

    /// odd, even, 3, n, -n+3, 2n + 1
    static bool readPlaces(std::string_view text, Cascade::Position* place) {
        std::string rest;
        std::copy_if(text.begin(), text.end(), std::back_inserter(rest),
                     [](char c) { return blanks.find(c) == std::string_view::npos && c != '+'; });
        if (rest == "odd" || rest == "even") {
            place->step = 2;
            place->offset = rest == "odd" ? 1 : 0;
            return true;
        }
        const std::size_t n = rest.find('n');
        const auto number = [](const std::string& digits, int* value) {
            const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), *value);
            return read.ec == std::errc{} && read.ptr == digits.data() + digits.size();
        };
        if (n == std::string::npos) {
            return number(rest, &place->offset);
        }
        const std::string step = rest.substr(0, n);
        const std::string offset = rest.substr(n + 1);
        place->step = step == "-" ? -1 : 1;
        place->offset = 0;
        return (step.empty() || step == "-" || number(step, &place->step)) &&
               (offset.empty() || number(offset, &place->offset));
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    char m_combinator = ' ';
    bool m_siblings = false;
    Cascade::Rule m_rule;
};

const xmlNode* elementBefore(const xmlNode* node) {
    for (const xmlNode* other = node->prev; other != nullptr; other = other->prev) {
        if (isElement(other)) {
            return other;
        }
    }
    return nullptr;
}

bool hasWord(const std::string& words, const std::string& name) {
    std::string all(1, ' ');
    all.append(words).push_back(' ');
    for (std::size_t at = name.empty() ? std::string::npos : all.find(name);
         at != std::string::npos; at = all.find(name, at + 1)) {
        if (blanks.find(all[at - 1]) != std::string_view::npos &&
            blanks.find(all[at + name.size()]) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

bool compares(const std::string& value, const Cascade::Attribute& wanted) {
    switch (wanted.comparison) {
    case '=':
        return value == wanted.value;
    case '~':
        return hasWord(value, wanted.value);
    case '|':
        return value == wanted.value || value.starts_with(wanted.value + "-");
    case '^':
        return !wanted.value.empty() && value.starts_with(wanted.value);
    case '$':
        return !wanted.value.empty() && value.ends_with(wanted.value);
    case '*':
        return !wanted.value.empty() && value.find(wanted.value) != std::string::npos;
    default:
        return true;
    }
}

bool standsAt(const xmlNode* node, const Cascade::Position& place) {
    std::int64_t number = 1;
    for (const xmlNode* other = place.fromEnd ? node->next : node->prev; other != nullptr;
         other = place.fromEnd ? other->next : other->prev) {
        const bool counts = isElement(other) && (!place.ofType || nameOf(other) == nameOf(node));
        number += counts ? 1 : 0;
    }
    const std::int64_t steps = number - place.offset;
    return place.step == 0 ? steps == 0 : steps % place.step == 0 && steps / place.step >= 0;
}

bool fits(const xmlNode* node, const Cascade::Compound& part) {
    return !part.unknown && (part.type.empty() || nameOf(node) == part.type) &&
           std::all_of(part.ids.begin(), part.ids.end(),
                       [&](const auto& id) { return attributeOf(node, "id") == id; }) &&
           std::all_of(part.classes.begin(), part.classes.end(),
                       [&](const auto& name) {
                           return hasWord(attributeOf(node, "class").value_or(""), name);
                       }) &&
           std::all_of(part.attributes.begin(), part.attributes.end(),
                       [&](const auto& wanted) {
                           const auto value = attributeOf(node, wanted.name);
                           return value && compares(*value, wanted);
                       }) &&
           std::all_of(part.positions.begin(), part.positions.end(),
                       [&](const auto& place) { return standsAt(node, place); });
}

/// Whether the compounds up to `last` fit the node and those that it stands to.
// NOLINTNEXTLINE(misc-no-recursion): as deep as the selector is long
bool fitsUpTo(const xmlNode* node, const std::vector<Cascade::Compound>& selector,
              std::size_t last) {
    if (!fits(node, selector[last])) {
        return false;
    }
    if (last == 0) {
        return true;
    }
    const char combinator = selector[last].combinator;
    const bool beside = combinator == '+' || combinator == '~';
    const auto step = [beside](const xmlNode* from) {
        return beside ? elementBefore(from) : from->parent;
    };
    const bool once = combinator == '+' || combinator == '>';
    for (const xmlNode* other = step(node); other != nullptr && isElement(other);
         other = step(other)) {
        if (fitsUpTo(other, selector, last - 1)) {
            return true;
        }
        if (once) {
            return false;
        }
    }
    return false;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<Cascade::Declaration> readDeclarations(std::string_view text) {
    std::vector<Cascade::Declaration> result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        const std::string_view one = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t colon = one.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        std::string_view value = trimmed(one.substr(colon + 1));
        const std::size_t mark = value.rfind('!');
        const bool important =
            mark != std::string_view::npos && trimmed(value.substr(mark + 1)) == "important";
        if (important) {
            value = trimmed(value.substr(0, mark));
        }
        result.push_back(
            {std::string(trimmed(one.substr(0, colon))), std::string(value), important});
    }
    return result;
}

Cascade::Cascade(xmlNode* root) {
    forEachElement(root, [this](const xmlNode* node) {
        const std::string type = attributeOf(node, "type").value_or("text/css");
        if (isNamed(node, "style") && (type.empty() || type == "text/css")) {
            xmlChar* const content = xmlNodeGetContent(node);
            readSheet(withoutComments(reinterpret_cast<const char*>(content)));
            xmlFree(content);
        }
    });
}

void Cascade::readSheet(std::string_view text) {
    while (!text.empty()) {
        const std::size_t open = text.find_first_of("{;");
        if (open == std::string_view::npos) {
            return;
        }
        std::string_view head = trimmed(text.substr(0, open));
        if (text[open] == ';' && head.starts_with('@')) { // @import, @charset, @namespace
            text.remove_prefix(open + 1);
            continue;
        }
        std::size_t close = open + 1;
        for (int depth = 1; close < text.size(); ++close) {
            depth += text[close] == '{' ? 1 : text[close] == '}' ? -1 : 0;
            if (depth == 0) {
                break;
            }
        }
        if (text[open] == '{' && !head.starts_with('@')) {
            addRules(head, text.substr(open + 1, close - open - 1));
        }
        text.remove_prefix(std::min(close + 1, text.size()));
    }
}

void Cascade::addRules(std::string_view selectors, std::string_view body) {
    const std::vector<Declaration> declarations = readDeclarations(body);
    while (!selectors.empty()) {
        const std::size_t end = std::min(selectors.find(','), selectors.size());
        SelectorReader reader(selectors.substr(0, end));
        Rule rule = reader.read();
        m_looksAtSiblings = m_looksAtSiblings || reader.looksAtSiblings();
        if (!rule.selector.empty()) {
            rule.declarations = declarations;
            m_rules.push_back(std::move(rule));
        }
        selectors.remove_prefix(std::min(end + 1, selectors.size()));
    }
}

std::optional<std::string> Cascade::declared(const xmlNode* node, std::string_view property) const {
    std::optional<std::string> value = attributeOf(node, property);
    std::pair<bool, int> weight{false, -1}; // important, specificity
    const auto take = [&](const Declaration& declaration, int specificity) {
        const std::pair<bool, int> own{declaration.important, specificity};
        if (declaration.property == property && own >= weight) {
            weight = own;
            value = declaration.value;
        }
    };
    for (const Rule& rule : m_rules) {
        const bool states = std::any_of(rule.declarations.begin(), rule.declarations.end(),
                                        [&](const auto& d) { return d.property == property; });
        if (states && fitsUpTo(node, rule.selector, rule.selector.size() - 1)) {
            for (const Declaration& declaration : rule.declarations) {
                take(declaration, rule.specificity);
            }
        }
    }
    if (const auto style = attributeOf(node, "style")) {
        for (const Declaration& declaration : readDeclarations(*style)) {
            take(declaration, 1000000);
        }
    }
    return value;
}

std::optional<std::string> Cascade::inherited(const xmlNode* node,
                                              std::string_view property) const {
    for (; node != nullptr && isElement(node); node = node->parent) {
        if (auto value = declared(node, property); value && *value != "inherit") {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace orbel
