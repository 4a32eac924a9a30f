#include "media/Libav.h"
#include "media/MediaReader.h"
#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

constexpr int width = 48;
constexpr int height = 32;

/// A JPEG with a colour in every corner: red and green above, blue and white below.
std::string jpeg() {
    const libav::CodecPtr codec(avcodec_alloc_context3(avcodec_find_encoder(AV_CODEC_ID_MJPEG)));
    codec->width = width;
    codec->height = height;
    codec->pix_fmt = AV_PIX_FMT_YUVJ444P;
    codec->time_base = {1, 1};
    codec->flags |= AV_CODEC_FLAG_QSCALE;
    codec->global_quality = FF_QP2LAMBDA;
    EXPECT_EQ(avcodec_open2(codec.get(), nullptr, nullptr), 0);
    const libav::FramePtr frame = libav::makeFrame(AV_PIX_FMT_YUVJ444P, width, height);
    constexpr int corners[2][2][3] = {{{76, 85, 255}, {150, 44, 21}},
                                      {{29, 255, 107}, {255, 128, 128}}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int plane = 0; plane < 3; ++plane) {
                frame->data[plane][y * frame->linesize[plane] + x] =
                    static_cast<std::uint8_t>(corners[2 * y / height][2 * x / width][plane]);
            }
        }
    }
    frame->quality = FF_QP2LAMBDA;
    const libav::PacketPtr packet(av_packet_alloc());
    EXPECT_EQ(avcodec_send_frame(codec.get(), frame.get()), 0);
    EXPECT_EQ(avcodec_receive_packet(codec.get(), packet.get()), 0);
    return {reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size)};
}

/// The same, with a camera's note of how it was held.
std::string heldLike(const std::string& picture, int orientation) {
    std::string note("Exif\0\0MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0?\0\0\0\0\0\0", 32);
    note[25] = static_cast<char>(orientation);
    const std::string segment =
        std::string("\xFF\xE1\0", 3) + static_cast<char>(note.size() + 2) + note;
    return picture.substr(0, 2) + segment + picture.substr(2);
}

char nameOf(const Picture& picture, int x, int y) {
    const bool red = componentOf(picture, x, y, 0) > 0.5;
    const bool green = componentOf(picture, x, y, 1) > 0.5;
    return red && green ? 'W' : red ? 'R' : green ? 'G' : 'B';
}

std::string cornersOf(const Picture& picture) {
    const int right = picture.width - 4;
    const int bottom = picture.height - 4;
    return {nameOf(picture, 4, 4), nameOf(picture, right, 4), nameOf(picture, 4, bottom),
            nameOf(picture, right, bottom)};
}

TEST(PhotographTurn, isRespectedInAllEightWays) {
    const TestFolder folder;
    const std::string plain = jpeg();
    const struct {
        int orientation;
        const char* corners; ///< upper left, upper right, lower left, lower right
        bool lies;
    } cases[] = {{0, "RGBW", false}, {1, "RGBW", false}, {2, "GRWB", false}, {3, "WBGR", false},
                 {4, "BWRG", false}, {5, "RBGW", true},  {6, "BRWG", true},  {7, "WGBR", true},
                 {8, "GWRB", true},  {9, "RGBW", false}};
    for (const auto& c : cases) {
        for (const char* const name : {"a.jpg", "b-%02d.jpg"}) {
            const bool isSequence = name[0] == 'b';
            writeBytes(folder / (isSequence ? "b-00.jpg" : name), heldLike(plain, c.orientation));
            const auto reader = openMedia(folder / name, 1);
            const PicturePtr picture = reader->readFrame(0);
            EXPECT_EQ(cornersOf(*picture), c.corners) << c.orientation;
            EXPECT_EQ(picture->width, c.lies ? height : width) << c.orientation;
            EXPECT_EQ(reader->properties().width, picture->width);
            EXPECT_EQ(reader->properties().height, picture->height);
        }
    }
}

} // namespace
} // namespace orbel
