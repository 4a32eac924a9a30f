#include "shapes/PathRenderer.h"

#include "tests/shapes/SvgText.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::Outline;
using test::Vertices;

Outline draw(const std::string& data) {
    PluginPath_Impl shape;
    path_renderer renderer;
    path_tokenizer tokenizer;
    renderer.setPath(&shape);
    tokenizer.set_path_str(data.c_str());
    renderer.begin_path();
    renderer.parse_path(tokenizer);
    renderer.end_path();
    EXPECT_EQ(shape.outlines().size(), 1U);
    return shape.outlines().at(0);
}

struct Case {
    const char* data;
    Vertices vertices;
};

const Case cases[] = {
    {"", {}},
    {"M 10 10 20 20", {}}, // two moves
    // The rule for a single vertex.
    {"M 0 0 L 10 0", {{0, 0, 0, 0, 0, 0}, {10, 0, 10, 0, 10, 0}}},
    {"M 1 2 L 3 4 5 6", {{1, 2, 1, 2, 3, 4}, {3, 4, 3, 4, 5, 6}}},
    {"m 1 2 l 3 4 5 6", {{1, 2, 1, 2, 4, 6}, {4, 6, 4, 6, 9, 12}}},
    {"M 1 2 m 3 4 l 1 0 0 1", {{4, 6, 4, 6, 5, 6}, {5, 6, 5, 6, 5, 7}}},
    {"M 1 2 H 5 V 7", {{1, 2, 1, 2, 5, 2}, {5, 2, 5, 2, 5, 7}}},
    {"M 1 2 h 5 v 7", {{1, 2, 1, 2, 6, 2}, {6, 2, 6, 2, 6, 9}}},
    {"M 1 2 h 5 5", {{1, 2, 1, 2, 6, 2}, {6, 2, 6, 2, 11, 2}}},
    // Closing neither adds a vertex nor moves the current point, nor does a move split the outline.
    {"M 1 2 L 3 4 5 6 Z L 7 8", {{1, 2, 1, 2, 3, 4}, {3, 4, 3, 4, 5, 6}, {5, 6, 5, 6, 7, 8}}},
    {"M 0 0 L 1 0 M 5 5 L 6 5", {{0, 0, 0, 0, 1, 0}, {5, 5, 5, 5, 6, 5}}},
    // One cubic: the single vertex is split before the end vertex comes.
    {"M 0 0 C 1 2 3 4 5 6", {{0, 0, 0, 0, 0, 0}, {1, 2, 1, 2, 1, 2}, {3, 4, 5, 6, 5, 6}}},
    {"M 1 1 c 1 2 3 4 5 6", {{1, 1, 1, 1, 1, 1}, {2, 3, 2, 3, 2, 3}, {4, 5, 6, 7, 6, 7}}},
    {"M 0 0 C 1 2 3 4 5 6 7 8 9 10 11 12",
     {{0, 0, 0, 0, 1, 2}, {3, 4, 5, 6, 7, 8}, {9, 10, 11, 12, 11, 12}}},
    // Smooth, absolute and relative: the mirrored second control point, (7, 8).
    {"M 0 0 C 1 2 3 4 5 6 S 9 10 11 12",
     {{0, 0, 0, 0, 1, 2}, {3, 4, 5, 6, 7, 8}, {9, 10, 11, 12, 11, 12}}},
    {"M 0 0 C 1 2 3 4 5 6 s 4 4 6 6",
     {{0, 0, 0, 0, 1, 2}, {3, 4, 5, 6, 7, 8}, {9, 10, 11, 12, 11, 12}}},
    {"M 2 2 S 4 5 6 7 8 9 10 11", {{2, 2, 2, 2, 2, 2}, {4, 5, 6, 7, 8, 9}, {8, 9, 10, 11, 10, 11}}},
    {"M 2 2 s 2 3 4 5 2 2 4 4", {{2, 2, 2, 2, 2, 2}, {4, 5, 6, 7, 8, 9}, {8, 9, 10, 11, 10, 11}}},
    // A line leaves the last control point stale: (0, 0) before any cubic, (3, 4) after the first.
    {"M 1 1 L 2 2 C 3 3 4 4 5 5", {{1, 1, 1, 1, 2, 2}, {0, 0, 2, 2, 3, 3}, {4, 4, 5, 5, 5, 5}}},
    {"M 0 0 C 1 2 3 4 5 6 L 8 8 C 9 9 10 10 11 11",
     {{0, 0, 0, 0, 1, 2}, {5, 6, 5, 6, 8, 8}, {3, 4, 8, 8, 9, 9}, {10, 10, 11, 11, 11, 11}}},
    {"M 1 1 L 2 2 S 4 4 5 5", {{1, 1, 1, 1, 2, 2}, {0, 0, 2, 2, 4, 4}, {4, 4, 5, 5, 5, 5}}},
    // A cubic anywhere adds the end vertex, also when a line comes last.
    {"M 0 0 C 1 2 3 4 5 6 L 8 8", {{0, 0, 0, 0, 1, 2}, {5, 6, 5, 6, 8, 8}, {3, 4, 8, 8, 8, 8}}},
    // A quadratic curve has its control point for an anchor.
    {"M 0 0 Q 1 2 3 4 5 6 7 8", {{0, 0, 1, 2, 3, 4}, {3, 4, 5, 6, 7, 8}}},
    {"M 1 1 q 1 2 3 4 1 1 2 2", {{1, 1, 2, 3, 4, 5}, {4, 5, 5, 6, 6, 7}}},
    // Smooth quadratics mirror the last out-control, which is the current point itself ...
    {"M 0 0 Q 1 2 3 4 T 7 8", {{0, 0, 1, 2, 3, 4}, {3, 4, 3, 4, 7, 8}}},
    {"M 0 0 Q 1 2 3 4 t 4 4", {{0, 0, 1, 2, 3, 4}, {3, 4, 3, 4, 7, 8}}},
    {"M 1 2 T 3 4 5 6", {{1, 2, 1, 2, 3, 4}, {3, 4, 3, 4, 5, 6}}},
    {"M 1 2 t 2 2 2 2", {{1, 2, 1, 2, 3, 4}, {3, 4, 3, 4, 5, 6}}},
    // ... except after a cubic or a move.
    {"M 0 0 C 1 2 3 4 5 6 T 7 7", {{0, 0, 0, 0, 1, 2}, {5, 6, 9, 10, 7, 7}, {3, 4, 7, 7, 7, 7}}},
    {"M 0 0 L 1 0 M 5 5 t 1 1", {{0, 0, 0, 0, 1, 0}, {5, 5, 9, 10, 6, 6}}},
    // Oddities.
    {"M 1 1 A 5 5 0 0 1 9 9 L 2 2 3 3", {{1, 1, 1, 1, 2, 2}, {2, 2, 2, 2, 3, 3}}},
    {"M 1 1 a 5 5 0 01 L 2 2 3 3", {{1, 1, 1, 1, 2, 2}, {2, 2, 2, 2, 3, 3}}},
    {"5 5 M 1 1 L 2 2", {}}, // numbers before any command
    {"M 1 1 L 2 2 3 3 P 4 L 5 5", {{1, 1, 1, 1, 2, 2}, {2, 2, 2, 2, 3, 3}}},
    {"M 1 1 L 2 2 f", {{1, 1, 1, 1, 1, 1}, {2, 2, 2, 2, 2, 2}}},
    {"M 1 1 L 2 2 3 3 ; L 4 4", {{1, 1, 1, 1, 2, 2}, {2, 2, 2, 2, 3, 3}}},
    // A foreign command in a number's place is lost with its own first number, here twice.
    {"M 1 1 L 5 M 7 8 L 9 9", {{1, 1, 1, 1, 5, 0}, {8, 0, 8, 0, 9, 0}}},
    {"M 1 2 L", {{1, 2, 1, 2, 1, 2}, {2, 0, 2, 0, 2, 0}}}, // takes the 2 once more
};

TEST(PathRenderer, dataBecomesVertices) {
    for (const Case& c : cases) {
        EXPECT_EQ(draw(c.data).vertices, c.vertices) << c.data;
    }
}

TEST(PathRenderer, closesWithAndWithoutAVertex) {
    EXPECT_TRUE(draw("M 0 0 L 1 0 1 1").isOpen);
    EXPECT_FALSE(draw("M 0 0 L 1 0 1 1 z").isOpen);
    EXPECT_FALSE(draw("M 0 0 L 1 0 Z L 1 1").isOpen);

    PluginPath_Impl shape;
    path_renderer renderer;
    renderer.setPath(&shape);
    renderer.begin_path();
    renderer.close_subpath(true); // nothing to close
    renderer.move_to(1, 1, false);
    renderer.curve3(9, 9, 2, 2, false);
    renderer.close_subpath(true);
    renderer.end_path();
    EXPECT_EQ(shape.outlines()[0].vertices, (Vertices{{1, 1, 9, 9, 2, 2}, {2, 2, 2, 2, 1, 1}}));
}

TEST(PathRenderer, everyPathStartsAfresh) {
    PluginPath_Impl shape;
    path_renderer renderer;
    path_tokenizer tokenizer;
    renderer.setPath(&shape);
    for (const char* data : {"M 1 1 C 2 2 3 3 4 4 z", "l 1 0 0 1"}) {
        renderer.begin_path();
        tokenizer.set_path_str(data);
        renderer.parse_path(tokenizer);
        renderer.end_path();
    }
    EXPECT_TRUE(shape.outlines()[1].isOpen);
    EXPECT_EQ(shape.outlines()[1].vertices, (Vertices{{0, 0, 0, 0, 1, 0}, {1, 0, 1, 0, 1, 1}}));
}

TEST(PathRenderer, withoutATargetOutlinesAreDropped) {
    path_renderer renderer;
    renderer.begin_path();
    renderer.line_to(1, 1, false);
    renderer.remove_all();
    renderer.end_path();
}

TEST(PathRenderer, takesOnlySoManyVertices) {
    PluginPath_Impl shape;
    path_renderer renderer;
    renderer.setPath(&shape);
    renderer.begin_path();
    for (std::size_t i = 0; i != path_renderer::maxParts; ++i) {
        renderer.line_to(1, 1, true);
    }
    EXPECT_FALSE(renderer.overfull());
    renderer.line_to(1, 1, true);
    EXPECT_TRUE(renderer.overfull());
    renderer.end_path();
    EXPECT_TRUE(shape.outlines().empty());
}

} // namespace
} // namespace orbel
