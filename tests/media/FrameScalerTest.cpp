#include "media/FrameScaler.h"

#include "media/FramePicture.h"
#include "media/PixelConversion.h"
#include "media/ScalePicture.h"
#include "tests/media/MediaFixtures.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orbel {
namespace {

/// A frame of slow waves, different in every plane.
libav::FramePtr waves(AVPixelFormat format, int width, int height, AVColorRange range) {
    libav::FramePtr frame = libav::makeFrame(format, width, height);
    frame->color_range = range;
    const AVPixFmtDescriptor& known = *av_pix_fmt_desc_get(format);
    const double most = (1 << known.comp[0].depth) - 1;
    for (int p = 0; p < 3; ++p) {
        const int stepX = p == 0 ? 1 : 1 << known.log2_chroma_w;
        const int stepY = p == 0 ? 1 : 1 << known.log2_chroma_h;
        for (int y = 0; y < height / stepY; ++y) {
            for (int x = 0; x < width / stepX; ++x) {
                const double wave = std::sin((x + 0.5) * stepX * 0.11 + p) *
                                    std::cos((y + 0.5) * stepY * 0.13 + 2 * p);
                const auto value = std::lround(most * (0.5 + wave * (p == 0 ? 0.3 : 0.15)));
                std::uint8_t* const at =
                    frame->data[p] + y * frame->linesize[p] + x * known.comp[p].step;
                at[0] = static_cast<std::uint8_t>(value);
                if (known.comp[p].step == 2) {
                    at[1] = static_cast<std::uint8_t>(value >> 8);
                }
            }
        }
    }
    return frame;
}

/// The longer way, with a picture in between.
void fillByPicture(const AVFrame& frame, const RasterInfo& raster, SourceAlpha alpha) {
    const Picture picture = FrameConverter().convert(frame, {"clip", "", false});
    fillRaster(PictureScaler().scale(picture, raster.width, raster.height), raster, alpha);
}

TEST(FrameScaler, GivesWhatThePictureInBetweenGives) {
    const struct {
        AVPixelFormat format;
        AVColorRange range;
    } frames[] = {
        {AV_PIX_FMT_YUV420P, AVCOL_RANGE_MPEG},     {AV_PIX_FMT_YUV420P, AVCOL_RANGE_JPEG},
        {AV_PIX_FMT_YUVJ422P, AVCOL_RANGE_JPEG},    {AV_PIX_FMT_YUV444P, AVCOL_RANGE_MPEG},
        {AV_PIX_FMT_YUV420P10LE, AVCOL_RANGE_MPEG},
    };
    const int sizes[][2] = {{64, 48}, {97, 131}, {40, 30}};
    for (const auto& from : frames) {
        const libav::FramePtr frame = waves(from.format, 64, 48, from.range);
        FrameScaler scaler;
        for (const auto& size : sizes) {
            for (const RasterFormat format : {RF_RGBA8, RF_ARGB8}) {
                for (const SourceAlpha alpha :
                     {SourceAlpha::Straight, SourceAlpha::Premultiplied}) {
                    const TestRaster raster(format, size[0], size[1], RowOrder::BottomUp);
                    const TestRaster expected(format, size[0], size[1], RowOrder::Padded);
                    ASSERT_TRUE(FrameScaler::takes(*frame, raster.info()));
                    scaler.fill(*frame, raster.info(), alpha);
                    fillByPicture(*frame, expected.info(), alpha);
                    double largest = 0;
                    for (int i = 0; i < size[0] * size[1] * 4; ++i) {
                        const int x = i / 4 % size[0];
                        const int y = i / 4 / size[0];
                        largest = std::max(
                            largest, std::abs(raster.at(x, y, i % 4) - expected.at(x, y, i % 4)));
                    }
                    EXPECT_LE(largest * 255, 3.01) << from.format << " at " << size[0];
                }
            }
        }
    }
}

TEST(FrameScaler, CopesWithPlanesThatLieAnywhere) {
    const libav::FramePtr frame = waves(AV_PIX_FMT_YUV420P, 64, 48, AVCOL_RANGE_MPEG);
    const libav::FramePtr shifted = libav::makeFrame(AV_PIX_FMT_YUV420P, 66, 48);
    for (int p = 0; p < 3; ++p) {
        ++shifted->data[p];
        for (int y = 0; y < (p == 0 ? 48 : 24); ++y) {
            std::copy_n(frame->data[p] + y * frame->linesize[p], p == 0 ? 64 : 32,
                        shifted->data[p] + y * shifted->linesize[p]);
        }
    }
    shifted->width = 64;
    const TestRaster expected(RF_RGBA8, 100, 70, RowOrder::Tight);
    const TestRaster raster(RF_RGBA8, 100, 70, RowOrder::Tight);
    FrameScaler scaler;
    scaler.fill(*frame, expected.info(), SourceAlpha::Straight);
    scaler.fill(*shifted, raster.info(), SourceAlpha::Straight);
    for (int y = 0; y < 70; ++y) {
        ASSERT_EQ(std::memcmp(raster.info().row(y), expected.info().row(y), 400), 0) << y;
    }
}

TEST(FrameScaler, LeavesTheRestToPictures) {
    const TestRaster eight(RF_RGBA8, 8, 8, RowOrder::Tight);
    const TestRaster sixteen(RF_RGBA16, 8, 8, RowOrder::Tight);
    for (const AVPixelFormat format : {AV_PIX_FMT_YUVA420P, AV_PIX_FMT_GBRP, AV_PIX_FMT_NV12,
                                       AV_PIX_FMT_GRAY8, AV_PIX_FMT_RGBA, AV_PIX_FMT_YUV420P10BE}) {
        EXPECT_FALSE(FrameScaler::takes(*libav::makeFrame(format, 8, 8), eight.info())) << format;
    }
    const auto makeFrame = [](int width) { return libav::makeFrame(AV_PIX_FMT_YUV420P, width, 8); };
    EXPECT_FALSE(FrameScaler::takes(*makeFrame(7), eight.info()));
    EXPECT_FALSE(FrameScaler::takes(*makeFrame(8), sixteen.info()));
    EXPECT_TRUE(FrameScaler::takes(*makeFrame(8), eight.info()));
}

} // namespace
} // namespace orbel
