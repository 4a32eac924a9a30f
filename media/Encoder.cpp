#include "media/Encoder.h"

#include "media/MediaError.h"
#include "media/PixelConversion.h"
#include "pixel/YCbCrRows.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <stdexcept>
#include <type_traits>

namespace orbel {

namespace {

static_assert(std::endian::native == std::endian::little,
              "several of the encoders take little-endian components only");

/// The encoders' own limits; beyond it, H.264's fails without cleaning up.
int largestSide(OutputKind kind) {
    switch (kind) {
    case OutputKind::Mp4:
        return 16384;
    case OutputKind::WebP:
        return 16383;
    case OutputKind::Gif:
        return 65535;
    default:
        return std::numeric_limits<int>::max();
    }
}

/// Enough to keep up with the renderer on machines of many processors; on few they take turns.
constexpr int h264Threads = 4;

bool isEightBit(RasterFormat format) {
    return format == RF_ARGB8 || format == RF_RGBA8;
}

const char* encoderName(OutputKind kind) {
    switch (kind) {
    case OutputKind::Png:
        return "png";
    case OutputKind::Tiff:
        return "tiff";
    case OutputKind::Exr:
        return "exr";
    case OutputKind::Mp4:
        return "libx264";
    case OutputKind::Mov:
        return "prores_ks";
    case OutputKind::Mkv:
        return "ffv1";
    case OutputKind::Gif:
        return "gif";
    case OutputKind::WebP:
        return "libwebp_anim";
    case OutputKind::Apng:
        return "apng";
    case OutputKind::Mp4Frames:
        return "ffvhuff"; // an eighth of the time of FFV1, for files twice as large
    }
    return "";
}

AVPixelFormat storedFormat(OutputKind kind, const WriterSpec& spec) {
    const bool eight = isEightBit(spec.format);
    switch (kind) {
    case OutputKind::Png:
        return eight ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGBA64BE;
    case OutputKind::Tiff:
        return eight ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGBA64LE;
    case OutputKind::Exr:
        return AV_PIX_FMT_GBRAPF32LE;
    case OutputKind::Mp4:
    case OutputKind::Mp4Frames:
        return AV_PIX_FMT_YUV420P;
    case OutputKind::Mov:
        return AV_PIX_FMT_YUVA444P10LE;
    case OutputKind::Mkv:
        return eight ? AV_PIX_FMT_BGRA : AV_PIX_FMT_GBRAP16LE;
    case OutputKind::Gif:
        return AV_PIX_FMT_PAL8;
    case OutputKind::WebP:
        return AV_PIX_FMT_BGRA;
    case OutputKind::Apng:
        return AV_PIX_FMT_RGBA;
    }
    return AV_PIX_FMT_NONE;
}

void setOptions(OutputKind kind, AVCodecContext& codec, libav::Options& options) {
    switch (kind) {
    case OutputKind::Png:
        options.set("pred", "paeth");
        codec.compression_level = 4;
        break;
    case OutputKind::Tiff:
        options.set("compression_algo", "deflate");
        break;
    case OutputKind::Exr:
        options.set("compression", "zip16");
        break;
    case OutputKind::Mp4:
        // Within half a decibel of "fast" at 16, in a quarter to a third of its time, for files
        // half as large again.
        options.set("crf", "14.1");
        options.set("preset", "superfast");
        // What the coder makes of a film depends on the number of its threads and, for speed, on
        // the processor: both are fixed, so that a film is one file wherever it is made.
        options.set("x264-params", "mbtree=1:rc-lookahead=10:cpu-independent=1");
        break;
    case OutputKind::Mov:
        options.set("profile", "4444");
        options.set("alpha_bits", "16");
        options.set("vendor", "apl0");
        // A fixed fine quantiser: several times faster than searching one for every slice.
        codec.flags |= AV_CODEC_FLAG_QSCALE;
        codec.global_quality = 2 * FF_QP2LAMBDA;
        break;
    case OutputKind::Mkv:
        // Level 3 has slices with check sums; a slice of a tiny frame would come back empty.
        codec.level = codec.width < 64 || codec.height < 64 ? 1 : 3;
        codec.gop_size = 1;
        break;
    case OutputKind::Gif:
    case OutputKind::Mp4Frames:
        break;
    case OutputKind::WebP:
        options.set("quality", "82"); // a film of a third of a GIF's size without its steps
        break;
    case OutputKind::Apng:
        options.set("pred", "paeth");
        codec.compression_level = 5;
        break;
    }
}

bool isYCbCr(AVPixelFormat format) {
    return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) == 0;
}

/// Says what the samples mean, as far as the format can: a player that guesses may show a film
/// darker or with other greens. Films are for video screens, whatever their coding; pictures are
/// what viewers take them for. The light of an EXR picture is the scene's own business.
void setColour(OutputKind kind, AVCodecContext& codec) {
    const bool isPicture =
        kind == OutputKind::Png || kind == OutputKind::Tiff || kind == OutputKind::Apng;
    if (kind == OutputKind::Exr) {
        return;
    }
    const bool coded = isYCbCr(codec.pix_fmt);
    codec.color_primaries = AVCOL_PRI_BT709;
    codec.color_trc = isPicture ? AVCOL_TRC_IEC61966_2_1 : AVCOL_TRC_BT709;
    codec.colorspace = coded ? AVCOL_SPC_BT709 : AVCOL_SPC_RGB;
    codec.color_range = coded ? AVCOL_RANGE_MPEG : AVCOL_RANGE_JPEG;
    if (codec.pix_fmt == AV_PIX_FMT_YUV420P) {
        codec.chroma_sample_location = AVCHROMA_LOC_CENTER; // as YCbCrRows::code makes it
    }
}

template<typename T>
T* components(const AVFrame& frame, int plane) {
    void* bytes = frame.data[plane];
    return static_cast<T*>(bytes);
}

/// The view of a packed frame; the offsets are the places of the components within a pixel.
template<typename T>
EncodedView<T> packedView(const AVFrame& frame, int red, int green, int blue) {
    T* first = components<T>(frame, 0);
    return {first + red,
            first + green,
            first + blue,
            first + 3,
            4,
            frame.linesize[0] / static_cast<std::ptrdiff_t>(sizeof(T))};
}

/// The view of a planar frame, whose planes stand in the order green, blue, red, alpha.
template<typename T>
EncodedView<T> planarView(const AVFrame& frame) {
    return {components<T>(frame, 2),
            components<T>(frame, 0),
            components<T>(frame, 1),
            components<T>(frame, 3),
            1,
            frame.linesize[0] / static_cast<std::ptrdiff_t>(sizeof(T))};
}

void swapBytes(const AVFrame& frame) {
    for (int y = 0; y < frame.height; ++y) {
        auto* row = components<std::uint16_t>(frame, 0) +
                    static_cast<std::ptrdiff_t>(y) * (frame.linesize[0] / 2);
        for (int i = 0; i < 4 * frame.width; ++i) {
            row[i] = static_cast<std::uint16_t>(row[i] << 8 | row[i] >> 8);
        }
    }
}

/// RGB frames, which take the raster's components without further loss.
libav::FramePtr rgbFrame(const RasterInfo& raster, OutputAlpha alpha, AVPixelFormat format) {
    libav::FramePtr frame = libav::makeFrame(format, raster.width, raster.height);
    switch (format) {
    case AV_PIX_FMT_RGBA:
        encodeStraight(raster, alpha, packedView<std::uint8_t>(*frame, 0, 1, 2));
        break;
    case AV_PIX_FMT_BGRA:
        encodeStraight(raster, alpha, packedView<std::uint8_t>(*frame, 2, 1, 0));
        break;
    case AV_PIX_FMT_RGBA64LE:
        encodeStraight(raster, alpha, packedView<std::uint16_t>(*frame, 0, 1, 2));
        break;
    case AV_PIX_FMT_RGBA64BE:
        encodeStraight(raster, alpha, packedView<std::uint16_t>(*frame, 0, 1, 2));
        swapBytes(*frame);
        break;
    case AV_PIX_FMT_GBRAP16LE:
        encodeStraight(raster, alpha, planarView<std::uint16_t>(*frame));
        break;
    default:
        encodePremultiplied(raster, alpha, planarView<float>(*frame));
        break;
    }
    return frame;
}

/// A packed RGB picture as the scaler takes it.
struct PackedRgb {
    const std::uint8_t* data;
    int rowBytes;
    int width;
    int height;
    AVPixelFormat format;
};

PackedRgb packedRgb(const AVFrame& frame) {
    return {frame.data[0], frame.linesize[0], frame.width, frame.height,
            static_cast<AVPixelFormat>(frame.format)};
}

/// The picture over black, with halved chroma, by pairs of rows.
template<typename P>
void codeHalved(const RasterInfo& raster, OutputAlpha alpha, const AVFrame& frame) {
    const YCbCrRows<P>& rows = yCbCrRows<P>();
    const auto code = alpha == OutputAlpha::Premultiplied ? rows.code : rows.codeOverBlack;
    const auto rowOf = [&frame](int plane, int y) {
        return components<std::uint8_t>(frame, plane) +
               static_cast<std::ptrdiff_t>(y) * frame.linesize[plane];
    };
    for (int y = 0; y < raster.height; y += 2) {
        const std::uint8_t* const above = raster.row(std::max(y - 1, 0));
        const std::uint8_t* const below = raster.row(std::min(y + 2, raster.height - 1));
        code({above, raster.row(y), raster.row(y + 1), below}, raster.width,
             {rowOf(0, y), rowOf(0, y + 1), rowOf(1, y / 2), rowOf(2, y / 2)});
    }
}

/// A frame of this size that nobody else holds: the one from before, if it is free.
void renewFrame(AVPixelFormat format, int width, int height, libav::FramePtr& frame) {
    if (frame == nullptr || av_frame_is_writable(frame.get()) == 0) {
        frame = libav::makeFrame(format, width, height);
    }
}

/// An opaque raster of 8 bits over a packed frame.
RasterInfo rasterOver(const AVFrame& frame) {
    RasterInfo raster;
    raster.data = frame.data[0];
    raster.pixelFormat = RF_RGBA8;
    raster.width = frame.width;
    raster.height = frame.height;
    raster.rowBytes = frame.linesize[0];
    raster.bytesPerPixel = 4;
    return raster;
}

/// 10 bits of alpha, rounded: the scaler would cut them off.
void fillAlpha10(const AVFrame& from, const AVFrame& to) {
    for (int y = 0; y < from.height; ++y) {
        const auto* in = components<std::uint16_t>(from, 0) +
                         static_cast<std::ptrdiff_t>(y) * (from.linesize[0] / 2) + 3;
        auto* out = components<std::uint16_t>(to, 3) +
                    static_cast<std::ptrdiff_t>(y) * (to.linesize[3] / 2);
        for (int x = 0; x < from.width; ++x, in += 4) {
            out[x] = static_cast<std::uint16_t>((*in * 1023U + 32767U) / 65535U);
        }
    }
}

libav::FramePtr yCbCrFrame(const PackedRgb& rgb, AVPixelFormat format, libav::ScalerPtr& scaler) {
    scaler.reset(sws_getCachedContext(
        scaler.release(), rgb.width, rgb.height, rgb.format, rgb.width, rgb.height, format,
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP | SWS_BITEXACT, nullptr, nullptr,
        nullptr));
    if (scaler == nullptr) {
        throw std::bad_alloc();
    }
    const int* matrix = sws_getCoefficients(SWS_CS_ITU709);
    constexpr int one = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), matrix, 1, matrix, 0, 0, one, one);
    libav::FramePtr frame = libav::makeFrame(format, rgb.width, rgb.height);
    const std::array<const std::uint8_t*, 4> planes{rgb.data};
    const std::array<int, 4> strides{rgb.rowBytes};
    if (sws_scale(scaler.get(), planes.data(), strides.data(), 0, rgb.height, frame->data,
                  frame->linesize) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

} // namespace

Encoder::Encoder(std::string path, const WriterSpec& spec, const OutputTarget& target)
    : m_path(std::move(path)), m_alpha(spec.alpha) {
    libav::silenceLog();
    libav::forgetReason();
    const AVCodec* coding = avcodec_find_encoder_by_name(encoderName(target.kind));
    if (coding == nullptr) {
        throw MediaError(m_path, "",
                         std::string("the installed media libraries have no encoder \"") +
                             encoderName(target.kind) + "\"",
                         "choose another ending or install the full libraries");
    }
    m_codec = libav::owned<libav::CodecPtr>(avcodec_alloc_context3(coding));
    configure(spec, target);
}

void Encoder::configure(const WriterSpec& spec, const OutputTarget& target) {
    m_codec->width = spec.width;
    m_codec->height = spec.height;
    m_codec->pix_fmt = storedFormat(target.kind, spec);
    m_codec->time_base = {spec.frameRate.denominator, spec.frameRate.numerator};
    m_codec->framerate = {spec.frameRate.numerator, spec.frameRate.denominator};
    m_codec->sample_aspect_ratio = av_d2q(spec.pixelAspect, 4096);
    // A single picture gains nothing from waiting for others.
    m_codec->thread_count = target.isFilm || target.isSequence ? spec.threads : 1;
    if (target.kind == OutputKind::Mp4) {
        m_codec->thread_count = h264Threads;
    }
    m_codec->flags |= AV_CODEC_FLAG_BITEXACT;
    setColour(target.kind, *m_codec);
    if (target.isFilm) {
        m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER; // all three containers want it
    }
    libav::Options options;
    setOptions(target.kind, *m_codec, options);
    open(target.kind, options);
}

void Encoder::open(OutputKind kind, libav::Options& options) {
    libav::forgetReason();
    const bool fits = std::max(m_codec->width, m_codec->height) <= largestSide(kind);
    const int code =
        fits ? avcodec_open2(m_codec.get(), m_codec->codec, options.get()) : AVERROR(EINVAL);
    if (code < 0) {
        throw MediaError(m_path, "",
                         "frames of " + std::to_string(m_codec->width) + " x " +
                             std::to_string(m_codec->height) + " cannot be coded (" +
                             libav::reason(code) + ")",
                         "choose another size or ending");
    }
}

void Encoder::setPalette(const AVFrame& palette) {
    m_palette = std::make_unique<PalettePainter>(palette, m_codec->width, m_codec->height);
}

libav::FramePtr Encoder::toFrame(const RasterInfo& raster) {
    if (raster.width != m_codec->width || raster.height != m_codec->height) {
        throw std::invalid_argument("a frame has the size that the output was opened with");
    }
    if (m_palette != nullptr) {
        return m_palette->paint(raster, m_alpha);
    }
    const AVPixelFormat format = m_codec->pix_fmt;
    if (!isYCbCr(format)) {
        return rgbFrame(raster, m_alpha, format);
    }
    if (format != AV_PIX_FMT_YUVA444P10LE) {
        return opaqueFrame(raster);
    }
    const libav::FramePtr straight = rgbFrame(raster, m_alpha, AV_PIX_FMT_RGBA64LE);
    libav::FramePtr frame = yCbCrFrame(packedRgb(*straight), format, m_scaler);
    fillAlpha10(*straight, *frame);
    return frame;
}

/// What has no alpha is composited over black.
libav::FramePtr Encoder::opaqueFrame(const RasterInfo& raster) {
    const AVPixelFormat format = m_codec->pix_fmt;
    const bool halved = format == AV_PIX_FMT_YUV420P;
    if (!halved || !isEightBit(raster.pixelFormat)) {
        renewFrame(AV_PIX_FMT_RGB0, raster.width, raster.height, m_opaque);
        encodeOpaque(raster, m_alpha, packedView<std::uint8_t>(*m_opaque, 0, 1, 2));
    }
    if (!halved) {
        return yCbCrFrame(packedRgb(*m_opaque), format, m_scaler);
    }
    renewFrame(format, raster.width, raster.height, m_halved);
    if (!isEightBit(raster.pixelFormat)) {
        codeHalved<PIXEL_RGBA8>(rasterOver(*m_opaque), OutputAlpha::Premultiplied, *m_halved);
    } else if (raster.pixelFormat == RF_RGBA8) {
        codeHalved<PIXEL_RGBA8>(raster, m_alpha, *m_halved);
    } else {
        codeHalved<PIXEL_ARGB8>(raster, m_alpha, *m_halved);
    }
    return libav::owned<libav::FramePtr>(av_frame_clone(m_halved.get()));
}

void Encoder::fail(int code, long frame) const {
    throw MediaError(m_path, framePlace(frame),
                     "the frame cannot be coded (" + libav::reason(code) + ")",
                     "choose another size or ending");
}

void Encoder::code(AVFrame& coded, long time, long frame) {
    if (coded.format != m_codec->pix_fmt || coded.width != m_codec->width ||
        coded.height != m_codec->height) {
        fail(AVERROR_INVALIDDATA, frame);
    }
    coded.pts = time;
    coded.pict_type = AV_PICTURE_TYPE_NONE; // of its own choice
    coded.sample_aspect_ratio = m_codec->sample_aspect_ratio;
    coded.color_primaries = m_codec->color_primaries;
    coded.color_trc = m_codec->color_trc;
    coded.colorspace = m_codec->colorspace;
    coded.color_range = m_codec->color_range;
    coded.chroma_location = m_codec->chroma_sample_location;
    libav::forgetReason();
    const int result = avcodec_send_frame(m_codec.get(), &coded);
    if (result < 0) {
        fail(result, frame);
    }
}

void Encoder::end() {
    // Fails only when the end was told before.
    (void)avcodec_send_frame(m_codec.get(), nullptr);
}

bool Encoder::receive(AVPacket& packet, long frame) {
    const int code = avcodec_receive_packet(m_codec.get(), &packet);
    if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) {
        return false;
    }
    if (code < 0) {
        fail(code, frame);
    }
    if (packet.duration <= 0) {
        packet.duration = 1;
    }
    return true;
}

} // namespace orbel
