#include "app/CommandLine.h"

#include "media/MediaReader.h"
#include "media/OutputTarget.h"
#include "params/ParameterTable.h"
#include "scene/Diagnostics.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace orbel::app {
namespace {

using testing::HasSubstr;

struct Output {
    int code;
    std::string out;
    std::string err;
};

Output orbelProgram(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "orbel");
    std::ostringstream out;
    std::ostringstream err;
    const int code = runCommandLine(static_cast<int>(arguments.size()), arguments.data(), out, err);
    return {code, out.str(), err.str()};
}

TEST(CommandLine, explainsItself) {
    const Output version = orbelProgram({"--version"});
    EXPECT_EQ(version.code, EXIT_DONE);
    for (const char* part :
         {"orbel ", "\ncommit ", "\ncompiler ", "\nacceleration level ", "\ncodecs libavcodec "}) {
        EXPECT_THAT(version.out, HasSubstr(part));
    }
    EXPECT_THAT(orbelProgram({"--help"}).out, HasSubstr("render"));
    const Output help = orbelProgram({"render", "--help"});
    EXPECT_EQ(help.code, EXIT_DONE);
    EXPECT_THAT(help.out, HasSubstr("orbel render scene.json -o film.mp4"));
}

TEST(CommandLine, refusesWhatItDoesNotKnow) {
    for (const std::vector<const char*>& arguments :
         std::vector<std::vector<const char*>>{{},
                                               {"render", "--colour", "x"},
                                               {"render", "a", "b"},
                                               {"check"},
                                               {"farm"},
                                               {"render", "a", "--threads", "0"},
                                               {"params", "--json", "--markdown"}}) {
        const Output output = orbelProgram(arguments);
        EXPECT_EQ(output.code, EXIT_BAD_INPUT);
        EXPECT_FALSE(output.err.empty());
    }
}

TEST(CommandLine, tellsTheNearestOfWhatIsMeant) {
    const std::vector<std::pair<std::vector<const char*>, const char*>> cases{
        {{"frobnicate"}, R"(there is no command "frobnicate"; the nearest is ")"},
        {{"rendr", "scene.json"}, R"(there is no command "rendr"; the nearest is "render"; )"},
        {{"render", "--set", "13=1"}, R"(no parameter "13"; "orbel params" lists them all)"},
        {{"render", "--set", "Thikness=1"}, R"(the nearest is "Thickness"; "orbel params")"},
    };
    for (const auto& [arguments, message] : cases) {
        const Output output = orbelProgram(arguments);
        EXPECT_EQ(output.code, EXIT_BAD_INPUT);
        EXPECT_THAT(output.err, HasSubstr(message));
    }
}

TEST(CommandLine, wantsAnOutput) {
    const Output output = orbelProgram({"render", "--size", "4x4"});
    EXPECT_EQ(output.code, EXIT_BAD_INPUT);
    EXPECT_THAT(output.err, HasSubstr("command line (-o): no output is named; add -o"));
}

TEST(CommandLine, listsTheParameters) {
    const Output text = orbelProgram({"params"});
    EXPECT_EQ(text.code, EXIT_DONE);
    EXPECT_THAT(text.out, HasSubstr("\n4           Thickness"));
    EXPECT_THAT(text.out, HasSubstr("\nTransfer Mode:\n   0  None\n   1  Normal\n"));
    const auto list = nlohmann::json::parse(orbelProgram({"params", "--json"}).out);
    ASSERT_EQ(list.size(), 65U);
    for (const auto& item : list) {
        const ParameterRow* const row = findParameter(item["id"].get<int>());
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(item["name"], row->name);
        EXPECT_EQ(item["group"], row->group);
        if (row->kind == RowKind::Float) {
            EXPECT_EQ(item["range"], (nlohmann::json{row->bounds().min, row->bounds().max}));
            EXPECT_EQ(item["default"], row->defaults[0]);
        }
    }
}

TEST(CommandLine, documentsTheParameters) {
    EXPECT_EQ(orbelProgram({"params", "--markdown"}).out,
              readBytes(ORBEL_SOURCE_DIR "/docs/parameters.md"))
        << "run: orbel params --markdown > docs/parameters.md";
}

TEST(CommandLine, listsTheShapes) {
    const Output output = orbelProgram({"shapes"});
    EXPECT_EQ(std::count(output.out.begin(), output.out.end(), '\n'), 40);
    EXPECT_THAT(output.out, HasSubstr(" 3  Basic Star\n"));
    EXPECT_THAT(output.out, HasSubstr("40  Wrinkled Petals"));
}

TEST(CommandLine, drawsTheGallery) {
    const TestFolder folder;
    const std::string file = folder / "sheet.png";
    EXPECT_EQ(orbelProgram({"shapes", "--sheet", file.c_str()}).code, EXIT_DONE);
    const PicturePtr sheet = openMedia(file, 1)->readFrame(0);
    const int column = sheet->width / 8;
    const int row = sheet->height / 5;
    double brightest = 0.0;
    for (int y = 0; y < row; ++y) {
        for (int x = 0; x < column; ++x) {
            brightest = std::max(brightest, componentOf(*sheet, x, y, 0));
        }
    }
    EXPECT_GT(brightest, 0.8);
    EXPECT_NEAR(componentOf(*sheet, 0, 0, 3), 1.0, 1e-9); // on a ground of its own, not on nothing
    EXPECT_NEAR(componentOf(*sheet, 0, 0, 2), 0.07, 1.0 / 255);
    EXPECT_EQ(orbelProgram({"shapes", "--sheet", "/nowhere/sheet.png"}).code, EXIT_BAD_INPUT);
}

TEST(CommandLine, checksAScene) {
    const TestFolder folder;
    writeBytes(folder / "shape.svg",
               "<svg>\n<g transform='rotate(1)'>\n<path d='M 0 0 A 1 1 0 0 0 5 5 L 9 9'/></g>\n"
               "<blob/></svg>");
    const std::string file = folder / "scene.json";
    writeBytes(file, R"({"orbel": 1, "size": [4, 4], "shape": "shape.svg"})");
    const Output good = orbelProgram({"check", file.c_str()});
    EXPECT_EQ(good.code, EXIT_DONE);
    EXPECT_THAT(good.out, HasSubstr("shape.svg (line 2): "));
    EXPECT_THAT(good.out, HasSubstr("shape.svg (line 3): "));
    EXPECT_THAT(good.out, HasSubstr("shape.svg (line 4): "));
    EXPECT_THAT(good.out, HasSubstr("ready to render: frames 0 to 0, 4 x 4, rgba8"));
    writeBytes(file, R"({"orbel": 1, "sizes": 3, "shape": "none.svg", "parameters": {"x": 1}})");
    const Output bad = orbelProgram({"check", file.c_str()});
    EXPECT_EQ(bad.code, EXIT_BAD_INPUT);
    for (const char* place : {"(/sizes)", "(/shape)", "(/parameters/x)", "size of the frame"}) {
        EXPECT_THAT(bad.out, HasSubstr(place));
    }
}

} // namespace
} // namespace orbel::app
