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
    /// Codes a raster under this time. Throws MediaError naming `frame`.
    void send(const RasterInfo& raster, long time, long frame);
    /// Codes a frame that is as the coder takes it: one of an `Mp4Frames` film for an .mp4.
    void code(AVFrame& coded, long time, long frame);
    /// No more rasters will come.
    void end();
    /// The next packet that is ready; false when more rasters are needed or the end is reached.
    /// Throws MediaError naming `frame`.
    [[nodiscard]] bool receive(AVPacket& packet, long frame);

private:
    void configure(const WriterSpec& spec, const OutputTarget& target);
    void open(OutputKind kind, libav::Options& options);
    [[nodiscard]] libav::FramePtr toFrame(const RasterInfo& raster);
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
