#include "media/FramePicture.h"

#include "media/ComponentScale.h"
#include "media/FrameColour.h"
#include "media/MediaError.h"

extern "C" {
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace orbel {

namespace {

constexpr int scalerFlags =
    SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT;

const AVPixFmtDescriptor& descriptor(AVPixelFormat format) {
    static const AVPixFmtDescriptor unknown{};
    const AVPixFmtDescriptor* found = av_pix_fmt_desc_get(format);
    return found == nullptr ? unknown : *found;
}

AVPixelFormat formatOf(const AVFrame& frame) {
    return static_cast<AVPixelFormat>(frame.format);
}

bool has(const AVPixFmtDescriptor& format, std::uint64_t flags) {
    return (format.flags & flags) != 0;
}

int depthOf(const AVPixFmtDescriptor& format) {
    int depth = 0;
    for (int i = 0; i < format.nb_components; ++i) {
        depth = std::max(depth, format.comp[i].depth);
    }
    return depth;
}

bool allComponentsHave(const AVPixFmtDescriptor& format, int depth) {
    return std::all_of(format.comp, format.comp + format.nb_components,
                       [depth](const AVComponentDescriptor& c) { return c.depth == depth; });
}

bool isFloatPlanes(const AVPixFmtDescriptor& format) {
    return has(format, AV_PIX_FMT_FLAG_FLOAT) && depthOf(format) == 32;
}

bool isGrey(const AVPixFmtDescriptor& format) {
    return format.nb_components <= 2 &&
           !has(format, AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_HWACCEL);
}

/// The scaler only reorders these, which is exact and fast.
bool isWholeRgb(const AVPixFmtDescriptor& format) {
    if (has(format, AV_PIX_FMT_FLAG_PAL)) {
        return true;
    }
    const bool inOrder =
        has(format, AV_PIX_FMT_FLAG_PLANAR) || format.comp[0].offset < format.comp[2].offset;
    return has(format, AV_PIX_FMT_FLAG_RGB) &&
           !has(format, AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_FLOAT) &&
           (allComponentsHave(format, 8) || (allComponentsHave(format, 16) && inOrder));
}

/// Read component by component, since the scaler would round these by way of Y'CbCr.
bool isReadByComponent(AVPixelFormat format) {
    const AVPixFmtDescriptor& known = descriptor(format);
    if (format == AV_PIX_FMT_MONOWHITE || has(known, AV_PIX_FMT_FLAG_FLOAT) ||
        depthOf(known) > 16) {
        return false;
    }
    return isGrey(known) || (has(known, AV_PIX_FMT_FLAG_RGB) && !isWholeRgb(known) &&
                             !has(known, AV_PIX_FMT_FLAG_BAYER));
}

/// Which component of a frame holds red, green, blue or alpha; -1 for none.
int componentFor(const AVPixFmtDescriptor& format, int channel) {
    if (channel == 3) {
        return has(format, AV_PIX_FMT_FLAG_ALPHA) ? format.nb_components - 1 : -1;
    }
    return isGrey(format) ? 0 : channel;
}

/// Maps stored values linearly to the whole range of `T`.
template<typename T>
class Widening {
public:
    Widening(int depth, bool limitedRange)
        : m_low(limitedRange ? 16U << (depth - 8) : 0U),
          m_most(limitedRange ? 219U << (depth - 8) : (1U << depth) - 1U) {}

    T operator()(std::uint16_t stored) const {
        const std::uint32_t above = stored > m_low ? stored - m_low : 0U;
        const std::uint64_t part = std::min(above, m_most);
        return static_cast<T>((part * componentMax<T> + m_most / 2) / m_most);
    }

private:
    std::uint32_t m_low;
    std::uint32_t m_most;
};

template<typename T>
void readComponent(const AVFrame& frame, int component, int channel, bool limitedRange,
                   std::vector<T>& pixels) {
    const AVPixFmtDescriptor& format = descriptor(formatOf(frame));
    const Widening<T> widen(format.comp[component].depth, limitedRange);
    const uint8_t* planes[4] = {frame.data[0], frame.data[1], frame.data[2], frame.data[3]};
    const int strides[4] = {frame.linesize[0], frame.linesize[1], frame.linesize[2],
                            frame.linesize[3]};
    std::vector<std::uint16_t> line(static_cast<std::size_t>(frame.width));
    auto out = static_cast<std::size_t>(channel);
    for (int y = 0; y < frame.height; ++y) {
        av_read_image_line2(line.data(), planes, strides, &format, 0, y, component, frame.width, 0,
                            2);
        for (const std::uint16_t stored : line) {
            pixels[out] = widen(stored);
            out += 4;
        }
    }
}

template<typename T>
void fillAlpha(std::vector<T>& pixels) {
    for (std::size_t i = 3; i < pixels.size(); i += 4) {
        pixels[i] = componentMax<T>;
    }
}

template<typename T>
Picture readByComponent(const AVFrame& frame) {
    const AVPixFmtDescriptor& format = descriptor(formatOf(frame));
    Picture picture = makePicture<T>(frame.width, frame.height, formatHasAlpha(formatOf(frame)));
    auto& pixels = std::get<std::vector<T>>(picture.components);
    const bool limitedRange =
        isGrey(format) && frame.color_range == AVCOL_RANGE_MPEG && format.comp[0].depth >= 8;
    for (int channel = 0; channel < 4; ++channel) {
        const int component = componentFor(format, channel);
        if (component < 0) {
            fillAlpha(pixels);
        } else {
            readComponent(frame, component, channel, limitedRange && channel < 3, pixels);
        }
    }
    return picture;
}

float floatAt(const uint8_t* bytes, bool swapped) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return std::bit_cast<float>(swapped ? __builtin_bswap32(word) : word);
}

Picture readFloats(const AVFrame& frame) {
    const AVPixFmtDescriptor& format = descriptor(formatOf(frame));
    const bool bigEndian = has(format, AV_PIX_FMT_FLAG_BE);
    const bool swapped = bigEndian != (std::endian::native == std::endian::big);
    Picture picture =
        makePicture<float>(frame.width, frame.height, formatHasAlpha(formatOf(frame)));
    auto& pixels = std::get<std::vector<float>>(picture.components);
    for (int channel = 0; channel < 4; ++channel) {
        const int component = componentFor(format, channel);
        if (component < 0) {
            fillAlpha(pixels);
            continue;
        }
        const AVComponentDescriptor& place = format.comp[component];
        auto out = static_cast<std::size_t>(channel);
        for (int y = 0; y < frame.height; ++y) {
            const uint8_t* in = frame.data[place.plane] +
                                static_cast<std::ptrdiff_t>(y) * frame.linesize[place.plane] +
                                place.offset;
            for (int x = 0; x < frame.width; ++x, in += place.step, out += 4) {
                pixels[out] = floatAt(in, swapped);
            }
        }
    }
    return picture;
}

template<typename T>
Picture copyRows(const AVFrame& frame, bool hasAlpha) {
    Picture picture = makePicture<T>(frame.width, frame.height, hasAlpha);
    auto& pixels = std::get<std::vector<T>>(picture.components);
    const std::size_t rowLength = componentCount(frame.width, 1);
    for (int y = 0; y < frame.height; ++y) {
        std::memcpy(pixels.data() + static_cast<std::size_t>(y) * rowLength,
                    frame.data[0] + static_cast<std::ptrdiff_t>(y) * frame.linesize[0],
                    rowLength * sizeof(T));
    }
    if (!hasAlpha) {
        fillAlpha(pixels);
    }
    return picture;
}

template<typename T>
void unpremultiply(Picture& picture) {
    auto& pixels = std::get<std::vector<T>>(picture.components);
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
        const double alpha = static_cast<double>(pixels[i + 3]) / componentMax<T>;
        for (std::size_t c = i; c < i + 3; ++c) {
            const double straight = alpha > 0 ? pixels[c] / alpha : 0.0;
            pixels[c] = std::is_floating_point_v<T> ? static_cast<T>(straight)
                                                    : scaleComponent<T>(straight / componentMax<T>);
        }
    }
}

libav::FramePtr toPacked(const AVFrame& frame, AVPixelFormat format, libav::ScalerPtr& scaler,
                         const FrameOrigin& origin) {
    libav::silenceLog();
    libav::forgetReason();
    scaler.reset(sws_getCachedContext(scaler.release(), frame.width, frame.height, formatOf(frame),
                                      frame.width, frame.height, format, scalerFlags, nullptr,
                                      nullptr, nullptr));
    if (scaler == nullptr) {
        throw MediaError(origin.file, origin.place, "its pixel format cannot be converted to RGB",
                         "convert it to PNG, TIFF or a common clip format");
    }
    const int* matrix = sws_getCoefficients(matrixOf(frame));
    constexpr int one = 1 << 16;
    // Refused for formats that have no matrix: nothing is lost then.
    sws_setColorspaceDetails(scaler.get(), matrix, isFullRange(frame) ? 1 : 0, matrix, 1, 0, one,
                             one);
    libav::FramePtr packed = libav::makeFrame(format, frame.width, frame.height);
    const int code = sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height,
                               packed->data, packed->linesize);
    if (code < 0) {
        throw MediaError(origin.file, origin.place,
                         "its pixels cannot be converted (" + libav::reason(code) + ")", "");
    }
    return packed;
}

template<typename T>
Picture readInteger(const AVFrame& frame, libav::ScalerPtr& scaler, const FrameOrigin& origin) {
    const AVPixFmtDescriptor& format = descriptor(formatOf(frame));
    if (isReadByComponent(formatOf(frame))) {
        return readByComponent<T>(frame);
    }
    const AVPixelFormat packed = sizeof(T) == 1 ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGBA64;
    Picture picture =
        copyRows<T>(*toPacked(frame, packed, scaler, origin), formatHasAlpha(formatOf(frame)));
    if (picture.hasAlpha && !isWholeRgb(format) && depthOf(format) <= 16) {
        // The scaler widens alpha by shifting, so that opaque would not stay opaque.
        readComponent(frame, componentFor(format, 3), 3, false,
                      std::get<std::vector<T>>(picture.components));
    }
    return picture;
}

} // namespace

PictureDepth pictureDepth(AVPixelFormat format) {
    const AVPixFmtDescriptor& known = descriptor(format);
    if (isFloatPlanes(known)) {
        return PictureDepth::F32;
    }
    return depthOf(known) > 8 ? PictureDepth::U16 : PictureDepth::U8;
}

bool formatHasAlpha(AVPixelFormat format) {
    return has(descriptor(format), AV_PIX_FMT_FLAG_ALPHA);
}

Picture FrameConverter::convert(const AVFrame& frame, const FrameOrigin& origin) {
    const bool divide = origin.premultiplied && formatHasAlpha(formatOf(frame));
    const auto finish = [divide]<typename T>(Picture picture, T /*depth*/) {
        if (divide) {
            unpremultiply<T>(picture);
        }
        return picture;
    };
    switch (pictureDepth(formatOf(frame))) {
    case PictureDepth::F32:
        return finish(readFloats(frame), float{});
    case PictureDepth::U16:
        return finish(readInteger<std::uint16_t>(frame, m_scaler, origin), std::uint16_t{});
    default:
        return finish(readInteger<std::uint8_t>(frame, m_scaler, origin), std::uint8_t{});
    }
}

Turn turnOf(const std::int32_t* matrix) {
    std::array<std::int32_t, 9> turning{};
    std::copy_n(matrix, turning.size(), turning.begin());
    const double across = static_cast<double>(turning[0]) * turning[4];
    const double along = static_cast<double>(turning[1]) * turning[3];
    Turn turn;
    turn.mirrored = across < along;
    if (turn.mirrored) { // taken back, only the turning is left
        turning[0] = -turning[0];
        turning[1] = -turning[1];
    }
    const double anticlockwise = av_display_rotation_get(turning.data());
    if (std::isnan(anticlockwise)) {
        return {};
    }
    turn.quarters = (4 - static_cast<int>(std::lround(anticlockwise / 90.0))) % 4;
    return turn;
}

Picture turned(const Picture& picture, Turn turn) {
    Picture result = picture;
    result.width = turn.lies() ? picture.height : picture.width;
    result.height = turn.lies() ? picture.width : picture.height;
    const auto pixelAt = [&](int x, int y) {
        const int column = turn.mirrored ? picture.width - 1 - x : x;
        return 4 * (static_cast<std::ptrdiff_t>(y) * picture.width + column);
    };
    const auto sourceOf = [&](int x, int y) {
        switch (turn.quarters) {
        case 1:
            return pixelAt(y, picture.height - 1 - x);
        case 2:
            return pixelAt(picture.width - 1 - x, picture.height - 1 - y);
        case 3:
            return pixelAt(picture.width - 1 - y, x);
        default:
            return pixelAt(x, y);
        }
    };
    std::visit(
        [&](auto& pixels) {
            const auto& from = std::get<std::decay_t<decltype(pixels)>>(picture.components);
            auto out = pixels.begin();
            for (int y = 0; y < result.height; ++y) {
                for (int x = 0; x < result.width; ++x) {
                    out = std::copy_n(from.begin() + sourceOf(x, y), 4, out);
                }
            }
        },
        result.components);
    return result;
}

} // namespace orbel
