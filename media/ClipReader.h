#pragma once

#include "media/FramePicture.h"
#include "media/FrameScaler.h"
#include "media/MediaReader.h"
#include "media/VideoDecoder.h"

#include <cstdint>

namespace orbel {

/// Frames of a clip by index. The decoder keeps its place, so reading on costs one decoded frame;
/// going back, or far ahead, continues from the key frame before the wanted time.
class ClipReader final : public MediaReader {
public:
    /// Throws MediaError when the clip has no frame or no frame rate.
    ClipReader(std::string path, std::unique_ptr<VideoDecoder> decoder, int threads);

    PicturePtr readFrame(long index) override;
    void fillFrame(long index, const RasterInfo& raster, SourceAlpha alpha) override;

private:
    /// A decoded frame and when it is shown, in stream time.
    struct Shown {
        libav::FramePtr frame;
        std::int64_t start = 0;
        std::int64_t end = 0;
        bool valid = false;
        std::string failure; ///< why there is no frame, unless the clip ended
    };

    void describe();
    void countFrames();
    [[nodiscard]] long framesBefore(std::int64_t end) const;
    [[nodiscard]] std::int64_t timeOf(long index) const;
    void restart();
    void show(long index);
    void goTo(std::int64_t time);
    [[nodiscard]] bool seekBefore(std::int64_t time);
    [[nodiscard]] int nextFrame(AVFrame& frame);
    [[nodiscard]] int nextFrameAlone(AVFrame& frame);
    [[nodiscard]] bool isBehindUs(const AVFrame& frame, long count) const;
    void decodeInto(Shown& shown);
    [[nodiscard]] PicturePtr currentPicture(long index);
    [[noreturn]] void refuse(long index) const;

    std::string m_path;
    int m_threads;
    std::unique_ptr<VideoDecoder> m_decoder;
    FrameConverter m_converter;
    FrameScaler m_frameScaler;
    FrameRate m_rate;
    std::int64_t m_origin = 0;        // when frame 0 is shown
    std::int64_t m_frameDuration = 1; // rounded, at least 1
    std::int64_t m_previousStart = 0;
    bool m_hasPrevious = false;
    bool m_timesKnown = true; // every frame so far came with a usable time
    long m_decoded = 0;       // since the beginning, where times are not known
    Shown m_current;
    Shown m_next;
    PicturePtr m_picture; // of the current frame
};

} // namespace orbel
