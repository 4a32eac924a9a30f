#include "tests/artwork/ShippedShapes.h"

#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "media/MediaReader.h"
#include "params/ParameterTable.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orbel::test {
namespace {

constexpr int side = 512;

class ArtworkPicture : public testing::TestWithParam<ShippedShape> {};

/// The pixels that a stroke covers at least half.
class StrokeMask {
public:
    template<typename Covered>
    explicit StrokeMask(const Covered& covered) {
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                m_covered[index(x, y)] = covered(x, y);
            }
        }
    }

    [[nodiscard]] long pixels() const { return std::count(m_covered.begin(), m_covered.end(), 1); }

    /// The share of this stroke that has a pixel of another within 1.5 pixels.
    [[nodiscard]] double shareNear(const StrokeMask& other) const {
        long near = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                near += m_covered[index(x, y)] != 0 && other.touches(x, y) ? 1 : 0;
            }
        }
        return static_cast<double>(near) / static_cast<double>(pixels());
    }

private:
    static std::size_t index(int x, int y) {
        return static_cast<std::size_t>(y) * side + static_cast<std::size_t>(x);
    }

    [[nodiscard]] bool touches(int x, int y) const {
        for (int v = std::max(0, y - 1); v <= std::min(side - 1, y + 1); ++v) {
            for (int u = std::max(0, x - 1); u <= std::min(side - 1, x + 1); ++u) {
                if (m_covered[index(u, v)] != 0) {
                    return true;
                }
            }
        }
        return false;
    }

    std::vector<char> m_covered = std::vector<char>(std::size_t{side} * side);
};

/// Our stroke, the shape blown up from the middle half of the frame to where its file has it.
StrokeMask ourStroke(const ShippedShape& shape) {
    ScenePlan plan;
    plan.size = {side, side};
    plan.shapePath = shapePath(shape);
    plan.parameters.set(PARAM_THICKNESS, 3);
    plan.parameters.set(PARAM_SCALE_X, 448.0 / 256.0);
    plan.parameters.set(PARAM_SCALE_Y, 448.0 / 256.0);
    FrameRenderer renderer(&plan, {}, {});
    const MemoryImage input = renderer.makeImage();
    const MemoryImage output = renderer.makeImage();
    EXPECT_EQ(renderer.render(0, input, output), 0);
    return StrokeMask([&](int x, int y) { return output.info().row(y)[4 * x + 3] >= 128; });
}

/// The reference is grey on white; half covered is half way to the grey of the files.
StrokeMask referenceStroke(const ShippedShape& shape) {
    const std::string file = std::string(ORBEL_ARTWORK_REFERENCES "/") + shape.name + ".png";
    const PicturePtr picture = openMedia(file, 1)->readFrame(0);
    EXPECT_EQ(picture->width, side);
    const auto& components = std::get<std::vector<std::uint8_t>>(picture->components);
    return StrokeMask([&](int x, int y) {
        return components[(static_cast<std::size_t>(y) * side + static_cast<std::size_t>(x)) * 4] <
               173;
    });
}

TEST_P(ArtworkPicture, looksTheSameInAnotherRenderer) {
    const StrokeMask ours = ourStroke(GetParam());
    const StrokeMask theirs = referenceStroke(GetParam());
    ASSERT_GT(ours.pixels(), 1000);
    ASSERT_GT(theirs.pixels(), 1000);
    EXPECT_GE(ours.shareNear(theirs), 0.97);
    EXPECT_GE(theirs.shareNear(ours), 0.97);
}

INSTANTIATE_TEST_SUITE_P(Shapes, ArtworkPicture,
                         testing::ValuesIn(shippedShapes().begin(), shippedShapes().end()),
                         [](const auto& test) { return testName(test.param); });

} // namespace
} // namespace orbel::test
