#include "shapes/InlineShapes.h"

#include "host/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "shapes/ShapeCache.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace orbel {
namespace {

std::string lines(int count) {
    std::string text = "<svg>";
    for (int i = 0; i < count; ++i) {
        text += "<line x2='4' y2='2'/>";
    }
    return text + "</svg>";
}

class InlineShapes : public testing::Test {
protected:
    InlineShapes() { flushStrokeCache(); }
    ~InlineShapes() override { flushStrokeCache(); }
};

TEST_F(InlineShapes, aTextIsReadOnceAndFoundByItsContent) {
    PluginPath_Impl* const shape = findInlineShape(lines(2));
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->outlines().size(), 2U);
    EXPECT_EQ(shape->outlines()[0].vertices[1].y, 0.625); // normalised
    EXPECT_NE(findInlineShape(lines(3)), shape);
    EXPECT_EQ(findInlineShape(lines(2)), shape);
    for (const char* const broken : {"", "no svg", "<svg><line x2='1'/>", "\xff\xfe\x3c"}) {
        EXPECT_NE(findInlineShape(broken), nullptr);
    }
}

TEST_F(InlineShapes, theLastFewAreRememberedAndNoMore) {
    std::vector<PluginPath_Impl*> shapes;
    for (int i = 1; i <= static_cast<int>(maxInlineShapes); ++i) {
        shapes.push_back(findInlineShape(lines(i)));
    }
    for (int i = 1; i <= static_cast<int>(maxInlineShapes); ++i) {
        EXPECT_EQ(findInlineShape(lines(i)), shapes[static_cast<std::size_t>(i) - 1]);
    }
    shapes[0]->addOutline({}); // marks the first two as the ones that were read here
    shapes[1]->addOutline({});
    EXPECT_EQ(findInlineShape(lines(1)), shapes[0]); // used again: the second is the oldest now
    static_cast<void>(findInlineShape(lines(40)));
    EXPECT_EQ(findInlineShape(lines(1))->outlines().size(), 2U);
    EXPECT_EQ(findInlineShape(lines(2))->outlines().size(), 2U); // read anew
}

TEST_F(InlineShapes, aTextBeyondTheLimitIsNone) {
    std::string text(maxInlineShapeBytes, ' ');
    text.replace(0, lines(1).size(), lines(1));
    EXPECT_EQ(findInlineShape(text)->outlines().size(), 1U);
    text += ' ';
    EXPECT_EQ(findInlineShape(text), nullptr);
}

TEST_F(InlineShapes, standInForAFileThatCannotBeRead) {
    namespace fs = std::filesystem;
    const fs::path file =
        fs::path(testing::TempDir()) / ("orbel-inline-" + std::to_string(getpid()) + ".svg");
    std::ofstream(file) << lines(1);
    const std::string text = lines(2);
    const auto outlines = [](const std::string& path, std::string_view svg) {
        ParameterStore parameters;
        PluginHost_MEMORY_Impl host({}, {}, &parameters, {});
        Orbel_UserData data;
        setUserDataPath(&data, path.c_str());
        data.svg = svg;
        host.setUserData(&data);
        return static_cast<PluginPath_Impl*>(getSVGShape(&host))->outlines().size();
    };
    EXPECT_EQ(outlines(file, text), 1U);
    EXPECT_EQ(outlines("", text), 2U);
    fs::remove(file);
    EXPECT_EQ(outlines(file, text), 2U);
    EXPECT_EQ(outlines(file, {}), 0U);
}

} // namespace
} // namespace orbel
