#include "app/ParamsCommand.h"

#include "params/ParameterTable.h"
#include "scene/Diagnostics.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iomanip>
#include <ostream>

namespace orbel::app {

namespace {

using Cells = std::array<std::string, 5>;

const Cells headings{"Identifier", "Parameter", "Takes", "Range", "Default"};

const char* kindWord(const ParameterRow& row) {
    switch (row.kind) {
    case RowKind::Custom:
        return "shape file";
    case RowKind::Presets:
    case RowKind::Menu:
        return "entry";
    case RowKind::Toggle:
        return "true/false";
    case RowKind::Color:
        return "[r, g, b]";
    case RowKind::Point:
        return "[x, y]";
    case RowKind::Angle:
        return "degrees";
    default:
        return "number";
    }
}

std::string rangeText(const ParameterRow& row) {
    if (row.isMenu()) {
        return "0 to " + std::to_string(menuSize(row) - 1);
    }
    if (!row.range) {
        return "";
    }
    const std::string range = numberText(row.range->min) + " to " + numberText(row.range->max);
    const bool said = row.unit == Unit::None || row.kind == RowKind::Angle;
    return said ? range : range + " " + unitText(row.unit);
}

std::string defaultText(const ParameterRow& row) {
    switch (row.kind) {
    case RowKind::Custom:
        return "";
    case RowKind::Presets:
    case RowKind::Menu:
        return menuEntries(row)[static_cast<std::size_t>(row.defaults[0])];
    case RowKind::Toggle:
        return row.defaults[0] != 0.0 ? "true" : "false";
    default:
        break;
    }
    std::string text;
    for (int i = 0; i < row.components(); ++i) {
        text += (i > 0 ? ", " : "") + numberText(row.defaults[static_cast<std::size_t>(i)]);
    }
    return row.components() > 1 ? "[" + text + "]" : text;
}

Cells cellsOf(const ParameterRow& row) {
    return {std::to_string(row.id), fullName(row), kindWord(row), rangeText(row), defaultText(row)};
}

template<typename Action>
void forEachParameter(const Action& action) {
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            action(row);
        }
    }
}

void printCells(const Cells& cells, const std::array<int, 5>& widths, std::ostream& out) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::string cell = cells[i];
        cell.resize(std::max(cell.size(), static_cast<std::size_t>(widths[i])), ' ');
        line += cell + "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

void printMenu(const ParameterRow& row, std::ostream& out) {
    const std::vector<std::string> entries = menuEntries(row);
    out << '\n' << fullName(row) << ":\n";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        out << "  " << std::setw(2) << i << "  " << entries[i] << '\n';
    }
}

void printText(std::ostream& out) {
    std::array<int, 5> widths{};
    const auto widen = [&](const Cells& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], static_cast<int>(cells[i].size()));
        }
    };
    widen(headings);
    forEachParameter([&](const ParameterRow& row) { widen(cellsOf(row)); });
    printCells(headings, widths, out);
    forEachParameter([&](const ParameterRow& row) { printCells(cellsOf(row), widths, out); });
    forEachParameter([&](const ParameterRow& row) {
        if (row.isMenu()) {
            printMenu(row, out);
        }
    });
}

nlohmann::ordered_json defaultValue(const ParameterRow& row) {
    if (row.kind == RowKind::Custom) {
        return nullptr;
    }
    if (row.isMenu()) {
        return static_cast<int>(row.defaults[0]);
    }
    if (row.kind == RowKind::Toggle) {
        return row.defaults[0] != 0.0;
    }
    if (row.components() == 1) {
        return row.defaults[0];
    }
    return std::vector<double>(row.defaults.begin(), row.defaults.begin() + row.components());
}

const char* typeName(RowKind kind) {
    switch (kind) {
    case RowKind::Custom:
        return "file";
    case RowKind::Presets:
    case RowKind::Menu:
        return "menu";
    case RowKind::Toggle:
        return "toggle";
    case RowKind::Color:
        return "color";
    case RowKind::Point:
        return "point";
    case RowKind::Angle:
        return "angle";
    default:
        return "float";
    }
}

void printJson(std::ostream& out) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    forEachParameter([&](const ParameterRow& row) {
        nlohmann::ordered_json item;
        item["id"] = row.id;
        item["name"] = row.name;
        item["group"] = row.group;
        item["type"] = typeName(row.kind);
        if (row.range) {
            item["range"] = {row.range->min, row.range->max};
            item["sliderRange"] = {row.shown().min, row.shown().max};
        }
        if (row.unit != Unit::None) {
            item["unit"] = unitText(row.unit);
        }
        item["default"] = defaultValue(row);
        if (row.isMenu()) {
            item["entries"] = menuEntries(row);
        }
        list.push_back(std::move(item));
    });
    out << list.dump(2) << '\n';
}

void printMarkdownRow(const Cells& cells, std::ostream& out) {
    for (const std::string& cell : cells) {
        out << "| " << cell << ' ';
    }
    out << "|\n";
}

void printMarkdownMenu(const ParameterRow& row, std::ostream& out) {
    const std::vector<std::string> entries = menuEntries(row);
    out << "\n### " << fullName(row) << "\n\n";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        out << i << ". " << entries[i] << '\n';
    }
}

void printMarkdown(std::ostream& out) {
    out << "# Parameters\n\n"
           "Made from the program's own table by `orbel params --markdown`; do not edit.\n\n"
           "A scene names a parameter by its identifier, as text, or by its name. Angles are in\n"
           "degrees, percentages in percent, points in 0 to 1 with y downwards. [The scene "
           "file](scene-file.md)\ntells how values are written and animated. \"Shape\" is the "
           "scene's top-level key `shape`.\n\n";
    printMarkdownRow(headings, out);
    out << "|---:|---|---|---|---|\n";
    forEachParameter([&](const ParameterRow& row) { printMarkdownRow(cellsOf(row), out); });
    out << "\n## Menu entries\n";
    forEachParameter([&](const ParameterRow& row) {
        if (row.isMenu()) {
            printMarkdownMenu(row, out);
        }
    });
}

} // namespace

void paramsCommand(ParamsLayout layout, std::ostream& out) {
    switch (layout) {
    case ParamsLayout::Json:
        return printJson(out);
    case ParamsLayout::Markdown:
        return printMarkdown(out);
    case ParamsLayout::Text:
        return printText(out);
    }
}

} // namespace orbel::app
