#pragma once

#include "media/Libav.h"
#include "media/MediaWriter.h"
#include "media/OutputTarget.h"
#include "media/Palette.h"

#include <memory>
#include <string>

namespace orbel {

/// Rasters in, packets out: the coding that belongs to an output kind. Time base is one frame.
class Encoder {
public:
    /// `path` is for error messages. Throws MediaError when the coding is missing or does not take
    /// this size.
    Encoder(std::string path, const WriterSpec& spec, const OutputTarget& target);

    [[nodiscard]] const AVCodecContext& context() const { return *m_codec; }

    /// The colours of what follows, for a coding that has no others.
    void setPalette(const AVFrame& palette);
    /// A raster as the coder takes it.
    [[nodiscard]] libav::FramePtr toFrame(const RasterInfo& raster);
    /// Codes such a frame under this time; for an .mp4 one of an `Mp4Frames` film will do, too.
    /// Throws MediaError naming `frame`.
    void code(AVFrame& coded, long time, long frame);
    /// Codes a raster.
    void send(const RasterInfo& raster, long time, long frame) {
        code(*toFrame(raster), time, frame);
    }
    /// No more rasters will come.
    void end();
    /// The next packet that is ready; false when more rasters are needed or the end is reached.
    /// Throws MediaError naming `frame`.
    [[nodiscard]] bool receive(AVPacket& packet, long frame);

private:
    void configure(const WriterSpec& spec, const OutputTarget& target);
    void open(OutputKind kind, libav::Options& options);
    [[nodiscard]] libav::FramePtr opaqueFrame(const RasterInfo& raster);
    [[noreturn]] void fail(int code, long frame) const;

    std::string m_path;
    OutputAlpha m_alpha;
    libav::CodecPtr m_codec;
    libav::ScalerPtr m_scaler;
    // Used again when the coder is done with them.
    libav::FramePtr m_opaque;
    libav::FramePtr m_halved;
    std::unique_ptr<PalettePainter> m_palette;
};

} // namespace orbel
