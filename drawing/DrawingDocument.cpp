#include "drawing/DrawingDocument.h"

#include "drawing/BrowserPatience.h"
#include "drawing/Cascade.h"
#include "drawing/Gunzip.h"
#include "drawing/RendererGaps.h"
#include "drawing/TextOutlines.h"
#include "drawing/TextStyle.h"
#include "drawing/XmlTree.h"

#include <libxml/uri.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <map>
#include <new>
#include <optional>
#include <utility>

namespace orbel {

namespace {

constexpr const char* svgNamespace = "http://www.w3.org/2000/svg";
constexpr const char* linkNamespace = "http://www.w3.org/1999/xlink";

constexpr std::size_t mostSigns = 60000;  // beyond, sources are not worth the memory
constexpr std::size_t mostDrawn = 400000; // each has three points or more, a shape a million
constexpr int signRed = 0x5a;
constexpr int signAlpha = 4;

bool isOneOf(const xmlNode* node, std::initializer_list<std::string_view> names) {
    const std::string_view name = nameOf(node);
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isDrawn(const xmlNode* node) {
    return isOneOf(node, {"path", "rect", "circle", "ellipse", "line", "polyline", "polygon", "use",
                          "switch"});
}

/// Where another element between the children changes nothing.
bool isPlainGroup(const xmlNode* node) {
    return node != nullptr && isElement(node) && isOneOf(node, {"g", "svg", "a", "symbol"});
}

std::string titleOf(const xmlNode* node) {
    for (; node->parent != nullptr && isElement(node->parent); node = node->parent) {
        for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
            if (isNamed(child, "title")) {
                return plainText(child);
            }
        }
    }
    return {}; // the drawing's own title names none of its parts
}

std::string idOf(const xmlNode* node) {
    for (; node->parent != nullptr && isElement(node->parent); node = node->parent) {
        if (auto id = attributeOf(node, "id"); id && !id->empty()) {
            return *id;
        }
    }
    return {};
}

class Preparation {
public:
    explicit Preparation(XmlTree tree) : m_tree(std::move(tree)) {
        m_root = xmlDocGetRootElement(m_tree.get());
        if (m_root == nullptr || nameOf(m_root) != "svg") {
            throw DrawingError{"this is no SVG drawing: its outermost element is <" +
                                   (m_root != nullptr ? std::string(nameOf(m_root)) : "") + ">",
                               "save the drawing as plain SVG"};
        }
    }

    DrawingDocument prepare() {
        addNamespaces();
        mendFaults(m_root);
        const Cascade cascade(m_root);
        bridgeRendererGaps(m_root, cascade);
        replaceTexts(m_root, cascade, &m_result.notes);
        forEachElement(m_root, [&](xmlNode* node) { prepareElement(node, cascade); });
        if (m_drawn > mostDrawn) {
            throw DrawingError{"the drawing has " + std::to_string(m_drawn) +
                                   " painted elements, too many for a shape of a million points",
                               "split it in a drawing program"};
        }
        if (!m_patterns.empty()) {
            simplifyTiles();
        }
        if (cascade.looksAtSiblings()) {
            m_result.notes.emplace_back(
                "the outlines do not name their sources: a style sheet counts elements");
        } else {
            placeSigns();
        }
        tell(m_pictures, "picture");
        tell(m_foreign, "piece of another language (foreignObject)");
        m_result.svg = textOf(m_tree);
        return std::move(m_result);
    }

private:
    /// Browsers refuse such files, drawing programs write them all the same.
    void addNamespaces() {
        if (m_root->ns == nullptr) {
            xmlNewNs(m_root, xmlChars(svgNamespace), nullptr);
        }
        declarePrefix("xlink");
        forEachElement(m_root, [this](xmlNode* node) {
            for (xmlNs* space = node->nsDef; space != nullptr; space = space->next) {
                mendAddress(space);
            }
            declarePrefixOf(nameOf(node));
            for (const xmlAttr* a = node->properties; a != nullptr; a = a->next) {
                declarePrefixOf(reinterpret_cast<const char*>(a->name));
            }
        });
    }

    /// The renderer refuses a name space whose address is none, whatever it is for.
    static void mendAddress(xmlNs* space) {
        xmlURI* const address = xmlParseURI(reinterpret_cast<const char*>(space->href));
        const bool whole = address != nullptr && address->scheme != nullptr;
        xmlFreeURI(address);
        if (whole || space->href == nullptr) {
            return;
        }
        const bool link = space->prefix != nullptr &&
                          std::strcmp(reinterpret_cast<const char*>(space->prefix), "xlink") == 0;
        xmlChar* const mended = xmlStrdup(xmlChars(link ? linkNamespace : "urn:undeclared"));
        if (mended == nullptr) {
            throw std::bad_alloc();
        }
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the name space owns it
        xmlFree(const_cast<xmlChar*>(space->href));
        space->href = mended;
    }

    /// A name keeps its prefix where nothing declares that.
    void declarePrefixOf(std::string_view name) {
        if (const std::size_t colon = name.find(':'); colon != std::string_view::npos) {
            declarePrefix(std::string(name.substr(0, colon)));
        }
    }

    void declarePrefix(const std::string& prefix) {
        if (xmlSearchNs(m_tree.get(), m_root, xmlChars(prefix.c_str())) == nullptr) {
            const std::string space = prefix == "xlink" ? linkNamespace
                                      : prefix == "svg" ? svgNamespace
                                                        : "urn:undeclared:" + prefix;
            xmlNewNs(m_root, xmlChars(space.c_str()), xmlChars(prefix.c_str()));
        }
    }

    void prepareElement(xmlNode* node, const Cascade& cascade) {
        m_drawn += isDrawn(node) ? 1U : 0U;
        if (isOneOf(node, {"image", "feImage"})) {
            removeAttribute(node, "href"); // as data it may be longer than the renderer takes
            m_pictures += isNamed(node, "image") ? 1U : 0U;
        } else if (isNamed(node, "foreignObject")) {
            ++m_foreign;
        } else if (isNamed(node, "pattern") && xmlFirstElementChild(node) != nullptr) {
            m_patterns.push_back(node);
        } else if (isNamed(node, "clipPath")) {
            m_result.clips = true;
            openBoxClip(node);
        } else if (isOneOf(node, {"mask", "symbol"}) || (node != m_root && isNamed(node, "svg"))) {
            m_result.clips = true;
        }
        if ((isTransparent(node, cascade) && !isInside(node, "clipPath")) ||
            isBlanked(node, cascade)) {
            hideElement(node);
        }
    }

    static bool isInside(const xmlNode* node, const char* name) {
        while (node != nullptr && isElement(node) && !isNamed(node, name)) {
            node = node->parent;
        }
        return node != nullptr && isElement(node);
    }

    /// The turned recording loses what is clipped in parts of a box, so such a clip hides nothing.
    void openBoxClip(xmlNode* clip) {
        if (attributeOf(clip, "clipPathUnits") != "objectBoundingBox" ||
            xmlFirstElementChild(clip) == nullptr) {
            return;
        }
        removeAttribute(clip, "clipPathUnits");
        removeAttribute(clip, "transform");
        setAttribute(addChild(clip, "path"), "d", "M-1e5-1e5H1e5V1e5H-1e5z");
    }

    /// Whether a filter or a mask leaves nothing: one that is empty, or has no size.
    bool isBlanked(const xmlNode* node, const Cascade& cascade) {
        for (const char* const property : {"filter", "mask"}) {
            const std::string value = cascade.declared(node, property).value_or("");
            const std::size_t mark = value.find("url(");
            const std::size_t end = value.find(')', mark);
            if (mark != 0 || end == std::string::npos || !trimmed(value.substr(end + 1)).empty()) {
                continue;
            }
            std::string name = value.substr(4, end - 4);
            name.erase(std::remove_if(name.begin(), name.end(),
                                      [](char c) { return c == '"' || c == '\'' || c == ' '; }),
                       name.end());
            const auto& elements = identified();
            if (const auto found = elements.find(name); found != elements.end() &&
                                                        isNamed(found->second, property) &&
                                                        isVoid(found->second)) {
                return true;
            }
        }
        return false;
    }

    static bool isVoid(const xmlNode* effect) {
        const auto none = [effect](const char* side) {
            const auto length = attributeOf(effect, side);
            return length && lengthOf(*length, 1, 1) == 0;
        };
        return (xmlChildElementCount(const_cast<xmlNode*>(effect)) == 0 && // NOLINT
                !attributeOf(effect, "href")) ||
               none("width") || none("height");
    }

    /// The elements by "#" and their identifiers.
    const std::map<std::string, const xmlNode*, std::less<>>& identified() {
        if (!m_identified) {
            m_identified.emplace();
            forEachElement(m_root, [this](const xmlNode* node) {
                if (const auto id = attributeOf(node, "id")) {
                    m_identified->emplace("#" + *id, node);
                }
            });
        }
        return *m_identified;
    }

    /// What a pattern repeats is no outline, and the recording may fail on it; so only its being
    /// there stays. Its parts may be used elsewhere.
    void simplifyTiles() {
        xmlNode* const store = addChild(m_root, "defs");
        for (xmlNode* const pattern : m_patterns) {
            while (xmlNode* const child = pattern->children) {
                xmlUnlinkNode(child);
                xmlAddChild(store, child);
            }
            setAttribute(addChild(pattern, "path"), "d", "M0 0L3 1L1 3z");
        }
    }

    xmlNode* addChild(xmlNode* parent, const char* name) {
        xmlNode* const child = xmlNewChild(parent, m_root->ns, xmlChars(name), nullptr);
        if (child == nullptr) {
            throw std::bad_alloc();
        }
        return child;
    }

    static bool isTransparent(const xmlNode* node, const Cascade& cascade) {
        const auto opacity = cascade.declared(node, "opacity");
        if (!opacity || opacity->empty()) {
            return false;
        }
        double value = 0.0;
        const auto read =
            std::from_chars(opacity->data(), opacity->data() + opacity->size(), value);
        return read.ec == std::errc{} && value <= 0;
    }

    void placeSigns() {
        std::vector<xmlNode*> drawn;
        forEachElement(m_root, [&](xmlNode* node) {
            if (isDrawn(node) && isPlainGroup(node->parent)) {
                drawn.push_back(node);
            }
        });
        if (drawn.size() > mostSigns) {
            m_result.notes.push_back(
                "the outlines do not name their sources: there are more than " +
                std::to_string(mostSigns) + " elements");
            return;
        }
        for (xmlNode* const node : drawn) {
            placeSign(node);
        }
    }

    void placeSign(xmlNode* node) {
        const std::size_t number = m_result.sources.size();
        char style[256];
        std::snprintf(style, sizeof style,
                      "fill:#%02x%04zx!important;fill-opacity:%.6f!important;stroke:none!important;"
                      "marker:none!important;display:inline!important;visibility:visible!important",
                      static_cast<unsigned>(signRed), number, signAlpha / 255.0);
        xmlNode* const sign = xmlNewNode(m_root->ns, xmlChars("path"));
        if (sign == nullptr) {
            throw std::bad_alloc();
        }
        setAttribute(sign, "d", "M0 0H1V1z");
        setAttribute(sign, "style", style);
        xmlAddPrevSibling(node, sign);
        m_result.sources.push_back({idOf(node), titleOf(node), "", ""});
    }

    void tell(std::size_t count, const std::string& what) {
        if (count > 0) {
            m_result.notes.push_back(std::to_string(count) + " " + what +
                                     (count == 1 ? " has" : "s have") + " no outlines");
        }
    }

    XmlTree m_tree;
    xmlNode* m_root;
    DrawingDocument m_result;
    std::optional<std::map<std::string, const xmlNode*, std::less<>>> m_identified; // once asked
    std::vector<xmlNode*> m_patterns; // those with tiles of their own
    std::size_t m_drawn = 0;
    std::size_t m_pictures = 0;
    std::size_t m_foreign = 0;
};

/// Pictures inside the drawing may be longer than the XML reader takes, and have no outlines.
std::string withoutEmbedded(std::string_view text) {
    constexpr std::size_t shortEnough = 1000;
    constexpr std::string_view mark = "data:";
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t found = text.find(mark, at);
        while (found != std::string_view::npos && found > 0 && text[found - 1] != '"' &&
               text[found - 1] != '\'') {
            found = text.find(mark, found + 1);
        }
        if (found == std::string_view::npos || found == 0) {
            return result.append(text.substr(at));
        }
        const std::size_t end = std::min(text.find(text[found - 1], found), text.size());
        const bool shorten = end - found > shortEnough;
        result.append(text.substr(at, (shorten ? found + mark.size() : end) - at));
        at = end;
    }
    return result;
}

} // namespace

DrawingDocument prepareDrawing(std::string_view bytes) {
    std::string unpacked;
    if (isGzip(bytes)) {
        unpacked = gunzip(bytes);
        bytes = unpacked;
    }
    if (trimmed(bytes).empty()) {
        throw DrawingError{"the file is empty", "save the drawing again"};
    }
    std::string error;
    XmlTree tree = parseXmlTree(withoutEmbedded(bytes), &error);
    if (tree == nullptr) {
        throw DrawingError{"this is no readable SVG: " + error, "save the drawing as plain SVG"};
    }
    return Preparation(std::move(tree)).prepare();
}

std::optional<std::size_t> signNumber(const std::array<double, 4>& colour) {
    const auto byte = [](double component) { return std::lround(component * 255); };
    if (byte(colour[0]) != signRed || std::abs(colour[3] * 255 - signAlpha) > 0.01) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(byte(colour[1]) * 256 + byte(colour[2]));
}

} // namespace orbel
