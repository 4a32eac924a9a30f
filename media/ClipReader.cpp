#include "media/ClipReader.h"

#include "media/MediaError.h"

#include <algorithm>

namespace orbel {

namespace {

/// Further ahead than this many frames a seek is tried instead of decoding on.
constexpr long farAhead = 60;

/// Keeps times within 64 bits whatever the time base.
constexpr long lastIndex = 1L << 31;

} // namespace

ClipReader::ClipReader(std::string path, std::unique_ptr<VideoDecoder> decoder, int threads)
    : m_path(std::move(path)), m_threads(threads), m_decoder(std::move(decoder)) {
    m_current.frame = libav::owned<libav::FramePtr>(av_frame_alloc());
    m_next.frame = libav::owned<libav::FramePtr>(av_frame_alloc());
    const std::optional<FrameRate> rate = m_decoder->frameRate();
    if (!rate) {
        throw MediaError(m_path, "", "the clip does not say how many frames it has per second",
                         "convert it to a common clip format");
    }
    m_rate = *rate;
    m_frameDuration = std::max<std::int64_t>(
        1, av_rescale_q(1, {m_rate.denominator, m_rate.numerator}, m_decoder->stream().time_base));
    decodeInto(m_current);
    if (!m_current.valid) {
        const std::string why = m_current.failure.empty() ? "" : " (" + m_current.failure + ")";
        throw MediaError(m_path, "", "the clip has no frame that can be decoded" + why,
                         "convert it to a common clip format");
    }
    m_origin = m_current.start;
    decodeInto(m_next);
    describe();
    countFrames();
}

void ClipReader::describe() {
    const AVFrame& frame = *m_current.frame;
    const bool lying = m_decoder->turn(frame).lies();
    m_properties.kind = MediaKind::Clip;
    m_properties.width = lying ? frame.height : frame.width;
    m_properties.height = lying ? frame.width : frame.height;
    m_properties.frameRate = m_rate;
    const auto format = static_cast<AVPixelFormat>(frame.format);
    m_properties.hasAlpha = formatHasAlpha(format);
    m_properties.depth = pictureDepth(format);
    const double aspect = m_decoder->pixelAspect(*m_current.frame);
    m_properties.pixelAspect = lying ? 1.0 / aspect : aspect;
}

void ClipReader::countFrames() {
    const std::optional<std::int64_t> end = VideoDecoder(m_path, 1).findEnd();
    if (end && m_timesKnown) {
        m_properties.frameCount = framesBefore(std::max(*end, m_current.end));
    }
}

/// How many indices fall before the end of the clip.
long ClipReader::framesBefore(std::int64_t end) const {
    const AVRational frame{m_rate.denominator, m_rate.numerator};
    const std::int64_t span = end - m_origin - m_frameDuration / 4;
    return static_cast<long>(std::max<std::int64_t>(
        1, av_rescale_q_rnd(span, m_decoder->stream().time_base, frame, AV_ROUND_UP)));
}

/// A frame counts as shown from a quarter of a frame before its time: containers round times.
std::int64_t ClipReader::timeOf(long index) const {
    const AVRational frame{m_rate.denominator, m_rate.numerator};
    return m_origin + av_rescale_q(index, frame, m_decoder->stream().time_base) +
           m_frameDuration / 4;
}

int ClipReader::nextFrame(AVFrame& frame) {
    const int code = m_decoder->next(frame);
    const bool early = code < 0 && m_decoder->worksAhead();
    return early ? nextFrameAlone(frame) : code;
}

/// Where several threads came upon damage, one alone tells with which frame it begins.
int ClipReader::nextFrameAlone(AVFrame& frame) {
    m_threads = 1;
    m_decoder = std::make_unique<VideoDecoder>(m_path, m_threads);
    if (m_hasPrevious && m_timesKnown) {
        static_cast<void>(m_decoder->seek(m_previousStart)); // or decodes from the beginning
    }
    int code = m_decoder->next(frame);
    for (long count = 1; code == 1 && isBehindUs(frame, count); ++count) {
        code = m_decoder->next(frame);
    }
    return code;
}

/// Whether a frame, so many from where decoding began anew, was there before.
bool ClipReader::isBehindUs(const AVFrame& frame, long count) const {
    return m_timesKnown ? m_hasPrevious && frame.best_effort_timestamp <= m_previousStart
                        : count <= m_decoded;
}

void ClipReader::decodeInto(Shown& shown) {
    const int code = nextFrame(*shown.frame);
    shown.valid = code == 1;
    shown.failure = code < 0 ? libav::reason(code) : std::string();
    if (!shown.valid) {
        return;
    }
    const std::int64_t expected = m_hasPrevious ? m_previousStart + m_frameDuration : 0;
    const std::int64_t stated = shown.frame->best_effort_timestamp;
    const bool usable = stated != AV_NOPTS_VALUE && (!m_hasPrevious || stated > m_previousStart);
    m_timesKnown = m_timesKnown && usable;
    shown.start = usable ? stated : expected;
    const std::int64_t duration = libav::durationOf(*shown.frame);
    shown.end = shown.start + (duration > 0 ? duration : m_frameDuration);
    m_previousStart = shown.start;
    m_hasPrevious = true;
    ++m_decoded;
}

void ClipReader::restart() {
    m_decoder = std::make_unique<VideoDecoder>(m_path, m_threads);
    m_hasPrevious = false;
    m_decoded = 0;
    decodeInto(m_current);
}

bool ClipReader::seekBefore(std::int64_t time) {
    const AVRational base = m_decoder->stream().time_base;
    for (const std::int64_t seconds : {0, 1, 4, 16}) {
        const std::int64_t target = time - av_rescale_q(seconds, {1, 1}, base);
        if (target < m_origin || !m_timesKnown || !m_decoder->seek(target)) {
            return false;
        }
        m_hasPrevious = false;
        decodeInto(m_current);
        // Frames before the key frame may lack what they were predicted from.
        if (m_timesKnown && m_current.valid && m_current.start <= time &&
            libav::isKeyFrame(*m_current.frame)) {
            return true;
        }
    }
    return false;
}

void ClipReader::goTo(std::int64_t time) {
    m_picture.reset();
    if (!seekBefore(time)) {
        restart();
    }
    decodeInto(m_next);
}

PicturePtr ClipReader::currentPicture(long index) {
    if (m_picture == nullptr) {
        Picture picture = m_converter.convert(
            *m_current.frame, {m_path, framePlace(index), m_decoder->isPremultiplied()});
        const Turn turn = m_decoder->turn(*m_current.frame);
        m_picture =
            std::make_shared<Picture>(turn.isNone() ? std::move(picture) : turned(picture, turn));
    }
    return m_picture;
}

void ClipReader::refuse(long index) const {
    if (!m_next.failure.empty() || !m_current.valid) {
        const std::string& why = m_current.valid ? m_next.failure : m_current.failure;
        throw MediaError(m_path, framePlace(index), "the clip is damaged here (" + why + ")",
                         "choose other frames or make the clip again");
    }
    throw MediaError(m_path, framePlace(index),
                     "the clip ends after frame " + std::to_string(framesBefore(m_current.end) - 1),
                     "choose fewer frames or a longer clip");
}

/// Makes that frame the current one.
void ClipReader::show(long index) {
    if (index < 0 || index > lastIndex) {
        throw MediaError(m_path, framePlace(index), "a clip has no such frame", "begin at frame 0");
    }
    const std::int64_t time = timeOf(index);
    if (!m_current.valid || time < m_current.start ||
        time > m_current.end + farAhead * m_frameDuration) {
        goTo(time);
    }
    while (m_next.valid && m_next.start <= time) {
        std::swap(m_current, m_next);
        m_picture.reset();
        decodeInto(m_next);
    }
    if (!m_current.valid || (!m_next.valid && time >= m_current.end)) {
        refuse(index);
    }
}

PicturePtr ClipReader::readFrame(long index) {
    show(index);
    return currentPicture(index);
}

void ClipReader::fillFrame(long index, const RasterInfo& raster, SourceAlpha alpha) {
    show(index);
    if (m_decoder->turn(*m_current.frame).isNone() &&
        FrameScaler::takes(*m_current.frame, raster)) {
        m_frameScaler.fill(*m_current.frame, raster, alpha);
    } else {
        MediaReader::fillFrame(index, raster, alpha);
    }
}

} // namespace orbel
