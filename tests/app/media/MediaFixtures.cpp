#include "tests/app/media/MediaFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace orbel::app {

namespace {

int componentBytes(RasterFormat format) {
    switch (format) {
    case RF_ARGB8:
    case RF_RGBA8:
        return 1;
    case RF_ARGB16:
    case RF_RGBA16:
        return 2;
    default:
        return 4;
    }
}

bool alphaFirst(RasterFormat format) {
    return format == RF_ARGB8 || format == RF_ARGB16 || format == RF_ARGB32F;
}

std::uint32_t scramble(std::uint32_t x) {
    x = (x ^ (x >> 16)) * 0x45d9f3bU;
    x = (x ^ (x >> 16)) * 0x45d9f3bU;
    return x ^ (x >> 16);
}

} // namespace

TestFolder::TestFolder() {
    std::string name = testing::TempDir() + "/orbel-media-XXXXXX";
    m_path = mkdtemp(name.data());
}

TestFolder::~TestFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_path, error);
}

std::string TestFolder::operator/(const std::string& name) const {
    return (m_path / name).string();
}

std::size_t TestFolder::fileCount() const {
    const std::filesystem::directory_iterator files(m_path);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

TestRaster::TestRaster(RasterFormat format, int width, int height, RowOrder order) {
    const int pixelBytes = 4 * componentBytes(format);
    const int rowBytes = width * pixelBytes + (order == RowOrder::Tight ? 0 : 48);
    m_bytes.assign(static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(height), 0xEE);
    const bool bottomUp = order == RowOrder::BottomUp;
    m_info.data = m_bytes.data() + (bottomUp ? (height - 1) * rowBytes : 0);
    m_info.pixelFormat = format;
    m_info.width = width;
    m_info.height = height;
    m_info.rowBytes = bottomUp ? -rowBytes : rowBytes;
    m_info.bytesPerPixel = pixelBytes;
}

std::uint8_t* TestRaster::place(int x, int y, int channel) const {
    const int component = alphaFirst(m_info.pixelFormat) ? (channel + 1) % 4 : channel;
    return m_info.row(y) + x * m_info.bytesPerPixel +
           component * componentBytes(m_info.pixelFormat);
}

void TestRaster::put(int x, int y, int channel, double value) {
    std::uint8_t* to = place(x, y, channel);
    const auto eight = static_cast<std::uint8_t>(std::lround(value * 255.0));
    const auto sixteen = static_cast<std::uint16_t>(std::lround(value * 65535.0));
    const auto real = static_cast<float>(value);
    switch (componentBytes(m_info.pixelFormat)) {
    case 1:
        *to = eight;
        break;
    case 2:
        std::memcpy(to, &sixteen, sizeof sixteen);
        break;
    default:
        std::memcpy(to, &real, sizeof real);
    }
}

double TestRaster::at(int x, int y, int channel) const {
    const std::uint8_t* from = place(x, y, channel);
    std::uint16_t sixteen = 0;
    float real = 0.0F;
    switch (componentBytes(m_info.pixelFormat)) {
    case 1:
        return *from / 255.0;
    case 2:
        std::memcpy(&sixteen, from, sizeof sixteen);
        return sixteen / 65535.0;
    default:
        std::memcpy(&real, from, sizeof real);
        return static_cast<double>(real);
    }
}

void TestRaster::fillNoise(unsigned frame) {
    for (int y = 0; y < m_info.height; ++y) {
        for (int x = 0; x < m_info.width; ++x) {
            const std::uint32_t seed = scramble(frame * 7919U + static_cast<unsigned>(y) * 4099U +
                                                static_cast<unsigned>(x));
            const double kind = seed % 4U;
            const double alpha = kind == 0 ? 0.0 : kind == 1 ? 1.0 : (seed >> 8 & 255U) / 255.0;
            put(x, y, 3, alpha);
            for (int channel = 0; channel < 3; ++channel) {
                const std::uint32_t noise = scramble(seed + static_cast<unsigned>(channel));
                put(x, y, channel, at(x, y, 3) * (noise & 0xFFFFU) / 65535.0);
            }
        }
    }
}

void TestRaster::fillColour(double red, double green, double blue, double alpha) {
    const double straight[] = {red, green, blue};
    for (int y = 0; y < m_info.height; ++y) {
        for (int x = 0; x < m_info.width; ++x) {
            put(x, y, 3, alpha);
            for (int channel = 0; channel < 3; ++channel) {
                put(x, y, channel, straight[channel] * alpha);
            }
        }
    }
}

double componentOf(const Picture& picture, int x, int y, int channel) {
    const std::size_t at =
        4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
             static_cast<std::size_t>(x)) +
        static_cast<std::size_t>(channel);
    switch (picture.depth()) {
    case PictureDepth::U8:
        return std::get<0>(picture.components).at(at) / 255.0;
    case PictureDepth::U16:
        return std::get<1>(picture.components).at(at) / 65535.0;
    default:
        return static_cast<double>(std::get<2>(picture.components).at(at));
    }
}

double straightOf(const TestRaster& raster, int x, int y, int channel) {
    const double alpha = raster.at(x, y, 3);
    if (channel == 3 || alpha == 0.0) {
        return alpha;
    }
    return raster.at(x, y, channel) / alpha;
}

double largestDifference(const Picture& picture, const TestRaster& raster) {
    const RasterInfo& info = raster.info();
    EXPECT_EQ(picture.width, info.width);
    EXPECT_EQ(picture.height, info.height);
    if (picture.width != info.width || picture.height != info.height) {
        return 1e9;
    }
    double largest = 0.0;
    for (int y = 0; y < info.height; ++y) {
        for (int x = 0; x < info.width; ++x) {
            for (int channel = 0; channel < 4; ++channel) {
                largest = std::max(largest, std::fabs(componentOf(picture, x, y, channel) -
                                                      straightOf(raster, x, y, channel)));
            }
        }
    }
    return largest;
}

void writeBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string readBytes(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace orbel::app
