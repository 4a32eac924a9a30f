#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>

/// Ownership and error texts for the C interfaces of the media libraries, and what they call
/// otherwise from one version to the next: FFmpeg 5.1 to 7.
namespace orbel::libav {

struct FrameFree {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct PacketFree {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct CodecFree {
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};
struct InputClose {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};
struct IoClose {
    void operator()(AVIOContext* io) const { avio_closep(&io); }
};
struct OutputFree {
    void operator()(AVFormatContext* output) const {
        avio_closep(&output->pb);
        avformat_free_context(output);
    }
};
struct ScalerFree {
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};

using FramePtr = std::unique_ptr<AVFrame, FrameFree>;
using PacketPtr = std::unique_ptr<AVPacket, PacketFree>;
using CodecPtr = std::unique_ptr<AVCodecContext, CodecFree>;
using InputPtr = std::unique_ptr<AVFormatContext, InputClose>;
using IoPtr = std::unique_ptr<AVIOContext, IoClose>;
using OutputPtr = std::unique_ptr<AVFormatContext, OutputFree>;
using ScalerPtr = std::unique_ptr<SwsContext, ScalerFree>;

/// The time that a frame is shown for, in stream time; 0 where that is not known.
[[nodiscard]] std::int64_t durationOf(const AVFrame& frame);

/// Whether nothing is needed to decode a frame but itself.
[[nodiscard]] bool isKeyFrame(const AVFrame& frame);

/// What a file says beside the packets of a stream.
struct SideData {
    const std::uint8_t* bytes = nullptr; ///< null where there is none
    std::size_t size = 0;
};
[[nodiscard]] SideData sideData(const AVStream& stream, AVPacketSideDataType type);

/// What the writing function of an AVIOContext gets.
#if LIBAVFORMAT_VERSION_MAJOR >= 61
using WrittenBytes = const std::uint8_t;
#else
using WrittenBytes = std::uint8_t;
#endif

/// A dictionary of options; whatever the callee did not take is freed with it.
class Options {
public:
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    ~Options() { av_dict_free(&m_entries); }

    void set(const char* key, const std::string& value) {
        if (av_dict_set(&m_entries, key, value.c_str(), 0) < 0) {
            throw std::bad_alloc();
        }
    }
    [[nodiscard]] AVDictionary** get() { return &m_entries; }

private:
    AVDictionary* m_entries = nullptr;
};

/// Null results become std::bad_alloc.
template<typename Pointer>
[[nodiscard]] Pointer owned(typename Pointer::pointer raw) {
    if (raw == nullptr) {
        throw std::bad_alloc();
    }
    return Pointer(raw);
}

/// A frame with its own buffers, rows aligned as the coders like them.
[[nodiscard]] FramePtr makeFrame(AVPixelFormat format, int width, int height);

/// Takes the libraries' log away from the terminal, for the whole process, and remembers the last
/// error that each thread met. Cheap to call again.
void silenceLog();

/// What a coder's context says about itself in the log, on whichever thread:
/// `AVCodecContext::opaque` of a decoder points to one.
struct DecoderWatch {
    std::atomic<bool> damaged = false; ///< it concealed data that it could not use
    bool anyErrorCounts = false;       ///< whatever else it calls an error, too
    void* owner = nullptr;
};

/// Forgets the remembered error of this thread.
void forgetReason();

/// Why a call returned this code: the code's text and, where one was logged, the library's own
/// words.
[[nodiscard]] std::string reason(int code);

/// A local file as the libraries' URL, so that no name is taken for a protocol.
[[nodiscard]] std::string fileUrl(const std::string& path);

} // namespace orbel::libav
