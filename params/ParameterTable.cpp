#include "params/ParameterTable.h"

#include "params/ParameterRows.h"
#include "shapes/ShapeTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace orbel {

using rows::TABLE;

std::span<const ParameterRow> parameterTable() {
    return TABLE;
}

const ParameterRow* findParameter(int id) {
    const auto index = static_cast<std::size_t>(id);
    if (id < 0 || index >= rows::PLACES.size() || rows::PLACES[index] < 0) {
        return nullptr;
    }
    return &TABLE[static_cast<std::size_t>(rows::PLACES[index])];
}

std::vector<const ParameterRow*> findParameters(std::string_view text) {
    int id = 0;
    const char* const end = text.data() + text.size();
    if (const auto parsed = std::from_chars(text.data(), end, id);
        parsed.ec == std::errc{} && parsed.ptr == end) {
        const ParameterRow* const row = findParameter(id);
        return row == nullptr ? std::vector<const ParameterRow*>{} : std::vector{row};
    }
    std::vector<const ParameterRow*> inGroups;
    for (const ParameterRow& row : TABLE) {
        if (!row.isParameter()) {
            continue;
        }
        if (fullName(row) == text) {
            return {&row};
        }
        if (row.name == text) {
            inGroups.push_back(&row);
        }
    }
    return inGroups;
}

std::string fullName(const ParameterRow& row) {
    const std::string group = row.group;
    return group.empty() ? row.name : group + "/" + row.name;
}

std::vector<std::string> menuEntries(const ParameterRow& row) {
    if (row.kind != RowKind::Presets) {
        return {row.menu.begin(), row.menu.end()};
    }
    std::vector<std::string> names;
    for (const SVGShapeInfo* shape = g_svgShapes; shape->name != nullptr; ++shape) {
        names.emplace_back(shape->name);
    }
    return names;
}

int menuSize(const ParameterRow& row) {
    if (row.kind != RowKind::Presets) {
        return static_cast<int>(row.menu.size());
    }
    int count = 0;
    while (g_svgShapes[count].name != nullptr) {
        ++count;
    }
    return count;
}

bool accepts(const ParameterRow& row, double value) {
    if (row.kind == RowKind::Toggle) {
        return value == 0.0 || value == 1.0;
    }
    if (row.isMenu()) {
        return value >= 0.0 && value < menuSize(row) && value == std::floor(value);
    }
    return std::isfinite(value) &&
           (!row.range || (value >= row.range->min && value <= row.range->max));
}

double limited(const ParameterRow& row, double value, std::size_t component) {
    if (row.kind == RowKind::Toggle) {
        return value == 1.0 ? 1.0 : 0.0;
    }
    if (row.range && !std::isnan(value)) {
        return std::clamp(value, row.range->min, row.range->max);
    }
    return accepts(row, value) ? value : row.defaults.at(component);
}

const char* unitText(Unit unit) {
    switch (unit) {
    case Unit::Percent:
        return "%";
    case Unit::Degrees:
        return "degrees";
    case Unit::Pixels:
        return "px";
    case Unit::None:
        break;
    }
    return "";
}

} // namespace orbel
