#include "media/MediaReader.h"

#include "media/ClipReader.h"
#include "media/FramePicture.h"
#include "media/MediaError.h"
#include "media/PixelConversion.h"
#include "media/SequencePattern.h"
#include "media/VideoDecoder.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace orbel {

namespace {

/// Decodes the one frame of an opened picture file.
Picture decodeStill(VideoDecoder& decoder, const FrameOrigin& origin, double& pixelAspect) {
    const auto frame = libav::owned<libav::FramePtr>(av_frame_alloc());
    const int code = decoder.next(*frame);
    if (code == 0) {
        throw MediaError(origin.file, origin.place, "the picture is cut short", "write it again");
    }
    if (code < 0) {
        throw MediaError(origin.file, origin.place,
                         "the picture is damaged (" + libav::reason(code) + ")", "write it again");
    }
    const Turn turn = decoder.turn(*frame);
    pixelAspect = decoder.pixelAspect(*frame);
    if (turn.lies()) {
        pixelAspect = 1.0 / pixelAspect;
    }
    Picture picture = FrameConverter().convert(*frame, origin);
    return turn.isNone() ? std::move(picture) : turned(picture, turn);
}

void describe(const Picture& picture, MediaProperties& properties) {
    properties.width = picture.width;
    properties.height = picture.height;
    properties.hasAlpha = picture.hasAlpha;
    properties.depth = picture.depth();
}

class StillReader final : public MediaReader {
public:
    StillReader(const std::string& path, VideoDecoder& decoder) {
        m_properties.kind = MediaKind::Still;
        m_picture = std::make_shared<Picture>(
            decodeStill(decoder, {path, "", decoder.isPremultiplied()}, m_properties.pixelAspect));
        describe(*m_picture, m_properties);
    }

    PicturePtr readFrame(long /*index*/) override { return m_picture; }

private:
    PicturePtr m_picture;
};

class SequenceReader final : public MediaReader {
public:
    SequenceReader(std::string path, SequencePattern pattern, int threads,
                   std::optional<long> first)
        : m_path(std::move(path)), m_pattern(std::move(pattern)), m_threads(threads) {
        findNumbers();
        checkFirst(first);
        m_properties.firstNumber = m_first;
        m_properties.kind = MediaKind::Sequence;
        m_properties.frameCount = m_last - m_first + 1;
        describe(*readFrame(0), m_properties);
    }

    PicturePtr readFrame(long index) override {
        if (index < 0 || index > m_last - m_first) {
            throw MediaError(m_path, framePlace(index),
                             "the sequence has frames 0 to " + std::to_string(m_last - m_first) +
                                 " only",
                             "choose fewer frames or a longer sequence");
        }
        if (m_picture == nullptr || index != m_index) {
            m_picture = std::make_shared<Picture>(decode(index));
            m_index = index;
        }
        return m_picture;
    }

private:
    void findNumbers() {
        std::error_code error;
        const std::string folder = m_pattern.folder().empty() ? "." : m_pattern.folder();
        std::filesystem::directory_iterator entry(folder, error);
        bool found = false;
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            if (const auto number = m_pattern.numberOf(entry->path().filename().string())) {
                m_first = found ? std::min(m_first, *number) : *number;
                m_last = found ? std::max(m_last, *number) : *number;
                found = true;
            }
        }
        if (!found) {
            throw MediaError(m_path, "", "no file of this sequence exists",
                             "check the name, the folder and the number of digits");
        }
    }

    void checkFirst(std::optional<long> stated) {
        if (stated ? m_first == *stated : m_first == 0 || m_first == 1) {
            return;
        }
        const std::string lowest = std::to_string(m_first);
        throw MediaError(
            m_pattern.pathOf(stated.value_or(1)), framePlace(0),
            "the first file of the sequence is missing: its lowest number is " + lowest,
            stated
                ? "add it or correct the number of the first file"
                : "add it, or, if the sequence begins with number " + lowest +
                      ", say so: \"first\": " + lowest + " beside \"file\", or --first " + lowest);
    }

    Picture decode(long index) {
        const std::string file = m_pattern.pathOf(m_first + index);
        if (!std::filesystem::exists(file)) {
            throw MediaError(file, framePlace(index), "this file of the sequence is missing",
                             "add it or choose other frames");
        }
        VideoDecoder decoder(file, m_threads);
        if (!decoder.isStill()) {
            throw MediaError(file, framePlace(index), "is a clip, not a picture of a sequence",
                             "name the clip itself");
        }
        return decodeStill(decoder, {file, framePlace(index), decoder.isPremultiplied()},
                           m_properties.pixelAspect);
    }

    std::string m_path;
    SequencePattern m_pattern;
    int m_threads;
    long m_first = 0;
    long m_last = 0;
    long m_index = 0;
    PicturePtr m_picture;
};

} // namespace

void MediaReader::fillFrame(long index, const RasterInfo& raster, SourceAlpha alpha) {
    const PicturePtr picture = readFrame(index);
    if (picture->width == raster.width && picture->height == raster.height) {
        fillRaster(*picture, raster, alpha);
    } else {
        fillRaster(m_scaler.scale(*picture, raster.width, raster.height), raster, alpha);
    }
}

std::unique_ptr<MediaReader> openMedia(const std::string& path, int threads,
                                       std::optional<long> first) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && path.find('%') != std::string::npos) {
        SequencePattern pattern(path);
        if (pattern.isNumbered()) {
            return std::make_unique<SequenceReader>(path, std::move(pattern), threads, first);
        }
    }
    auto decoder = std::make_unique<VideoDecoder>(path, threads);
    if (decoder->isStill()) {
        return std::make_unique<StillReader>(path, *decoder);
    }
    return std::make_unique<ClipReader>(path, std::move(decoder), threads);
}

} // namespace orbel
