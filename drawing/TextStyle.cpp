#include "drawing/TextStyle.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <utility>

namespace orbel {

namespace {

constexpr std::string_view blanks = " \t\r\n";

constexpr double largestSize = 1e6; // of a font; the renderer chokes on larger letters

/// Reads a number at the front and takes it off.
std::optional<double> takeNumber(std::string_view* text) {
    const std::size_t sign = text->starts_with('+') ? 1 : 0;
    double value = 0.0;
    const char* const end = text->data() + text->size();
    const auto read = std::from_chars(text->data() + sign, end, value);
    if (read.ec != std::errc{} || !std::isfinite(value)) {
        return std::nullopt;
    }
    text->remove_prefix(static_cast<std::size_t>(read.ptr - text->data()));
    return value;
}

double unitIn(std::string_view unit, double em, double whole) {
    struct Unit {
        std::string_view name;
        double pixels;
    };
    const std::array<Unit, 8> units{{{"%", whole / 100},
                                     {"em", em},
                                     {"ex", em / 2},
                                     {"pt", 96.0 / 72},
                                     {"pc", 16.0},
                                     {"mm", 96 / 25.4},
                                     {"cm", 96 / 2.54},
                                     {"in", 96.0}}};
    const auto* const known = std::find_if(units.begin(), units.end(),
                                           [unit](const Unit& one) { return one.name == unit; });
    return known == units.end() ? 1.0 : known->pixels;
}

std::optional<double> namedSize(std::string_view name, double parentSize) {
    constexpr std::array<std::pair<std::string_view, double>, 8> sizes{{{"xx-small", 9},
                                                                        {"x-small", 10},
                                                                        {"small", 13},
                                                                        {"medium", 16},
                                                                        {"large", 18},
                                                                        {"x-large", 24},
                                                                        {"xx-large", 32},
                                                                        {"xxx-large", 48}}};
    for (const auto& [known, pixels] : sizes) {
        if (known == name) {
            return pixels;
        }
    }
    if (name == "smaller") {
        return parentSize / 1.2;
    }
    return name == "larger" ? std::optional(parentSize * 1.2) : std::nullopt;
}

int weightOf(std::string_view text, int parent) {
    if (text == "bold") {
        return 700;
    }
    if (text == "normal") {
        return 400;
    }
    if (text == "bolder") {
        return parent < 350 ? 400 : parent < 550 ? 700 : 900;
    }
    if (text == "lighter") {
        return parent < 550 ? 100 : parent < 750 ? 400 : 700;
    }
    const std::optional<double> number = takeNumber(&text);
    return number ? static_cast<int>(std::clamp(*number, 1.0, 1000.0)) : parent;
}

int stretchOf(std::string_view text, int parent) {
    constexpr std::array<std::string_view, 9> names{
        "ultra-condensed", "extra-condensed", "condensed",      "semi-condensed", "normal",
        "semi-expanded",   "expanded",        "extra-expanded", "ultra-expanded"};
    const auto* const known = std::find(names.begin(), names.end(), text);
    if (known != names.end()) {
        return static_cast<int>(known - names.begin());
    }
    if (text == "narrower" || text == "wider") {
        return std::clamp(parent + (text == "wider" ? 1 : -1), 0, 8);
    }
    return parent;
}

/// Families without quotes, generic ones by the names that the font library knows, and the usual
/// one where none is generic.
std::string familiesOf(std::string_view text) {
    std::string result;
    bool generic = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        std::string_view one = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (one.size() >= 2 && (one.front() == '"' || one.front() == '\'')) {
            one = one.substr(1, one.size() - 2);
        }
        if (one == "sans-serif") {
            one = "sans";
        }
        generic = generic || one == "sans" || one == "serif" || one == "monospace" ||
                  one == "cursive" || one == "fantasy" || one == "system-ui";
        result.append(result.empty() ? "" : ",").append(one);
    }
    return generic ? result : result + (result.empty() ? "" : ",") + usualFamily;
}

void addFeature(std::string_view feature, FontChoice* font) {
    font->features.append(font->features.empty() ? "" : ", ").append(feature);
}

/// Features as style sheets name them: "smcp", 'kern' 0, "liga" off.
void addFeatures(std::string_view list, FontChoice* font) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(','), list.size());
        const std::string_view one = trimmed(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
        constexpr std::size_t length = 4; // of a tag, without its quotes
        if (one.size() < length + 2 || (one.front() != '"' && one.front() != '\'') ||
            one[length + 1] != one.front()) {
            continue;
        }
        const std::string_view value = trimmed(one.substr(length + 2));
        const bool off = value == "off" || value == "0";
        addFeature(std::string(one.substr(1, length)) + (off ? " 0" : " 1"), font);
    }
}

bool isPartOfText(const xmlNode* node) {
    return isNamed(node, "tspan") || isNamed(node, "textPath") || isNamed(node, "tref");
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

} // namespace

double lengthOf(std::string_view text, double em, double whole) {
    text = trimmed(text);
    const std::optional<double> number = takeNumber(&text);
    return number ? *number * unitIn(trimmed(text), em, whole) : 0.0;
}

std::vector<double> lengthsOf(std::string_view text, double em, double whole) {
    std::vector<double> result;
    while (true) {
        const std::size_t start = text.find_first_not_of(" \t\r\n,");
        if (start == std::string_view::npos) {
            return result;
        }
        text.remove_prefix(start);
        std::string_view rest = text;
        const std::optional<double> number = takeNumber(&rest);
        if (!number) {
            return result;
        }
        const std::size_t unit = std::min(rest.find_first_of(" \t\r\n,+-.0123456789"), rest.size());
        result.push_back(*number * unitIn(rest.substr(0, unit), em, whole));
        text = rest.substr(unit);
    }
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the document, which the XML reader limits
const TextStyle& TextStyles::of(const xmlNode* node) {
    if (const auto known = m_known.find(node); known != m_known.end()) {
        return known->second;
    }
    TextStyle style;
    style.font.family = usualFamily;
    if (node->parent != nullptr && isElement(node->parent)) {
        style = of(node->parent);
        style.alignmentBaseline.clear();
        style.forcesDirection = style.forcesDirection && isNamed(node, "tspan");
    }
    readFont(node, style.size, &style);
    readPlace(node, &style);
    return m_known.emplace(node, std::move(style)).first->second;
}

// NOLINTNEXTLINE(misc-no-recursion): asks for the outermost element alone
double TextStyles::sizeOf(const std::string& text, const xmlNode* node, double parentSize) {
    constexpr double usualSize = 16.0;
    if (const auto named = namedSize(text, parentSize)) {
        return *named;
    }
    std::string_view rest = trimmed(text);
    const std::optional<double> number = takeNumber(&rest);
    if (!number || *number < 0) {
        return parentSize;
    }
    if (rest == "rem") {
        const xmlNode* const root = xmlDocGetRootElement(node->doc);
        return *number * (node == root ? usualSize : of(root).size);
    }
    return lengthOf(text, parentSize, parentSize);
}

// NOLINTNEXTLINE(misc-no-recursion): asks for the outermost element alone
void TextStyles::readFont(const xmlNode* node, double parentSize, TextStyle* style) {
    const auto stated = [&](const char* property) -> std::optional<std::string> {
        auto value = m_cascade.declared(node, property);
        return value && *value != "inherit" ? std::move(value) : std::nullopt;
    };
    if (const auto font = stated("font")) {
        readShorthand(*font, parentSize, style);
    }
    if (const auto family = stated("font-family")) {
        style->font.family = familiesOf(*family);
    }
    if (const auto size = stated("font-size")) {
        style->size = sizeOf(*size, node, parentSize);
    }
    style->size = std::min(style->size, largestSize);
    if (const auto weight = stated("font-weight")) {
        style->font.weight = weightOf(*weight, style->font.weight);
    }
    if (const auto stretch = stated("font-stretch")) {
        style->font.stretch = stretchOf(*stretch, style->font.stretch);
    }
    if (const auto slant = stated("font-style")) {
        style->font.italic = *slant == "italic";
        style->font.oblique = slant->starts_with("oblique");
    }
    for (const char* const property : {"font-variant", "font-variant-caps"}) {
        if (const auto variant = stated(property)) {
            style->font.smallCaps = variant->find("small-caps") != std::string::npos;
        }
    }
    // "font-kerning" is a property of style sheets alone.
    const bool kerns = attributeOf(node, "font-kerning") || stated("font-kerning") != "none";
    if (!kerns || stated("kerning") == "0") {
        addFeature("kern 0", &style->font);
    }
    if (stated("font-variant-ligatures") == "none") {
        addFeature("liga 0, clig 0", &style->font);
    }
    if (const auto features = stated("font-feature-settings")) {
        addFeatures(*features, &style->font);
    }
    if (const auto language = attributeOf(node, "lang")) {
        style->font.language = *language;
    }
}

void TextStyles::readShorthand(const std::string& text, double parentSize, TextStyle* style) {
    std::string_view rest = trimmed(text);
    FontChoice font;
    font.language = style->font.language;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(blanks), rest.size());
        const std::string_view word = rest.substr(0, end);
        rest = trimmed(rest.substr(end));
        const std::string_view size = word.substr(0, word.find('/'));
        const bool weight = size.size() == 3 && size.substr(1) == "00";
        const bool number = !weight && size.find_first_of("0123456789") == 0;
        if (const auto named = namedSize(size, parentSize); named || number) {
            style->size = named.value_or(lengthOf(size, parentSize, parentSize));
            font.family = familiesOf(rest);
            break;
        }
        font.italic = font.italic || word == "italic";
        font.oblique = font.oblique || word == "oblique";
        font.smallCaps = font.smallCaps || word == "small-caps";
        font.weight = weightOf(word, font.weight);
        font.stretch = stretchOf(word, font.stretch);
    }
    style->font = font;
}

void TextStyles::readPlace(const xmlNode* node, TextStyle* style) const {
    const auto stated = [&](const char* property) -> std::string {
        auto value = m_cascade.declared(node, property);
        return value && *value != "inherit" ? *value : "";
    };
    if (const std::string spacing = stated("letter-spacing"); !spacing.empty()) {
        style->letterSpacing = lengthOf(spacing, style->size, style->size);
    }
    if (const std::string spacing = stated("word-spacing"); !spacing.empty()) {
        style->wordSpacing = lengthOf(spacing, style->size, style->size);
    }
    if (const std::string anchor = stated("text-anchor"); !anchor.empty()) {
        style->anchor = anchor == "middle" ? TextStyle::Anchor::Middle
                        : anchor == "end"  ? TextStyle::Anchor::End
                                           : TextStyle::Anchor::Start;
    }
    if (const std::string direction = stated("direction"); !direction.empty()) {
        style->rightToLeft = direction == "rtl";
    }
    if (const std::string bidi = stated("unicode-bidi"); !bidi.empty()) {
        style->forcesDirection = bidi == "bidi-override" || bidi == "isolate-override";
    }
    if (const std::string letters = stated("text-transform"); !letters.empty()) {
        style->letterCase = letters;
    }
    if (const std::string mode = stated("writing-mode"); !mode.empty() && !isPartOfText(node)) {
        style->vertical = mode.starts_with("tb") || mode.starts_with("vertical");
    }
    if (const std::string orientation = stated("text-orientation"); !orientation.empty()) {
        style->orientation = orientation;
    }
    readBaseline(node, style);
    if (const auto space = attributeOf(node, "space")) {
        style->preserve = *space == "preserve";
    }
    if (const std::string space = stated("white-space"); !space.empty()) {
        style->preserve = space.starts_with("pre") || space == "break-spaces";
    }
    const std::string lines = stated("text-decoration") + " " + stated("text-decoration-line");
    style->underline = style->underline || lines.find("underline") != std::string::npos;
    style->overline = style->overline || lines.find("overline") != std::string::npos;
    style->strike = style->strike || lines.find("line-through") != std::string::npos;
}

/// Words that browsers do not know change nothing. A shift is of text alone, and adds to those
/// around it.
void TextStyles::readBaseline(const xmlNode* node, TextStyle* style) const {
    const std::string dominant = m_cascade.declared(node, "dominant-baseline").value_or("");
    if (isOneOf(dominant,
                {"auto", "use-script", "reset-size", "ideographic", "alphabetic", "hanging",
                 "mathematical", "central", "middle", "text-after-edge", "text-before-edge"})) {
        style->dominantBaseline = dominant;
    }
    const std::string aligned = m_cascade.declared(node, "alignment-baseline").value_or("");
    if (isOneOf(aligned,
                {"before-edge", "text-before-edge", "middle", "central", "after-edge",
                 "text-after-edge", "ideographic", "alphabetic", "hanging", "mathematical"})) {
        style->alignmentBaseline = aligned;
    }
    const std::string shift = m_cascade.declared(node, "baseline-shift").value_or("");
    if (!isPartOfText(node) && !isNamed(node, "text") && !isNamed(node, "a")) {
        return;
    }
    style->superscripts += shift == "super" ? 1 : 0;
    style->subscripts += shift == "sub" ? 1 : 0;
    style->raise += lengthOf(shift, style->size, style->size);
}

} // namespace orbel
