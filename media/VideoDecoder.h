#pragma once

#include "host/FrameRate.h"
#include "media/FramePicture.h"
#include "media/Libav.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// The first video stream of a file, decoded frame by frame. A thin owner: what a frame index means
/// is the readers' business.
class VideoDecoder {
public:
    /// `threads` 0 lets the decoder choose. Throws MediaError when the file is missing, no picture
    /// or clip, or has no decoder.
    VideoDecoder(const std::string& path, int threads);
    VideoDecoder(const VideoDecoder&) = delete;
    VideoDecoder& operator=(const VideoDecoder&) = delete;
    ~VideoDecoder() = default;

    /// True for a single picture file.
    [[nodiscard]] bool isStill() const { return m_still; }
    /// Colours are stored multiplied by alpha.
    [[nodiscard]] bool isPremultiplied() const;
    [[nodiscard]] const AVStream& stream() const { return *m_stream; }
    /// Frames per second as far as the file states them.
    [[nodiscard]] std::optional<FrameRate> frameRate() const;
    /// Width of a pixel by its height, 1 where nothing is said.
    [[nodiscard]] double pixelAspect(AVFrame& frame) const;
    /// How the file wants a frame to be laid down: what comes with the frame, as the turn of a
    /// photograph does, else what is said of the whole clip.
    [[nodiscard]] Turn turn(const AVFrame& frame) const;

    /// Decodes several frames at once: damage is then reported early, with frames before it
    /// missing.
    [[nodiscard]] bool worksAhead() const;
    /// 1 with the next frame in presentation order, 0 at the end, else the library's error code.
    /// Data that fails its checksum or had to be guessed is an error, too, which comes in the place
    /// of the frame that is damaged: those before it are given out first.
    [[nodiscard]] int next(AVFrame& frame);
    /// The next packet in the file's order, not decoded; false at the end or where the file cannot
    /// be read any further. For decoders whose frames nobody wants.
    [[nodiscard]] bool nextPacket(AVPacket& packet);
    /// Continues at a key frame at or before the timestamp, if the file can do that; false
    /// otherwise.
    [[nodiscard]] bool seek(std::int64_t timestamp);
    /// The end of the last packet in presentation order, in stream time; reads the tail of the file
    /// and leaves the decoder unusable. Nothing when packets carry no times.
    [[nodiscard]] std::optional<std::int64_t> findEnd();

private:
    /// Data that nothing came out of; nothing behind it is decoded any more.
    struct Damage {
        int code = 0;
        std::int64_t time = AV_NOPTS_VALUE; ///< that it would be shown at, where that is known
    };

    using Part = int(AVCodecContext* codec, void* data, int index, int thread);
    using Execute = int(AVCodecContext* codec, Part* part, void* data, int* results, int count);

    static Execute executeParts;
    void open(const std::string& path);
    void openCodec(const std::string& path, int threads);
    [[nodiscard]] int feed();
    [[nodiscard]] int receive(AVFrame& frame);
    [[nodiscard]] bool forgives(int code) const;
    [[nodiscard]] bool tookDamage();
    [[nodiscard]] bool isGuessed(const AVFrame& frame) const;
    void endAt(int code, std::int64_t time);
    [[nodiscard]] bool isBehindDamage(const AVFrame& frame) const;

    libav::DecoderWatch m_watch; // outlives the codec, which may still write to it
    libav::InputPtr m_input;
    libav::CodecPtr m_codec;
    libav::PacketPtr m_packet;
    AVStream* m_stream = nullptr; // owned by the input
    bool m_still = false;
    bool m_decodedAny = false;
    bool m_begun = false; ///< a key frame went in
    std::optional<Damage> m_damage;
    std::int64_t m_nextTime = AV_NOPTS_VALUE; ///< of a frame that follows without a gap
    std::int64_t m_duration = 0;              ///< of the newest frame
    Execute* m_execute = nullptr;             // the codec's own way to run the parts of a frame
    bool m_partFailed = false;
};

} // namespace orbel
