#include "drawing/TextOutlines.h"

#include "drawing/DrawingDocument.h"
#include "drawing/TextLayout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <numbers>
#include <set>
#include <utility>

namespace orbel {

namespace {

constexpr std::size_t mostCharacters = 200000; // of a drawing

/// Writes outlines as path data.
class PathData {
public:
    void add(const OutlineCurve& curve) {
        letter('M');
        point(curve.start);
        for (const OutlineSegment& s : curve.segments) {
            if (s.straight) {
                letter('L');
            } else {
                letter('C');
                point(s.control1);
                point(s.control2);
            }
            point(s.end);
        }
        if (curve.closed) {
            letter('Z');
        }
    }
    [[nodiscard]] const std::string& text() const { return m_text; }

private:
    void letter(char command) { m_text += command; }
    void point(PlanePoint p) {
        for (const double number : {p.x, p.y}) {
            std::array<char, 32> buffer{};
            const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                           std::chars_format::general, 9);
            m_text.append(buffer.data(), end.ptr).append(" ");
        }
    }

    std::string m_text;
};

OutlineCurve bar(double x, double y, double width, double height) {
    const PlanePoint a{x, y};
    const PlanePoint b{x + width, y};
    const PlanePoint c{x + width, y + height};
    const PlanePoint d{x, y + height};
    return {a, {lineSegment(a, b), lineSegment(b, c), lineSegment(c, d)}, true};
}

constexpr std::array<const char*, 8> looks{"fill",         "stroke",     "fill-opacity",
                                           "stroke-width", "visibility", "stroke-opacity",
                                           "paint-order",  "color"};

/// Puts the outlines of one text element in its place.
class Replacement {
public:
    Replacement(xmlNode* text, TextStyles* styles, const Cascade& cascade, FontShaper* shaper)
        : m_text(text),
          m_styles(styles),
          m_cascade(cascade),
          m_shaper(shaper),
          m_layout(layOutText(text, styles, cascade, shaper)) {}

    /// Makes the outlines; the document stays as it is until they stand in it, for its style sheets
    /// may count elements.
    std::size_t make() {
        std::vector<PlacedCluster> placed = std::move(m_layout.clusters);
        std::stable_sort(placed.begin(), placed.end(),
                         [](const auto& a, const auto& b) { return a.character < b.character; });
        m_group = xmlNewNode(m_text->ns, xmlChars("g"));
        if (m_group == nullptr) {
            throw std::bad_alloc();
        }
        keepAttributes();
        for (auto from = placed.begin(); from != placed.end();) {
            const xmlNode* const element = elementOf(*from);
            const auto to = std::find_if(from, placed.end(),
                                         [&](const auto& c) { return elementOf(c) != element; });
            addPath(element, {from, to});
            from = to;
        }
        return m_layout.characters.size();
    }

    [[nodiscard]] std::set<std::string> families() const { return m_layout.families; }

    void putInPlace() {
        addTitle();
        xmlReplaceNode(m_text, m_group);
        xmlFreeNode(m_text);
        if (isNamed(m_group->parent, "clipPath")) {
            dissolveGroup();
        }
    }

private:
    [[nodiscard]] const xmlNode* elementOf(const PlacedCluster& cluster) const {
        return m_layout.characters[cluster.character].element;
    }

    /// A clip takes no groups.
    void dissolveGroup() {
        const auto transform = attributeOf(m_group, "transform");
        while (xmlNode* const child = m_group->children) {
            xmlUnlinkNode(child);
            if (transform) {
                setAttribute(child, "transform", *transform);
            }
            xmlAddPrevSibling(m_group, child);
        }
        xmlUnlinkNode(m_group);
        xmlFreeNode(m_group);
    }

    void keepAttributes() {
        for (const char* const name : {"id", "systemLanguage", "requiredFeatures",
                                       "requiredExtensions", "clip-path", "mask"}) {
            if (const auto value = attributeOf(m_text, name)) {
                setAttribute(m_group, name, *value);
            }
        }
        if (const auto transform = m_cascade.declared(m_text, "transform")) {
            setAttribute(m_group, "transform", *transform);
        }
        if (const auto display = m_cascade.declared(m_text, "display")) {
            setAttribute(m_group, "display", *display);
        }
        // Rules for groups and paths are none for text.
        std::string inherited;
        for (const char* const property : looks) {
            inherited.append(property).append(":inherit;");
        }
        setAttribute(m_group, "style", inherited);
    }

    void addTitle() {
        for (xmlNode* child = m_text->children; child != nullptr; child = child->next) {
            if (isNamed(child, "title")) {
                xmlUnlinkNode(child);
                xmlAddChild(m_group, child);
                return;
            }
        }
    }

    void addPath(const xmlNode* element, std::vector<PlacedCluster> clusters) {
        const TextStyle& style = m_styles->of(element);
        PathData data;
        if (style.underline) {
            addLines(style, clusters, Line::Under, &data);
        }
        if (style.overline) {
            addLines(style, clusters, Line::Over, &data);
        }
        for (PlacedCluster& cluster : clusters) {
            for (OutlineCurve& curve : cluster.curves) {
                if (!cluster.hidden) {
                    transformCurve(transformOf(cluster, style.size), &curve);
                    data.add(curve);
                }
            }
        }
        if (style.strike) {
            addLines(style, clusters, Line::Through, &data);
        }
        xmlNode* const path = xmlNewChild(m_group, m_text->ns, xmlChars("path"), nullptr);
        setAttribute(path, "d", data.text());
        setAttribute(path, "style", lookOf(element));
    }

    [[nodiscard]] static PlaneTransform transformOf(const PlacedCluster& cluster, double size) {
        const double turn = cluster.turn + (cluster.sideways ? std::numbers::pi / 2 : 0);
        const double c = std::cos(turn);
        const double s = std::sin(turn);
        const double high = size * cluster.scale;
        const double wide = high * cluster.stretch;
        const double up = cluster.upright ? 0.0 : cluster.raise;
        return {c * wide,
                -s * high,
                s * wide,
                c * high,
                cluster.x + std::sin(cluster.line) * up,
                cluster.y - std::cos(cluster.line) * up};
    }

    enum class Line { Under, Over, Through };

    /// Where a line stands above the baseline; beside vertical text, left and right of it.
    [[nodiscard]] static double heightOf(Line line, const FontMetrics& metrics, bool vertical) {
        switch (line) {
        case Line::Under:
            return vertical ? -metrics.descent : metrics.underline;
        case Line::Over:
            return metrics.ascent;
        case Line::Through:
            break;
        }
        return vertical ? (metrics.ascent - metrics.descent) / 2 : metrics.strike;
    }

    /// Lines under, over or through the letters, one for every stretch without a gap.
    void addLines(const TextStyle& style, const std::vector<PlacedCluster>& clusters, Line line,
                  PathData* data) {
        if (style.size <= 0) {
            return;
        }
        const FontMetrics metrics = m_shaper->metricsOf(style.font);
        const bool vertical =
            style.vertical && m_layout.characters[clusters.front().character].path == nullptr;
        const double above = heightOf(line, metrics, vertical);
        for (auto from = clusters.begin(); from != clusters.end();) {
            auto to = from + 1;
            double length = from->advance;
            const auto follows = [&](const PlacedCluster& next) {
                const double along = vertical ? next.y - from->y : next.x - from->x;
                const double aside = vertical ? next.x - from->x : next.y - from->y;
                return from->line == next.line && from->turn == 0 && next.turn == 0 && aside == 0 &&
                       std::abs(along - length) < 1e-3 * style.size;
            };
            while (to != clusters.end() && follows(*to)) {
                length += to->advance;
                ++to;
            }
            OutlineCurve curve = bar(0, -(above + metrics.lineThickness / 2), length / style.size,
                                     metrics.lineThickness);
            PlacedCluster plain = *from;
            plain.stretch = 1.0;
            plain.scale = 1.0;
            plain.sideways = vertical;
            plain.upright = false;
            if (!from->hidden) {
                transformCurve(transformOf(plain, style.size), &curve);
                data->add(curve);
            }
            from = to;
        }
    }

    /// What is stated between the letters and the text element; the rest comes down to the path
    /// from the groups around it.
    [[nodiscard]] std::string lookOf(const xmlNode* element) const {
        std::string look = "display:inline;";
        for (const char* const property : looks) {
            std::optional<std::string> value = m_cascade.declared(element, property);
            for (const xmlNode* node = element;
                 node != m_text && value.value_or("inherit") == "inherit";) {
                node = node->parent;
                value = m_cascade.declared(node, property);
            }
            look.append(property).append(":").append(value.value_or("inherit")).append(";");
        }
        for (const xmlNode* node = element;; node = node->parent) {
            if (const auto opacity = m_cascade.declared(node, "opacity");
                opacity && lengthOf(*opacity, 0, 1) <= 0) {
                look += "display:none;";
            }
            if (node == m_text) {
                return look;
            }
        }
    }

    xmlNode* m_text;
    TextStyles* m_styles;
    const Cascade& m_cascade;
    FontShaper* m_shaper;
    TextLayout m_layout;
    xmlNode* m_group = nullptr;
};

/// A text inside a text shows nothing, and goes with it.
bool isInsideText(const xmlNode* node) {
    do {
        node = node->parent;
    } while (node != nullptr && isElement(node) && !isNamed(node, "text"));
    return node != nullptr && isElement(node);
}

} // namespace

void replaceTexts(xmlNode* root, const Cascade& cascade, std::vector<std::string>* notes) {
    std::vector<xmlNode*> texts;
    forEachElement(root, [&](xmlNode* node) {
        if (isNamed(node, "text") && !isInsideText(node)) {
            texts.push_back(node);
        }
    });
    if (texts.empty()) {
        return;
    }
    TextStyles styles(cascade);
    FontShaper shaper;
    std::size_t characters = 0;
    std::set<std::string> families;
    std::vector<Replacement> replacements;
    for (xmlNode* const text : texts) {
        if (characters > mostCharacters) {
            throw DrawingError{"the drawing holds more than 200,000 letters",
                               "split it, or convert its text to paths"};
        }
        replacements.emplace_back(text, &styles, cascade, &shaper);
        characters += replacements.back().make();
        families.merge(replacements.back().families());
    }
    for (Replacement& replacement : replacements) {
        replacement.putInPlace();
    }
    shaper.tellUninstalled(families, notes);
    shaper.tellMissing(notes);
}

} // namespace orbel
