// What keeps everybody but the studio's own page out: other pages in the same browser, other names
// for this machine, other programs, and requests that are made to hurt.

#include "studio/Routes.h"
#include "studio/Secrets.h"
#include "tests/studio/StudioFixture.h"

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <sys/socket.h>

namespace orbel::studio {
namespace {

using testing::HasSubstr;
using testing::Not;

Fields changed(Fields fields, const std::string& name, const std::string& value) {
    for (auto& field : fields) {
        if (field.first == name) {
            field.second = value;
        }
    }
    return fields;
}

Fields without(Fields fields, const std::string& name) {
    std::erase_if(fields, [&](const auto& field) { return field.first == name; });
    return fields;
}

Fields with(Fields fields, const std::string& name, const std::string& value) {
    fields.emplace_back(name, value);
    return fields;
}

class StudioSecurity : public testing::Test {
protected:
    [[nodiscard]] int statusOf(const Fields& fields, const std::string& path = "/api/files",
                               const std::string& method = "GET") const {
        return m_studio.exchange(RunningStudio::request(method, path, fields, "{}")).status;
    }
    [[nodiscard]] bool lives() const { return m_studio.get("/api/files").status == 200; }

    RunningStudio m_studio;
};

TEST_F(StudioSecurity, listensOnThisMachineAlone) {
    ifaddrs* all = nullptr;
    ASSERT_EQ(getifaddrs(&all), 0);
    for (const ifaddrs* one = all; one != nullptr; one = one->ifa_next) {
        if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET) {
            continue;
        }
        sockaddr_in address = *reinterpret_cast<const sockaddr_in*>(one->ifa_addr);
        if (ntohl(address.sin_addr.s_addr) >> 24 == 127) {
            continue;
        }
        address.sin_port = htons(m_studio.port());
        const int wire = socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_NE(connect(wire, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        close(wire);
    }
    freeifaddrs(all);
}

TEST_F(StudioSecurity, answersToItsOwnNamesAlone) {
    const std::string port = std::string(":").append(std::to_string(m_studio.port()));
    const Fields plain = without(without(m_studio.fields(), "Origin"), "Sec-Fetch-Site");
    for (const char* name : {"127.0.0.1", "localhost", "[::1]"}) {
        EXPECT_EQ(statusOf(changed(plain, "Host", name + port)), 200) << name;
    }
    for (const char* path : {"/", "/api/files", "/studio.js", "/result/x", "/none"}) {
        for (const std::string& host :
             {std::string("evil.example"), "evil.example" + port, std::string("127.0.0.1"),
              std::string("127.0.0.1:1"), "127.0.0.1.evil.example" + port, "LOCALHOST" + port,
              "0.0.0.0" + port}) {
            EXPECT_EQ(statusOf(changed(plain, "Host", host), path), 403) << path << " " << host;
        }
    }
}

TEST_F(StudioSecurity, refusesHeadsThatCannotBeRead) {
    const Fields fields = m_studio.fields();
    EXPECT_EQ(statusOf(without(fields, "Host")), 400);
    EXPECT_EQ(statusOf(with(fields, "Host", m_studio.host())), 400);
    EXPECT_EQ(statusOf(changed(fields, "Host", "a b/" + m_studio.host())), 400);
    EXPECT_EQ(statusOf(with(fields, "Origin", "http://" + m_studio.host())), 400);
    EXPECT_EQ(statusOf(changed(fields, "Origin", "%%%")), 400);
    EXPECT_EQ(m_studio.exchange("nonsense\r\n\r\n").status, 400);
    EXPECT_EQ(m_studio.exchange("GET / HTTP/1.1\r\nHost\x01: x\r\n\r\n").status, 400);
    EXPECT_EQ(m_studio.exchange("GET / HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\n")
                  .status,
              400);
    EXPECT_TRUE(lives());
}

TEST_F(StudioSecurity, wantsItsTokenOnEveryRoute) {
    for (const Route& route : routes()) {
        if (!route.needsToken) {
            EXPECT_EQ(route.path, "/api/open");
            continue;
        }
        const std::string path(route.path);
        const std::string method(route.method);
        const Fields bare = without(m_studio.fields(), "X-Orbel-Token");
        std::string nearly = m_studio.token;
        nearly.back() = nearly.back() == '0' ? '1' : '0';
        EXPECT_EQ(statusOf(bare, path, method), 403) << path;
        EXPECT_EQ(statusOf(with(bare, "X-Orbel-Token", nearly), path, method), 403) << path;
        EXPECT_EQ(statusOf(with(bare, "X-Orbel-Token", ""), path, method), 403) << path;
        EXPECT_EQ(statusOf(with(bare, "Cookie", "X-Orbel-Token=" + m_studio.token), path, method),
                  403)
            << path;
        EXPECT_EQ(statusOf(bare, path + "?X-Orbel-Token=" + m_studio.token, method), 403) << path;
    }
}

TEST_F(StudioSecurity, makesSecretsThatCannotBeGuessed) {
    const RunningStudio other;
    EXPECT_NE(m_studio.token, other.token);
    EXPECT_EQ(m_studio.token.size(), 32U);
    EXPECT_TRUE(isSame("secret", "secret"));
    for (const char* wrong : {"", "s", "secre", "secrets", "Secret", "secreT"}) {
        EXPECT_FALSE(isSame(wrong, "secret")) << wrong;
    }
}

TEST_F(StudioSecurity, handsItsTokenOutOnceForAKey) {
    const std::string key = m_studio.post("/api/key", json::object()).document()["key"];
    EXPECT_EQ(m_studio.post("/api/open", {{"key", "0123456789abcdef"}}).status, 403);
    EXPECT_EQ(m_studio.post("/api/open", {{"key", key}}).document()["token"], m_studio.token);
    EXPECT_EQ(m_studio.post("/api/open", {{"key", key}}).status, 403);
    // Only the part of an address that no browser sends carries the key.
    EXPECT_THAT(m_studio.studio->address(), HasSubstr("/#open="));
}

// A socket has no fields of its own, so its token is one of the protocols that it offers.
TEST_F(StudioSecurity, opensItsSocketToThePageAlone) {
    Fields fields = without(m_studio.fields(), "X-Orbel-Token");
    for (const auto& [name, value] :
         Fields{{"Connection", "Upgrade"},
                {"Upgrade", "websocket"},
                {"Sec-WebSocket-Version", "13"},
                {"Sec-WebSocket-Key", "dGhlIHNhbXBsZSBub25jZQ=="},
                {"Sec-WebSocket-Protocol", "orbel.events, " + m_studio.token}}) {
        fields.emplace_back(name, value);
    }
    for (const std::string& offered :
         {std::string(), m_studio.token, "orbel.events, x" + m_studio.token,
          "orbel.events, " + m_studio.token.substr(1)}) {
        const Fields wrong = changed(fields, "Sec-WebSocket-Protocol", offered);
        EXPECT_EQ(statusOf(wrong, "/api/events"), 403) << offered;
    }
    EXPECT_EQ(statusOf(with(fields, "Sec-WebSocket-Protocol", "x"), "/api/events"), 403);
    EXPECT_EQ(statusOf(changed(fields, "Origin", "http://evil.example"), "/api/events"), 403);
    EXPECT_EQ(statusOf(fields, "/api/files"), 403);

    Wire page(m_studio.port());
    page.send(RunningStudio::request("GET", "/api/events", fields, ""));
    const Reply head = page.read();
    EXPECT_EQ(head.status, 101);
    EXPECT_EQ(head.headers.at("sec-websocket-protocol"), "orbel.events");
    EXPECT_EQ(head.headers.count("content-security-policy"), 1U);
    EXPECT_THAT(page.readMessage(), HasSubstr("alive"));
    m_studio.studio->events().tell({{"event", "files"}});
    EXPECT_THAT(page.readMessage(), HasSubstr("files"));
    page.close();
    EXPECT_TRUE(eventually([&] { return m_studio.studio->events().listeners() == 0; }));
}

TEST_F(StudioSecurity, refusesOtherPages) {
    const Fields fields = m_studio.fields();
    for (const std::string& origin :
         {std::string("null"), std::string("http://evil.example"),
          std::string("http://127.0.0.1:1"), "https://" + m_studio.host(),
          "http://localhost:" + std::to_string(m_studio.port())}) {
        EXPECT_EQ(statusOf(changed(fields, "Origin", origin)), 403) << origin;
    }
    for (const char* site : {"cross-site", "same-site"}) {
        for (const char* path : {"/", "/api/files", "/result/x"}) {
            EXPECT_EQ(statusOf(changed(fields, "Sec-Fetch-Site", site), path), 403) << site;
        }
    }
    EXPECT_EQ(statusOf(changed(fields, "Sec-Fetch-Site", "none")), 200);
}

TEST_F(StudioSecurity, takesJsonAloneAndChangesNothingOnGet) {
    const Fields fields = m_studio.fields();
    for (const char* type :
         {"text/plain", "application/x-www-form-urlencoded", "multipart/form-data",
          "text/plain; application/json", "application/jsonp"}) {
        EXPECT_EQ(statusOf(changed(fields, "Content-Type", type), "/api/check", "POST"), 415)
            << type;
    }
    EXPECT_EQ(statusOf(without(fields, "Content-Type"), "/api/check", "POST"), 415);
    for (const Route& route : routes()) {
        const std::string other = route.method == "POST" ? "GET" : "POST";
        EXPECT_EQ(statusOf(fields, std::string(route.path), other), 405) << route.path;
        EXPECT_EQ(statusOf(fields, std::string(route.path), "OPTIONS"), 405) << route.path;
    }
    EXPECT_EQ(m_studio.exchange(RunningStudio::request("POST", "/api/check", fields, "[1")).status,
              400);
}

TEST_F(StudioSecurity, protectsEveryAnswer) {
    for (const char* path : {"/", "/studio.js", "/api/files", "/none", "/api/key"}) {
        const Reply reply = m_studio.get(path);
        for (const auto& [name, value] : reply.headers) {
            EXPECT_THAT(name, Not(HasSubstr("access-control"))) << path;
        }
        const auto field = [&](const char* name) { return reply.headers.at(name); };
        EXPECT_THAT(field("content-security-policy"), HasSubstr("default-src 'self'"));
        EXPECT_THAT(field("content-security-policy"), HasSubstr("frame-ancestors 'none'"));
        EXPECT_THAT(field("content-security-policy"), Not(HasSubstr("unsafe")));
        EXPECT_EQ(field("x-frame-options"), "DENY");
        EXPECT_EQ(field("x-content-type-options"), "nosniff");
        EXPECT_EQ(field("cross-origin-resource-policy"), "same-origin");
        EXPECT_EQ(field("referrer-policy"), "no-referrer");
    }
}

TEST_F(StudioSecurity, servesNothingButItsOwnFiles) {
    test::writeBytes(m_studio.folder / "secret.json", "{}");
    for (const char* path :
         {"/../secret.json", "/..%2fsecret.json", "/%2e%2e/secret.json", "/secret.json",
          "/./studio.js", "//studio.js", "/..\\secret.json", "/studio.js%00", "/result/../x",
          "/result/", "/api/../studio.js", "/API/files", "*", "http://evil.example/studio.js"}) {
        EXPECT_EQ(m_studio.get(path).status, 404) << path;
    }
    EXPECT_THAT(m_studio.get("/").body, HasSubstr("<html"));
}

TEST_F(StudioSecurity, reachesNoFileOutsideItsFolder) {
    const test::TestFolder elsewhere;
    const std::string secret = elsewhere.file("secret.json", "secret");
    std::filesystem::create_symlink(secret, m_studio.folder / "link.json");
    std::filesystem::create_directory_symlink(elsewhere.path(), m_studio.folder / "way.json");
    for (const std::string& name :
         {std::string("../x.json"), secret, std::string("link.json"), std::string("way.json"),
          std::string("way.json/secret.json"), std::string("..\\x.json"),
          std::string(".hidden.json"), std::string("x.json\0.json", 12), std::string(),
          std::string("a\nb.json"), std::string(300, 'a') + ".json"}) {
        for (const char* route : {"/api/save-as", "/api/open-scene", "/api/save", "/api/journal",
                                  "/api/check", "/api/frame"}) {
            const Reply reply =
                m_studio.post(route, {{"name", name}, {"text", "x"}, {"revision", ""}});
            EXPECT_EQ(reply.status, 404) << route << " " << name;
        }
    }
    EXPECT_EQ(test::readBytes(secret), "secret");
    EXPECT_EQ(elsewhere.fileCount(), 1U);
}

TEST_F(StudioSecurity, writesWhatItShouldAndNothingElse) {
    for (const char* name : {"run.sh", "page.html", "noending", "a.json.exe"}) {
        EXPECT_EQ(m_studio.post("/api/save-as", {{"name", name}, {"text", "x"}}).status, 400)
            << name;
        EXPECT_EQ(m_studio.post("/api/drop", {{"name", name}, {"text", "x"}}).status, 400) << name;
        EXPECT_EQ(m_studio.post("/api/export", {{"name", name}, {"text", sceneText()}}).status, 422)
            << name;
    }
    EXPECT_EQ(m_studio.post("/api/save-as", {{"name", "a.json"}, {"text", "1"}}).status, 200);
    EXPECT_EQ(m_studio.post("/api/save-as", {{"name", "a.json"}, {"text", "2"}}).status, 409);
    EXPECT_EQ(test::readBytes(m_studio.folder / "a.json"), "1");
    EXPECT_EQ(m_studio.folder.fileCount(), 1U);
}

TEST_F(StudioSecurity, showsHostileNamesAsText) {
    const std::string name = "<img src=x onerror=alert(1)>\xff.svg";
    test::writeBytes(m_studio.folder / name, "<svg/>");
    const Reply reply = m_studio.get("/api/files");
    EXPECT_EQ(reply.headers.at("content-type"), "application/json");
    EXPECT_THAT(reply.document()["files"][0]["name"].get<std::string>(), HasSubstr("<img src=x"));
}

TEST(StudioLimits, cutsWhatIsTooLargeOrTooSlow) {
    HttpLimits limits;
    limits.connections = 4;
    limits.head = limits.body = std::chrono::milliseconds(300);
    const RunningStudio studio("scene.json", limits);
    Fields fields = studio.fields();
    fields.emplace_back("X-Long", std::string(20000, 'x'));
    EXPECT_EQ(studio.exchange(RunningStudio::request("GET", "/", fields, "")).status, 431);

    fields.pop_back();
    fields.emplace_back("Content-Length", "4294967296");
    EXPECT_EQ(studio.exchange(RunningStudio::request("PUT", "/api/drop", fields, "")).status, 405);
    std::string drop = RunningStudio::request("PUT", "/api/drop", fields, "");
    drop.replace(0, 3, "POST");
    EXPECT_EQ(studio.exchange(drop).status, 413);
    fields.back() = {"Transfer-Encoding", "chunked"};
    std::string endless = RunningStudio::request("PUT", "/api/key", fields, "");
    endless.replace(0, 3, "POST");
    endless += "20000\r\n" + std::string(0x20000, ' ') + "\r\n";
    EXPECT_EQ(studio.exchange(endless).status, 413);

    Wire slowHead(studio.port());
    slowHead.send("GET / HT");
    EXPECT_TRUE(slowHead.isClosed());
    fields.back() = {"Content-Length", "9"};
    std::string half = RunningStudio::request("PUT", "/api/key", fields, "");
    half.replace(0, 3, "POST");
    EXPECT_EQ(studio.exchange(half).status, 0); // cut

    const auto openWires = [&](int count) {
        std::vector<std::unique_ptr<Wire>> wires;
        for (int i = 0; i < count; ++i) {
            wires.push_back(std::make_unique<Wire>(studio.port()));
        }
        return wires.back()->isClosed();
    };
    EXPECT_TRUE(openWires(6));
    EXPECT_TRUE(eventually([&] { return studio.get("/api/files").status == 200; }));
    EXPECT_EQ(studio.post("/api/frame", {{"text", sceneText()}, {"width", 100000}}).status, 400);
}

} // namespace
} // namespace orbel::studio
