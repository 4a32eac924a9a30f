#include "drawing/FontShaper.h"

#include <hb-ot.h>
#include <pango/pangoft2.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <strings.h>
#include <utility>

namespace orbel {

namespace {

/// Fonts are asked for in this size and scaled down, so that nothing is rounded to pixels.
constexpr int fontPixels = 1000;
constexpr double unitsPerEm = fontPixels * PANGO_SCALE;

template<typename T>
struct Unref {
    void operator()(T* object) const { g_object_unref(object); }
};
struct FreeAttributes {
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
};
struct FreeDescription {
    void operator()(PangoFontDescription* description) const {
        pango_font_description_free(description);
    }
};
struct FreeGlyphs {
    void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
};
using Description = std::unique_ptr<PangoFontDescription, FreeDescription>;

Description descriptionOf(const FontChoice& font) {
    Description description(pango_font_description_new());
    pango_font_description_set_family(description.get(), font.family.c_str());
    pango_font_description_set_weight(description.get(), static_cast<PangoWeight>(font.weight));
    pango_font_description_set_stretch(description.get(), static_cast<PangoStretch>(font.stretch));
    pango_font_description_set_style(description.get(), font.italic    ? PANGO_STYLE_ITALIC
                                                        : font.oblique ? PANGO_STYLE_OBLIQUE
                                                                       : PANGO_STYLE_NORMAL);
    pango_font_description_set_absolute_size(description.get(), unitsPerEm);
    return description;
}

void addAttribute(PangoAttrList* list, PangoAttribute* attribute, const FontRun& run) {
    attribute->start_index = static_cast<guint>(run.begin);
    attribute->end_index = static_cast<guint>(run.end);
    pango_attr_list_insert(list, attribute);
}

/// Gathers what HarfBuzz draws; the pen stands at `origin`.
struct GlyphPen {
    std::vector<OutlineCurve>* curves = nullptr;
    PlanePoint origin;

    [[nodiscard]] PlanePoint at(float x, float y) const {
        return {origin.x + x / unitsPerEm, origin.y - y / unitsPerEm};
    }
    [[nodiscard]] OutlineCurve& curve() const { return curves->back(); }
};

GlyphPen& penOf(void* data) {
    return *static_cast<GlyphPen*>(data);
}

void moveTo(hb_draw_funcs_t* /*f*/, void* data, hb_draw_state_t* /*s*/, float x, float y,
            void* /*u*/) {
    GlyphPen& pen = penOf(data);
    pen.curves->emplace_back().start = pen.at(x, y);
    pen.curve().closed = true;
}

void lineTo(hb_draw_funcs_t* /*f*/, void* data, hb_draw_state_t* /*s*/, float x, float y,
            void* /*u*/) {
    GlyphPen& pen = penOf(data);
    pen.curve().segments.push_back(lineSegment(pen.curve().end(), pen.at(x, y)));
}

void quadraticTo(hb_draw_funcs_t* /*f*/, void* data, hb_draw_state_t* /*s*/, float cx, float cy,
                 float x, float y, void* /*u*/) {
    GlyphPen& pen = penOf(data);
    const PlanePoint control = pen.at(cx, cy);
    const PlanePoint end = pen.at(x, y);
    pen.curve().segments.push_back(
        {between(pen.curve().end(), control, 2.0 / 3), between(end, control, 2.0 / 3), end, false});
}

void cubicTo(hb_draw_funcs_t* /*f*/, void* data, hb_draw_state_t* /*s*/, float ax, float ay,
             float bx, float by, float x, float y, void* /*u*/) {
    GlyphPen& pen = penOf(data);
    pen.curve().segments.push_back({pen.at(ax, ay), pen.at(bx, by), pen.at(x, y), false});
}

struct DrawFunctions {
    hb_draw_funcs_t* functions = hb_draw_funcs_create();

    DrawFunctions() {
        hb_draw_funcs_set_move_to_func(functions, moveTo, nullptr, nullptr);
        hb_draw_funcs_set_line_to_func(functions, lineTo, nullptr, nullptr);
        hb_draw_funcs_set_quadratic_to_func(functions, quadraticTo, nullptr, nullptr);
        hb_draw_funcs_set_cubic_to_func(functions, cubicTo, nullptr, nullptr);
    }
};

void drawGlyph(PangoFont* font, PangoGlyph glyph, PlanePoint origin,
               std::vector<OutlineCurve>* curves) {
    static const DrawFunctions draw;
    hb_font_t* const face = pango_font_get_hb_font(font);
    int scaleX = 0;
    int scaleY = 0;
    hb_font_get_scale(face, &scaleX, &scaleY);
    const std::size_t before = curves->size();
    GlyphPen pen{curves, origin};
    hb_font_get_glyph_shape(face, glyph, draw.functions, &pen);
    if (scaleY < 0) { // some versions draw downwards
        for (std::size_t i = before; i < curves->size(); ++i) {
            transformCurve({1, 0, 0, -1, 0, 2 * origin.y}, &(*curves)[i]);
        }
    }
}

/// Blanks and controls have no glyph and need none.
bool needsGlyph(unsigned character) {
    return g_unichar_isgraph(character) != FALSE && g_unichar_iszerowidth(character) == FALSE;
}

bool standsUpright(unsigned character) {
    return g_unichar_iswide(character) != FALSE;
}

/// By its first letter of a script with a direction.
bool readsFromRight(const std::string& text) {
    for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
        switch (g_unichar_get_script(g_utf8_get_char(at))) {
        case G_UNICODE_SCRIPT_HEBREW:
        case G_UNICODE_SCRIPT_ARABIC:
        case G_UNICODE_SCRIPT_SYRIAC:
        case G_UNICODE_SCRIPT_THAANA:
        case G_UNICODE_SCRIPT_NKO:
            return true;
        case G_UNICODE_SCRIPT_COMMON:
        case G_UNICODE_SCRIPT_INHERITED:
            break;
        default:
            return false;
        }
    }
    return false;
}

} // namespace

struct FontShaper::Libraries {
    std::unique_ptr<PangoFontMap, Unref<PangoFontMap>> map{pango_ft2_font_map_new()};
    std::unique_ptr<PangoContext, Unref<PangoContext>> context{
        pango_font_map_create_context(map.get())};
};

FontShaper::FontShaper() : m_libraries(std::make_unique<Libraries>()) {
    pango_context_set_round_glyph_positions(m_libraries->context.get(), FALSE);
}

FontShaper::~FontShaper() = default;

std::vector<ShapedCluster>
FontShaper::shape(const std::string& text, const std::vector<FontRun>& runs, Direction direction) {
    const std::unique_ptr<PangoAttrList, FreeAttributes> attributes(pango_attr_list_new());
    for (const FontRun& run : runs) {
        addAttribute(attributes.get(), pango_attr_font_desc_new(descriptionOf(run.font).get()),
                     run);
        std::string features = run.font.features;
        if (run.font.smallCaps) {
            features += features.empty() ? "smcp" : ", smcp";
        }
        if (!features.empty()) {
            addAttribute(attributes.get(), pango_attr_font_features_new(features.c_str()), run);
        }
        if (!run.font.language.empty()) {
            addAttribute(
                attributes.get(),
                pango_attr_language_new(pango_language_from_string(run.font.language.c_str())),
                run);
        }
    }
    const bool fromRight = direction == Direction::RightToLeft ||
                           (direction == Direction::FromText && readsFromRight(text));
    GList* const logical = pango_itemize_with_base_dir(
        m_libraries->context.get(), fromRight ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR,
        text.c_str(), 0, static_cast<int>(text.size()), attributes.get(), nullptr);
    GList* const visual = pango_reorder_items(logical);
    std::vector<ShapedCluster> clusters;
    const std::unique_ptr<PangoGlyphString, FreeGlyphs> glyphs(pango_glyph_string_new());
    for (const GList* at = visual; at != nullptr; at = at->next) {
        auto* const item = static_cast<PangoItem*>(at->data);
        pango_shape_full(text.c_str() + item->offset, item->length, text.c_str(),
                         static_cast<int>(text.size()), &item->analysis, glyphs.get());
        double pen = 0.0;
        int current = -1;
        for (int i = 0; i < glyphs->num_glyphs; ++i) {
            const PangoGlyphInfo& info = glyphs->glyphs[i];
            const auto byte = static_cast<std::size_t>(item->offset) +
                              static_cast<std::size_t>(glyphs->log_clusters[i]);
            const unsigned character = g_utf8_get_char(text.c_str() + byte);
            if (glyphs->log_clusters[i] != current) {
                current = glyphs->log_clusters[i];
                const auto run = std::find_if(runs.begin(), runs.end(),
                                              [byte](const FontRun& r) { return byte < r.end; });
                pen = 0.0;
                clusters.push_back({byte,
                                    static_cast<std::size_t>(run - runs.begin()),
                                    0.0,
                                    standsUpright(character),
                                    {}});
            }
            ShapedCluster& cluster = clusters.back();
            if ((info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0) {
                m_missing[character] += needsGlyph(character) ? 1U : 0U;
            } else if (info.glyph != PANGO_GLYPH_EMPTY) {
                drawGlyph(item->analysis.font, info.glyph,
                          {pen + info.geometry.x_offset / unitsPerEm,
                           info.geometry.y_offset / unitsPerEm},
                          &cluster.curves);
            }
            pen += info.geometry.width / unitsPerEm;
            cluster.advance = pen;
        }
    }
    g_list_free(visual);
    g_list_free_full(logical,
                     [](gpointer item) { pango_item_free(static_cast<PangoItem*>(item)); });
    return clusters;
}

FontMetrics FontShaper::metricsOf(const FontChoice& font) {
    FontMetrics metrics;
    const std::unique_ptr<PangoFont, Unref<PangoFont>> loaded(pango_font_map_load_font(
        m_libraries->map.get(), m_libraries->context.get(), descriptionOf(font).get()));
    if (loaded == nullptr) {
        return metrics;
    }
    hb_font_t* const face = pango_font_get_hb_font(loaded.get());
    const auto length = [face](hb_ot_metrics_tag_t tag, double otherwise) {
        hb_position_t value = 0;
        return hb_ot_metrics_get_position(face, tag, &value) != 0 ? std::abs(value) / unitsPerEm
                                                                  : otherwise;
    };
    metrics.ascent = length(HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER, metrics.ascent);
    metrics.descent = length(HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER, metrics.descent);
    metrics.xHeight = length(HB_OT_METRICS_TAG_X_HEIGHT, metrics.xHeight);
    metrics.lineThickness = length(HB_OT_METRICS_TAG_UNDERLINE_SIZE, metrics.lineThickness);
    metrics.underline = -length(HB_OT_METRICS_TAG_UNDERLINE_OFFSET, -metrics.underline);
    metrics.strike = length(HB_OT_METRICS_TAG_STRIKEOUT_OFFSET, metrics.strike);
    metrics.subscript = length(HB_OT_METRICS_TAG_SUBSCRIPT_EM_Y_OFFSET, metrics.subscript);
    metrics.superscript = length(HB_OT_METRICS_TAG_SUPERSCRIPT_EM_Y_OFFSET, metrics.superscript);
    return metrics;
}

bool FontShaper::hasSmallCapitals(const FontChoice& font) {
    const std::unique_ptr<PangoFont, Unref<PangoFont>> loaded(pango_font_map_load_font(
        m_libraries->map.get(), m_libraries->context.get(), descriptionOf(font).get()));
    if (loaded == nullptr) {
        return false;
    }
    constexpr hb_tag_t smallCapitals = HB_TAG('s', 'm', 'c', 'p');
    hb_face_t* const face = hb_font_get_face(pango_font_get_hb_font(loaded.get()));
    std::array<hb_tag_t, 64> tags{};
    for (unsigned from = 0, count = tags.size(); count == tags.size(); from += count) {
        hb_ot_layout_table_get_feature_tags(face, HB_OT_TAG_GSUB, from, &count, tags.data());
        if (std::find(tags.begin(), tags.begin() + count, smallCapitals) != tags.begin() + count) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> FontShaper::families() {
    std::vector<std::string> names{"sans",      "serif",   "monospace", "sans-serif",
                                   "system-ui", "cursive", "fantasy"};
    PangoFontFamily** families = nullptr;
    int count = 0;
    pango_font_map_list_families(m_libraries->map.get(), &families, &count);
    std::transform(families, families + count, std::back_inserter(names),
                   [](PangoFontFamily* one) { return pango_font_family_get_name(one); });
    g_free(families);
    return names;
}

bool FontShaper::hasFamily(std::string_view family) {
    const std::string name(family);
    const std::vector<std::string> known = families();
    return std::any_of(known.begin(), known.end(), [&](const std::string& one) {
        return strcasecmp(one.c_str(), name.c_str()) == 0;
    });
}

void FontShaper::tellUninstalled(const std::set<std::string>& families,
                                 std::vector<std::string>* notes) {
    std::string names;
    for (std::string_view list : families) {
        bool found = false;
        const std::string_view first = list.substr(0, list.find(','));
        while (!list.empty() && !found) {
            const std::size_t end = std::min(list.find(','), list.size());
            found = hasFamily(list.substr(0, end));
            list.remove_prefix(std::min(end + 1, list.size()));
        }
        if (!found) {
            names.append(names.empty() ? "" : ", ").append(first);
        }
    }
    if (!names.empty()) {
        notes->push_back("not installed, so other fonts are used: " + names);
    }
}

void FontShaper::tellMissing(std::vector<std::string>* notes) const {
    constexpr std::size_t mostNamed = 8;
    std::string names;
    std::size_t kinds = 0;
    for (const auto& [character, count] : m_missing) {
        if (count > 0 && ++kinds <= mostNamed) {
            char name[32];
            std::snprintf(name, sizeof name, "%sU+%04X", kinds > 1 ? ", " : "", character);
            names += name;
        }
    }
    if (kinds > 0) {
        notes->push_back("no installed font has " + names +
                         (kinds > mostNamed ? " and others" : "") + ": left out");
    }
}

} // namespace orbel
