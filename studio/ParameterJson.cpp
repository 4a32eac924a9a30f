#include "studio/ParameterJson.h"

#include "params/ParameterRules.h"
#include "params/ParameterTable.h"
#include "scene/PixelFormats.h"
#include "scene/SceneShapes.h"
#include "shapes/PathModel.h"
#include "shapes/ShapeTable.h"
#include "shapes/SvgParser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace orbel::studio {

namespace {

constexpr double shapeSide = 100.0;

constexpr ParamId inPercent[] = {PARAM_FEATHER,
                                 PARAM_START,
                                 PARAM_END,
                                 PARAM_OFFSET,
                                 PARAM_START_THICKNESS,
                                 PARAM_END_THICKNESS,
                                 PARAM_TAPER_START,
                                 PARAM_TAPER_END,
                                 PARAM_REPEATER_OPACITY,
                                 PARAM_REPEATER_SCALE,
                                 PARAM_ADJUST_STEP,
                                 PARAM_INTERNAL_OPACITY,
                                 PARAM_LOW_ALPHA_SAT_BOOST,
                                 PARAM_HI_ALPHA_BRIGHT_BOOST,
                                 PARAM_OPACITY};
constexpr ParamId inDegrees[] = {PARAM_LOW_ALPHA_HUE_ROTATION, PARAM_SHUTTER_ANGLE,
                                 PARAM_SHUTTER_PHASE};
constexpr ParamId inPixels[] = {
    PARAM_THICKNESS,    PARAM_POSITION_Z,  PARAM_DISPLACE_X, PARAM_DISPLACE_Y, PARAM_DISPLACE_Z,
    PARAM_Z_CLIP_FRONT, PARAM_Z_CLIP_BACK, PARAM_START_FADE, PARAM_CAMERA_Z,   PARAM_ZOOM};

template<std::size_t N>
bool isOneOf(int id, const ParamId (&ids)[N]) {
    return std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

const char* unitOf(const ParameterRow& row) {
    if (row.kind == RowKind::Angle || isOneOf(row.id, inDegrees)) {
        return "°";
    }
    if (isOneOf(row.id, inPercent)) {
        return "%";
    }
    return isOneOf(row.id, inPixels) ? "px" : "";
}

const char* kindOf(const ParameterRow& row) {
    switch (row.kind) {
    case RowKind::Custom:
        return "shape";
    case RowKind::Menu:
        return row.id == PARAM_PRESETS ? "presets" : "menu";
    case RowKind::Toggle:
        return "toggle";
    case RowKind::Color:
        return "colour";
    case RowKind::Point:
        return "point";
    case RowKind::Angle:
        return "angle";
    default:
        return "float";
    }
}

json defaultOf(const ParameterRow& row) {
    if (row.kind == RowKind::Custom) {
        return nullptr;
    }
    if (row.kind == RowKind::Toggle) {
        return row.defaults[0] != 0.0;
    }
    if (row.components() == 1) {
        return row.defaults[0];
    }
    return std::vector<double>(row.defaults.begin(), row.defaults.begin() + row.components());
}

json enablingOf(const ParameterRow& row) {
    for (const EnablingRule& rule : enablingRules()) {
        const auto& dependents = rule.dependents;
        if (findParameter(rule.changed) != nullptr &&
            std::find(dependents.begin(), dependents.end(), row.id) != dependents.end()) {
            return {{"parameter", rule.changed}, {"values", {rule.enablingValue}}};
        }
    }
    return nullptr;
}

json rowJson(const ParameterRow& row) {
    json item{{"id", row.id},
              {"name", fullName(row)},
              {"label", row.name},
              {"group", row.group},
              {"kind", kindOf(row)},
              {"default", defaultOf(row)},
              {"step", row.delta},
              {"unit", unitOf(row)},
              {"animatable", row.kind != RowKind::Custom},
              {"interpolates", row.interpolates()}};
    if (row.kind == RowKind::Float || row.kind == RowKind::Angle || row.kind == RowKind::Color) {
        item["min"] = row.min;
        item["max"] = row.max;
        item["sliderMin"] = row.sliderMin;
        item["sliderMax"] = row.sliderMax;
    }
    if (row.kind == RowKind::Menu) {
        item["entries"] = menuEntries(row);
    }
    if (json enabling = enablingOf(row); !enabling.is_null()) {
        item["enabledBy"] = std::move(enabling);
    }
    return item;
}

json rulesJson() {
    json rules = json::array();
    for (const EnablingRule& rule : enablingRules()) {
        json rows = json::array();
        for (const int id : rule.dependents) {
            if (findParameter(id) != nullptr) {
                rows.push_back(id);
            }
        }
        if (findParameter(rule.changed) != nullptr && !rows.empty()) {
            rules.push_back(
                {{"parameter", rule.changed}, {"values", {rule.enablingValue}}, {"rows", rows}});
        }
    }
    return rules;
}

/// Two decimals are finer than any thumbnail shows.
std::string coordinate(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value * shapeSide);
    return text;
}

std::string pointText(double x, double y) {
    return coordinate(x) + " " + coordinate(y);
}

std::string outlineText(const PluginPath_Impl::Vx_PathOutline& outline) {
    const auto& vertices = outline.vertices;
    if (vertices.empty()) {
        return "";
    }
    std::string text = "M";
    text += pointText(vertices.front().x, vertices.front().y);
    const std::size_t segments = vertices.size() - (outline.isOpen ? 1 : 0);
    for (std::size_t i = 0; i < segments; ++i) {
        const Vx_PathVertex& from = vertices[i];
        const Vx_PathVertex& to = vertices[(i + 1) % vertices.size()];
        text += "C";
        text += pointText(from.tanOutX, from.tanOutY) + " ";
        text += pointText(to.tanInX, to.tanInY) + " ";
        text += pointText(to.x, to.y);
    }
    return text;
}

json shapeJson(int index) {
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    const std::string file = presetFile(index);
    parser.parse(file.c_str());
    path.normalize();
    json outlines = json::array();
    for (const auto& outline : path.outlines()) {
        if (std::string text = outlineText(outline); !text.empty()) {
            outlines.push_back(std::move(text));
        }
    }
    return {{"name", g_svgShapes[index].name},
            {"file", file.substr(file.rfind('/') + 1)},
            {"paths", std::move(outlines)},
            {"size", {shapeSide, shapeSide}}};
}

json endingsJson() {
    return {
        {{"ending", ".mp4"}, {"label", "H.264 film over black"}, {"film", true}, {"alpha", false}},
        {{"ending", ".mov"}, {"label", "ProRes 4444 film"}, {"film", true}, {"alpha", true}},
        {{"ending", ".mkv"}, {"label", "FFV1 film, lossless"}, {"film", true}, {"alpha", true}},
        {{"ending", ".png"}, {"label", "PNG pictures"}, {"film", false}, {"alpha", true}},
        {{"ending", ".tif"}, {"label", "TIFF pictures"}, {"film", false}, {"alpha", true}},
        {{"ending", ".exr"},
         {"label", "EXR pictures, premultiplied float"},
         {"film", false},
         {"alpha", true}}};
}

} // namespace

json parameterJson() {
    json rows = json::array();
    json groups = json::array();
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            rows.push_back(rowJson(row));
        } else if (row.kind == RowKind::GroupStart) {
            groups.push_back({{"name", row.name}, {"open", (row.flags & PARAM_COLLAPSED) == 0}});
        }
    }
    json shapes = json::array();
    for (int index = 1; index < g_numSVGShapes; ++index) {
        shapes.push_back(shapeJson(index));
    }
    json formats = json::array();
    for (const NamedFormat& format : namedFormats) {
        formats.push_back(format.name);
    }
    return {{"version", 1},
            {"rows", std::move(rows)},
            {"groups", std::move(groups)},
            {"rules", rulesJson()},
            {"shapes", std::move(shapes)},
            {"formats", std::move(formats)},
            {"easings", {"linear", "hold", "ease", "ease-in", "ease-out"}},
            {"endings", endingsJson()}};
}

} // namespace orbel::studio
