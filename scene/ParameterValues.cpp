#include "scene/ParameterValues.h"

#include "scene/NearestName.h"

#include <nlohmann/json.hpp>

#include <array>
#include <utility>

namespace orbel {

namespace {

using nlohmann::json;

constexpr std::array<std::pair<const char*, Easing>, 5> easings{{{"linear", Easing::Linear},
                                                                 {"hold", Easing::Hold},
                                                                 {"ease", Easing::Ease},
                                                                 {"ease-in", Easing::EaseIn},
                                                                 {"ease-out", Easing::EaseOut}}};

std::vector<std::string> parameterNames() {
    std::vector<std::string> names;
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            names.push_back(fullName(row));
        }
    }
    return names;
}

std::string fullNames(const std::vector<const ParameterRow*>& rows) {
    std::string text;
    for (const ParameterRow* row : rows) {
        text += (text.empty() ? "" : " or ") + inQuotes(fullName(*row));
    }
    return text;
}

void reportType(const ParameterRow& row, const json& value, const Site& site) {
    site.report(inQuotes(fullName(row)) + " cannot take " + value.type_name(),
                "give " + valueWords(row));
}

std::optional<double> readComponent(const ParameterRow& row, const json& value, const Site& site) {
    if (!value.is_number()) {
        reportType(row, value, site);
        return std::nullopt;
    }
    const auto number = value.get<double>();
    if (!accepts(row, number)) {
        site.report(numberText(number) + " is outside the range of " + inQuotes(fullName(row)),
                    "give " + valueWords(row));
        return std::nullopt;
    }
    return number;
}

std::optional<ParameterValue> readComponents(const ParameterRow& row, const json& value,
                                             const Site& site) {
    const auto count = static_cast<std::size_t>(row.components());
    if (!value.is_array() || value.size() != count) {
        reportType(row, value, site);
        return std::nullopt;
    }
    ParameterValue result{};
    bool complete = true;
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<double> component = readComponent(row, value[i], site.at(i));
        complete = complete && component.has_value();
        result[i] = component.value_or(0.0);
    }
    return complete ? std::optional(result) : std::nullopt;
}

std::optional<ParameterValue> readToggle(const ParameterRow& row, const json& value,
                                         const Site& site) {
    if (value.is_boolean()) {
        return ParameterValue{value.get<bool>() ? 1.0 : 0.0};
    }
    if (const double number = value.is_number() ? value.get<double>() : -1.0;
        accepts(row, number)) {
        return ParameterValue{number};
    }
    reportType(row, value, site);
    return std::nullopt;
}

std::optional<ParameterValue> readEntryText(const ParameterRow& row, const std::string& text,
                                            const std::vector<std::string>& entries,
                                            const Site& site) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i] == text) {
            return ParameterValue{static_cast<double>(i)};
        }
    }
    site.report(inQuotes(fullName(row)) + " has no entry " + inQuotes(text),
                "the nearest is " + inQuotes(nearestName(text, entries)));
    return std::nullopt;
}

std::optional<ParameterValue> readMenu(const ParameterRow& row, const json& value,
                                       const Site& site) {
    const std::vector<std::string> entries = menuEntries(row);
    if (value.is_string()) {
        return readEntryText(row, value.get_ref<const std::string&>(), entries, site);
    }
    if (!value.is_number()) {
        reportType(row, value, site);
        return std::nullopt;
    }
    const auto index = value.get<double>();
    if (!accepts(row, index)) {
        site.report(inQuotes(fullName(row)) + " has no entry with index " + numberText(index),
                    "give " + valueWords(row));
        return std::nullopt;
    }
    return ParameterValue{index};
}

std::optional<Easing> readEasing(const json& value, const Site& site) {
    constexpr const char* remedy = R"(use "linear", "hold", "ease", "ease-in" or "ease-out")";
    if (!value.is_string()) {
        site.report(std::string("an easing cannot be ") + value.type_name(), remedy);
        return std::nullopt;
    }
    const auto& name = value.get_ref<const std::string&>();
    const std::optional<Easing> easing = easingOf(name);
    if (!easing) {
        site.report("the easing " + inQuotes(name) + " is not known", remedy);
    }
    return easing;
}

/// Nothing when any part of the key is wrong.
std::optional<Keyframe> readKey(const ParameterRow& row, const json& key, const Site& site) {
    if (!key.is_array() || key.size() < 2 || key.size() > 3) {
        site.report("a key must be a list of two or three",
                    "write [frame, value] or [frame, value, easing]");
        return std::nullopt;
    }
    const bool frameIsNumber = key[0].is_number();
    if (!frameIsNumber) {
        site.at(std::size_t{0})
            .report(std::string("a key's frame cannot be ") + key[0].type_name(),
                    "give a frame number");
    }
    const std::optional<ParameterValue> value = readValue(row, key[1], site.at(1));
    std::optional<Easing> easing = Easing::Linear;
    if (key.size() == 3) {
        easing = readEasing(key[2], site.at(2));
    }
    if (!frameIsNumber || !value || !easing) {
        return std::nullopt;
    }
    return Keyframe{key[0].get<double>(), *value, *easing};
}

void checkAscending(const std::vector<Keyframe>& keys, const Keyframe& next, const Site& site) {
    if (!keys.empty() && !(next.frame > keys.back().frame)) {
        site.report("the key at frame " + numberText(next.frame) +
                        " comes after the one at frame " + numberText(keys.back().frame),
                    "put the keys in ascending order, one for a frame");
    }
}

std::vector<Keyframe> readKeys(const ParameterRow& row, const json& list, const Site& site) {
    if (!list.is_array() || list.empty()) {
        site.report("\"keys\" must be a list with one key or more",
                    "write [[frame, value], ...], frames ascending");
        return {};
    }
    std::vector<Keyframe> keys;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (const std::optional<Keyframe> key = readKey(row, list[i], site.at(i))) {
            checkAscending(keys, *key, site.at(i));
            keys.push_back(*key);
        }
    }
    return keys;
}

/// What an unknown name was meant for, ready to be followed by more. A number is like no name.
std::string likelyName(std::string_view name) {
    if (name.find_first_not_of("0123456789") == std::string_view::npos) {
        return {};
    }
    return "the nearest is " + inQuotes(nearestName(name, parameterNames())) + "; ";
}

} // namespace

const ParameterRow* findNamedParameter(std::string_view name, const Site& site) {
    const std::vector<const ParameterRow*> rows = findParameters(name);
    if (rows.empty()) {
        site.report("there is no parameter " + inQuotes(name),
                    likelyName(name) + "\"orbel params\" lists them all");
        return nullptr;
    }
    if (rows.size() > 1) {
        site.report("several parameters are called " + inQuotes(name), "write " + fullNames(rows));
        return nullptr;
    }
    if (rows.front()->kind == RowKind::Custom) {
        site.report("\"Shape\" is not set among the parameters",
                    "name the file in the scene's top-level key \"shape\", or with --shape");
        return nullptr;
    }
    return rows.front();
}

std::optional<ParameterValue> readValue(const ParameterRow& row, const json& value,
                                        const Site& site) {
    switch (row.kind) {
    case RowKind::Toggle:
        return readToggle(row, value, site);
    case RowKind::Presets:
    case RowKind::Menu:
        return readMenu(row, value, site);
    case RowKind::Point:
    case RowKind::Color:
        return readComponents(row, value, site);
    default:
        break;
    }
    if (const std::optional<double> number = readComponent(row, value, site)) {
        return ParameterValue{*number};
    }
    return std::nullopt;
}

std::vector<Keyframe> readTrack(const ParameterRow& row, const json& value, const Site& site) {
    if (!value.is_object()) {
        if (const std::optional<ParameterValue> constant = readValue(row, value, site)) {
            return {Keyframe{0.0, *constant, Easing::Linear}};
        }
        return {};
    }
    for (const auto& member : value.items()) {
        if (member.key() != "keys") {
            site.at(member.key())
                .report("the key " + inQuotes(member.key()) + " is not known",
                        "the only one here is \"keys\"");
        }
    }
    const auto keys = value.find("keys");
    if (keys == value.end()) {
        site.report("an animated value needs \"keys\"", R"(write {"keys": [[frame, value], ...]})");
        return {};
    }
    return readKeys(row, *keys, site.at("keys"));
}

std::optional<Easing> easingOf(std::string_view name) {
    for (const auto& [known, easing] : easings) {
        if (name == known) {
            return easing;
        }
    }
    return std::nullopt;
}

std::string_view nameOf(Easing easing) {
    for (const auto& [name, known] : easings) {
        if (known == easing) {
            return name;
        }
    }
    return {};
}

std::string valueWords(const ParameterRow& row) {
    const std::string range = numberText(row.bounds().min) + " to " + numberText(row.bounds().max);
    switch (row.kind) {
    case RowKind::Toggle:
        return "true or false";
    case RowKind::Presets:
    case RowKind::Menu:
        return "an entry's text or an index from 0 to " + std::to_string(menuSize(row) - 1);
    case RowKind::Point:
        return "[x, y]";
    case RowKind::Color:
        return "[r, g, b], each from " + range;
    case RowKind::Angle:
        return "degrees from " + range;
    default:
        return "a number from " + range;
    }
}

} // namespace orbel
