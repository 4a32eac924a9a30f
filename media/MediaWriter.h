#pragma once

#include "host/AlphaHandling.h"
#include "host/FrameRate.h"
#include "host/PluginHost.h"

#include <memory>
#include <string>

namespace orbel {

/// What every frame of an output has in common.
struct WriterSpec {
    int width = 0;
    int height = 0;
    FrameRate frameRate;
    RasterFormat format = RF_RGBA8;                 ///< layout of the rasters that will be written
    OutputAlpha alpha = OutputAlpha::Premultiplied; ///< how they carry their alpha
    double pixelAspect = 1.0;
    int threads = 0; ///< for encoding; 0 lets the encoder choose
};

/// Frames out. One thread at a time; frames may be delayed inside the encoder.
///
/// Pictures and films that carry alpha get straight alpha; EXR stays premultiplied float; H.264 is
/// composited over black. PNG and TIFF are 8 bits deep for the 8-bit layouts and 16 bits otherwise,
/// and so is the FFV1 film; animated pictures (GIF, WebP, APNG) have 8 bits, and start anew at
/// their end. H.264 films of an odd width or height repeat the last column or row, as players know
/// even sizes only.
class MediaWriter {
public:
    MediaWriter(const MediaWriter&) = delete;
    MediaWriter& operator=(const MediaWriter&) = delete;
    /// Finishes what `finish` did not, as far as possible and silently, so that every frame written
    /// so far can be seen.
    virtual ~MediaWriter() = default;

    /// Takes a copy of the raster, which has the size and layout of the WriterSpec. `frame` numbers
    /// the file of a sequence and names the frame in errors; a film shows its frames in the order
    /// of the calls. Throws MediaError; the frames before stay readable.
    virtual void write(const RasterInfo& raster, long frame) = 0;
    /// Completes the output; nothing can be written afterwards. Throws MediaError.
    virtual void finish() = 0;
    /// Leaves nothing of a film that is not finished.
    virtual void abandon() {}

protected:
    MediaWriter() = default;
    /// Throws std::logic_error once the output is finished.
    static void checkOpen(bool finished);
};

/// Opens the output that the ending of `path` names (see `checkOutput`). Films and pictures are
/// written under a name of their own beside their target (`film.mp4.part`) and take its name when
/// they are complete and on the disk. What a killed program leaves of an `.mp4`, `.mov` or `.mkv`
/// there plays but for its last second. As long as one writes, a second one for the same target is
/// refused. The same frames give the same bytes, whatever `threads` is. Throws MediaError.
[[nodiscard]] std::unique_ptr<MediaWriter> openWriter(const std::string& path,
                                                      const WriterSpec& spec);

} // namespace orbel
