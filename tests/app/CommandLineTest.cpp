#include "app/CommandLine.h"

#include "media/MediaReader.h"
#include "media/OutputTarget.h"
#include "params/ParameterTable.h"
#include "scene/Diagnostics.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <sstream>

namespace orbel::app {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

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

// What is in range goes on to what is missing then.
TEST(CommandLine, takesNumbersWithinTheirRanges) {
    struct Row {
        std::vector<const char*> command;
        const char* option;
        std::array<const char*, 2> ends;
        std::array<const char*, 2> beyond;
    };
    const std::vector<const char*> render{"render", "none.json"};
    const std::vector<const char*> submit{"farm", "submit", "none.json"};
    const std::vector<const char*> resume{"farm", "resume", "none"};
    const std::vector<const char*> verify{"farm", "verify", "none"};
    const std::vector<const char*> import{"import", "none.svg", "-o", "/nowhere/out.svg"};
    const std::vector<const char*> text{"text", "l", "-o", "/nowhere/out.svg"};
    const Row rows[] = {
        {render, "--threads", {"1", "1024"}, {"0", "1025"}},
        {render, "--chunk", {"1", "1000000"}, {"0", "1000001"}},
        {submit, "--chunk", {"1", "1000000"}, {"0", "1000001"}},
        {submit, "--nodes", {"1", "100000"}, {"0", "100001"}},
        {submit, "--threads", {"0", "1024"}, {"-1", "1025"}},
        {resume, "--nodes", {"1", "100000"}, {"0", "100001"}},
        {resume, "--threads", {"0", "1024"}, {"-1", "1025"}},
        {verify, "--sample", {"0", "1000000"}, {"-1", "1000001"}},
        {verify, "--threads", {"0", "1024"}, {"-1", "1025"}},
        {import, "--smallest", {"0", "100"}, {"-0.1", "100.1"}},
        {import, "--simplify", {"0", "1000000"}, {"-0.1", "1000001"}},
        {import, "--seconds", {"0.1", "3600"}, {"0.05", "3601"}},
        {text, "--size", {"1", "10000"}, {"0.9", "10001"}},
        {text, "--width", {"1", "100000"}, {"0.9", "100001"}},
        {text, "--line-height", {"0.1", "10"}, {"0.05", "10.5"}},
    };
    for (const Row& row : rows) {
        const auto complaint = [&row](const char* value) {
            std::vector<const char*> arguments = row.command;
            arguments.insert(arguments.end(), {row.option, value});
            const Output output = orbelProgram(arguments);
            EXPECT_EQ(output.code, EXIT_BAD_INPUT) << row.option << ' ' << value << output.err;
            return output.err;
        };
        for (const char* const value : row.ends) {
            EXPECT_THAT(complaint(value), Not(HasSubstr("in range"))) << row.option << value;
        }
        for (const char* const value : row.beyond) {
            EXPECT_THAT(complaint(value), StartsWith(std::string(row.option) + ": Value " + value))
                << row.option << value;
        }
    }
}

TEST(CommandLine, takesTheWordsAndOptionsThatGoTogether) {
    struct Row {
        std::vector<const char*> arguments;
        const char* complaint;
    };
    const char* const out = "/nowhere/out.svg";
    const Row rows[] = {
        {{"render", "none.json", "--progress", "xml"}, "--progress: xml not in {text,json}"},
        {{"render", "none.json", "--progress", "json"}, ""},
        {{"farm", "submit", "none.json", "--engine", "sge"}, "--engine: sge not in {slurm,local}"},
        {{"farm", "submit", "none.json", "--engine", "local"}, ""},
        {{"farm", "submit"}, "scene is required"},
        {{"farm", "status"}, "job is required"},
        {{"import", "none.svg"}, "--output is required"},
        {{"import", "-o", out}, "drawings is required"},
        {{"import", "none.svg", "-o", out, "--take", "all"}, R"("all" is none of both, fills, )"},
        {{"import", "none.svg", "-o", out, "--order", "x"}, R"("x" is none of nearest, paint)"},
        {{"import", "none.svg", "-o", out, "--closed", "x"}, R"("x" is none of all, keep, none)"},
        {{"import", "none.svg", "-o", out, "--closed", "none", "--order", "paint"}, ""},
        {{"text", "l"}, "--output is required"},
        {{"text", "-o", out}, "text is required"},
        {{"text", "l", "-o", out, "--align", "x"}, R"("x" is none of center, left, right)"},
        {{"text", "l", "-o", out, "--align", "right", "--outline"}, ""},
        {{"text", "l", "-o", out, "--single-stroke", "--outline"}, "excludes"},
        {{"text", "l", "-o", out, "--hand", "cursive"}, "--hand requires --single-stroke"},
        {{"check"}, "scene is required"},
    };
    for (const Row& row : rows) {
        const Output output = orbelProgram(row.arguments);
        EXPECT_EQ(output.code, EXIT_BAD_INPUT) << output.err;
        const bool asked = output.err.find("Run with --help") != std::string::npos;
        EXPECT_EQ(asked, *row.complaint != '\0') << output.err;
        EXPECT_THAT(output.err, HasSubstr(row.complaint));
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
