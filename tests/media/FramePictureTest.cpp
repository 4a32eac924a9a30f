#include "media/FramePicture.h"

#include "media/MediaError.h"
#include "tests/media/MediaFixtures.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <gtest/gtest.h>

#include <cstring>

namespace orbel {
namespace {

/// A frame whose components all have a value, given as a fraction of their maximum.
libav::FramePtr flatFrame(AVPixelFormat format, double value, double alpha) {
    const AVPixFmtDescriptor& known = *av_pix_fmt_desc_get(format);
    libav::FramePtr frame = libav::makeFrame(format, 5, 3);
    for (int plane = 0; plane < 4 && frame->data[plane] != nullptr; ++plane) {
        std::memset(frame->data[plane], 0, static_cast<std::size_t>(frame->linesize[plane]) * 3);
    }
    for (int c = 0; c < known.nb_components; ++c) {
        const bool isAlpha =
            (known.flags & AV_PIX_FMT_FLAG_ALPHA) != 0 && c + 1 == known.nb_components;
        const double most = (1 << known.comp[c].depth) - 1;
        const std::vector<std::uint16_t> line(
            5, static_cast<std::uint16_t>((isAlpha ? alpha : value) * most + 0.5));
        for (int y = 0; y < 3; ++y) {
            av_write_image_line2(line.data(), frame->data, frame->linesize, &known, 0, y, c, 5, 2);
        }
    }
    return frame;
}

const FrameOrigin origin{"file", "frame 0", false};

TEST(FrameConverter, KeepsRgbAndGreyExactly) {
    const AVPixelFormat formats[] = {
        AV_PIX_FMT_RGBA,      AV_PIX_FMT_BGRA,      AV_PIX_FMT_ARGB,      AV_PIX_FMT_ABGR,
        AV_PIX_FMT_RGB24,     AV_PIX_FMT_BGR24,     AV_PIX_FMT_RGB0,      AV_PIX_FMT_0BGR,
        AV_PIX_FMT_GBRP,      AV_PIX_FMT_GBRAP,     AV_PIX_FMT_GBRP9LE,   AV_PIX_FMT_GBRP10BE,
        AV_PIX_FMT_GBRP12LE,  AV_PIX_FMT_GBRP14LE,  AV_PIX_FMT_GBRP16BE,  AV_PIX_FMT_GBRP16LE,
        AV_PIX_FMT_GBRAP10LE, AV_PIX_FMT_GBRAP12BE, AV_PIX_FMT_GBRAP16LE, AV_PIX_FMT_RGB48BE,
        AV_PIX_FMT_RGB48LE,   AV_PIX_FMT_BGR48BE,   AV_PIX_FMT_RGBA64BE,  AV_PIX_FMT_RGBA64LE,
        AV_PIX_FMT_BGRA64LE,  AV_PIX_FMT_GRAY8,     AV_PIX_FMT_GRAY10LE,  AV_PIX_FMT_GRAY12BE,
        AV_PIX_FMT_GRAY16BE,  AV_PIX_FMT_GRAY16LE,  AV_PIX_FMT_YA8,       AV_PIX_FMT_YA16BE,
        AV_PIX_FMT_MONOBLACK, AV_PIX_FMT_X2RGB10LE,
    };
    for (const AVPixelFormat format : formats) {
        const AVPixFmtDescriptor& known = *av_pix_fmt_desc_get(format);
        const int depth = known.comp[0].depth;
        for (const double value : {0.0, 1.0, 0.7, 0.004}) {
            const double alpha = 1.0 - value;
            const libav::FramePtr frame = flatFrame(format, value, alpha);
            const Picture picture = FrameConverter().convert(*frame, origin);
            const double most = (1 << depth) - 1;
            const double stored = static_cast<int>(value * most + 0.5) / most;
            const double storedAlpha = static_cast<int>(alpha * most + 0.5) / most;
            const bool hasAlpha = (known.flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
            EXPECT_EQ(picture.hasAlpha, hasAlpha) << known.name;
            EXPECT_EQ(picture.depth(), depth > 8 ? PictureDepth::U16 : PictureDepth::U8);
            for (int channel = 0; channel < 3; ++channel) {
                EXPECT_NEAR(componentOf(picture, 4, 2, channel), stored, 0.5001 / 65535.0)
                    << known.name << " " << value;
            }
            EXPECT_NEAR(componentOf(picture, 4, 2, 3), hasAlpha ? storedAlpha : 1.0,
                        0.5001 / 65535.0)
                << known.name << " " << value;
        }
    }
}

TEST(FrameConverter, ReadsPalettesAndInvertedBits) {
    libav::FramePtr frame = libav::makeFrame(AV_PIX_FMT_PAL8, 5, 3);
    std::memset(frame->data[0], 7, static_cast<std::size_t>(frame->linesize[0]) * 3);
    const std::uint32_t colour = 0x40112233;
    std::memcpy(frame->data[1] + 7 * sizeof colour, &colour, sizeof colour);
    const Picture picture = FrameConverter().convert(*frame, origin);
    const int expected[] = {0x11, 0x22, 0x33, 0x40};
    for (int channel = 0; channel < 4; ++channel) {
        EXPECT_DOUBLE_EQ(componentOf(picture, 4, 2, channel), expected[channel] / 255.0);
    }
    frame = libav::makeFrame(AV_PIX_FMT_MONOWHITE, 5, 3);
    std::memset(frame->data[0], 0, static_cast<std::size_t>(frame->linesize[0]) * 3);
    EXPECT_DOUBLE_EQ(componentOf(FrameConverter().convert(*frame, origin), 4, 2, 1), 1.0);
}

TEST(FrameConverter, ObeysMatrixAndRange) {
    const struct {
        AVPixelFormat format;
        AVColorSpace matrix;
        AVColorRange range;
        int y, u, v;
        double red, green, blue;
    } cases[] = {
        {AV_PIX_FMT_YUV444P, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 63, 102, 240, 1, 0, 0},
        {AV_PIX_FMT_YUV444P, AVCOL_SPC_SMPTE170M, AVCOL_RANGE_MPEG, 81, 90, 240, 1, 0, 0},
        {AV_PIX_FMT_YUVJ444P, AVCOL_SPC_BT470BG, AVCOL_RANGE_JPEG, 76, 85, 255, 1, 0, 0},
        {AV_PIX_FMT_YUV444P, AVCOL_SPC_BT709, AVCOL_RANGE_JPEG, 18, 255, 117, 0, 0, 1},
        {AV_PIX_FMT_YUV444P, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 81, 90, 240, 1, 0, 0},
        {AV_PIX_FMT_YUV444P, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 235, 128, 128, 1, 1, 1},
        {AV_PIX_FMT_YUV444P, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 16, 128, 128, 0, 0, 0},
        {AV_PIX_FMT_GRAY8, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, 235, 0, 0, 1, 1, 1},
        {AV_PIX_FMT_GRAY8, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 255, 0, 0, 1, 1, 1},
    };
    for (const auto& c : cases) {
        libav::FramePtr frame = libav::makeFrame(c.format, 16, 16);
        const int values[] = {c.y, c.u, c.v};
        for (int plane = 0; plane < 3 && frame->data[plane] != nullptr; ++plane) {
            std::memset(frame->data[plane], values[plane],
                        static_cast<std::size_t>(frame->linesize[plane]) * 16);
        }
        frame->colorspace = c.matrix;
        frame->color_range = c.range;
        const Picture picture = FrameConverter().convert(*frame, origin);
        EXPECT_NEAR(componentOf(picture, 8, 8, 0), c.red, 2.5 / 255.0) << c.y;
        EXPECT_NEAR(componentOf(picture, 8, 8, 1), c.green, 2.5 / 255.0) << c.y;
        EXPECT_NEAR(componentOf(picture, 8, 8, 2), c.blue, 2.5 / 255.0) << c.y;
    }
}

// Full red by the matrix of each; the other matrix gives another green.
TEST(FrameConverter, TakesUnlabelledColourByTheSizeOfTheFrame) {
    const struct {
        int width, height;
        bool high;
    } cases[] = {{1280, 16, true}, {1278, 16, false}, {16, 578, true}, {16, 576, false}};
    for (const auto& c : cases) {
        libav::FramePtr frame = libav::makeFrame(AV_PIX_FMT_YUV444P, c.width, c.height);
        const int values[] = {c.high ? 63 : 81, c.high ? 102 : 90, 240};
        for (int plane = 0; plane < 3; ++plane) {
            std::memset(frame->data[plane], values[plane],
                        static_cast<std::size_t>(frame->linesize[plane]) *
                            static_cast<std::size_t>(c.height));
        }
        const Picture picture = FrameConverter().convert(*frame, origin);
        EXPECT_NEAR(componentOf(picture, 8, 8, 0), 1.0, 2.5 / 255.0) << c.width;
        EXPECT_NEAR(componentOf(picture, 8, 8, 1), 0.0, 2.5 / 255.0) << c.width;
    }
}

TEST(FrameConverter, OpaqueStaysOpaque) {
    for (const AVPixelFormat format :
         {AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUVA444P10LE, AV_PIX_FMT_YUVA444P12LE,
          AV_PIX_FMT_YUVA422P10BE, AV_PIX_FMT_YUVA444P16LE}) {
        const libav::FramePtr frame = libav::makeFrame(format, 8, 8);
        const AVPixFmtDescriptor& known = *av_pix_fmt_desc_get(format);
        const std::vector<std::uint16_t> line(
            8, static_cast<std::uint16_t>((1 << known.comp[3].depth) - 1));
        for (int y = 0; y < 8; ++y) {
            av_write_image_line2(line.data(), frame->data, frame->linesize, &known, 0, y, 3, 8, 2);
        }
        EXPECT_EQ(componentOf(FrameConverter().convert(*frame, origin), 7, 7, 3), 1.0)
            << known.name;
    }
}

TEST(FrameConverter, DividesAssociatedAlpha) {
    const libav::FramePtr frame = flatFrame(AV_PIX_FMT_RGBA, 0.2, 0.4);
    const Picture picture = FrameConverter().convert(*frame, {"file", "", true});
    EXPECT_NEAR(componentOf(picture, 0, 0, 0), 0.5, 0.002);
    EXPECT_NEAR(componentOf(picture, 0, 0, 3), 0.4, 0.002);
}

TEST(Turned, GoesClockwise) {
    Picture picture = makePicture<std::uint8_t>(3, 2, false);
    for (std::size_t i = 0; i < 24; ++i) {
        std::get<0>(picture.components)[i] = static_cast<std::uint8_t>(i / 4);
    }
    const auto firstRow = [](const Picture& p) {
        std::vector<int> row;
        for (int x = 0; x < p.width; ++x) {
            row.push_back(static_cast<int>(componentOf(p, x, 0, 0) * 255.0 + 0.5));
        }
        return row;
    };
    EXPECT_EQ(firstRow(turned(picture, {false, 0})), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(firstRow(turned(picture, {false, 1})), (std::vector<int>{3, 0}));
    EXPECT_EQ(firstRow(turned(picture, {false, 2})), (std::vector<int>{5, 4, 3}));
    EXPECT_EQ(firstRow(turned(picture, {false, 3})), (std::vector<int>{2, 5}));
}

} // namespace
} // namespace orbel
