#include "drawing/BrowserPatience.h"

#include "drawing/Cascade.h"
#include "drawing/TextStyle.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace orbel {

namespace {

constexpr std::string_view spaceBetween = " \t\r\n";

bool mentions(std::string_view text, std::string_view word) {
    return text.find(word) != std::string_view::npos;
}

/// As "10-5.5.5", where every number is known by its first character. What cannot be read to its
/// end shows nothing anywhere.
void partPoints(xmlNode* node) {
    const std::string text = attributeOf(node, "points").value_or("");
    std::string parted;
    bool point = false; // in the number that is being read
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool exponent = i > 0 && (text[i - 1] == 'e' || text[i - 1] == 'E');
        const bool sign = (c == '-' || c == '+') && !exponent;
        if (sign || (c == '.' && point)) {
            parted += ' ';
        }
        const bool inside = (c >= '0' && c <= '9') || c == 'e' || c == 'E' || exponent;
        point = c == '.' || (point && inside);
        parted += c;
    }
    setAttribute(node, "points", parted);
}

bool isAlignment(std::string_view word) {
    constexpr std::array places{"xMinYMin", "xMidYMin", "xMaxYMin", "xMinYMid", "xMidYMid",
                                "xMaxYMid", "xMinYMax", "xMidYMax", "xMaxYMax", "none"};
    return std::find(places.begin(), places.end(), word) != places.end();
}

/// Whether `preserveAspectRatio` can be read.
bool isAspect(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with("defer ")) {
        text = trimmed(text.substr(6));
    }
    const std::size_t end = std::min(text.find_first_of(spaceBetween), text.size());
    const std::string_view rest = trimmed(text.substr(end));
    return isAlignment(text.substr(0, end)) && (rest.empty() || rest == "meet" || rest == "slice");
}

void removeUnreadable(xmlNode* node) {
    if (const auto box = attributeOf(node, "viewBox"); box && lengthsOf(*box, 0, 0).size() != 4) {
        removeAttribute(node, "viewBox");
    }
    if (const auto aspect = attributeOf(node, "preserveAspectRatio");
        aspect && !isAspect(*aspect)) {
        removeAttribute(node, "preserveAspectRatio");
    }
    if (const auto transform = attributeOf(node, "transform");
        transform && std::count(transform->begin(), transform->end(), '(') !=
                         std::count(transform->begin(), transform->end(), ')')) {
        removeAttribute(node, "transform");
    }
}

/// Where the block ends that is opened before `at`: at its closing bracket.
std::size_t endOfBlock(std::string_view sheet, std::size_t at) {
    for (int depth = 1; at < sheet.size(); ++at) {
        depth += sheet[at] == '{' ? 1 : sheet[at] == '}' ? -1 : 0;
        if (depth == 0) {
            break;
        }
    }
    return at;
}

/// Rules for screens count as all others do.
std::string withoutMedia(std::string_view sheet) {
    std::string result;
    while (true) {
        const std::size_t at = std::min(sheet.find("@media"), sheet.size());
        result.append(sheet.substr(0, at));
        const std::size_t open = sheet.find('{', at);
        if (open == std::string_view::npos) {
            return result.append(sheet.substr(at));
        }
        const std::string_view media = sheet.substr(at, open - at);
        const std::size_t close = endOfBlock(sheet, open + 1);
        const bool ours = (mentions(media, "screen") || mentions(media, "all")) &&
                          !mentions(media, "not") && !mentions(media, "(");
        if (ours) {
            result.append(sheet.substr(open + 1, close - open - 1));
        }
        sheet = sheet.substr(std::min(close + 1, sheet.size()));
    }
}

void mendSheet(xmlNode* node) {
    const std::string kind = attributeOf(node, "type").value_or("");
    if (!kind.empty() && !std::string_view(kind).starts_with("text/css")) {
        xmlNodeSetContent(node, nullptr);
        return;
    }
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        const bool text = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
        if (!text || child->content == nullptr) {
            continue;
        }
        const std::string sheet = reinterpret_cast<const char*>(child->content);
        if (mentions(sheet, "@media")) {
            const std::string mended = withoutMedia(sheet);
            xmlNodeSetContent(child, nullptr);
            xmlNodeAddContent(child, xmlChars(mended.c_str()));
        }
    }
}

} // namespace

void mendFaults(xmlNode* root) {
    forEachElement(root, [](xmlNode* node) {
        removeUnreadable(node);
        if (isNamed(node, "style")) {
            mendSheet(node);
        } else if (isNamed(node, "polygon") || isNamed(node, "polyline")) {
            partPoints(node);
        } else if (const auto radius = attributeOf(node, "r");
                   isNamed(node, "radialGradient") && radius && lengthOf(*radius, 1, 1) == 0) {
            setAttribute(node, "r", "1e-4"); // the last colour everywhere
        }
    });
}

} // namespace orbel
