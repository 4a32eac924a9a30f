#include "drawing/TextLayout.h"

#include "drawing/RendererGaps.h"
#include "drawing/TextPath.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <map>
#include <numbers>
#include <set>
#include <string_view>
#include <utility>

namespace orbel {

namespace {

constexpr double degrees = std::numbers::pi / 180;
constexpr double smallCapital = 0.7; // as large as capitals

// Each ends what another one began, in texts that are put together here.
// NOLINTBEGIN(misc-misleading-bidirectional)
constexpr const char* forceRight = "\u202d";
constexpr const char* forceLeft = "\u202e";
constexpr const char* release = "\u202c";
// NOLINTEND(misc-misleading-bidirectional)

/// Scripts whose letters hang together, which spaces between them would tear.
bool isJoined(gunichar letter) {
    constexpr std::array scripts{
        G_UNICODE_SCRIPT_ARABIC,     G_UNICODE_SCRIPT_SYRIAC,    G_UNICODE_SCRIPT_NKO,
        G_UNICODE_SCRIPT_MANDAIC,    G_UNICODE_SCRIPT_MONGOLIAN, G_UNICODE_SCRIPT_PHAGS_PA,
        G_UNICODE_SCRIPT_DEVANAGARI, G_UNICODE_SCRIPT_BENGALI,   G_UNICODE_SCRIPT_GURMUKHI,
        G_UNICODE_SCRIPT_MANICHAEAN, G_UNICODE_SCRIPT_MODI,      G_UNICODE_SCRIPT_SHARADA,
        G_UNICODE_SCRIPT_TIRHUTA,    G_UNICODE_SCRIPT_OGHAM,     G_UNICODE_SCRIPT_SYLOTI_NAGRI};
    return std::find(scripts.begin(), scripts.end(), g_unichar_get_script(letter)) != scripts.end();
}

bool isDirectionMark(std::string_view text) {
    return text.starts_with(forceRight) || text.starts_with(forceLeft) || text.starts_with(release);
}

/// Lays one text element out.
class Layout {
public:
    Layout(const xmlNode* text, TextStyles* styles, const Cascade& cascade, FontShaper* shaper)
        : m_text(text),
          m_styles(styles),
          m_shaper(shaper),
          m_viewport(viewportOf(text)),
          m_characters(charactersOf(text, styles, cascade)) {
        makeSmallCapitals();
    }

    TextLayout layOut() {
        TextLayout result;
        result.clusters = place();
        result.families = families();
        result.characters = std::move(m_characters);
        return result;
    }

private:
    /// The lists of families that the letters ask for.
    [[nodiscard]] std::set<std::string> families() const {
        std::set<std::string> result;
        for (std::size_t i = 0; i < m_characters.size(); ++i) {
            std::string list = styleOf(i).font.family;
            if (list.ends_with(usualFamily)) {
                list.resize(list.size() - std::strlen(usualFamily));
            }
            result.insert(std::move(list));
        }
        result.erase("");
        return result;
    }

    /// Where the font has no small capitals, capitals take their place.
    void makeSmallCapitals() {
        std::map<const xmlNode*, bool> made;
        for (std::size_t i = 0; i < m_characters.size(); ++i) {
            TextCharacter& c = m_characters[i];
            const FontChoice& font = styleOf(i).font;
            if (!font.smallCaps) {
                continue;
            }
            const auto known = made.find(c.element);
            const bool make =
                known != made.end()
                    ? known->second
                    : made.emplace(c.element, !m_shaper->hasSmallCapitals(font)).first->second;
            gchar* const capital = g_utf8_strup(c.text.c_str(), -1);
            c.smallCapital = make && c.text != capital;
            if (c.smallCapital) {
                c.text = capital;
            }
            g_free(capital);
        }
    }

    std::vector<PlacedCluster> place() {
        std::vector<std::vector<PlacedCluster>> chunks;
        std::size_t begin = 0;
        for (std::size_t i = 1; i <= m_characters.size(); ++i) {
            if (i == m_characters.size() || m_characters[i].x || m_characters[i].y ||
                m_characters[i].path != m_characters[i - 1].path) {
                chunks.push_back(shapeChunk(begin, i));
                begin = i;
            }
        }
        stretchToLength(&chunks);
        for (std::vector<PlacedCluster>& chunk : chunks) {
            placeChunk(&chunk);
        }
        return std::move(m_placed);
    }

    [[nodiscard]] const TextStyle& styleOf(std::size_t character) const {
        return m_styles->of(m_characters[character].element);
    }

    void placeChunk(std::vector<PlacedCluster>* chunk) {
        if (chunk->empty()) {
            return;
        }
        const bool vertical = m_styles->of(m_text).vertical;
        const std::size_t begin =
            std::min_element(chunk->begin(), chunk->end(), [](const auto& a, const auto& b) {
                return a.character < b.character;
            })->character;
        const TextCharacter& first = m_characters[begin];
        m_penX = first.x.value_or(m_penX);
        m_penY = first.y.value_or(m_penY);
        double whole = 0.0; // the first shift moves what the text is anchored to
        for (const PlacedCluster& cluster : *chunk) {
            const TextCharacter& c = m_characters[cluster.character];
            whole += cluster.advance + (&cluster == &chunk->front() ? 0 : vertical ? c.dy : c.dx);
        }
        const TextStyle& firstStyle = styleOf(begin);
        const bool fromRight = firstStyle.rightToLeft;
        const auto anchor = firstStyle.anchor;
        const double shift = anchor == TextStyle::Anchor::Middle               ? -whole / 2
                             : (anchor == TextStyle::Anchor::End) != fromRight ? -whole
                                                                               : 0.0;
        if (first.path != nullptr) {
            layOnPath(first.path, shift, chunk);
        } else {
            layOnLine(shift, vertical, chunk);
        }
        std::move(chunk->begin(), chunk->end(), std::back_inserter(m_placed));
    }

    /// The clusters from left to right with their advances.
    std::vector<PlacedCluster> shapeChunk(std::size_t begin, std::size_t end) {
        std::string text;
        std::vector<FontRun> runs;
        std::vector<std::size_t> characterAt; // by byte
        bool separate = false;                // letters with places of their own do not join
        for (std::size_t i = begin; i < end; ++i) {
            const TextCharacter& c = m_characters[i];
            separate = separate || (i > begin && (c.dx != 0 || c.dy != 0)) || spacingAfter(i) != 0;
        }
        for (std::size_t i = begin; i < end; ++i) {
            FontChoice font = styleOf(i).font;
            if (separate) {
                font.features.append(font.features.empty() ? "" : ", ").append("liga 0, clig 0");
            }
            const std::size_t at = text.size();
            text += directionMark(begin, i) + m_characters[i].text;
            characterAt.resize(text.size(), i);
            if (runs.empty() || !(runs.back().font == font)) {
                runs.push_back({at, text.size(), std::move(font)});
            }
            runs.back().end = text.size();
        }
        std::vector<PlacedCluster> chunk;
        const auto direction = styleOf(begin).rightToLeft ? FontShaper::Direction::RightToLeft
                                                          : FontShaper::Direction::LeftToRight;
        for (ShapedCluster& cluster : m_shaper->shape(text, runs, direction)) {
            if (isDirectionMark(std::string_view(text).substr(cluster.byte))) {
                continue;
            }
            PlacedCluster placed;
            placed.character = characterAt[std::min(cluster.byte, characterAt.size() - 1)];
            const TextStyle& style = styleOf(placed.character);
            const bool onPath = m_characters[begin].path != nullptr;
            const bool upright = style.orientation == "upright" ||
                                 (cluster.upright && style.orientation != "sideways");
            placed.upright = style.vertical && upright && !onPath;
            placed.sideways = style.vertical && !upright && !onPath;
            placed.scale = m_characters[placed.character].smallCapital ? smallCapital : 1.0;
            placed.raise = raiseOf(style);
            double advance = cluster.advance;
            if (placed.upright) {
                const FontMetrics metrics = m_shaper->metricsOf(style.font);
                const double height = metrics.ascent + metrics.descent;
                advance = cluster.upright ? 1.0 : height; // wide letters fill a square
                const double down = metrics.ascent / (cluster.upright ? height : 1.0);
                for (OutlineCurve& curve : cluster.curves) {
                    transformCurve({1, 0, 0, 1, -cluster.advance / 2, down}, &curve);
                }
            }
            placed.advance = advance * style.size * placed.scale + spacingAfter(placed.character);
            placed.curves = std::move(cluster.curves);
            chunk.push_back(std::move(placed));
        }
        return chunk;
    }

    /// Letters that are joined stay so.
    [[nodiscard]] double spacingAfter(std::size_t character) const {
        const TextStyle& style = styleOf(character);
        const std::string& text = m_characters[character].text;
        return (isJoined(g_utf8_get_char(text.c_str())) ? 0.0 : style.letterSpacing) +
               (text == " " ? style.wordSpacing : 0.0);
    }

    /// What turns a forced direction on or off before a character.
    [[nodiscard]] std::string directionMark(std::size_t begin, std::size_t character) const {
        const auto forced = [&](std::size_t i) { return styleOf(i).forcesDirection; };
        const bool before = character > begin && forced(character - 1);
        const bool same = before && forced(character) &&
                          styleOf(character - 1).rightToLeft == styleOf(character).rightToLeft;
        if (same || (!before && !forced(character))) {
            return {};
        }
        const char* const own = !forced(character)               ? ""
                                : styleOf(character).rightToLeft ? forceLeft
                                                                 : forceRight;
        return std::string(before ? release : "") + own;
    }

    /// How far a letter stands above the line.
    double raiseOf(const TextStyle& style) {
        const std::string& wanted =
            style.alignmentBaseline.empty() ? style.dominantBaseline : style.alignmentBaseline;
        const bool shifted = style.superscripts > 0 || style.subscripts > 0;
        if (!style.vertical && !shifted &&
            (wanted.empty() || wanted == "auto" || wanted == "alphabetic")) {
            return style.raise;
        }
        const FontMetrics metrics = m_shaper->metricsOf(style.font);
        const double raise = style.raise + (style.superscripts * metrics.superscript -
                                            style.subscripts * metrics.subscript) *
                                               style.size;
        double below = 0.0; // the baseline, seen from the font's own, in its size
        if (wanted == "middle") {
            below = metrics.xHeight / 2;
        } else if (wanted == "central" || style.vertical) {
            below = (metrics.ascent - metrics.descent) / 2;
        } else if (wanted == "hanging") {
            below = metrics.ascent * 0.8;
        } else if (wanted == "mathematical") {
            below = metrics.ascent / 2;
        } else if (wanted == "text-before-edge" || wanted == "before-edge") {
            below = metrics.ascent;
        } else if (wanted == "text-after-edge" || wanted == "after-edge" ||
                   wanted == "ideographic") {
            below = -metrics.descent;
        }
        return raise - below * style.size;
    }

    /// Spreads or stretches what stands in an element that states its length, inner ones first.
    void stretchToLength(std::vector<std::vector<PlacedCluster>>* chunks) {
        std::vector<const xmlNode*> stated;
        std::set<const xmlNode*> seen;
        for (const TextCharacter& c : m_characters) {
            for (const xmlNode* node = c.element; seen.insert(node).second; node = node->parent) {
                if (attributeOf(node, "textLength")) {
                    stated.push_back(node);
                }
                if (node == m_text) {
                    break;
                }
            }
        }
        std::stable_sort(stated.begin(), stated.end(),
                         [this](const auto* a, const auto* b) { return depthOf(a) > depthOf(b); });
        for (const xmlNode* const node : stated) {
            stretchElement(node, chunks);
        }
    }

    [[nodiscard]] int depthOf(const xmlNode* node) const {
        int depth = 0;
        for (; node != m_text; node = node->parent) {
            ++depth;
        }
        return depth;
    }

    [[nodiscard]] bool isInside(std::size_t character, const xmlNode* element) const {
        const xmlNode* node = m_characters[character].element;
        while (node != element && node != m_text) {
            node = node->parent;
        }
        return node == element;
    }

    void stretchElement(const xmlNode* element, std::vector<std::vector<PlacedCluster>>* chunks) {
        std::vector<PlacedCluster*> inside;
        double natural = 0.0;
        bool last = false; // of its chunk
        for (std::vector<PlacedCluster>& chunk : *chunks) {
            for (PlacedCluster& cluster : chunk) {
                if (isInside(cluster.character, element)) {
                    inside.push_back(&cluster);
                    natural += cluster.advance;
                    last = &cluster == &chunk.back();
                }
            }
        }
        const double wanted = lengthOf(attributeOf(element, "textLength").value_or(""),
                                       m_styles->of(element).size, m_viewport.width);
        if (inside.empty() || !(wanted > 0) || natural <= 0) {
            return;
        }
        if (attributeOf(element, "lengthAdjust") == "spacingAndGlyphs") {
            for (PlacedCluster* const cluster : inside) {
                cluster->advance *= wanted / natural;
                cluster->stretch = wanted / natural;
            }
        } else if (inside.size() > 1) {
            const double gap = (wanted - natural) / static_cast<double>(inside.size() - 1);
            for (PlacedCluster* const cluster : inside) {
                // What follows keeps its distance, too.
                cluster->advance += cluster != inside.back() || !last ? gap : 0.0;
            }
        }
    }

    void layOnLine(double shift, bool vertical, std::vector<PlacedCluster>* chunk) {
        (vertical ? m_penY : m_penX) += shift;
        for (PlacedCluster& cluster : *chunk) {
            const TextCharacter& c = m_characters[cluster.character];
            m_penX += c.dx;
            m_penY += c.dy;
            cluster.x = m_penX;
            cluster.y = m_penY;
            cluster.turn = c.rotate * degrees;
            cluster.line = vertical ? std::numbers::pi / 2 : 0.0;
            (vertical ? m_penY : m_penX) += cluster.advance;
        }
    }

    /// Letters stand upright on the path in their middles.
    void layOnPath(const xmlNode* element, double shift, std::vector<PlacedCluster>* chunk) {
        const xmlNode* const target = targetOf(element);
        const TextPath path(curvesFor(element, target));
        double along = startOn(path, element, target) + shift +
                       m_characters[chunk->front().character].x.value_or(0);
        double aside = 0.0;
        for (PlacedCluster& cluster : *chunk) {
            const TextCharacter& c = m_characters[cluster.character];
            along += c.dx;
            aside += c.dy;
            const double middle = along + cluster.advance / 2;
            cluster.hidden = !path.holds(middle);
            const TextPath::Station station = path.at(middle);
            const double back = cluster.advance / 2;
            const double c0 = std::cos(station.direction);
            const double s0 = std::sin(station.direction);
            cluster.x = station.point.x - back * c0 - aside * s0;
            cluster.y = station.point.y - back * s0 + aside * c0;
            cluster.line = station.direction;
            cluster.turn = station.direction + c.rotate * degrees;
            along += cluster.advance;
        }
        const TextPath::Station end = path.at(path.length());
        m_penX = end.point.x;
        m_penY = end.point.y;
    }

    /// Where the text begins; a path may state a length of its own to count by.
    double startOn(const TextPath& path, const xmlNode* element, const xmlNode* target) {
        const std::string offset = attributeOf(element, "startOffset").value_or("0");
        const double start = lengthOf(offset, m_styles->of(element).size, path.length());
        const double stated =
            target == nullptr ? 0 : lengthOf(attributeOf(target, "pathLength").value_or(""), 1, 1);
        const bool scaled = stated > 0 && offset.find('%') == std::string::npos;
        return scaled ? start * path.length() / stated : start;
    }

    [[nodiscard]] std::vector<OutlineCurve> curvesFor(const xmlNode* element,
                                                      const xmlNode* target) const {
        const auto data = attributeOf(element, "path");
        if (!data) {
            return target == nullptr ? std::vector<OutlineCurve>{}
                                     : outlinesOfShape(target, m_viewport, true);
        }
        const XmlTree own(xmlNewDoc(xmlChars("1.0")));
        xmlDocSetRootElement(own.get(), xmlNewNode(nullptr, xmlChars("path")));
        xmlNode* const path = xmlDocGetRootElement(own.get());
        setAttribute(path, "d", *data);
        return outlinesOfShape(path, m_viewport, false);
    }

    [[nodiscard]] const xmlNode* targetOf(const xmlNode* element) const {
        const std::string link = attributeOf(element, "href").value_or("");
        return link.starts_with("#")
                   ? elementById(xmlDocGetRootElement(m_text->doc), link.substr(1))
                   : nullptr;
    }

    const xmlNode* m_text;
    TextStyles* m_styles;
    FontShaper* m_shaper;
    Viewport m_viewport;
    std::vector<TextCharacter> m_characters;
    std::vector<PlacedCluster> m_placed;
    double m_penX = 0.0;
    double m_penY = 0.0;
};

} // namespace

TextLayout layOutText(const xmlNode* text, TextStyles* styles, const Cascade& cascade,
                      FontShaper* shaper) {
    return Layout(text, styles, cascade, shaper).layOut();
}

} // namespace orbel
