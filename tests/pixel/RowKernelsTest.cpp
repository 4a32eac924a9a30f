#include "pixel/RowKernels.h"

#include "pixel/Acceleration.h"
#include "tests/pixel/RowTestSupport.h"

#include <functional>
#include <string>

namespace orbel::test {
namespace {

constexpr int longestRow = 67;

/// What a kernel does to two rows; it may leave the second alone.
template<typename P>
using RowWork =
    std::function<void(const RowKernels<P>&, typename P::Component*, typename P::Component*, int)>;

template<typename P>
class RowKernelsTest : public testing::Test {
protected:
    using Row = GuardedRow<typename P::Component>;

    const std::vector<Components<typename P::Component>> m_first = testPixels<P>(1);
    const std::vector<Components<typename P::Component>> m_second = testPixels<P>(2);

    /// Expects the same of every level as of the reference, for rows of one length.
    void compare(const std::string& what, const RowWork<P>& work, std::size_t start, int count,
                 int offset) {
        Row expectedA(m_first, start, count, offset);
        Row expectedB(m_second, start + 31, count, 3 - offset);
        work(rowKernels<P>(0), expectedA.data(), expectedB.data(), count);
        for (int level = 1; level <= bestAccelerationLevel(); ++level) {
            Row a(m_first, start, count, offset);
            Row b(m_second, start + 31, count, 3 - offset);
            work(rowKernels<P>(level), a.data(), b.data(), count);
            ASSERT_TRUE(a.sameAs(expectedA) && b.sameAs(expectedB))
                << what << " at level " << level << ", " << count << " pixels from " << start;
            ASSERT_TRUE(a.guardsIntact() && b.guardsIntact())
                << what << " at level " << level << ", " << count << " pixels";
        }
    }

    /// Short rows of every length and a long one.
    void compareLengths(const std::string& what, const RowWork<P>& work) {
        for (int count = 0; count <= longestRow && !this->HasFatalFailure(); ++count) {
            compare(what, work, static_cast<std::size_t>(count) * 53, count, count % 4);
        }
        if (!this->HasFatalFailure()) {
            compare(what, work, 0, static_cast<int>(m_first.size()), 1);
        }
    }
};

TYPED_TEST_SUITE(RowKernelsTest, AllPixelFormats);

TYPED_TEST(RowKernelsTest, colourPassesMatchTheReference) {
    using P = TypeParam;
    using T = typename P::Component;
    using Kernels = RowKernels<P>;
    const std::array<T, 4> colour{T{1}, T{2}, T{3}, T{4}};
    this->compareLengths("fill",
                         [&](const Kernels& k, T* a, T*, int n) { k.fill(a, n, colour.data()); });
    this->compareLengths("unPremult", [](const Kernels& k, T* a, T*, int n) { k.unPremult(a, n); });
    this->compareLengths("premult", [](const Kernels& k, T* a, T*, int n) { k.premult(a, n); });
    std::vector<float> amounts{0.25F, 0.37F, 1.0F, 0.999F};
    amounts.insert(amounts.end(), wildAmounts.begin(), wildAmounts.end());
    for (const float amount : amounts) {
        const std::string by = " by " + std::to_string(amount);
        this->compareLengths("multiplyAlpha" + by, [amount](const Kernels& k, T* a, T*, int n) {
            k.multiplyAlpha(a, n, amount);
        });
        this->compareLengths("blendImages" + by, [amount](const Kernels& k, T* a, T* b, int n) {
            k.blendImages(a, b, std::ptrdiff_t{4} * n, amount);
        });
    }
    this->compare(
        "blendImages of odd components",
        [](const Kernels& k, T* a, T* b, int n) {
            k.blendImages(a, b, std::ptrdiff_t{4} * n - 1, 0.4F);
        },
        0, 50, 0);
}

TYPED_TEST(RowKernelsTest, hslModulateMatchesTheReference) {
    using P = TypeParam;
    using T = typename P::Component;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const HslAmounts& amounts :
         {HslAmounts{0.1, 0.0, 0.0}, HslAmounts{0.3, 77.0, 0.2}, HslAmounts{-0.4, -500.0, -0.6},
          HslAmounts{1.0, 360.0, 1.0}, HslAmounts{0.0, 1e-9, 0.0}, HslAmounts{3e5, 1e9, -2e5},
          HslAmounts{1e40, -1e30, 1e300}, HslAmounts{nan, 1.0, 1.0}, HslAmounts{0.5, nan, nan}}) {
        this->compareLengths(
            "hslModulate by " + std::to_string(amounts.lowAlphaHueDegrees),
            [&](const RowKernels<P>& k, T* a, T*, int n) { k.hslModulate(a, n, amounts); });
    }
}

TYPED_TEST(RowKernelsTest, compositesMatchTheReference) {
    using P = TypeParam;
    using T = typename P::Component;
    const std::vector<std::pair<float, float>> opacities{
        {1.0F, 1.0F}, {0.5F, 1.0F}, {0.0F, 1.0F}, {0.73F, 0.31F}, {1.0F, 0.0F}};
    for (std::size_t code = 0; code < rowKernels<P>(0).composite.size(); ++code) {
        const bool exists = rowKernels<P>(0).composite[code] != nullptr;
        ASSERT_EQ(rowKernels<P>().composite[code] != nullptr, exists) << code;
        for (const auto& [opacity1, opacity2] : opacities) {
            if (!exists) {
                continue;
            }
            const auto composite = [&, o1 = opacity1,
                                    o2 = opacity2](const RowKernels<P>& k, const T* front,
                                                   const T* behind, T* out, int n) {
                k.composite[code](front, behind, out, n, o1, o2);
            };
            const std::string what = "composite " + std::to_string(code);
            this->compareLengths(what + " into the front", [&](const auto& k, T* a, T* b, int n) {
                composite(k, a, b, a, n);
            });
            this->compareLengths(what + " into the back", [&](const auto& k, T* a, T* b, int n) {
                composite(k, a, b, b, n);
            });
        }
    }
}

TYPED_TEST(RowKernelsTest, wildOpacitiesMatchTheReference) {
    using P = TypeParam;
    using T = typename P::Component;
    const auto& reference = rowKernels<P>(0);
    for (std::size_t code = 0; code < reference.composite.size(); ++code) {
        for (const float opacity : wildAmounts) {
            const std::string what = "mode " + std::to_string(code);
            if (reference.composite[code] != nullptr) {
                this->compare(
                    what,
                    [&](const RowKernels<P>& k, T* a, T* b, int n) {
                        k.composite[code](a, b, a, n, opacity, 0.5F);
                        k.composite[code](a, b, b, n, 0.5F, opacity);
                    },
                    2950, 300, 1);
            }
            this->compare(
                what + " finished",
                [&](const RowKernels<P>& k, T* a, T* b, int n) {
                    k.finish[code](a, b, n, opacity);
                },
                2950, 300, 1);
        }
    }
}

TYPED_TEST(RowKernelsTest, finishMatchesTheReference) {
    using P = TypeParam;
    using T = typename P::Component;
    for (std::size_t code = 0; code < rowKernels<P>(0).finish.size(); ++code) {
        for (const float opacity : {1.0F, 0.6F}) {
            this->compareLengths("finish " + std::to_string(code),
                                 [&](const RowKernels<P>& k, T* a, T* b, int n) {
                                     k.finish[code](a, b, n, opacity);
                                 });
        }
    }
}

// At all levels: what the cheapest kernel gives is what the full one would have given.
TYPED_TEST(RowKernelsTest, untouchedPixelsAreFinishedAsOthers) {
    using P = TypeParam;
    using T = typename P::Component;
    this->compareLengths("finishTransparent", [](const RowKernels<P>& k, T* a, T* b, int n) {
        k.finishTransparent(a, b, n);
    });
    const auto count = static_cast<int>(this->m_first.size());
    for (int level = 0; level <= bestAccelerationLevel(); ++level) {
        const RowKernels<P>& kernels = rowKernels<P>(level);
        GuardedRow<T> input(this->m_first, 0, count, 0);
        GuardedRow<T> layer(this->m_second, 0, count, 0);
        for (int i = 0; i < count; ++i) {
            layer.data()[4 * i + P::FORMAT::alpha] = T{0};
        }
        for (const std::size_t code : {2U, 4U, 8U, 12U, 16U}) {
            GuardedRow<T> fullInput = input;
            GuardedRow<T> fullLayer = layer;
            GuardedRow<T> quickInput = input;
            GuardedRow<T> quickLayer = layer;
            kernels.finish[code](fullInput.data(), fullLayer.data(), count, 0.7F);
            kernels.finishTransparent(quickInput.data(), quickLayer.data(), count);
            EXPECT_TRUE(quickInput.sameAs(fullInput)) << code << " at level " << level;
            EXPECT_TRUE(quickLayer.sameAs(fullLayer)) << code << " at level " << level;
        }
    }
}

/// Every component with every alpha, as both take part in the divisions of 8-bit pixels.
TEST(RowKernels8, divisionsOfEveryPairMatchTheReference) {
    std::vector<Components<unsigned char>> pairs;
    for (int alpha = 0; alpha <= 255; ++alpha) {
        for (int c = 0; c <= 255; ++c) {
            const auto byte = static_cast<unsigned char>(c);
            pairs.push_back({byte, static_cast<unsigned char>(255 - c), byte,
                             static_cast<unsigned char>(alpha)});
        }
    }
    const auto count = static_cast<int>(pairs.size());
    for (int level = 1; level <= bestAccelerationLevel(); ++level) {
        GuardedRow<unsigned char> expected(pairs, 0, count, 0);
        GuardedRow<unsigned char> actual = expected;
        rowKernels<PIXEL_RGBA8>(0).unPremult(expected.data(), count);
        rowKernels<PIXEL_RGBA8>(level).unPremult(actual.data(), count);
        EXPECT_TRUE(actual.sameAs(expected)) << "level " << level;
    }
}

} // namespace
} // namespace orbel::test
