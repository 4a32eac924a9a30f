#pragma once

#include "app/SceneDrawings.h"
#include "studio/Studio.h"
#include "tests/support/TestFolder.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orbel::studio {

/// What a server answered; status 0 when it cut the connection.
struct Reply {
    int status = 0;
    std::map<std::string, std::string> headers; ///< names in small letters
    std::string body;

    [[nodiscard]] json document() const { return json::parse(body, nullptr, false); }
};

using Fields = std::vector<std::pair<std::string, std::string>>;

/// A connection to this machine that sends whatever it is told.
class Wire {
public:
    explicit Wire(std::uint16_t port);
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;
    ~Wire();

    void send(const std::string& bytes) const;
    /// Waits for a whole answer, at most ten seconds.
    [[nodiscard]] Reply read();
    /// Waits until so many bytes of the answer's body are there, or its end.
    [[nodiscard]] std::string readSome(std::size_t bytes);
    /// Waits for the next message of a socket, after `read` gave the head.
    [[nodiscard]] std::string readMessage();
    /// Whether the other side has closed; waits at most five seconds for it.
    [[nodiscard]] bool isClosed() const;
    void close();

private:
    bool readHead(Reply* reply);
    bool fill();
    std::string takeChunk();

    int m_socket = -1;
    std::string m_pending;
    bool m_headRead = false;
};

/// A running studio over a folder of its own, and a page that knows its token.
class RunningStudio {
public:
    explicit RunningStudio(const std::string& scene = "scene.json", const HttpLimits& limits = {},
                           Conversions::Maker convertShape = app::shapeConverter);

    [[nodiscard]] std::uint16_t port() const { return studio->port(); }
    [[nodiscard]] std::string host() const { return "127.0.0.1:" + std::to_string(port()); }
    /// The fields of a sound request of the page.
    [[nodiscard]] Fields fields() const;
    /// The text of a request with these fields and no other.
    [[nodiscard]] static std::string request(const std::string& method, const std::string& path,
                                             const Fields& fields, const std::string& body);
    [[nodiscard]] Reply exchange(const std::string& bytes) const;
    [[nodiscard]] Reply get(const std::string& path) const;
    [[nodiscard]] Reply post(const std::string& path, const json& body,
                             const std::string& tab = "tab") const;

    test::TestFolder folder;
    std::unique_ptr<Studio> studio;
    std::string token;
};

/// A small scene; the members of `more` are added or replace its own.
[[nodiscard]] std::string sceneText(const json& more = json::object());

/// A scene whose frame takes minutes.
[[nodiscard]] std::string endlessScene();

/// Tries until it is true, at most so many seconds.
[[nodiscard]] bool eventually(const std::function<bool()>& holds, int seconds = 10);

} // namespace orbel::studio
