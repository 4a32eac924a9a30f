#include "tests/golden/GoldenScenes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orbel::golden {
namespace {

class Golden : public testing::TestWithParam<std::string> {};

// No tolerance: the same arithmetic gives the same bytes.
TEST_P(Golden, frameIsUnchanged) {
    const Frames actual = render(GetParam());
    const Frames expected = stored(GetParam(), actual);
    ASSERT_EQ(expected.bytes.size(), actual.bytes.size()) << "frames are missing: re-base";
    for (std::size_t i = 0; i < actual.bytes.size(); ++i) {
        const std::string& a = expected.bytes[i];
        const std::string& b = actual.bytes[i];
        if (a == b) {
            continue;
        }
        const auto at = std::mismatch(a.begin(), a.end(), b.begin()).first - a.begin();
        const long pixel = at / bytesPerPixel(actual.format);
        ADD_FAILURE() << GetParam() << " frame " << expected.first + static_cast<long>(i)
                      << " differs first at pixel (" << pixel % actual.size.width << ", "
                      << pixel / actual.size.width << "); pictures are in "
                      << writeDifference(GetParam(), expected, actual, i);
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, Golden, testing::ValuesIn(sceneNames()),
                         [](const auto& scene) { return testName(scene.param); });

} // namespace
} // namespace orbel::golden
