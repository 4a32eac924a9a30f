#include "pixel/RowKernels.h"

#include "pixel/Acceleration.h"
#include "pixel/ColourOps.h"
#include "pixel/TransferModes.h"
#include "tests/pixel/PixelTestSupport.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

namespace orbel::test {
namespace {

constexpr int longestRow = 67;

/// The same bytes. Any NaN will do for another: compilers may swap the operands of a sum, and with
/// them which NaN comes out.
template<typename T>
bool sameComponents(const T* a, const T* b, std::size_t count) {
    if (std::memcmp(a, b, count * sizeof(T)) == 0) {
        return true;
    }
    return std::equal(a, a + count, b, [](T x, T y) {
        if constexpr (std::is_floating_point_v<T>) {
            return (std::isnan(x) && std::isnan(y)) || std::memcmp(&x, &y, sizeof(T)) == 0;
        } else {
            return x == y;
        }
    });
}

/// A row of pixels amid guard components, anywhere in memory.
template<typename T>
class GuardedRow {
public:
    GuardedRow(const std::vector<Rgba<T>>& pixels, std::size_t first, int count, int offset)
        : m_begin(static_cast<std::size_t>(offset) + margin),
          m_count(static_cast<std::size_t>(count) * 4),
          m_components(m_begin + m_count + margin, guard()) {
        for (std::size_t i = 0; i < m_count / 4; ++i) {
            const auto& pixel = pixels[(first + i) % pixels.size()];
            std::copy(pixel.begin(), pixel.end(), data() + 4 * i);
        }
    }
    T* data() { return m_components.data() + m_begin; }
    const T* pixel(std::size_t i) const { return m_components.data() + m_begin + 4 * i; }
    bool guardsIntact() const {
        const auto isGuard = [](T c) { return c == guard(); };
        const auto end = m_components.begin();
        const auto begin = static_cast<std::ptrdiff_t>(m_begin);
        return std::all_of(end, end + begin, isGuard) &&
               std::all_of(end + begin + static_cast<std::ptrdiff_t>(m_count), m_components.end(),
                           isGuard);
    }
    bool sameAs(const GuardedRow& other) const {
        return sameComponents(pixel(0), other.pixel(0), m_count);
    }

private:
    static constexpr std::size_t margin = 64;
    static constexpr T guard() { return static_cast<T>(77); }

    std::size_t m_begin;
    std::size_t m_count;
    std::vector<T> m_components;
};

/// Any bytes at all; of floats, any bit patterns.
template<typename P>
std::vector<Rgba<typename P::Component>> anyPixels(std::size_t count, unsigned seed) {
    std::mt19937 engine(seed);
    std::vector<Rgba<typename P::Component>> pixels(count);
    auto* const bytes = reinterpret_cast<unsigned char*>(pixels.data());
    std::generate(bytes, bytes + count * sizeof(pixels[0]),
                  [&] { return static_cast<unsigned char>(engine()); });
    return pixels;
}

template<typename P>
std::vector<Rgba<typename P::Component>> testPixels(unsigned seed) {
    auto pixels = randomPixels<P>(3000, seed);
    for (const auto& more : {anyPixels<P>(600, seed), wildPixels<P>()}) {
        pixels.insert(pixels.end(), more.begin(), more.end());
    }
    std::mt19937 engine(seed);
    // Now and then runs of pixels of one alpha, which kernels may treat in a way of their own.
    for (std::size_t start = 0; start + 100 < pixels.size(); start += 200) {
        const auto alpha = pixels[start + engine() % 100][P::FORMAT::alpha];
        for (std::size_t i = 0; i < 70; ++i) {
            pixels[start + i][P::FORMAT::alpha] = alpha;
        }
    }
    return pixels;
}

/// What a kernel does to two rows; it may leave the second alone.
template<typename P>
using RowWork =
    std::function<void(const RowKernels<P>&, typename P::Component*, typename P::Component*, int)>;

template<typename P>
class RowKernelsTest : public testing::Test {
protected:
    using Row = GuardedRow<typename P::Component>;

    const std::vector<Rgba<typename P::Component>> m_first = testPixels<P>(1);
    const std::vector<Rgba<typename P::Component>> m_second = testPixels<P>(2);

    /// Expects the same of every level as of the law, for rows of one length.
    void compare(const std::string& what, const RowWork<P>& work, std::size_t start, int count,
                 int offset) {
        Row lawA(m_first, start, count, offset);
        Row lawB(m_second, start + 31, count, 3 - offset);
        work(rowKernels<P>(0), lawA.data(), lawB.data(), count);
        for (int level = 1; level <= bestAccelerationLevel(); ++level) {
            Row a(m_first, start, count, offset);
            Row b(m_second, start + 31, count, 3 - offset);
            work(rowKernels<P>(level), a.data(), b.data(), count);
            ASSERT_TRUE(a.sameAs(lawA) && b.sameAs(lawB))
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

TYPED_TEST(RowKernelsTest, colourPassesFollowTheLaw) {
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

TYPED_TEST(RowKernelsTest, hslModulateFollowsTheLaw) {
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

TYPED_TEST(RowKernelsTest, compositesFollowTheLaw) {
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

TYPED_TEST(RowKernelsTest, wildOpacitiesFollowTheLaw) {
    using P = TypeParam;
    using T = typename P::Component;
    const auto& law = rowKernels<P>(0);
    for (std::size_t code = 0; code < law.composite.size(); ++code) {
        for (const float opacity : wildAmounts) {
            const std::string what = "mode " + std::to_string(code);
            if (law.composite[code] != nullptr) {
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

TYPED_TEST(RowKernelsTest, finishFollowsTheLaw) {
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
    this->compareLengths("finishUntouched", [](const RowKernels<P>& k, T* a, T* b, int n) {
        k.finishUntouched(a, b, n);
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
            kernels.finishUntouched(quickInput.data(), quickLayer.data(), count);
            EXPECT_TRUE(quickInput.sameAs(fullInput)) << code << " at level " << level;
            EXPECT_TRUE(quickLayer.sameAs(fullLayer)) << code << " at level " << level;
        }
    }
}

/// The level in use for the length of a test.
class LevelGuard {
public:
    LevelGuard() = default;
    ~LevelGuard() { setAccelerationLevel(m_level); }
    LevelGuard(const LevelGuard&) = delete;
    LevelGuard& operator=(const LevelGuard&) = delete;

private:
    int m_level = accelerationLevel();
};

/// Every pass over whole rasters, one after another; `second` of another size than `first`.
template<typename P>
void runPasses(PluginHost_API* host, PluginRaster_API* first, PluginRaster_API* second) {
    using T = typename P::Component;
    using W = typename P::Wide;
    using F = typename P::Float;
    using O = typename P::FORMAT;
    UnPremult<P, T, W, F, O>(P{}, host, first);
    HSLModulate<P, T, W, F, O>(P{}, host, first, 0.2, 0.3, 0.1);
    BlendImages<P, T, W, F, O>(P{}, host, 0.3F, first, second);
    for (int code = 0; code < 40; ++code) {
        TransferComposite<P, T, W, F, O>(P{}, T{}, W{}, F{}, O{}, host, code, 0.8, 0.9, first,
                                         second, code % 2 == 0 ? first : second, false,
                                         code % 5 == 0, true);
    }
    MultiplyAlpha<P, T, W, F, O>(P{}, host, 0.9F, second);
    Premult<P, T, W, F, O>(P{}, host, second);
}

TYPED_TEST(RowKernelsTest, rastersOfEveryLayoutFollowTheLaw) {
    using P = TypeParam;
    const LevelGuard guard;
    RasterHost host;
    const auto run = [&](int level, RowLayout layout, GuardedImage<P>& a, GuardedImage<P>& b) {
        setAccelerationLevel(level);
        ASSERT_EQ(accelerationLevel(), level);
        a.fillFrom({this->m_first.begin(), this->m_first.begin() + 37 * 11});
        b.fillFrom({this->m_second.begin(), this->m_second.begin() + 33 * 13});
        runPasses<P>(host.get(), a.raster(), b.raster());
        EXPECT_TRUE(a.guardsIntact() && b.guardsIntact())
            << layout.padding << ' ' << layout.bottomUp << " at level " << level;
    };
    for (const RowLayout layout : rowLayouts) {
        GuardedImage<P> lawA(37, 11, layout);
        GuardedImage<P> lawB(33, 13, layout);
        run(0, layout, lawA, lawB);
        for (int level = 1; level <= bestAccelerationLevel(); ++level) {
            GuardedImage<P> a(37, 11, layout);
            GuardedImage<P> b(33, 13, layout);
            run(level, layout, a, b);
            const auto same = [](const auto& x, const auto& y) {
                return sameComponents(x[0].data(), y[0].data(), 4 * x.size());
            };
            EXPECT_TRUE(same(a.pixels(), lawA.pixels()) && same(b.pixels(), lawB.pixels()))
                << layout.padding << ' ' << layout.bottomUp << " at level " << level;
        }
    }
}

/// Every component with every alpha, as both take part in the divisions of 8-bit pixels.
TEST(RowKernels8, divisionsOfEveryPairFollowTheLaw) {
    std::vector<Rgba<unsigned char>> pairs;
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

TEST(Acceleration, settingsAreLimited) {
    const LevelGuard guard;
    setAccelerationLevel(-3);
    EXPECT_EQ(accelerationLevel(), ACCELERATION_NONE);
    setAccelerationLevel(1000);
    EXPECT_EQ(accelerationLevel(), bestAccelerationLevel());
    const int threads = renderThreads();
    for (const int wanted : {-5, 0, 1, 3, 2000000000}) {
        setRenderThreads(wanted);
        EXPECT_GE(renderThreads(), 1) << wanted;
        EXPECT_LE(renderThreads(), 256) << wanted;
    }
    setRenderThreads(threads);
}

} // namespace
} // namespace orbel::test
