#include "scene/ShapeKeys.h"

#include "scene/NearestName.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orbel {

namespace {

using nlohmann::json;

using Take = ImportOptions::Take;
using Order = ImportOptions::Order;
using Closed = ImportOptions::Closed;
using Align = LetteringOptions::Align;

template<typename Choice, std::size_t count>
using Choices = std::array<std::pair<const char*, Choice>, count>;

constexpr Choices<Take, 3> takes{
    {{"strokes", Take::Strokes}, {"fills", Take::Fills}, {"both", Take::Both}}};
constexpr Choices<Order, 2> orders{{{"paint", Order::Paint}, {"nearest", Order::Nearest}}};
constexpr Choices<Closed, 3> closings{
    {{"keep", Closed::Keep}, {"all", Closed::All}, {"none", Closed::None}}};
constexpr Choices<Align, 3> alignments{
    {{"left", Align::Left}, {"center", Align::Center}, {"right", Align::Right}}};

template<typename Choice, std::size_t count>
const char* nameOf(Choice value, const Choices<Choice, count>& choices) {
    for (const auto& [name, one] : choices) {
        if (one == value) {
            return name;
        }
    }
    return "";
}

/// Reads the members of an object into fields, each with its own check; reports keys that no field
/// has taken.
class Members {
public:
    Members(const json& object, Site site) : m_object(object), m_site(std::move(site)) {}

    std::optional<std::string> text(const char* key) {
        const json* const value =
            find(key, &json::is_string, "a text", "write it in double quotes");
        return value != nullptr ? std::optional(value->get<std::string>()) : std::nullopt;
    }

    void flag(const char* key, bool* field) {
        if (const json* const value =
                find(key, &json::is_boolean, "true or false", "write it without quotes")) {
            *field = value->get<bool>();
        }
    }

    void number(const char* key, double least, double most, double* field) {
        const json* const value = find(key, &json::is_number, "a number", "write a plain number");
        if (value == nullptr) {
            return;
        }
        *field = value->get<double>();
        if (!(*field >= least && *field <= most)) {
            m_site.at(key).report(numberText(*field) + " is outside its range",
                                  "give a number from " + numberText(least) + " to " +
                                      numberText(most));
        }
    }

    template<typename Choice, std::size_t count>
    void choice(const char* key, const Choices<Choice, count>& choices, Choice* field) {
        const std::optional<std::string> name = text(key);
        if (!name) {
            return;
        }
        std::string known;
        for (const auto& [one, value] : choices) {
            if (*name == one) {
                *field = value;
                return;
            }
            known += (known.empty() ? "" : ", ") + inQuotes(one);
        }
        m_site.at(key).report(inQuotes(*name) + " is none of the choices", "write one of " + known);
    }

    const json* object(const char* key) {
        return find(key, &json::is_object, "an object", "write {...}, which may be empty");
    }

    void reportOthers() const {
        for (const auto& member : m_object.items()) {
            if (std::find(m_known.begin(), m_known.end(), member.key()) == m_known.end()) {
                m_site.at(member.key())
                    .report("the key " + inQuotes(member.key()) + " is not known",
                            "the nearest known one is " +
                                inQuotes(nearestName(member.key(), m_known)));
            }
        }
    }

    [[nodiscard]] Site at(const char* key) const { return m_site.at(key); }

private:
    const json* find(const char* key, bool (json::*fits)() const noexcept, const char* wanted,
                     const char* remedy) {
        m_known.emplace_back(key);
        const auto member = m_object.find(key);
        if (member == m_object.end()) {
            return nullptr;
        }
        if (!((*member).*fits)()) {
            m_site.at(key).report(
                std::string(wanted) + " is needed here, not " + member->type_name(), remedy);
            return nullptr;
        }
        return &*member;
    }

    const json& m_object;
    Site m_site;
    std::vector<std::string> m_known;
};

ImportOptions readImport(const json& value, const Site& site) {
    ImportOptions options;
    Members members(value, site);
    members.choice("take", takes, &options.take);
    members.choice("order", orders, &options.order);
    members.choice("closed", closings, &options.closed);
    members.number("smallest", 0, 100, &options.smallest);
    members.flag("pageRectangles", &options.pageRectangles);
    members.number("simplify", 0, 1e6, &options.simplify);
    members.number("seconds", 0.1, 3600, &options.seconds);
    members.reportOthers();
    return options;
}

LetteringOptions readLettering(Members* members) {
    LetteringOptions options;
    options.text = members->text("text").value_or("");
    options.font = members->text("font").value_or(options.font);
    members->flag("singleStroke", &options.singleStroke);
    options.hand = members->text("hand").value_or(options.hand);
    members->number("lineHeight", 0.1, 10, &options.lineHeight);
    members->choice("align", alignments, &options.align);
    members->reportOthers();
    return options;
}

json importKeys(const ImportOptions& options) {
    return {{"take", nameOf(options.take, takes)},
            {"order", nameOf(options.order, orders)},
            {"closed", nameOf(options.closed, closings)},
            {"smallest", options.smallest},
            {"pageRectangles", options.pageRectangles},
            {"simplify", options.simplify},
            {"seconds", options.seconds}};
}

void readFile(const std::string& name, const Site& site, const std::filesystem::path& folder,
              Scene* scene) {
    if (name.empty() || name.find('\0') != std::string::npos) {
        site.report("this is no file name", "name a file, relative to the scene file");
        return;
    }
    scene->shape = (folder / name).string();
}

} // namespace

void readShapeKeys(const json& value, const Site& site, const std::filesystem::path& folder,
                   Scene* scene) {
    constexpr const char* remedy =
        R"(write FILE, {"file": FILE, "import": {...}} or {"text": TEXT, "font": FONT})";
    if (value.is_string()) {
        readFile(value.get<std::string>(), site, folder, scene);
        return;
    }
    if (!value.is_object() || value.contains("file") == value.contains("text")) {
        site.report(value.is_object() ? std::string("the shape needs either a file or a text")
                                      : std::string("the shape cannot be ") + value.type_name(),
                    remedy);
        return;
    }
    Members members(value, site);
    if (value.contains("text")) {
        scene->lettering = readLettering(&members);
        return;
    }
    if (const auto file = members.text("file")) {
        readFile(*file, members.at("file"), folder, scene);
    }
    if (const json* const import = members.object("import")) {
        scene->import = readImport(*import, members.at("import"));
    }
    members.reportOthers();
}

json shapeKeys(const Scene& scene) {
    if (scene.lettering) {
        const LetteringOptions& lettering = *scene.lettering;
        return {{"text", lettering.text},
                {"font", lettering.font},
                {"singleStroke", lettering.singleStroke},
                {"hand", lettering.hand},
                {"lineHeight", lettering.lineHeight},
                {"align", nameOf(lettering.align, alignments)}};
    }
    if (scene.import && scene.shape) {
        return {{"file", *scene.shape}, {"import", importKeys(*scene.import)}};
    }
    return scene.shape ? json(*scene.shape) : json();
}

} // namespace orbel
