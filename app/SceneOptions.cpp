#include "app/SceneOptions.h"

#include "scene/NearestName.h"
#include "scene/ParameterValues.h"
#include "scene/SceneLimits.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <set>
#include <string_view>
#include <utility>

namespace orbel::app {

namespace {

using nlohmann::json;

std::optional<double> numberIn(std::string_view text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (read.ec != std::errc{} || read.ptr != end) {
        return std::nullopt;
    }
    return value;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t at = text.find(separator); at != std::string_view::npos;
         at = text.find(separator)) {
        parts.push_back(text.substr(0, at));
        text.remove_prefix(at + 1);
    }
    parts.push_back(text);
    return parts;
}

/// The components of #rrggbb or #rrggbbaa.
std::optional<std::vector<double>> hexColour(std::string_view text) {
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#') {
        return std::nullopt;
    }
    std::vector<double> components;
    for (std::size_t at = 1; at < text.size(); at += 2) {
        unsigned value = 0;
        const char* const end = text.data() + at + 2;
        const auto read = std::from_chars(text.data() + at, end, value, 16);
        if (read.ec != std::errc{} || read.ptr != end) {
            return std::nullopt;
        }
        components.push_back(value / 255.0);
    }
    return components;
}

/// Text that is no number stays text, so that whoever reads the value names what it cannot take.
json numberOrText(std::string_view text) {
    if (const std::optional<double> number = numberIn(text)) {
        return *number;
    }
    return std::string(text);
}

json toggleValue(std::string_view text) {
    std::string word(text);
    std::transform(word.begin(), word.end(), word.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (word == "true" || word == "on" || word == "yes") {
        return true;
    }
    if (word == "false" || word == "off" || word == "no") {
        return false;
    }
    return numberOrText(text);
}

json listValue(const ParameterRow& row, std::string_view text) {
    if (const auto colour = hexColour(text);
        colour && row.kind == RowKind::Color && colour->size() == 3) {
        return *colour;
    }
    json list = json::array();
    for (const std::string_view part : split(text, '/')) {
        list.push_back(numberOrText(part));
    }
    return list;
}

/// The value as a scene file would write it.
json valueOf(const ParameterRow& row, std::string_view text) {
    switch (row.kind) {
    case RowKind::Toggle:
        return toggleValue(text);
    case RowKind::Color:
    case RowKind::Point:
        return listValue(row, text);
    default:
        return numberOrText(text);
    }
}

/// The animation as a scene file would write it; nothing when its form is wrong.
std::optional<json> keysOf(const ParameterRow& row, std::string_view text, const Site& site) {
    json keys = json::array();
    for (const std::string_view part : split(text, ',')) {
        const std::vector<std::string_view> fields = split(part, ':');
        const std::optional<double> frame = numberIn(fields.front());
        if (fields.size() < 2 || fields.size() > 3 || !frame) {
            site.report(inQuotes(part) + " is no key", "write FRAME:VALUE or FRAME:VALUE:EASING");
            return std::nullopt;
        }
        json key = json::array({*frame, valueOf(row, fields[1])});
        if (fields.size() == 3) {
            key.push_back(std::string(fields[2]));
        }
        keys.push_back(std::move(key));
    }
    return json{{"keys", std::move(keys)}};
}

class Options {
public:
    Options(const SceneOptions& options, Scene* scene, Problems* problems)
        : m_options(options), m_scene(scene), m_problems(problems) {}

    void apply() {
        applyShape();
        applyImport();
        applyInput();
        applyFirst();
        applySize();
        applyRate();
        applyFrames();
        applyFormat();
        for (const std::string& text : m_options.set) {
            applyParameter(text, "--set", false);
        }
        for (const std::string& text : m_options.animate) {
            applyParameter(text, "--animate", true);
        }
    }

private:
    [[nodiscard]] Site site(const std::string& option) const {
        return {commandLine, option, m_problems};
    }

    void applyShape() {
        if (!m_options.shape) {
            return;
        }
        const ParameterRow* const presets = findParameter(PARAM_PRESETS);
        const std::vector<std::string> names = menuEntries(*presets);
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == *m_options.shape) {
                setPreset(static_cast<double>(i));
                m_scene->shape.reset();
                m_scene->import.reset();
                m_scene->lettering.reset();
                return;
            }
        }
        std::error_code error;
        if (!std::filesystem::exists(*m_options.shape, error)) {
            site("--shape").report(
                inQuotes(*m_options.shape) + " is neither a built-in shape nor a file",
                "the nearest built-in one is " + inQuotes(nearestName(*m_options.shape, names)) +
                    "; \"orbel shapes\" lists them all");
            return;
        }
        setPreset(0.0);
        m_scene->shape = m_options.shape;
        m_scene->import.reset();
        m_scene->lettering.reset();
    }

    void applyImport() {
        if (!m_options.import || m_scene->import) {
            return;
        }
        if (!m_scene->shape) {
            site("--import").report("there is no drawing to import", "name one with --shape FILE");
            return;
        }
        m_scene->import = ImportOptions{};
    }

    void setPreset(double index) {
        m_scene->parameters[PARAM_PRESETS] = {Keyframe{0.0, {index}, Easing::Linear}};
    }

    void applyInput() {
        if (!m_options.input) {
            return;
        }
        if (m_options.input->starts_with('#')) {
            applyColour();
        } else {
            m_scene->input = MediaInput{*m_options.input};
        }
    }

    void applyFirst() {
        if (!m_options.first) {
            return;
        }
        const std::optional<double> number = numberIn(*m_options.first);
        auto* const media = std::get_if<MediaInput>(&m_scene->input);
        if (!number || !(*number >= 0.0 && *number <= 1e15) || media == nullptr) {
            site("--first").report(inQuotes(*m_options.first) +
                                       " is no number of the input's first file",
                                   "give a whole number from 0 on, and a sequence as input");
            return;
        }
        media->first = static_cast<long>(*number);
    }

    void applyColour() {
        const auto colour = hexColour(*m_options.input);
        if (!colour) {
            site("--input").report(inQuotes(*m_options.input) + " is no colour",
                                   "write #rrggbb or #rrggbbaa, or ./ before the name of a file");
            return;
        }
        ColorInput input;
        input.rgba[3] = 1.0;
        std::copy(colour->begin(), colour->end(), input.rgba.begin());
        m_scene->input = input;
    }

    /// Two numbers with a separator between them; reports anything else.
    [[nodiscard]] std::optional<std::pair<double, double>> pairOf(const std::string& text,
                                                                  char separator,
                                                                  const std::string& option,
                                                                  const std::string& form) const {
        const std::vector<std::string_view> parts = split(text, separator);
        if (parts.size() == 2) {
            const std::optional<double> a = numberIn(parts[0]);
            const std::optional<double> b = numberIn(parts[1]);
            if (a && b) {
                return std::pair(*a, *b);
            }
        }
        site(option).report(inQuotes(text) + " cannot be read", "write " + form);
        return std::nullopt;
    }

    void applySize() {
        if (!m_options.size) {
            return;
        }
        m_scene->size = FrameSize{};
        if (const auto size = pairOf(*m_options.size, 'x', "--size", "WIDTHxHEIGHT")) {
            m_scene->size =
                checkedSize(size->first, size->second, site("--size")).value_or(FrameSize{});
        }
    }

    void applyRate() {
        if (!m_options.fps) {
            return;
        }
        const std::optional<double> rate = numberIn(*m_options.fps);
        if (!rate) {
            site("--fps").report(inQuotes(*m_options.fps) + " is no number",
                                 "write frames per second, such as 25 or 29.97");
            return;
        }
        m_scene->framesPerSecond = checkedFramesPerSecond(*rate, site("--fps"));
    }

    void applyFrames() {
        if (!m_options.frames) {
            return;
        }
        if (const std::optional<double> single = numberIn(*m_options.frames)) {
            m_scene->frames = checkedFrames(*single, *single, site("--frames"));
        } else if (const auto range =
                       pairOf(*m_options.frames, '-', "--frames", "FIRST-LAST or one frame")) {
            m_scene->frames = checkedFrames(range->first, range->second, site("--frames"));
        }
    }

    void applyFormat() {
        if (!m_options.format) {
            return;
        }
        const std::optional<RasterFormat> format =
            checkedFormat(*m_options.format, site("--format"));
        if (!format) {
            return;
        }
        if (std::holds_alternative<RawInput>(m_scene->input) && *format != m_scene->format) {
            site("--format")
                .report("the scene's raw input is in the scene's own pixel format",
                        "leave --format out, or give another --input");
            return;
        }
        m_scene->format = *format;
    }

    void applyParameter(const std::string& text, const std::string& option, bool animated) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos) {
            site(option).report(inQuotes(text) + " has no \"=\"",
                                animated ? "write NAME=FRAME:VALUE,FRAME:VALUE"
                                         : "write NAME=VALUE");
            return;
        }
        const std::string name = text.substr(0, equals);
        const std::string_view value = std::string_view(text).substr(equals + 1);
        const Site place = site(option + " " + name);
        const ParameterRow* const row = findNamedParameter(name, place);
        if (row == nullptr) {
            return;
        }
        if (!m_named.insert(row->id).second) {
            place.report(inQuotes(fullName(*row)) + " is given twice", "keep one of the two");
            return;
        }
        const std::optional<json> document =
            animated ? keysOf(*row, value, place) : std::optional(valueOf(*row, value));
        if (!document) {
            return;
        }
        if (auto keys = readTrack(*row, *document, place); !keys.empty()) {
            m_scene->parameters[row->id] = std::move(keys);
        }
    }

    const SceneOptions& m_options;
    Scene* m_scene;
    Problems* m_problems;
    std::set<int> m_named; // parameters that an option has set
};

} // namespace

void applyOptions(const SceneOptions& options, Scene* scene, Problems* problems) {
    Options(options, scene, problems).apply();
}

} // namespace orbel::app
