#include "shapes/ShapeTable.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace orbel {
namespace {

// The table is completed once per process, so each case runs in a process of its own.
class ShapeTable : public testing::Test {
protected:
    ShapeTable() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~ShapeTable() override { GTEST_FLAG_SET(death_test_style, m_style); }

    const std::string m_style = GTEST_FLAG_GET(death_test_style);
};

constexpr const char* variable = "QUARVEX_ORBEL_SVG_DIR";

/// Ends the process with the entry's file on the error output.
[[noreturn]] void tell(int index) {
    std::fprintf(stderr, "%d shapes, <%s>\n", static_cast<int>(g_numSVGShapes),
                 g_svgShapes[index].file);
    std::exit(0);
}

TEST_F(ShapeTable, takesTheFolderOfTheEnvironment) {
    EXPECT_EXIT(
        {
            setenv(variable, "/my/shapes", 1);
            buildStaticSVGShapeInfo("/base");
            tell(1);
        },
        testing::ExitedWithCode(0), "41 shapes, </my/shapes/Basic Circle.svg>");
}

TEST_F(ShapeTable, otherwiseTheFolderUnderTheBase) {
    EXPECT_EXIT(
        {
            unsetenv(variable);
            buildStaticSVGShapeInfo("/Library/Plug-ins/FxPlug");
            tell(40);
        },
        testing::ExitedWithCode(0), "</Library/Plug-ins/FxPlug/Tessaly/SVG/Wrinkled Petals.svg>");
}

TEST_F(ShapeTable, aNullBaseIsAnEmptyOne) {
    EXPECT_EXIT(
        {
            unsetenv(variable);
            buildStaticSVGShapeInfo(nullptr);
            tell(13);
        },
        testing::ExitedWithCode(0), "</Tessaly/SVG/Grid 7 x7.svg>");
}

TEST_F(ShapeTable, isCompletedOnce) {
    EXPECT_EXIT(
        {
            setenv(variable, "/first", 1);
            buildStaticSVGShapeInfo("/base");
            setenv(variable, "/second", 1);
            buildStaticSVGShapeInfo("/base");
            tell(9);
        },
        testing::ExitedWithCode(0), "41 shapes, </first/Funky star.svg>");
}

TEST_F(ShapeTable, cutsALongFolder) {
    EXPECT_EXIT(
        {
            setenv(variable, std::string(1000, 'f').c_str(), 1);
            buildStaticSVGShapeInfo("/base");
            tell(1);
        },
        testing::ExitedWithCode(0), "<f{255}>");
}

TEST_F(ShapeTable, noneHasNoFolder) {
    EXPECT_EXIT(
        {
            setenv(variable, "/my/shapes", 1);
            buildStaticSVGShapeInfo("/base");
            tell(0);
        },
        testing::ExitedWithCode(0), "<>");
}

TEST_F(ShapeTable, namesAndFilesGoTogether) {
    int count = 0;
    for (; g_svgShapes[count].name != nullptr; ++count) {
        const std::string file = g_svgShapes[count].file;
        if (count > 0) {
            EXPECT_TRUE(file.ends_with(std::string(g_svgShapes[count].name) + ".svg")) << file;
        }
    }
    EXPECT_EQ(count, 41);
    EXPECT_STREQ(g_svgShapes[0].name, "None");
    EXPECT_STREQ(g_svgShapes[10].name, "Gear shape 01");
    EXPECT_STREQ(g_svgShapes[20].name, "Random Lines");
    EXPECT_STREQ(g_svgShapes[24].name, "Squiggle Line Open 01");
    EXPECT_STREQ(g_svgShapes[33].name, "Squiggly Star");
}

} // namespace
} // namespace orbel
