#include "tests/studio/StudioFixture.h"

#include "app/SceneDrawings.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orbel::studio {

Wire::Wire(std::uint16_t port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const timeval patience{10, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

Wire::~Wire() {
    close();
}

void Wire::close() {
    if (m_socket >= 0) {
        ::close(m_socket);
    }
    m_socket = -1;
}

void Wire::send(const std::string& bytes) const {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const auto now = ::send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (now <= 0) {
            return; // cut; the answer tells why
        }
        sent += static_cast<std::size_t>(now);
    }
}

bool Wire::fill() {
    std::string piece(1 << 16, '\0');
    const auto got = recv(m_socket, piece.data(), piece.size(), 0);
    m_pending.append(piece, 0, got > 0 ? static_cast<std::size_t>(got) : 0);
    return got > 0;
}

bool Wire::readHead(Reply* reply) {
    std::size_t end = 0;
    while ((end = m_pending.find("\r\n\r\n")) == std::string::npos) {
        if (!fill()) {
            return false;
        }
    }
    std::istringstream head(m_pending.substr(0, end + 2));
    m_pending.erase(0, end + 4);
    std::string line;
    std::getline(head, line);
    reply->status = std::stoi(line.substr(9, 3));
    while (std::getline(head, line)) {
        const std::size_t colon = line.find(':');
        std::string name = line.substr(0, colon);
        std::transform(name.begin(), name.end(), name.begin(), ::tolower);
        reply->headers[name] = line.substr(colon + 2, line.size() - colon - 3);
    }
    return true;
}

Reply Wire::read() {
    Reply reply;
    if (!readHead(&reply)) {
        return reply;
    }
    const std::size_t length = std::stoul("0" + reply.headers["content-length"]);
    while (m_pending.size() < length && fill()) {
    }
    reply.body = m_pending.substr(0, length);
    m_pending.erase(0, reply.body.size());
    return reply;
}

std::string Wire::takeChunk() {
    const std::size_t line = m_pending.find("\r\n");
    if (line == std::string::npos) {
        return "";
    }
    const std::size_t size = std::stoul(m_pending, nullptr, 16);
    if (m_pending.size() < line + 2 + size + 2) {
        return "";
    }
    std::string chunk = m_pending.substr(line + 2, size);
    m_pending.erase(0, line + 2 + size + 2);
    return chunk;
}

std::string Wire::readSome(std::size_t bytes) {
    Reply reply;
    if (!m_headRead && !readHead(&reply)) {
        return "";
    }
    m_headRead = true;
    std::string body;
    while (body.size() < bytes) {
        const std::string chunk = takeChunk();
        body += chunk;
        if (chunk.empty() && (m_pending.rfind("0\r\n", 0) == 0 || !fill())) {
            break;
        }
    }
    return body;
}

std::string Wire::readMessage() {
    constexpr std::size_t shortHead = 2;
    constexpr std::size_t longHead = 4;
    const auto byte = [this](std::size_t at) {
        return static_cast<std::size_t>(static_cast<unsigned char>(m_pending[at]));
    };
    const auto wait = [this](std::size_t bytes) {
        while (m_pending.size() < bytes && fill()) {
        }
        return m_pending.size() >= bytes;
    };
    if (!wait(shortHead) || (byte(1) == 126 && !wait(longHead))) {
        return "";
    }
    const std::size_t head = byte(1) == 126 ? longHead : shortHead;
    const std::size_t length = head == longHead ? byte(2) * 256 + byte(3) : byte(1);
    if (!wait(head + length)) {
        return "";
    }
    std::string message = m_pending.substr(head, length);
    m_pending.erase(0, head + length);
    return message;
}

bool Wire::isClosed() const {
    const timeval patience{5, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    char byte = 0;
    return recv(m_socket, &byte, 1, 0) == 0;
}

RunningStudio::RunningStudio(const std::string& scene, const HttpLimits& limits,
                             Conversions::Maker convertShape) {
    studio = std::make_unique<Studio>(
        StudioSettings{folder / scene, 0, limits, std::move(convertShape)});
    const std::string address = studio->address();
    token = exchange(request("POST", "/api/open",
                             {{"Host", host()}, {"Content-Type", "application/json"}},
                             json{{"key", address.substr(address.find('=') + 1)}}.dump()))
                .document()
                .value("token", "");
}

Fields RunningStudio::fields() const {
    return {{"Host", host()},
            {"Origin", "http://" + host()},
            {"Sec-Fetch-Site", "same-origin"},
            {"Content-Type", "application/json"},
            {"X-Orbel-Token", token},
            {"X-Orbel-Tab", "tab"}};
}

std::string RunningStudio::request(const std::string& method, const std::string& path,
                                   const Fields& fields, const std::string& body) {
    std::string text = method + " " + path + " HTTP/1.1\r\n";
    for (const auto& [name, value] : fields) {
        text += name + ": " + value + "\r\n";
    }
    if (method == "POST") {
        text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    }
    return text + "\r\n" + body;
}

Reply RunningStudio::exchange(const std::string& bytes) const {
    Wire wire(port());
    wire.send(bytes);
    return wire.read();
}

Reply RunningStudio::get(const std::string& path) const {
    return exchange(request("GET", path, fields(), ""));
}

Reply RunningStudio::post(const std::string& path, const json& body, const std::string& tab) const {
    Fields all = fields();
    all.back().second = tab;
    return exchange(request("POST", path, all, body.dump()));
}

std::string sceneText(const json& more) {
    json scene{{"orbel", 1},
               {"size", {64, 48}},
               {"frames", {0, 9}},
               {"parameters",
                {{"Presets", "Basic Star"},
                 {"Thickness", 3},
                 {"End", {{"keys", {{0, 20}, {9, 100}}}}},
                 {"Color", {1.0, 0.5, 0.25}},
                 {"Transfer Mode", "Normal"}}}};
    scene.merge_patch(more);
    return scene.dump(2);
}

std::string endlessScene() {
    return sceneText({{"size", {1920, 1080}},
                      {"parameters",
                       {{"Thickness", 400},
                        {"Feather", 100},
                        {"Advanced/Adjust Step", 1},
                        {"Repeater/Enable Repeater", true},
                        {"Repeater/Instances", 1000},
                        {"Motion Blur/Motion Blur", "On"},
                        {"Motion Blur/Levels", 64}}}});
}

bool eventually(const std::function<bool()>& holds, int seconds) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > until) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace orbel::studio
