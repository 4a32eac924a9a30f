#include "shapes/ShapeTable.h"

#include "tests/support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace orbel {
namespace {

constexpr const char* variable = "QUARVEX_ORBEL_SVG_DIR";

/// Completes the table once for each folder in the environment (null: unset), running out of memory
/// at every allocation once if asked to, then ends the process with an entry's file on the error
/// output.
[[noreturn]] void completeAndTell(const std::vector<const char*>& folders, const char* base,
                                  int index, bool outOfMemory) {
    for (const char* const folder : folders) {
        if (folder == nullptr) {
            unsetenv(variable);
        } else {
            setenv(variable, folder, 1);
        }
        for (long i = 0; outOfMemory && g_numSVGShapes == 0; ++i) {
            test::AllocationCounter::failOnce(i);
            try {
                buildStaticSVGShapeInfo(base);
            } catch (const std::bad_alloc&) {
            }
        }
        test::AllocationCounter::failOnce(-1);
        buildStaticSVGShapeInfo(base);
    }
    std::fprintf(stderr, "%d shapes, <%s>\n", static_cast<int>(g_numSVGShapes),
                 g_svgShapes[index].file);
    std::exit(0);
}

// The table is completed once per process, so each case runs in a process of its own.
TEST(ShapeTable, isCompletedOnceFromTheEnvironmentOrTheBase) {
    const std::string style = GTEST_FLAG_GET(death_test_style);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string longFolder(1000, 'f');
    struct Row {
        std::vector<const char*> folders;
        const char* base;
        int index;
        const char* told;
        bool outOfMemory = false;
    };
    const Row rows[] = {
        {{"/my/shapes"}, "/base", 1, "41 shapes, </my/shapes/Basic Circle.svg>"},
        {{nullptr}, "/plug-ins", 40, "</plug-ins/Tessaly/SVG/Wrinkled Petals.svg>"},
        {{nullptr}, nullptr, 13, "</Tessaly/SVG/Grid 7 x7.svg>"},
        {{"/first", "/second"}, "/base", 9, "41 shapes, </first/Funky star.svg>"},
        {{longFolder.c_str()}, "/base", 1, "<f{255}>"}, // cut
        {{"/my/shapes"}, "/base", 0, "<>"},             // "None"
        {{"/my/shapes"}, "/base", 2, "41 shapes, </my/shapes/Basic Square.svg>", true},
    };
    for (const Row& row : rows) {
        EXPECT_EXIT(completeAndTell(row.folders, row.base, row.index, row.outOfMemory),
                    testing::ExitedWithCode(0), row.told);
    }
    GTEST_FLAG_SET(death_test_style, style);
}

// The names and their order are written out in docs/parameters.md.
TEST(ShapeTable, filesAreCalledAsTheirShapes) {
    for (const SVGShapeInfo* shape = g_svgShapes + 1; shape->name != nullptr; ++shape) {
        EXPECT_TRUE(std::string(shape->file).ends_with(std::string(shape->name) + ".svg"));
    }
}

} // namespace
} // namespace orbel
