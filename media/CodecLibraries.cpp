#include "media/CodecLibraries.h"

#include "media/Libav.h"

#include <algorithm>
#include <string_view>

extern "C" {
#include <libavfilter/avfilter.h>
}
#include <zimg.h>
#include <zlib.h>

namespace orbel {

namespace {

std::string versionOf(const char* name, unsigned version) {
    return std::string(name) + " " + std::to_string(AV_VERSION_MAJOR(version)) + "." +
           std::to_string(AV_VERSION_MINOR(version)) + "." +
           std::to_string(AV_VERSION_MICRO(version));
}

/// The first packet of a film without content.
libav::PacketPtr firstPacket(const AVCodec& coding) {
    const auto codec = libav::owned<libav::CodecPtr>(avcodec_alloc_context3(&coding));
    codec->width = codec->height = 16;
    codec->pix_fmt = AV_PIX_FMT_YUV420P;
    codec->time_base = {1, 25};
    codec->thread_count = 1;
    auto packet = libav::owned<libav::PacketPtr>(av_packet_alloc());
    if (avcodec_open2(codec.get(), &coding, nullptr) == 0) {
        const libav::FramePtr frame = libav::makeFrame(codec->pix_fmt, 16, 16);
        for (int plane = 0; plane < 3; ++plane) {
            const int rows = plane == 0 ? 16 : 8;
            std::fill_n(frame->data[plane], frame->linesize[plane] * rows, std::uint8_t{128});
        }
        frame->pts = 0;
        static_cast<void>(avcodec_send_frame(codec.get(), frame.get()));
        static_cast<void>(avcodec_send_frame(codec.get(), nullptr));
        static_cast<void>(avcodec_receive_packet(codec.get(), packet.get()));
    }
    return packet;
}

/// This coder tells its version nowhere but in what it codes: "x264 - core 164 r3095 baee400 - H".
std::string h264Coder() {
    libav::silenceLog();
    const AVCodec* const coding = avcodec_find_encoder_by_name("libx264");
    if (coding == nullptr) {
        return "no H.264 coder";
    }
    const libav::PacketPtr packet = firstPacket(*coding);
    const void* const bytes = packet->data;
    const std::string_view text(static_cast<const char*>(bytes),
                                static_cast<std::size_t>(packet->size));
    constexpr std::string_view before = "x264 - ";
    const std::size_t at = text.find(before);
    const std::size_t begin = at == std::string_view::npos ? at : at + before.size();
    const std::size_t end = begin == std::string_view::npos ? begin : text.find(" - ", begin);
    return end == std::string_view::npos ? "x264 of an unknown version"
                                         : "x264 " + std::string(text.substr(begin, end - begin));
}

std::string scalerVersion() {
    unsigned major = 0;
    unsigned minor = 0;
    unsigned micro = 0;
    zimg_get_version_info(&major, &minor, &micro);
    return "zimg " + std::to_string(major) + "." + std::to_string(minor) + "." +
           std::to_string(micro);
}

} // namespace

std::string codecLibraries() {
    return versionOf("libavcodec", avcodec_version()) + ", " +
           versionOf("libavformat", avformat_version()) + ", " +
           versionOf("libavfilter", avfilter_version()) + ", " +
           versionOf("libswscale", swscale_version()) + " (" + av_version_info() + "), " +
           h264Coder() + ", zlib " + zlibVersion() + ", " + scalerVersion();
}

} // namespace orbel
