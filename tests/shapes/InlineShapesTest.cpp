#include "shapes/InlineShapes.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "shapes/ShapeCache.h"
#include "tests/shapes/SvgText.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orbel {
namespace {

using test::svgOfLines;

class InlineShapes : public testing::Test {
protected:
    InlineShapes() { flushStrokeCache(); }
    ~InlineShapes() override { flushStrokeCache(); }
};

TEST_F(InlineShapes, aTextIsReadOnceAndFoundByItsContent) {
    PluginPath_Impl* const shape = findInlineShape(svgOfLines(2));
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->outlines().size(), 2U);
    EXPECT_EQ(shape->outlines()[0].vertices[1].y, 0.625); // normalised
    EXPECT_NE(findInlineShape(svgOfLines(3)), shape);
    EXPECT_EQ(findInlineShape(svgOfLines(2)), shape);
    for (const char* const broken : {"", "no svg", "<svg><line x2='1'/>", "\xff\xfe\x3c"}) {
        EXPECT_NE(findInlineShape(broken), nullptr);
    }
}

TEST_F(InlineShapes, theLastFewAreRememberedAndNoMore) {
    std::vector<PluginPath_Impl*> shapes;
    for (int i = 1; i <= static_cast<int>(maxInlineShapes); ++i) {
        shapes.push_back(findInlineShape(svgOfLines(i)));
    }
    for (int i = 1; i <= static_cast<int>(maxInlineShapes); ++i) {
        EXPECT_EQ(findInlineShape(svgOfLines(i)), shapes[static_cast<std::size_t>(i) - 1]);
    }
    shapes[0]->addOutline({}); // marks the first two as the ones that were read here
    shapes[1]->addOutline({});
    EXPECT_EQ(findInlineShape(svgOfLines(1)),
              shapes[0]); // used again: the second is the oldest now
    static_cast<void>(findInlineShape(svgOfLines(40)));
    EXPECT_EQ(findInlineShape(svgOfLines(1))->outlines().size(), 2U);
    EXPECT_EQ(findInlineShape(svgOfLines(2))->outlines().size(), 2U); // read anew
}

TEST_F(InlineShapes, aTextBeyondTheLimitIsNone) {
    std::string text(maxInlineShapeBytes, ' ');
    text.replace(0, svgOfLines(1).size(), svgOfLines(1));
    EXPECT_EQ(findInlineShape(text)->outlines().size(), 1U);
    text += ' ';
    EXPECT_EQ(findInlineShape(text), nullptr);
}

TEST_F(InlineShapes, standInForAFileThatCannotBeRead) {
    const test::TestFolder folder;
    const std::string file = folder.file("a.svg", svgOfLines(1));
    const std::string text = svgOfLines(2);
    const auto outlines = [](const std::string& path, std::string_view svg) {
        ParameterStore parameters;
        PluginHost_MEMORY_Impl host({}, {}, &parameters, {});
        Orbel_UserData data;
        setUserDataPath(&data, path.c_str());
        host.setShapeText(svg);
        host.setUserData(&data);
        return static_cast<PluginPath_Impl*>(getSVGShape(&host))->outlines().size();
    };
    EXPECT_EQ(outlines(file, text), 1U);
    EXPECT_EQ(outlines("", text), 2U);
    std::filesystem::remove(file);
    EXPECT_EQ(outlines(file, text), 2U);
    EXPECT_EQ(outlines(file, {}), 0U);
}

} // namespace
} // namespace orbel
