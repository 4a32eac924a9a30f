#include "studio/ParameterJson.h"

#include "params/ParameterRules.h"
#include "params/ParameterTable.h"
#include "scene/PixelFormats.h"
#include "scene/SceneShapes.h"
#include "shapes/ShapeTable.h"
#include "studio/Drawings.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace orbel::studio {

namespace {

const char* unitOf(const ParameterRow& row) {
    switch (row.unit) {
    case Unit::Percent:
        return "%";
    case Unit::Degrees:
        return "°";
    case Unit::Pixels:
        return "px";
    default:
        return "";
    }
}

const char* kindName(const ParameterRow& row) {
    switch (row.kind) {
    case RowKind::Custom:
        return "shape";
    case RowKind::Presets:
        return "presets";
    case RowKind::Menu:
        return "menu";
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
              {"kind", kindName(row)},
              {"default", defaultOf(row)},
              {"step", row.delta},
              {"unit", unitOf(row)},
              {"animatable", row.kind != RowKind::Custom},
              {"interpolates", row.interpolates()}};
    if (row.range) {
        item["min"] = row.range->min;
        item["max"] = row.range->max;
        item["sliderMin"] = row.shown().min;
        item["sliderMax"] = row.shown().max;
    }
    if (row.isMenu()) {
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

json shapeJson(int index) {
    const std::string file = presetFile(index);
    std::ifstream stream(file, std::ios::binary);
    const std::string svg{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    json shape = outlinesJson(svg);
    shape["name"] = g_svgShapes[index].name;
    shape["file"] = file.substr(file.rfind('/') + 1);
    return shape;
}

json endingsJson() {
    return {
        {{"ending", ".mp4"}, {"label", "H.264 film over black"}, {"film", true}, {"alpha", false}},
        {{"ending", ".mov"}, {"label", "ProRes 4444 film"}, {"film", true}, {"alpha", true}},
        {{"ending", ".mkv"}, {"label", "FFV1 film, lossless"}, {"film", true}, {"alpha", true}},
        {{"ending", ".webp"}, {"label", "WebP for a page"}, {"film", true}, {"alpha", true}},
        {{"ending", ".gif"}, {"label", "GIF, 256 colours"}, {"film", true}, {"alpha", true}},
        {{"ending", ".apng"}, {"label", "APNG, lossless"}, {"film", true}, {"alpha", true}},
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
