#include "media/MediaReader.h"
#include "scene/PixelFormats.h"
#include "tests/studio/StudioFixture.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>

namespace orbel::studio {
namespace {

class StudioPicture : public testing::Test {
protected:
    [[nodiscard]] Reply frame(const std::string& text, json more = json::object(),
                              const std::string& tab = "tab") const {
        more.merge_patch({{"text", text}});
        return m_studio.post("/api/frame", more, tab);
    }

    /// Has the program render a frame of the scene.
    void render(const std::string& text, const std::string& line) const {
        test::writeBytes(m_studio.folder / "scene.json", text);
        const test::Process program(
            test::words({ORBEL_PROGRAM, "render", m_studio.folder / "scene.json"}, line),
            m_studio.folder / "log");
        ASSERT_EQ(program.wait(), 0) << test::readBytes(m_studio.folder / "log");
    }

    RunningStudio m_studio;
};

/// A pixel of straight or premultiplied fractions on a ground, the long way round.
std::string onGround(const test::Rgba& pixel, bool straight, const std::array<int, 3>& ground) {
    const auto byte = [](double value) {
        return static_cast<int>(std::floor(std::clamp(value, 0.0, 1.0) * 255 + 0.5));
    };
    const int alpha = byte(pixel[3]);
    std::string bytes;
    for (std::size_t i = 0; i < 3; ++i) {
        const int colour = byte(straight ? pixel[i] * pixel[3] : pixel[i]);
        bytes += static_cast<char>(std::min(255, colour + (ground[i] * (255 - alpha) + 127) / 255));
    }
    return bytes + '\xff';
}

TEST_F(StudioPicture, isTheFilmsOwnFrameOnTheGroundInEveryFormat) {
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        const std::string name(nameOf(format));
        const std::string text =
            sceneText({{"format", name}, {"input", {{"color", {0.2, 0.9, 0.4, 0.6}}}}});
        render(text, "--frames 5-5 -q --raw " + (m_studio.folder / name));
        std::string raw = test::readBytes(m_studio.folder / (name + "/frame-000005.raw"));
        RasterInfo film;
        film.data = reinterpret_cast<std::uint8_t*>(raw.data());
        film.pixelFormat = format;
        film.width = 64;
        film.height = 48;
        film.bytesPerPixel = bytesPerPixel(format);
        film.rowBytes = 64 * film.bytesPerPixel;
        for (const char* ground : {"grid", "black", "#0a80ff"}) {
            std::string expected;
            for (int y = 0; y < 48; ++y) {
                for (int x = 0; x < 64; ++x) {
                    const int grey = ((x / 8) + (y / 8)) % 2 == 0 ? 44 : 54;
                    const std::array<int, 3> below = ground[0] == 'g' ? std::array{grey, grey, grey}
                                                     : ground[0] == 'b' ? std::array{0, 0, 0}
                                                                        : std::array{10, 128, 255};
                    expected += onGround(test::pixelAt(film, x, y), false, below);
                }
            }
            const Reply shown = frame(text, {{"frame", 5}, {"ground", ground}});
            EXPECT_TRUE(shown.body == expected) << name << " on " << ground;
            EXPECT_EQ(shown.headers.at("x-orbel-exact"), "1");
        }
    }
}

TEST_F(StudioPicture, isTheFilmsOwnFrameOverAPicture) {
    render(sceneText({{"input", {{"color", {0.1, 0.2, 0.7, 0.3}}}}}),
           "--frames 9-9 -q -o " + (m_studio.folder / "below.png"));
    const std::string text = sceneText({{"input", {{"file", "below.png"}}}});
    render(text, "--frames 5-5 -q -o " + (m_studio.folder / "film.png"));
    const PicturePtr film = openMedia(m_studio.folder / "film.png", 1)->readFrame(0);
    const auto& straight = std::get<std::vector<std::uint8_t>>(film->components);
    std::string expected;
    for (std::size_t i = 0; i < straight.size(); i += 4) {
        test::Rgba pixel{};
        std::transform(&straight[i], &straight[i] + 4, pixel.begin(),
                       [](std::uint8_t part) { return part / 255.0; });
        expected += onGround(pixel, true, {255, 255, 255});
    }
    EXPECT_TRUE(frame(text, {{"frame", 5}, {"ground", "white"}}).body == expected);
    const json pixel =
        m_studio.post("/api/pixel", {{"text", text}, {"frame", 5}, {"x", 32}, {"y", 24}})
            .document();
    const std::size_t at = 4 * (24 * 64 + 32);
    EXPECT_EQ(pixel["straight"],
              json({straight[at], straight[at + 1], straight[at + 2], straight[at + 3]}));
    // The input alone, from a file that changes while it is shown.
    const std::string before = frame(text, {{"before", true}, {"ground", "white"}}).body;
    render(sceneText(), "--frames 0-0 -q -o " + (m_studio.folder / "below.png"));
    EXPECT_NE(frame(text, {{"before", true}, {"ground", "white"}}).body, before);
}

TEST_F(StudioPicture, sendsOnlyWhatChanged) {
    const std::string whole = frame(sceneText(), {{"frame", 9}, {"serial", 1}}).body;
    const Reply same = frame(sceneText(), {{"frame", 9}, {"serial", 2}, {"since", 1}});
    EXPECT_EQ(same.headers.at("x-orbel-rect"), "0 0 0 0");
    const Reply part = frame(sceneText(), {{"frame", 5}, {"serial", 3}, {"since", 2}});
    std::istringstream rect(part.headers.at("x-orbel-rect"));
    std::size_t x = 0;
    std::size_t y = 0;
    std::size_t width = 0;
    std::size_t height = 0;
    rect >> x >> y >> width >> height;
    EXPECT_LT(part.body.size(), whole.size());
    std::string patched = whole;
    for (std::size_t row = 0; row < height; ++row) {
        patched.replace(4 * ((y + row) * 64 + x), 4 * width, part.body, row * 4 * width, 4 * width);
    }
    EXPECT_TRUE(patched == frame(sceneText(), {{"frame", 5}}).body);
    // Another tab, or one that missed a picture, gets all of it.
    EXPECT_EQ(frame(sceneText(), {{"serial", 9}, {"since", 3}}, "other").body.size(), whole.size());
    EXPECT_EQ(frame(sceneText(), {{"serial", 4}, {"since", 1}}).body.size(), whole.size());
}

TEST_F(StudioPicture, isSmallerWhereItIsShownSmaller) {
    const std::string text = sceneText({{"size", {640, 480}}});
    for (const bool exact : {false, true}) {
        const Reply shown = frame(text, {{"width", 160}, {"height", 120}, {"exact", exact}});
        EXPECT_EQ(shown.headers.at("x-orbel-width"), "160");
        EXPECT_EQ(shown.headers.at("x-orbel-exact"), exact ? "1" : "0");
        EXPECT_EQ(shown.body.size(), 160U * 120 * 4);
    }
    EXPECT_EQ(frame(text, {{"width", 4000}, {"height", 4000}}).headers.at("x-orbel-width"), "640");
}

TEST_F(StudioPicture, belongsToTheNewestRequestOfATab) {
    Reply old;
    std::thread first([&] { old = frame(endlessScene(), {{"serial", 1}}); });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(frame(sceneText(), {{"serial", 2}}).status, 200);
    first.join();
    EXPECT_EQ(old.status, 409);
    EXPECT_EQ(old.document()["error"], "superseded");
    EXPECT_EQ(frame(sceneText(), {{"serial", 1}}).status, 409);
}

TEST_F(StudioPicture, isGivenUpWhenThePageIsGone) {
    Wire wire(m_studio.port());
    wire.send(RunningStudio::request("POST", "/api/frame", m_studio.fields(),
                                     json{{"text", endlessScene()}}.dump()));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    wire.close();
    EXPECT_EQ(frame(sceneText(), {}, "other").status, 200);
}

TEST_F(StudioPicture, showsTheNewFilesOfASequence) {
    const auto write = [&](const char* name, const char* green) {
        render(sceneText({{"parameters", {{"Presets", nullptr}}}}),
               std::string("--frames 0 -q --input #00") + green + "00 -o " +
                   (m_studio.folder / name));
    };
    write("shot-07.png", "11");
    write("shot-08.png", "22");
    const std::string text = sceneText({{"input", {{"file", "shot-%02d.png"}, {"first", 7}}}});
    const auto second = [&] {
        return frame(text, {{"frame", 1}, {"before", true}}).body.substr(0, 4);
    };
    EXPECT_EQ(second(), std::string("\0\x22\0\xff", 4));
    std::this_thread::sleep_for(std::chrono::milliseconds(700)); // it is watched by now
    write("shot-08.png", "33");
    EXPECT_TRUE(eventually([&] { return second() == std::string("\0\x33\0\xff", 4); }));
}

// A studio keeps what it drew from scenes before; whatever is said anew must show.
TEST_F(StudioPicture, showsEveryChangeOfTheScene) {
    const char* const files[] = {"shot-01.png", "shot-02.png", "shot-03.png"};
    const char* const greens[] = {"55", "99", "dd"};
    for (std::size_t i = 0; i < 3; ++i) {
        render(sceneText({{"parameters", {{"Presets", nullptr}}}}),
               std::string("--frames 0 -q --input #00") + greens[i] + "00 -o " +
                   (m_studio.folder / files[i]));
    }
    json base{{"input", {{"file", "shot-%02d.png"}, {"first", 1}}},
              {"parameters",
               {{"Motion Blur", "On"},
                {"Transfer Mode", "Normal"},
                {"Thickness", 6},
                {"End", {{"keys", {{0, 0}, {9, 100}}}}}}}};
    const json changes[] = {
        {{"input", {{"first", 2}}}},
        {{"input", nullptr}},
        {{"input", {{"color", {0, 0, 1, 1}}, {"file", nullptr}, {"first", nullptr}}}},
        {{"input", {{"color", {0, 1, 1, 1}}, {"file", nullptr}, {"first", nullptr}}}},
        {{"size", {32, 40}}},
        {{"format", "argb16"}},
        {{"pixelAspect", 2}},
        {{"renderScale", {0.5, 1}}},
        {{"renderScale", {1, 0.5}}},
        {{"shape", "line.svg"}, {"parameters", {{"Presets", nullptr}}}},
        {{"parameters", {{"Color", {1, 0, 0}}}}},
        {{"parameters", {{"Presets", "Moon"}}}},
        json::object()};
    const std::string shape = "<svg><polyline points='0,0 100,0 100,100'/></svg>";
    test::writeBytes(m_studio.folder / "line.svg", shape);
    EXPECT_EQ(frame(sceneText(base), {{"frame", 1}}).status, 200);
    for (const json& change : changes) {
        json scene = base;
        scene.merge_patch(change);
        const RunningStudio fresh;
        test::writeBytes(fresh.folder / "line.svg", shape);
        for (const char* const file : files) {
            test::writeBytes(fresh.folder / file, test::readBytes(m_studio.folder / file));
        }
        const Reply shown = frame(sceneText(scene), {{"frame", 1}});
        const json request{{"frame", 1}, {"text", sceneText(scene)}};
        const Reply expected = fresh.post("/api/frame", request);
        EXPECT_EQ(shown.status, expected.status) << change;
        EXPECT_TRUE(shown.body == expected.body) << change;
    }
}

TEST(StudioConversion, keepsNobodyElseWaitingAndEndsWithThePage) {
    std::atomic<bool> began = false;
    std::atomic<bool> ended = false;
    const Conversions::Maker endless = [&](const auto& /*note*/, const auto& stopped) {
        return [&, stopped](const Scene& scene, Problems* problems) {
            began = true;
            while (!stopped()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            ended = true;
            problems->add({scene.file, "/shape", "stopped", ""});
            return std::optional<std::string>();
        };
    };
    const RunningStudio studio("scene.json", {}, endless);
    Wire page(studio.port());
    page.send(
        RunningStudio::request("POST", "/api/frame", studio.fields(),
                               json{{"text", sceneText({{"shape", {{"text", "x"}}}})}}.dump()));
    EXPECT_TRUE(eventually([&] { return began.load(); }));
    EXPECT_EQ(studio.post("/api/frame", {{"text", sceneText()}}, "other").status, 200);
    EXPECT_FALSE(ended);
    page.close();
    EXPECT_TRUE(eventually([&] { return ended.load(); }));
}

TEST_F(StudioPicture, refusesHostileScenesInOneSentence) {
    const std::string deep(100'000, '[');
    for (const std::string& text :
         {std::string(), deep, std::string("{}"), std::string("[1]"), std::string("\xff\xfe"),
          sceneText({{"size", {32767, 32767}}, {"format", "rgba32f"}}),
          sceneText({{"size", {1e300, -1}}}), sceneText({{"input", {{"file", "/dev/zero"}}}}),
          sceneText({{"input", {{"file", "no.png"}}}}), sceneText({{"shape", "../../etc"}})}) {
        const Reply reply = m_studio.exchange(RunningStudio::request(
            "POST", "/api/frame", m_studio.fields(),
            json{{"text", text}}.dump(-1, ' ', false, json::error_handler_t::replace)));
        EXPECT_EQ(reply.status, 422) << text.substr(0, 200);
        EXPECT_FALSE(reply.document().value("error", "").empty());
    }
    EXPECT_EQ(frame(sceneText()).status, 200);
}

TEST_F(StudioPicture, playsAtTheScenesRate) {
    Wire wire(m_studio.port());
    const std::string text = sceneText({{"fps", 50}});
    wire.send(RunningStudio::request(
        "POST", "/api/play", m_studio.fields(),
        json{{"text", text}, {"from", 2}, {"to", 8}, {"ground", "black"}}.dump()));
    const auto begin = std::chrono::steady_clock::now();
    const std::size_t one = 16 + 64 * 48 * 4;
    const std::string played = wire.readSome(7 * one);
    EXPECT_GT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(80));
    ASSERT_EQ(played.size() % one, 0U);
    ASSERT_GE(played.size(), 2 * one); // others may have been dropped
    EXPECT_EQ(played.substr(0, 16), std::string("\x02\0\0\0\x40\0\0\0\x30\0\0\0\0\x30\0\0", 16));
    EXPECT_TRUE(played.substr(16, one - 16) ==
                frame(text, {{"frame", 2}, {"ground", "black"}}).body);
    const auto last = static_cast<int>(played[played.size() - one]);
    EXPECT_LE(last, 8);
}

TEST_F(StudioPicture, knowsWhereTheStrokeRuns) {
    test::writeBytes(m_studio.folder / "line.svg",
                     "<svg><polyline points='0,0 100,0 100,100'/></svg>");
    const auto path = [&](const json& parameters) {
        json all{{"Presets", nullptr}, {"Start", 25}, {"End", 75}};
        all.merge_patch(parameters);
        const std::string text =
            sceneText({{"size", {400, 400}}, {"shape", "line.svg"}, {"parameters", all}});
        return m_studio.post("/api/path", {{"text", text}}).document();
    };
    const auto near = [](const json& point, double x, double y) {
        return std::hypot(point[0].get<double>() - x, point[1].get<double>() - y) < 2.0;
    };
    // The drawing fills the middle half of the square and is closed: its way is 682.8 long.
    const json plain = path(json::object());
    ASSERT_EQ(plain["paths"].size(), 1U);
    EXPECT_TRUE(near(plain["paths"][0], 100, 100));
    EXPECT_TRUE(near(plain["start"], 270.7, 100)) << plain["start"];
    EXPECT_TRUE(near(plain["end"], 220.7, 220.7)) << plain["end"];
    EXPECT_EQ(plain["position"], json({200.0, 200.0}));
    EXPECT_EQ(plain["fractions"][0].size() * 2, plain["paths"][0].size());
    EXPECT_NEAR(plain["fractions"][0].back().get<double>(), 1.0, 0.01);
    // Moved and turned by a quarter, and with nothing to draw.
    const json moved = path({{"Transform/XY Position", {0.5, 0.25}},
                             {"Transform/Z Rotation", 90},
                             {"Start", 25},
                             {"End", 10}});
    EXPECT_EQ(moved["position"], json({200.0, 100.0}));
    const json wide =
        m_studio
            .post("/api/path", {{"text", sceneText({{"size", {400, 400}},
                                                    {"shape", "line.svg"},
                                                    {"pixelAspect", 2},
                                                    {"parameters", {{"Presets", nullptr}}}})}})
            .document();
    EXPECT_NE(wide["paths"], plain["paths"]);
    // Two outlines, of which one is as long again as the other, and a frame on the way.
    test::writeBytes(m_studio.folder / "line.svg",
                     "<svg><polyline points='0,0 50,0'/><polyline points='0,50 100,50'/></svg>");
    for (const bool one : {false, true}) {
        const json two = path({{"Stroke Sequentially", one}});
        ASSERT_EQ(two["fractions"].size(), 2U);
        const double parts[] = {one ? 1.0 / 3 : 1.0, one ? 1.0 / 3 : 0.0};
        EXPECT_NEAR(two["fractions"][0].front().get<double>(), 0.0, 0.02) << one;
        EXPECT_NEAR(two["fractions"][0].back().get<double>(), parts[0], 0.02) << one;
        EXPECT_NEAR(two["fractions"][1].front().get<double>(), parts[1], 0.02) << one;
        EXPECT_NEAR(two["fractions"][1].back().get<double>(), 1.0, 0.02) << one;
    }
    EXPECT_EQ(path({{"Camera/XY Position", {0.25, 0.75}}})["camera"], json({100.0, 300.0}));
    EXPECT_TRUE(near(moved["start"], 300, 170.7)) << moved["start"];
    EXPECT_TRUE(near(moved["end"], 300, 170.7)) << moved["end"];
}

} // namespace
} // namespace orbel::studio
