#include "studio/Studio.h"

#include "drawing/Lettering.h"
#include "film/RenderPipeline.h"
#include "film/ShapeFolder.h"
#include "media/MediaError.h"
#include "studio/Drawings.h"
#include "studio/Guard.h"
#include "studio/Page.h"
#include "studio/ParameterJson.h"
#include "studio/Routes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <new>
#include <thread>
#include <utility>

namespace orbel::studio {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostTabs = 64;
constexpr std::chrono::seconds patience{3};

fs::path folderOf(const std::string& place) {
    std::error_code error;
    fs::path folder = place.empty() ? fs::path(".") : fs::path(place);
    if (!fs::is_directory(folder, error)) {
        folder = folder.parent_path();
    }
    if (folder.empty()) {
        folder = ".";
    }
    if (!fs::is_directory(folder, error)) {
        throw Refusal{404, "the folder " + inQuotes(folder.string()) + " does not exist",
                      "make it or choose another"};
    }
    return folder;
}

std::string firstScene(const SceneFolder& folder, const std::string& place) {
    std::error_code error;
    if (place.empty() || fs::is_directory(place, error)) {
        return folder.freeName("untitled.json");
    }
    std::string name = fs::path(place).filename().string();
    static_cast<void>(SceneFolder::read(folder.pathOf(name, {FileKind::Scene})));
    return name;
}

std::string_view pathOf(std::string_view target) {
    return target.substr(0, target.find('?'));
}

const PageFile* findPageFile(std::string_view path) {
    const auto files = pageFiles();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const PageFile& file) { return file.path == path; });
    return found == files.end() ? nullptr : &*found;
}

/// A socket cannot carry a field of its own; its token comes as a protocol behind the real one.
std::string_view tokenOf(const Route& route, const RequestHead& head) {
    constexpr std::string_view protocol = "orbel.events, ";
    const std::string_view offered = head.value("sec-websocket-protocol");
    if (route.answer == tellEvents && head.count("x-orbel-token") == 0 &&
        head.count("sec-websocket-protocol") == 1 && offered.starts_with(protocol)) {
        return offered.substr(protocol.size());
    }
    return head.count("x-orbel-token") == 1 ? head.value("x-orbel-token") : "";
}

std::optional<Refusal> refuseRoute(const Route& route, const RequestHead& head,
                                   const Secrets& secrets) {
    if (head.method != route.method) {
        return Refusal{405, "this address takes " + std::string(route.method) + " only", ""};
    }
    if (route.needsToken && !secrets.isToken(tokenOf(route, head))) {
        return Refusal{403, "this page does not belong to the studio that runs now",
                       "open the address that orbel printed"};
    }
    if (route.method == "POST" && !isJson(head)) {
        return Refusal{415, "a request must be JSON", ""};
    }
    return std::nullopt;
}

json problemJson(const Problem& problem) {
    json item{{"message", problem.message}, {"remedy", problem.remedy}, {"pointer", problem.place}};
    int line = 0;
    int column = 0;
    if (std::sscanf(problem.place.c_str(), "line %d, column %d", &line, &column) == 2) {
        item["pointer"] = "";
        item["line"] = line;
        item["column"] = column;
    }
    return item;
}

/// A scene that cannot be drawn: its first problem as the sentence, all of them beside it.
Answer badSceneAnswer(const BadScene& bad) {
    const Problem& first = bad.problems.items().front();
    json document{{"error", (first.place.empty() ? "" : first.place + ": ") + first.message},
                  {"remedy", first.remedy},
                  {"problems", problemsJson(bad.problems)}};
    Answer answer = answerOf(document);
    answer.status = 422;
    return answer;
}

json bodyOf(const Request& request) {
    if (request.head.method != "POST") {
        return json::object();
    }
    json body = json::parse(request.body, nullptr, false);
    if (!body.is_object()) {
        throw Refusal{400, "the request is no JSON object", ""};
    }
    return body;
}

/// Does what a route does; whatever goes wrong becomes one sentence.
Answer guarded(const Route& route, Studio& studio, const Request& request) {
    try {
        const std::string tab(request.head.value("x-orbel-tab").substr(0, 64));
        return route.answer({studio, request, bodyOf(request), tab});
    } catch (const Refusal& refusal) {
        return answerOf(refusal);
    } catch (const BadScene& bad) {
        return badSceneAnswer(bad);
    } catch (const Superseded&) {
        return answerOf(Refusal{409, "superseded", ""});
    } catch (const MediaError& error) {
        return answerOf(Refusal{422, error.file() + ": " + error.message(), error.remedy()});
    } catch (const std::bad_alloc&) {
        return answerOf(Refusal{507, "there is not enough memory", "choose a smaller size"});
    } catch (const std::exception& error) {
        return answerOf(Refusal{500, error.what(), ""});
    }
}

} // namespace

json problemsJson(const Problems& problems) {
    json list = json::array();
    for (const Problem& problem : problems.items()) {
        list.push_back(problemJson(problem));
    }
    return list;
}

Studio::Studio(const StudioSettings& settings)
    : m_folder(folderOf(settings.place)),
      m_firstScene(firstScene(m_folder, settings.place)),
      m_conversions(settings.convertShape) {
    prepareShapeTable();
    m_table = textOf(parameterJson());
    m_watch = std::make_unique<FolderWatch>(&m_folder, &m_events, &m_preview,
                                            [this] { return scenesInUse(); });
    m_server = std::make_unique<HttpServer>(settings.port, settings.limits);
    m_server->serve(this);
}

Studio::~Studio() {
    m_events.close();
    m_server.reset(); // before anything that an answer in the making uses
}

void Studio::end() {
    m_pagesEnded = 0;
    m_events.tell({{"event", "ending"}});
    const auto until = std::chrono::steady_clock::now() + patience;
    while (m_pagesEnded < m_events.listeners() && std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

std::set<std::string> Studio::scenesInUse() {
    const std::lock_guard lock(m_mutex);
    std::set<std::string> names{m_firstScene};
    for (const auto& [tab, name] : m_scenes) {
        names.insert(name);
    }
    return names;
}

const json& Studio::letters() {
    std::call_once(m_lettersOnce, [this] {
        const InstalledLetters letters = installedLetters();
        m_letters = {{"families", letters.families}, {"hands", letters.hands}};
    });
    return m_letters;
}

std::string Studio::address() {
    return "http://127.0.0.1:" + std::to_string(port()) + "/#open=" + m_secrets.makeKey();
}

std::string Studio::sceneOf(const std::string& tab) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_scenes.find(tab);
    return found == m_scenes.end() ? m_firstScene : found->second;
}

void Studio::setScene(const std::string& tab, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    if (m_scenes.size() >= mostTabs) {
        m_scenes.clear();
    }
    m_scenes[tab] = name;
}

std::optional<Answer> Studio::refuse(const RequestHead& head) {
    std::optional<Refusal> refusal = refuseStranger(head, port());
    const std::string_view path = pathOf(head.target);
    if (!refusal) {
        if (const Route* const route = findRoute(path)) {
            refusal = refuseRoute(*route, head, m_secrets);
        } else if (findPageFile(path) == nullptr && !m_results.has(path)) {
            refusal = Refusal{404, "there is nothing here", ""};
        } else if (head.method != "GET" && head.method != "HEAD") {
            refusal = Refusal{405, "this address takes GET only", ""};
        }
    }
    return refusal ? std::optional(answerOf(*refusal)) : std::nullopt;
}

std::uint64_t Studio::bodyLimit(const RequestHead& head) {
    const Route* const route = findRoute(pathOf(head.target));
    return route == nullptr ? 0 : route->bodyLimit;
}

Answer Studio::answer(const Request& request) {
    const std::string_view path = pathOf(request.head.target);
    if (const Route* const route = findRoute(path)) {
        return guarded(*route, *this, request);
    }
    if (m_results.has(path)) {
        return m_results.answer(request.head, path);
    }
    const PageFile& file = *findPageFile(path);
    Answer answer;
    answer.type = file.type;
    answer.body = file.bytes;
    return answer;
}

} // namespace orbel::studio
