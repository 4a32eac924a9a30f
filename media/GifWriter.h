#pragma once

#include "media/FilmWriter.h"
#include "media/LosslessFrames.h"
#include "media/Palette.h"

#include <string>

namespace orbel {

/// A GIF shows all its frames in the same 256 colours, which only the last frame settles: until
/// then they are kept, without loss, in a file beside it (`name.gif.frames.mkv`). Browsers show no
/// more than 50 frames a second: of faster films every second frame is taken, or every third.
class GifWriter final : public MediaWriter {
public:
    /// Throws MediaError.
    GifWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target);
    GifWriter(const GifWriter&) = delete;
    GifWriter& operator=(const GifWriter&) = delete;
    ~GifWriter() override;

    void write(const RasterInfo& raster, long frame) override;
    void finish() override;
    void abandon() override;

private:
    void codeFrames();

    std::string m_framesPath;
    WriterSpec m_spec;
    long m_step; ///< of so many frames one is shown
    OutputAlpha m_alpha;
    FilmWriter m_film;
    LosslessFrames m_frames;
    PaletteChooser m_colours;
    long m_offered = 0;
    long m_kept = 0;
    bool m_finished = false;
};

} // namespace orbel
