#include "tests/media/MediaFixtures.h"

#include <algorithm>
#include <cmath>

namespace orbel {

namespace {

std::uint32_t scramble(std::uint32_t x) {
    x = (x ^ (x >> 16)) * 0x45d9f3bU;
    x = (x ^ (x >> 16)) * 0x45d9f3bU;
    return x ^ (x >> 16);
}

} // namespace

TestRaster::TestRaster(RasterFormat format, int width, int height, RowOrder order)
    : m_image(width, height, format,
              {order == RowOrder::Tight ? 0 : 48, order == RowOrder::BottomUp}) {}

void TestRaster::fillNoise(unsigned frame) const {
    test::paint(info(), [frame](int x, int y) {
        const std::uint32_t seed =
            scramble(frame * 7919U + static_cast<unsigned>(y) * 4099U + static_cast<unsigned>(x));
        const double kind = seed % 4U;
        const double alpha = kind == 0 ? 0.0 : kind == 1 ? 1.0 : (seed >> 8 & 255U) / 255.0;
        const auto noise = [&](unsigned channel) {
            return alpha * (scramble(seed + channel) & 0xFFFFU) / 65535.0;
        };
        return test::Rgba{noise(0), noise(1), noise(2), alpha};
    });
}

void TestRaster::fillColour(double red, double green, double blue, double alpha) const {
    test::paint(info(), [=](int, int) {
        return test::Rgba{red * alpha, green * alpha, blue * alpha, alpha};
    });
}

WriterSpec specFor(const TestRaster& raster) {
    WriterSpec spec;
    spec.width = raster.info().width;
    spec.height = raster.info().height;
    spec.frameRate = {24, 1};
    spec.format = raster.info().pixelFormat;
    spec.threads = 2;
    return spec;
}

void writeNoise(const std::string& path, const TestRaster& raster, const WriterSpec& spec,
                long first, long count) {
    const auto writer = openWriter(path, spec);
    for (long frame = first; frame < first + count; ++frame) {
        raster.fillNoise(static_cast<unsigned>(frame));
        writer->write(raster.info(), frame);
    }
    writer->finish();
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

} // namespace orbel
