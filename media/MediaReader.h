#pragma once

#include "host/AlphaHandling.h"
#include "host/FrameRate.h"
#include "host/PluginHost.h"
#include "media/Picture.h"
#include "media/ScalePicture.h"

#include <memory>
#include <optional>
#include <string>

namespace orbel {

enum class MediaKind { Still, Sequence, Clip };

/// What is known of a picture, sequence or clip before its frames are read.
struct MediaProperties {
    MediaKind kind = MediaKind::Still;
    int width = 0; ///< of the first frame; later ones of a sequence may differ
    int height = 0;
    double pixelAspect = 1.0;           ///< width of a pixel by its height
    std::optional<FrameRate> frameRate; ///< clips only
    /// Frames 0 to count - 1 can be read. Absent for stills, which serve every index, and for the
    /// rare clip that does not say where it ends.
    std::optional<long> frameCount;
    std::optional<long> firstNumber; ///< sequences only: of the file that is frame 0
    bool hasAlpha = false;
    PictureDepth depth = PictureDepth::U8;
};

/// Frames in. One thread at a time.
class MediaReader {
public:
    MediaReader(const MediaReader&) = delete;
    MediaReader& operator=(const MediaReader&) = delete;
    virtual ~MediaReader() = default;

    [[nodiscard]] const MediaProperties& properties() const { return m_properties; }

    /// The frame that is shown at `index` / frame rate. Any order; quickest one after the other.
    /// The same index always gives the same picture. Throws MediaError past either end and for
    /// frames that cannot be decoded.
    [[nodiscard]] virtual PicturePtr readFrame(long index) = 0;

    /// Fills a raster with that frame, brought to the raster's size; see `PictureScaler` and
    /// `fillRaster`. A clip may go there in one pass, without the picture's rounding in between.
    virtual void fillFrame(long index, const RasterInfo& raster, SourceAlpha alpha);

protected:
    MediaReader() = default;

    MediaProperties m_properties;

private:
    PictureScaler m_scaler;
};

/// Opens a still picture, a clip, or a numbered sequence given as `name-%04d.png`. A file that has
/// exactly this name comes before a pattern. `first` is the number of a sequence's first file;
/// where it is not stated, that is 0 or 1, the lower one that exists. A missing first file is an
/// error, so that no sequence is shifted unnoticed. `threads` is for decoding; 0 lets the decoder
/// choose. Throws MediaError.
[[nodiscard]] std::unique_ptr<MediaReader> openMedia(const std::string& path, int threads,
                                                     std::optional<long> first = std::nullopt);

} // namespace orbel
