#include "scene/SceneReader.h"

#include "scene/JsonDocument.h"
#include "scene/NearestName.h"
#include "scene/ParameterValues.h"
#include "scene/SceneLimits.h"
#include "scene/ShapeKeys.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orbel {

namespace {

using nlohmann::json;

constexpr std::uintmax_t largestFile = std::uintmax_t{16} << 20;

const std::vector<std::string> sceneKeys{"orbel",  "size",        "format",      "fps",
                                         "frames", "pixelAspect", "renderScale", "input",
                                         "shape",  "parameters"};
const std::vector<std::string> sourceKeys{"color", "raw", "file"};
const std::vector<std::string> inputKeys{"color", "raw", "file", "first"};

bool isKnown(const std::string& key, const std::vector<std::string>& known) {
    return std::find(known.begin(), known.end(), key) != known.end();
}

void reportUnknownKeys(const json& object, const std::vector<std::string>& known,
                       const Site& site) {
    for (const auto& member : object.items()) {
        if (site.full()) {
            return;
        }
        if (!isKnown(member.key(), known)) {
            site.at(member.key())
                .report("the key " + inQuotes(member.key()) + " is not known",
                        "the nearest known one is " + inQuotes(nearestName(member.key(), known)));
        }
    }
}

class Reader {
public:
    Reader(const std::string& file, Problems* problems)
        : m_root(file, "", problems), m_folder(std::filesystem::path(file).parent_path()) {
        m_scene.file = file;
    }

    [[nodiscard]] std::optional<Scene> read(const json& document) {
        if (!document.is_object()) {
            m_root.report(std::string("a scene is one JSON object, not ") + document.type_name(),
                          R"(write {"orbel": 1, ...})");
            return std::nullopt;
        }
        reportUnknownKeys(document, sceneKeys, m_root);
        readVersion(document);
        readMember(document, "size", &Reader::readSize);
        readMember(document, "format", &Reader::readFormat);
        readMember(document, "fps", &Reader::readRate);
        readMember(document, "frames", &Reader::readFrames);
        readMember(document, "pixelAspect", &Reader::readPixelAspect);
        readMember(document, "renderScale", &Reader::readRenderScale);
        readMember(document, "input", &Reader::readInput);
        readMember(document, "shape", &Reader::readShape);
        readMember(document, "parameters", &Reader::readParameters);
        return m_scene;
    }

private:
    using MemberReader = void (Reader::*)(const json&, const Site&);

    void readMember(const json& object, const char* key, MemberReader reader) {
        if (const auto member = object.find(key); member != object.end()) {
            (this->*reader)(*member, m_root.at(key));
        }
    }

    void readVersion(const json& document) {
        const auto version = document.find("orbel");
        if (version == document.end()) {
            m_root.report("the key \"orbel\", the file version, is missing", "add \"orbel\": 1");
        } else if (!version->is_number()) {
            m_root.at("orbel").report(std::string("the file version cannot be ") +
                                          version->type_name(),
                                      "write \"orbel\": 1");
        } else if (*version != 1) {
            m_root.at("orbel").report("the file version " + numberText(version->get<double>()) +
                                          " is not known",
                                      "this program reads version 1");
        }
    }

    /// Reports any other type.
    static std::optional<double> number(const json& value, const Site& site) {
        if (!value.is_number()) {
            site.report(std::string("a number is needed here, not ") + value.type_name(),
                        "write a plain number");
            return std::nullopt;
        }
        return value.get<double>();
    }

    /// Reports anything else than a list of `count` numbers, of the form that `form` shows.
    static std::optional<std::vector<double>> numbers(const json& value, std::size_t count,
                                                      const std::string& form, const Site& site) {
        const bool fits = value.is_array() && value.size() == count &&
                          std::all_of(value.begin(), value.end(),
                                      [](const json& item) { return item.is_number(); });
        if (!fits) {
            site.report("a list of " + std::to_string(count) + " numbers is needed here",
                        "write " + form);
            return std::nullopt;
        }
        return value.get<std::vector<double>>();
    }

    static std::optional<std::string> text(const json& value, const Site& site) {
        if (!value.is_string()) {
            site.report(std::string("a text is needed here, not ") + value.type_name(),
                        "write it in double quotes");
            return std::nullopt;
        }
        return value.get<std::string>();
    }

    /// A path as the scene writes it, seen from the working folder.
    [[nodiscard]] std::optional<std::string> path(const json& value, const Site& site) const {
        const std::optional<std::string> name = text(value, site);
        if (!name) {
            return std::nullopt;
        }
        if (name->empty() || name->find('\0') != std::string::npos) {
            site.report("this is no file name", "name a file, relative to the scene file");
            return std::nullopt;
        }
        return (m_folder / *name).string();
    }

    void readSize(const json& value, const Site& site) {
        m_scene.size = FrameSize{};
        if (const auto size = numbers(value, 2, "[width, height]", site)) {
            m_scene.size = checkedSize((*size)[0], (*size)[1], site).value_or(FrameSize{});
        }
    }

    void readFormat(const json& value, const Site& site) {
        if (const auto name = text(value, site)) {
            m_scene.format = checkedFormat(*name, site).value_or(m_scene.format);
        }
    }

    void readRate(const json& value, const Site& site) {
        if (const auto rate = number(value, site)) {
            m_scene.framesPerSecond = checkedFramesPerSecond(*rate, site);
        }
    }

    void readFrames(const json& value, const Site& site) {
        if (const auto frames = numbers(value, 2, "[first, last]", site)) {
            m_scene.frames = checkedFrames((*frames)[0], (*frames)[1], site);
        }
    }

    void readPixelAspect(const json& value, const Site& site) {
        if (const auto ratio = number(value, site)) {
            m_scene.pixelAspect = checkedRatio(*ratio, "pixel aspect ratio", site).value_or(1.0);
        }
    }

    void readRenderScale(const json& value, const Site& site) {
        if (const auto scale = numbers(value, 2, "[x, y]", site)) {
            m_scene.renderScaleX =
                checkedRatio((*scale)[0], "render scale", site.at(std::size_t{0})).value_or(1.0);
            m_scene.renderScaleY =
                checkedRatio((*scale)[1], "render scale", site.at(1)).value_or(1.0);
        }
    }

    void readInput(const json& value, const Site& site) {
        constexpr const char* remedy =
            R"(write one of {"color": [r, g, b, a]}, {"raw": FILE} and {"file": FILE})";
        if (!value.is_object()) {
            site.report(std::string("the input cannot be ") + value.type_name(), remedy);
            return;
        }
        reportUnknownKeys(value, inputKeys, site);
        const auto known =
            std::count_if(value.items().begin(), value.items().end(),
                          [](const auto& m) { return isKnown(m.key(), sourceKeys); });
        if (known != 1) {
            site.report(known == 0 ? "the input names no source" : "the input names two sources",
                        remedy);
            return;
        }
        if (value.contains("color")) {
            readColorInput(value["color"], site.at("color"));
        } else if (value.contains("raw")) {
            if (auto file = path(value["raw"], site.at("raw"))) {
                m_scene.input = RawInput{std::move(*file)};
            }
        } else if (auto file = path(value["file"], site.at("file"))) {
            m_scene.input = MediaInput{std::move(*file), first(value, site)};
        }
    }

    /// The number of a sequence's first file, where it is stated.
    [[nodiscard]] static std::optional<long> first(const json& input, const Site& site) {
        const auto found = input.find("first");
        if (found == input.end()) {
            return std::nullopt;
        }
        const double number = found->is_number() ? found->get<double>() : -1.0;
        if (!(number >= 0.0 && number <= 1e15) || number != std::floor(number)) {
            site.at("first").report("this is no number of a file", "give a whole number from 0 on");
            return std::nullopt;
        }
        return static_cast<long>(number);
    }

    void readColorInput(const json& value, const Site& site) {
        const auto rgba = numbers(value, 4, "[r, g, b, a], each from 0 to 1", site);
        if (!rgba) {
            return;
        }
        ColorInput color;
        for (std::size_t i = 0; i < color.rgba.size(); ++i) {
            color.rgba[i] = (*rgba)[i];
            if (!(color.rgba[i] >= 0.0 && color.rgba[i] <= 1.0)) {
                site.at(i).report(numberText(color.rgba[i]) + " is outside the range of a colour",
                                  "give a number from 0 to 1");
            }
        }
        m_scene.input = color;
    }

    void readShape(const json& value, const Site& site) {
        readShapeKeys(value, site, m_folder, &m_scene);
    }

    void readParameters(const json& value, const Site& site) {
        if (!value.is_object()) {
            site.report(std::string("the parameters cannot be ") + value.type_name(),
                        R"(write {"Thickness": 14, ...})");
            return;
        }
        std::map<int, std::string> named;
        for (const auto& member : value.items()) {
            if (site.full()) {
                return;
            }
            const Site place = site.at(member.key());
            const ParameterRow* const row = findNamedParameter(member.key(), place);
            if (row == nullptr) {
                continue;
            }
            if (const auto [first, added] = named.emplace(row->id, member.key()); !added) {
                place.report(inQuotes(fullName(*row)) + " is set twice, also as " +
                                 inQuotes(first->second),
                             "keep one of the two");
                continue;
            }
            if (auto keys = readTrack(*row, member.value(), place); !keys.empty()) {
                m_scene.parameters[row->id] = std::move(keys);
            }
        }
    }

    Site m_root;
    std::filesystem::path m_folder;
    Scene m_scene;
};

} // namespace

std::optional<Scene> readScene(std::string_view text, const std::string& file, Problems* problems) {
    Reader reader(file, problems);
    const std::optional<json> document = parseJson(text, file, problems);
    return document ? reader.read(*document) : std::nullopt;
}

std::optional<Scene> readSceneFile(const std::string& file, Problems* problems) {
    const Site site(file, "", problems);
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status)) {
        site.report("the scene file does not exist", "check its name and folder");
        return std::nullopt;
    }
    if (!std::filesystem::is_regular_file(status)) {
        site.report("the scene is not a file", "name a JSON file");
        return std::nullopt;
    }
    if (std::filesystem::file_size(file, error) > largestFile) {
        site.report("the scene file is larger than 16 MiB", "is it a scene?");
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad()) {
        site.report("the scene file cannot be read", "check its permissions");
        return std::nullopt;
    }
    return readScene(text, file, problems);
}

} // namespace orbel
