#include "drawing/TextCharacters.h"

#include "drawing/RendererGaps.h"

#include <glib.h>

#include <algorithm>
#include <cmath>

namespace orbel {

namespace {

/// An element and the characters inside it.
struct Span {
    const xmlNode* element;
    std::size_t begin;
    std::size_t end;
};

class Collector {
public:
    Collector(TextStyles* styles, const Cascade& cascade) : m_styles(styles), m_cascade(cascade) {}

    std::vector<TextCharacter> collect(const xmlNode* text) {
        m_viewport = viewportOf(text);
        enter(text, nullptr);
        dropLastSpace();
        for (const Span& span : m_spans) {
            place(span);
        }
        joinMarks();
        return std::move(m_characters);
    }

private:
    // NOLINTNEXTLINE(misc-no-recursion): as deep as the document, which the XML reader limits
    void enter(const xmlNode* element, const xmlNode* path) {
        if (m_cascade.declared(element, "display") == "none") {
            return;
        }
        if (nameOf(element) == "textPath") {
            if (!isNamed(element->parent, "text")) {
                return;
            }
            path = element;
        }
        const std::size_t span = m_spans.size();
        m_spans.push_back({element, m_characters.size(), 0});
        const bool preserve = m_styles->of(element).preserve;
        for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
            const bool text = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
            if (text && child->content != nullptr && !isNamed(element, "tref")) {
                const std::string letters = inCase(m_styles->of(element).letterCase,
                                                   reinterpret_cast<const char*>(child->content));
                addText(letters.c_str(), element, path, preserve);
            } else if (isNamed(child, "tspan") || isNamed(child, "textPath") ||
                       isNamed(child, "a") || isNamed(child, "tref")) {
                enter(child, path);
            }
        }
        if (isNamed(element, "tref")) {
            addReferred(element, path);
        }
        m_spans[span].end = m_characters.size();
    }

    /// Older drawings repeat the text of another element.
    void addReferred(const xmlNode* element, const xmlNode* path) {
        const std::string link = attributeOf(element, "href").value_or("");
        const xmlNode* const target =
            link.starts_with("#") ? elementById(xmlDocGetRootElement(element->doc), link.substr(1))
                                  : nullptr;
        if (target != nullptr) {
            const TextStyle& style = m_styles->of(element);
            addText(inCase(style.letterCase, plainText(target).c_str()).c_str(), element, path,
                    style.preserve);
        }
    }

    static std::string inCase(const std::string& wanted, const char* text) {
        if (wanted == "uppercase" || wanted == "lowercase") {
            gchar* const changed =
                wanted == "uppercase" ? g_utf8_strup(text, -1) : g_utf8_strdown(text, -1);
            std::string result(changed);
            g_free(changed);
            return result;
        }
        std::string result;
        bool inside = false; // a word
        for (const char* at = text; *at != '\0'; at = g_utf8_next_char(at)) {
            gunichar letter = g_utf8_get_char(at);
            if (wanted == "capitalize" && !inside) {
                letter = g_unichar_totitle(letter);
            }
            inside = g_unichar_isalnum(letter) != FALSE || (inside && letter == '\'');
            char bytes[6];
            result.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(letter, bytes)));
        }
        return result;
    }

    /// Runs of white space become one space, none at the ends, unless they are to stay.
    void addText(const char* text, const xmlNode* element, const xmlNode* path, bool preserve) {
        for (const char* at = text; *at != '\0';) {
            const char* const next = g_utf8_next_char(at);
            std::string character(at, next);
            at = next;
            if (character == "\n" || character == "\t" || character == "\r") {
                character = " ";
            }
            const bool space = character == " ";
            const bool again = m_characters.empty() || m_spaceBefore;
            if (space && !preserve && again) {
                continue;
            }
            m_spaceBefore = space && !preserve;
            TextCharacter one;
            one.text = std::move(character);
            one.element = element;
            one.path = path;
            m_characters.push_back(std::move(one));
        }
    }

    void dropLastSpace() {
        if (m_spaceBefore && !m_characters.empty()) {
            m_characters.pop_back();
        }
    }

    /// Inner elements come later and have the last word.
    void place(const Span& span) {
        if (nameOf(span.element) == "textPath") {
            return;
        }
        const auto lists = [&](const char* name, double whole) {
            const auto text = attributeOf(span.element, name);
            return text ? lengthsOf(*text, m_styles->of(span.element).size, whole)
                        : std::vector<double>{};
        };
        const auto each = [&](const std::vector<double>& values, const auto& apply) {
            const std::size_t end = std::min(span.end, m_characters.size());
            for (std::size_t i = 0; i < values.size() && span.begin + i < end; ++i) {
                apply(m_characters[span.begin + i], values[i]);
            }
        };
        each(lists("x", m_viewport.width), [](auto& c, double v) { c.x = v; });
        each(lists("y", m_viewport.height), [](auto& c, double v) { c.y = v; });
        each(lists("dx", m_viewport.width), [](auto& c, double v) { c.dx = v; });
        each(lists("dy", m_viewport.height), [](auto& c, double v) { c.dy = v; });
        std::vector<double> rotations = lists("rotate", 0);
        if (!rotations.empty() && span.end > span.begin) {
            rotations.resize(std::max(rotations.size(), span.end - span.begin), rotations.back());
            each(rotations, [](auto& c, double v) { c.rotate = v; });
        }
    }

    /// Marks stay on their letters.
    void joinMarks() {
        for (std::size_t i = 1; i < m_characters.size(); ++i) {
            TextCharacter& c = m_characters[i];
            if (g_unichar_ismark(g_utf8_get_char(c.text.c_str())) != FALSE) {
                c.x.reset();
                c.y.reset();
                c.dx = 0;
                c.dy = 0;
                c.rotate = m_characters[i - 1].rotate;
            }
        }
    }

    TextStyles* m_styles;
    const Cascade& m_cascade;
    Viewport m_viewport;
    std::vector<TextCharacter> m_characters;
    std::vector<Span> m_spans;
    bool m_spaceBefore = false;
};

} // namespace

Viewport viewportOf(const xmlNode* node) {
    constexpr double em = 16.0;
    for (node = node->parent; node != nullptr && isElement(node); node = node->parent) {
        if (!isNamed(node, "svg")) {
            continue;
        }
        if (const auto box = attributeOf(node, "viewBox")) {
            if (const auto numbers = lengthsOf(*box, em, 0); numbers.size() == 4) {
                return {numbers[2], numbers[3]};
            }
        }
        const double width = lengthOf(attributeOf(node, "width").value_or("100"), em, 100);
        const double height = lengthOf(attributeOf(node, "height").value_or("100"), em, 100);
        return {width, height};
    }
    return {100, 100};
}

std::vector<TextCharacter> charactersOf(const xmlNode* text, TextStyles* styles,
                                        const Cascade& cascade) {
    return Collector(styles, cascade).collect(text);
}

} // namespace orbel
