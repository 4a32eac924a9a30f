#include "render/StampKernels.h"

#include "pixel/Acceleration.h"
#include "render/StrokeRasteriserImpl.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

namespace orbel {
namespace {

using test::GuardedImage;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

template<class P>
constexpr RasterFormat FORMAT_OF = RF_ARGB8;
template<>
constexpr RasterFormat FORMAT_OF<PIXEL_RGBA8> = RF_RGBA8;
template<>
constexpr RasterFormat FORMAT_OF<PIXEL_ARGB16> = RF_ARGB16;
template<>
constexpr RasterFormat FORMAT_OF<PIXEL_RGBA16> = RF_RGBA16;
template<>
constexpr RasterFormat FORMAT_OF<PIXEL_ARGB32> = RF_ARGB32F;
template<>
constexpr RasterFormat FORMAT_OF<PIXEL_RGBA32> = RF_RGBA32F;

/// A raster of random pixels, some of them fully opaque. The emptier, the more of them are 0.
template<class P>
class Picture {
public:
    Picture(int width, int height, unsigned seed, double emptiness)
        : m_image(width, height, FORMAT_OF<P>, {16, seed % 2 == 1}) {
        using T = typename P::Component;
        std::uint32_t random = seed;
        for (int y = 0; y < height; ++y) {
            auto* const row = reinterpret_cast<T*>(info().row(y));
            for (int i = 0; i < width * componentsPerPixel; ++i) {
                random = random * 1664525U + 1013904223U;
                const double value = random * (1 / 4294967296.0) * (1 + emptiness) - emptiness;
                row[i] = static_cast<T>(P::MAX_VALUE() * (value > 0.95 ? 1 : std::max(value, 0.0)));
            }
        }
    }
    [[nodiscard]] const RasterInfo& info() const { return m_image.info(); }
    [[nodiscard]] testing::AssertionResult isSameAs(const Picture& other) const {
        const auto bytes =
            static_cast<std::size_t>(info().width) * static_cast<std::size_t>(info().bytesPerPixel);
        for (int y = 0; y < info().height; ++y) {
            if (std::memcmp(info().row(y), other.info().row(y), bytes) != 0) {
                return testing::AssertionFailure() << "row " << y << " differs";
            }
        }
        return m_image.guardsIntact()
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "pixels beside the raster were written";
    }

private:
    GuardedImage m_image;
};

template<class P>
class StampKernelsOf : public testing::Test {
protected:
    static void stampByReference(const RasterInfo& raster, const Stamp& s) {
        test::BareHost host;
        HQDrawSphere<P, typename P::Component, typename P::Wide, typename P::Float,
                     typename P::FORMAT>(P{}, &host, raster.data, raster.rowBytes,
                                         raster.bytesPerPixel, raster.width, raster.height,
                                         s.radius, s.x, s.y, s.feather, s.intensity);
    }

    /// Paints in two bands.
    static void stampFast(int level, bool solidFirst, const RasterInfo& raster,
                          const std::vector<Stamp>& stamps) {
        std::vector<PlacedStamp> placed;
        std::vector<std::uint32_t> order;
        for (const Stamp& s : stamps) {
            placed.emplace_back(s, P::MAX_VALUE());
            if (s.radius > 0.0 && placed.back().trim(raster.width, raster.height)) {
                ASSERT_TRUE(kernelsCanPaint(placed.back(), P::MAX_VALUE()));
                order.push_back(static_cast<std::uint32_t>(placed.size() - 1));
            }
        }
        const int middle = raster.height / 3;
        const StampRows upper{raster.data, raster.rowBytes, raster.width, 0, middle};
        const StampRows lower{raster.data, raster.rowBytes, raster.width, middle + 1,
                              raster.height - 1};
        for (const StampRows& rows : {upper, lower}) {
            std::vector<std::uint32_t> reaching;
            std::copy_if(order.begin(), order.end(), std::back_inserter(reaching), [&](auto i) {
                return placed[i].box.top <= rows.last && placed[i].box.bottom >= rows.first;
            });
            stampKernels<P>(level)->paint(rows, placed.data(), reaching, solidFirst);
        }
    }

    void compare(int width, int height, unsigned seed, double emptiness,
                 const std::vector<Stamp>& stamps) {
        const Picture<P> expected(width, height, seed, emptiness);
        for (const Stamp& s : stamps) {
            stampByReference(expected.info(), s);
        }
        for (int run = 2; run < 2 * ACCELERATION_LEVELS; ++run) {
            const int level = run / 2;
            if (level > bestAccelerationLevel()) {
                break;
            }
            const Picture<P> actual(width, height, seed, emptiness);
            stampFast(level, run % 2 == 1, actual.info(), stamps);
            ASSERT_TRUE(actual.isSameAs(expected))
                << "level " << level << ", " << width << " x " << height << ", first stamp "
                << stamps[0].radius << " at " << stamps[0].x << ", " << stamps[0].y << ", feather "
                << stamps[0].feather << ", intensity " << stamps[0].intensity;
        }
    }
};

using Formats = testing::Types<PIXEL_ARGB8, PIXEL_RGBA8, PIXEL_ARGB16, PIXEL_RGBA16, PIXEL_ARGB32,
                               PIXEL_RGBA32>;
TYPED_TEST_SUITE(StampKernelsOf, Formats);

TYPED_TEST(StampKernelsOf, giveTheBytesOfTheReference) {
    const double radii[] = {0.1, 0.7, 1.5, 2.0, 3.3, 7.0, 10.0, 18.25, 31.0, 75.3, 300.0, 20000.0};
    const std::pair<double, double> places[] = {{20.3, 15.7}, {16.5, 16.5}, {0.0, 0.0},
                                                {-3.2, 5.0},  {60.9, 44.4}, {40.0, -70.25}};
    unsigned seed = 0;
    for (const double radius : radii) {
        for (const auto& [x, y] : places) {
            for (const double feather : {0.0, 0.3, 1.0}) {
                for (const double intensity : {255.0, 127.5, 201.3, 0.6, 0.0}) {
                    ++seed;
                    this->compare(61, 43, seed, 0.5 * (seed % 3),
                                  {{x, y, radius, feather, intensity}});
                }
            }
        }
    }
}

TYPED_TEST(StampKernelsOf, workOnRastersOfEveryWidth) {
    for (int width = 2; width < 68; ++width) {
        const double x = width * 0.6;
        this->compare(width, 9, static_cast<unsigned>(width), 0.5,
                      {{x, 4.2, 3.1, 0.0, 255}, {x + 2, 4, 12.0, 1.0, 99}, {x, 3, 5.0, 0.2, 255}});
    }
}

// A stroke as it is drawn: hundreds of stamps over one another.
TYPED_TEST(StampKernelsOf, buildUpTheSameStrokes) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (unsigned round = 0; round < 12; ++round) {
        std::vector<Stamp> stamps;
        const double feather = round % 3 * 0.5;
        const double radius = 0.4 + 30 * unit(random) * unit(random);
        for (int i = 0; i < 150; ++i) {
            const double fade = round % 4 == 3 ? unit(random) : 1.0;
            stamps.push_back({-5 + i * 0.7 + unit(random), 30 + 20 * std::sin(i * 0.05),
                              radius * (1 + 0.2 * unit(random)), feather, 255.0 * fade});
        }
        this->compare(101, 67, round, 1e9, stamps);
    }
}

// Around the strength at which nothing is left of a stamp, and where its rim comes to nothing.
TYPED_TEST(StampKernelsOf, seeFaintStampsAsTheReferenceDoes) {
    unsigned seed = 100;
    for (const double intensity : {0.1, 0.17, 0.4, 0.499, 0.5, 0.51, 1.0, 2.0, 5.0, 20.0, 254.9}) {
        for (const double radius : {1.0, 6.0, 14.5, 15.5, 28.0, 90.0}) {
            for (const double feather : {0.0, 0.5, 0.9, 1.0}) {
                this->compare(83, 59, ++seed, 1e9, {{41.3, 28.8, radius, feather, intensity}});
            }
        }
    }
}

// What was filled last in a row says nothing about stamps apart from it.
TYPED_TEST(StampKernelsOf, jumpToAndFroInTheSameRows) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (const double radius : {4.0, 9.0, 22.0, 40.0}) {
        std::vector<Stamp> stamps(60);
        for (Stamp& s : stamps) {
            s = {160 * unit(random), 12 + 30 * unit(random), radius * (0.7 + 0.3 * unit(random)),
                 unit(random) < 0.5 ? 0.0 : 0.3, 255};
        }
        this->compare(157, 53, static_cast<unsigned>(radius), 0.5, stamps);
    }
}

TEST(StampKernels, leaveWhatTheyDoNotReckonWithToTheReference) {
    const Stamp usual{20, 15, 10, 0.5, 200};
    const auto canPaint = [](const Stamp& s) { return kernelsCanPaint(PlacedStamp(s, 255), 255); };
    EXPECT_TRUE(canPaint(usual));
    for (double Stamp::*const member :
         {&Stamp::x, &Stamp::y, &Stamp::radius, &Stamp::feather, &Stamp::intensity}) {
        for (const double value : {NOT_A_NUMBER, HUGE_VAL, -HUGE_VAL, 1e300}) {
            Stamp wild = usual;
            wild.*member = value;
            const bool harmless = member == &Stamp::feather && value > 0.0; // 1 at most
            EXPECT_EQ(canPaint(wild), harmless) << value;
        }
    }
    for (const Stamp& s :
         {Stamp{20, 15, 10, -2, 200}, Stamp{20, 15, 10, 0, -1}, Stamp{20, 15, 10, 0, 256}}) {
        EXPECT_FALSE(canPaint(s));
    }
}

} // namespace
} // namespace orbel
