#include "drawing/RendererGaps.h"

#include "drawing/CssTransform.h"
#include "drawing/TextCharacters.h"
#include "drawing/TextPath.h"

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <new>
#include <vector>

namespace orbel {

namespace {

constexpr std::size_t mostCopies = 1000; // of drawings inside the drawing, and of measured shapes
constexpr double usualFontSize = 16.0;

/// The user's languages as tags; English when nothing is said.
std::vector<std::string> userLanguages() {
    std::vector<std::string> tags;
    for (const gchar* const* name = g_get_language_names(); *name != nullptr; ++name) {
        std::string tag(*name);
        tag = tag.substr(0, tag.find_first_of(".@"));
        std::replace(tag.begin(), tag.end(), '_', '-');
        if (tag != "C" && tag != "POSIX") {
            tags.push_back(std::move(tag));
        }
    }
    return tags.empty() ? std::vector<std::string>{"en"} : tags;
}

bool isLanguage(std::string_view wanted, const std::vector<std::string>& languages) {
    return std::any_of(languages.begin(), languages.end(), [wanted](const std::string& one) {
        const std::size_t length = one.size();
        return wanted.size() >= length &&
               g_ascii_strncasecmp(wanted.data(), one.data(), length) == 0 &&
               (wanted.size() == length || wanted[length] == '-');
    });
}

bool holdsLanguage(std::string_view list, const std::vector<std::string>& languages) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(','), list.size());
        if (isLanguage(trimmed(list.substr(0, end)), languages)) {
            return true;
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

/// Features are always there for browsers, extensions never.
class Conditions {
public:
    void settle(xmlNode* node) const {
        const bool passed = pass(node);
        for (const char* const name :
             {"systemLanguage", "requiredFeatures", "requiredExtensions"}) {
            removeAttribute(node, name);
        }
        if (!passed) {
            hideElement(node);
        }
    }

    /// Becomes a group of which only the first child that can be shown is.
    void settleSwitch(xmlNode* node) const {
        bool chosen = false;
        for (xmlNode* child = xmlFirstElementChild(node); child != nullptr;
             child = xmlNextElementSibling(child)) {
            const bool shows = !chosen && pass(child) && !isNamed(child, "foreignObject");
            chosen = chosen || (shows && !isNamed(child, "title") && !isNamed(child, "desc"));
            if (!shows) {
                hideElement(child);
            }
        }
        xmlNodeSetName(node, xmlChars("g"));
    }

private:
    [[nodiscard]] bool pass(const xmlNode* node) const {
        const auto language = attributeOf(node, "systemLanguage");
        return !attributeOf(node, "requiredExtensions") &&
               (!language || holdsLanguage(*language, m_languages));
    }

    std::vector<std::string> m_languages = userLanguages();
};

class Bridging {
public:
    Bridging(xmlNode* root, const Cascade& cascade) : m_root(root), m_cascade(cascade) {}

    void bridge() {
        if (!m_cascade.declared(m_root, "font-size") && !m_cascade.declared(m_root, "font")) {
            setAttribute(m_root, "font-size", "16");
        }
        const Conditions conditions;
        std::vector<xmlNode*> moved;
        std::vector<xmlNode*> resized;
        forEachElement(m_root, [&](xmlNode* node) {
            if (isNamed(node, "switch")) {
                conditions.settleSwitch(node);
            }
            conditions.settle(node);
            turnAboutOrigin(node);
            if (isNamed(node, "symbol")) {
                noteTransform(node);
            }
            if (isNamed(node, "use")) {
                moved.push_back(node);
            }
            if (isNamed(node, "path")) {
                takeStatedPath(node);
            } else if (isNamed(node, "use") &&
                       (attributeOf(node, "width") || attributeOf(node, "height"))) {
                resized.push_back(node);
            }
        });
        for (xmlNode* const use : moved) {
            moveUsed(use);
        }
        for (xmlNode* const use : resized) {
            resizeUsed(use);
        }
    }

private:
    void noteTransform(const xmlNode* symbol) {
        const auto id = attributeOf(symbol, "id");
        const auto transform = m_cascade.declared(symbol, "transform");
        if (id && transform) {
            m_transforms.emplace("#" + *id, *transform);
        }
    }

    /// d: path("M0 0h5")
    void takeStatedPath(xmlNode* node) const {
        const auto stated = m_cascade.declared(node, "d");
        if (!stated || !trimmed(*stated).starts_with("path(")) {
            return;
        }
        const std::size_t open = stated->find_first_of("\"'");
        const std::size_t close = stated->find_last_of("\"'");
        if (open < close && close != std::string::npos) {
            setAttribute(node, "d", stated->substr(open + 1, close - open - 1));
        }
    }

    /// The box that an origin refers to: the element's own, or the viewport.
    OutlineBox referenceBox(const xmlNode* node, bool own) {
        const Viewport viewport = viewportOf(node);
        OutlineBox box;
        if (own && ++m_measured <= mostCopies) {
            for (const OutlineCurve& curve : outlinesOfShape(node, viewport, false)) {
                box.add(boxOf(curve));
            }
        }
        if (box.empty()) {
            box = {0, 0, viewport.width, viewport.height};
        }
        return box;
    }

    void turnAboutOrigin(xmlNode* node) {
        const auto transform = m_cascade.declared(node, "transform");
        if (!transform) {
            return;
        }
        const auto origin = m_cascade.declared(node, "transform-origin");
        const std::string kind = m_cascade.declared(node, "transform-box").value_or("");
        const bool own = kind == "fill-box" || kind == "stroke-box" || kind == "border-box" ||
                         kind == "content-box";
        const auto attribute = attributeOf(node, "transform");
        const bool sheet = attribute != transform; // a style sheet's or attribute's own
        if (!origin && !own && !sheet) {
            return;
        }
        const OutlineBox box = referenceBox(node, own);
        const double width = box.right - box.left;
        const double height = box.bottom - box.top;
        auto matrix = cssTransform(*transform, usualFontSize, width, height, sheet);
        if (!matrix && sheet) {
            matrix = cssTransform(attribute.value_or("none"), usualFontSize, width, height, false);
        }
        if (!matrix) {
            return;
        }
        PlanePoint centre = cssOrigin(origin.value_or("0 0"), usualFontSize, width, height);
        centre = {centre.x + box.left, centre.y + box.top};
        const PlaneTransform turned = combined(combined({1, 0, 0, 1, centre.x, centre.y}, *matrix),
                                               {1, 0, 0, 1, -centre.x, -centre.y});
        writeTransform(turned, node);
    }

    static void writeTransform(const PlaneTransform& t, xmlNode* node) {
        char text[256];
        std::snprintf(text, sizeof text, "matrix(%.9g,%.9g,%.9g,%.9g,%.9g,%.9g)", t.xx, t.yx, t.xy,
                      t.yy, t.dx, t.dy);
        removeAttribute(node, "transform");
        // The renderer reads no "!important" here.
        setAttribute(node, "style", attributeOf(node, "style").value_or("") + ";transform:" + text);
    }

    /// The renderer does not heed the transforms of symbols, so the use gets them.
    void moveUsed(xmlNode* use) {
        const std::string link = attributeOf(use, "href").value_or("");
        const auto symbol = m_transforms.find(link);
        if (symbol == m_transforms.end()) {
            return;
        }
        const Viewport viewport = viewportOf(use);
        const auto read = [&](const std::string& text) {
            return cssTransform(text, usualFontSize, viewport.width, viewport.height, false);
        };
        const auto own = read(m_cascade.declared(use, "transform").value_or("none"));
        const auto symbols = read(symbol->second);
        if (!own || !symbols) {
            return;
        }
        const auto place = [&](const char* name, double whole) {
            return lengthOf(attributeOf(use, name).value_or("0"), usualFontSize, whole);
        };
        const PlaneTransform moved{
            1, 0, 0, 1, place("x", viewport.width), place("y", viewport.height)};
        removeAttribute(use, "x");
        removeAttribute(use, "y");
        writeTransform(combined(combined(*own, moved), *symbols), use);
    }

    /// The renderer heeds the size for symbols alone, so the use gets an svg of its own.
    void resizeUsed(xmlNode* use) {
        const std::string link = attributeOf(use, "href").value_or("");
        xmlNode* const target =
            link.starts_with("#") ? elementById(m_root, link.substr(1)) : nullptr;
        if (target == nullptr || !isNamed(target, "svg") || target == m_root ||
            ++m_copies > mostCopies) {
            return;
        }
        xmlNode* const copy = xmlDocCopyNode(target, m_root->doc, 1);
        if (copy == nullptr) {
            throw std::bad_alloc();
        }
        forEachElement(copy, [](xmlNode* node) { removeAttribute(node, "id"); });
        for (const char* const side : {"width", "height"}) {
            if (const auto length = attributeOf(use, side)) {
                setAttribute(copy, side, *length);
            }
        }
        const std::string name = "resized-" + std::to_string(m_copies);
        setAttribute(copy, "id", name);
        xmlNode* const store = xmlNewChild(m_root, m_root->ns, xmlChars("defs"), nullptr);
        xmlAddChild(store, copy);
        removeAttribute(use, "href");
        setAttribute(use, "href", "#" + name);
    }

    xmlNode* m_root;
    const Cascade& m_cascade;
    std::map<std::string, std::string> m_transforms; // of symbols, by "#" and their identifiers
    std::size_t m_copies = 0;
    std::size_t m_measured = 0;
};

} // namespace

void hideElement(xmlNode* node) {
    setAttribute(node, "style",
                 attributeOf(node, "style").value_or("") + ";display:none!important");
}

xmlNode* elementById(xmlNode* root, std::string_view id) {
    xmlNode* found = nullptr;
    forEachElement(root, [&](xmlNode* node) {
        if (found == nullptr && attributeOf(node, "id") == id) {
            found = node;
        }
    });
    return found;
}

void bridgeRendererGaps(xmlNode* root, const Cascade& cascade) {
    Bridging(root, cascade).bridge();
}

} // namespace orbel
