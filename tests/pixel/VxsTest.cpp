#include "pixel/Vxs.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <set>
#include <utility>
#include <vector>

namespace orbel::Vxs {
namespace {

template<typename T>
using Buffer = ImageBuffer<T, PixelARGB<T>>;
template<typename T>
using Proc = ImageProc<T, PixelARGB<T>>;

TEST(VxsImageBuffer, ZeroRectangleMeansTheWholeImage) {
    const Buffer<unsigned char> whole(nullptr, 40, 7, 5, VxRectZero);
    EXPECT_EQ(whole.rect(), (VxRectT<long>{0, 0, 7, 5}));
    const Buffer<unsigned char> part(nullptr, 40, 7, 5, {1, 2, 3, 4});
    EXPECT_EQ(part.rect(), (VxRectT<long>{1, 2, 3, 4}));
}

template<typename T>
void expectGeometry(int pixelBytes) {
    std::array<std::byte, 2048> memory{};
    const Buffer<T> buffer(memory.data() + 1024, -200, 5, 4, VxRectZero);
    EXPECT_EQ(buffer.basePtr(), memory.data() + 1024);
    EXPECT_EQ(buffer.rowbytes(), -200);
    EXPECT_EQ(buffer.width(), 5);
    EXPECT_EQ(buffer.height(), 4);
    EXPECT_EQ(buffer.byteDepth(), pixelBytes);
    EXPECT_EQ(buffer.bitDepth(), pixelBytes * 8);
    EXPECT_EQ(buffer.byteSize(), -800);
    EXPECT_EQ(buffer.baseTypeMax(), std::numeric_limits<T>::max());
    EXPECT_EQ(buffer.getRawPtr(2, 3), memory.data() + 1024 - 600 + 2 * pixelBytes);
}

template<typename T>
void expectLimits(T maximum, T half) {
    const Proc<T> proc;
    EXPECT_EQ(proc.baseTypeMax(), maximum);
    EXPECT_EQ(proc.halfBaseMax(), half);
    EXPECT_EQ(proc.baseTypeMaxReciprocal(), 1.0 / maximum);
    EXPECT_EQ(proc.baseClamp(-1), T{0});
    EXPECT_EQ(proc.baseClamp(77), T{77});
    EXPECT_EQ(proc.baseClamp(70000), maximum < 70000 ? maximum : static_cast<T>(70000));
}

TEST(VxsImage, geometryAndLimitsFollowTheType) {
    expectGeometry<unsigned char>(4);
    expectGeometry<float>(16);
    expectGeometry<double>(32);
    expectLimits<unsigned char>(255, 128);
    constexpr float most = std::numeric_limits<float>::max();
    expectLimits<float>(most, most / 2);
    expectLimits<double>(std::numeric_limits<double>::max(),
                         std::numeric_limits<double>::max() / 2);
}

using Points = std::set<std::pair<int, int>>;

struct Line {
    std::array<long, 4> ends;
    Points points;
};

template<typename T>
Points drawn(const std::array<long, 4>& ends) {
    constexpr int width = 6;
    constexpr int height = 5;
    std::vector<T> memory(4 * width * height, T{9});
    Buffer<T> image(memory.data(), 4 * width * static_cast<int>(sizeof(T)), width, height,
                    VxRectZero);
    const PixelARGB<T> colour(T{1}, T{2}, T{3}, T{4});
    EXPECT_EQ(Proc<T>().drawLine(image, colour, {ends[0], ends[1]}, {ends[2], ends[3]}), 0);
    Points points;
    for (std::size_t i = 0; i < memory.size(); i += 4) {
        if (memory[i] == T{1}) {
            points.emplace(i / 4 % width, i / 4 / width);
            EXPECT_EQ(memory[i + 1], T{2});
            EXPECT_EQ(memory[i + 2], T{3});
            EXPECT_EQ(memory[i + 3], T{4});
        }
    }
    return points;
}

TEST(VxsDrawLine, Walk) {
    const std::vector<Line> lines{
        {{0, 0, 3, 1}, {{0, 0}, {1, 0}, {2, 1}, {3, 1}}},
        // A tie steps at once, so the way back takes another middle point.
        {{0, 0, 2, 1}, {{0, 0}, {1, 1}, {2, 1}}},
        {{2, 1, 0, 0}, {{2, 1}, {1, 0}, {0, 0}}},
        {{0, 0, 1, 2}, {{0, 0}, {1, 1}, {1, 2}}},
        {{3, 3, 0, 0}, {{3, 3}, {2, 2}, {1, 1}, {0, 0}}},
        {{4, 1, 2, 3}, {{4, 1}, {3, 2}, {2, 3}}},
        {{2, 2, 2, 2}, {{2, 2}}},
        {{-3, 2, 20, 2}, {{0, 2}, {1, 2}, {2, 2}, {3, 2}, {4, 2}, {5, 2}}},
        {{3, -9, 3, 9}, {{3, 0}, {3, 1}, {3, 2}, {3, 3}, {3, 4}}},
        {{-2, -1, 4, 5}, {{0, 1}, {1, 2}, {2, 3}, {3, 4}}},
        {{-5, -5, -1, 30}, {}},
        {{6, 5, 6, 5}, {}},
    };
    for (const Line& line : lines) {
        SCOPED_TRACE(testing::PrintToString(line.ends));
        EXPECT_EQ(drawn<unsigned char>(line.ends), line.points);
        EXPECT_EQ(drawn<float>(line.ends), line.points);
        EXPECT_EQ(drawn<double>(line.ends), line.points);
    }
}

} // namespace
} // namespace orbel::Vxs
