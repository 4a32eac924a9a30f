#include "media/Libav.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>

namespace orbel::libav {

namespace {

using Text = std::array<char, 256>;

Text& lastError() {
    thread_local Text text{};
    return text;
}

/// Wrong checksums, and what decoders of films say of a part of a frame that makes no sense.
bool namesDamage(const char* text) {
    constexpr std::array<const char*, 5> words{
        "crc mismatch", "checksum", "error while decoding MB", "damaged at", "Error at MB"};
    return std::any_of(words.begin(), words.end(),
                       [text](const char* word) { return strcasestr(text, word) != nullptr; });
}

/// Damage that is concealed is told nowhere but in the log: the picture that follows looks whole.
void noteDamage(void* sender, const char* text) {
    const bool isCodec =
        sender != nullptr && *static_cast<AVClass**>(sender) == avcodec_get_class();
    const auto* const codec = isCodec ? static_cast<AVCodecContext*>(sender) : nullptr;
    if (codec == nullptr || codec->opaque == nullptr || av_codec_is_decoder(codec->codec) == 0) {
        return;
    }
    auto& watch = *static_cast<DecoderWatch*>(codec->opaque);
    if (watch.anyErrorCounts || namesDamage(text)) {
        watch.damaged = true;
    }
}

void remember(void* sender, int level, const char* format, va_list arguments) {
    if (level <= AV_LOG_ERROR) {
        Text& text = lastError();
        std::vsnprintf(text.data(), text.size(), format, arguments);
        noteDamage(sender, text.data());
    }
}

std::string trimmed(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ' || text.back() == '.')) {
        text.pop_back();
    }
    return text;
}

} // namespace

std::int64_t durationOf(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

bool isKeyFrame(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(58, 7, 100)
    return (frame.flags & AV_FRAME_FLAG_KEY) != 0;
#else
    return frame.key_frame != 0;
#endif
}

SideData sideData(const AVStream& stream, AVPacketSideDataType type) {
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 102)
    const AVCodecParameters& told = *stream.codecpar;
    const AVPacketSideData* const found =
        av_packet_side_data_get(told.coded_side_data, told.nb_coded_side_data, type);
    return found == nullptr ? SideData{} : SideData{found->data, found->size};
#else
    SideData found;
    found.bytes = av_stream_get_side_data(&stream, type, &found.size);
    return found;
#endif
}

FramePtr makeFrame(AVPixelFormat format, int width, int height) {
    auto frame = owned<FramePtr>(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), 0) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

void silenceLog() {
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(remember); });
}

void forgetReason() {
    lastError().front() = '\0';
}

std::string reason(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> buffer{};
    av_strerror(code, buffer.data(), buffer.size());
    const std::string logged = trimmed(lastError().data());
    const std::string text = trimmed(buffer.data());
    return logged.empty() ? text : text + ": " + logged;
}

std::string fileUrl(const std::string& path) {
    return "file:" + path;
}

} // namespace orbel::libav
