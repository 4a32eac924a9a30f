// Pixels of 8 bits to and from Y'CbCr, a pixel to a lane of 32 bits.

#if defined(ORBEL_YCBCR8_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_YCBCR8_INL_H
#undef ORBEL_YCBCR8_INL_H
#else
#define ORBEL_YCBCR8_INL_H
#endif

#include "pixel/YCbCrMatrix.h"
#include "pixel/YCbCrRows.h"
#include "pixel/kernels/Lanes-inl.h"

#include <algorithm>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

using Bytes = hn::Rebind<std::uint8_t, Ints>;
using Shorts = hn::Rebind<std::uint16_t, Ints>;

/// Goes through the rows in stretches whose columns, weighed up and down, stay in the cache. Near
/// the end of a row vectors overlap the ones before: they store the same there.
template<class P, bool overBlack>
class YCbCrCoder {
    using Halved = typename YCbCrRows<P>::Halved;
    using Rows = typename YCbCrRows<P>::Rows;

public:
    static bool canCode(int pixels) { return pixels >= 2 * lanes; }

    static void code(const Rows& rows, int pixels, const Halved& out) {
        YCbCrCoder coder(rows, pixels, out);
        for (int first = 0; first < pixels;) {
            const bool isLast = pixels - first < stretch + 2 * lanes;
            const int end = isLast ? pixels : first + stretch;
            coder.weighColumns(first, end);
            coder.codeChroma(first, end);
            first = end;
        }
    }

private:
    static constexpr int lanes = PIXELS_AT_ONCE;
    static constexpr int stretch = 512;
    static constexpr int margin = lanes + 2;
    using Pairs = hn::Repartition<std::int16_t, Ints>;

    YCbCrCoder(const Rows& rows, int pixels, const Halved& out)
        : m_rows(rows), m_pixels(pixels), m_out(out) {}

    /// Two components of a pixel, in the halves of a lane: first and third, or second and fourth.
    struct PixelV {
        WordV even;
        WordV odd;
    };

    template<int component>
    static HWY_INLINE IntV component8(const PixelV& pixel) {
        const WordV half = component % 2 == 0 ? pixel.even : pixel.odd;
        return hn::BitCast(Ints(), component < 2 ? hn::And(half, hn::Set(Words(), 0xFFFFU))
                                                 : hn::ShiftRight<16>(half));
    }
    /// Of what may be negative.
    template<int component>
    static HWY_INLINE IntV signedComponent(WordV even, WordV odd) {
        const IntV half = hn::BitCast(Ints(), component % 2 == 0 ? even : odd);
        return hn::ShiftRight<16>(component < 2 ? hn::ShiftLeft<16>(half) : half);
    }

    /// Times alpha by 255, rounded, in halves of lanes.
    static HWY_INLINE WordV faded(WordV colours, WordV alphas) {
        const hn::Repartition<std::uint16_t, Words> halves;
        const auto product =
            hn::Add(hn::Mul(hn::BitCast(halves, colours), hn::BitCast(halves, alphas)),
                    hn::Set(halves, std::uint16_t{128}));
        const auto sum = hn::Add(product, hn::ShiftRight<8>(product));
        return hn::BitCast(Words(), hn::ShiftRight<8>(sum));
    }

    HWY_INLINE PixelV load(std::size_t row, int x) const {
        const auto bytes = hn::LoadU(hn::Repartition<std::uint8_t, Words>(),
                                     m_rows[row] + std::ptrdiff_t{x} * componentsPerPixel);
        const WordV pixels = hn::BitCast(Words(), bytes);
        const WordV low = hn::Set(Words(), 0x00FF00FFU);
        PixelV pixel{hn::And(pixels, low), hn::And(hn::ShiftRight<8>(pixels), low)};
        if constexpr (overBlack) {
            constexpr int up = P::FORMAT::alpha * 8;
            const WordV alpha = hn::And(hn::ShiftRight<up>(pixels), hn::Set(Words(), 255U));
            const WordV alphas = hn::Or(alpha, hn::ShiftLeft<16>(alpha));
            pixel = {faded(pixel.even, alphas), faded(pixel.odd, alphas)};
        }
        return pixel;
    }

    static HWY_INLINE IntV weighed(IntV red, IntV green, IntV blue, std::int32_t byRed,
                                   std::int32_t byGreen, std::int32_t byBlue, std::int32_t base) {
        const Ints d;
        const IntV some = hn::Add(hn::Mul(red, hn::Set(d, byRed)), hn::Set(d, base));
        return hn::Add(
            some, hn::Add(hn::Mul(green, hn::Set(d, byGreen)), hn::Mul(blue, hn::Set(d, byBlue))));
    }

    static HWY_INLINE void codeLuma(const PixelV& pixel, std::uint8_t* luma) {
        using Format = typename P::FORMAT;
        const IntV sum = weighed(component8<Format::red>(pixel), component8<Format::green>(pixel),
                                 component8<Format::blue>(pixel), Bt709::lumaRed, Bt709::lumaGreen,
                                 Bt709::lumaBlue, Bt709::lumaBase);
        hn::StoreU(hn::DemoteTo(Bytes(), hn::ShiftRight<Bt709::lumaBits>(sum)), Bytes(), luma);
    }

    static HWY_INLINE WordV weighedUp(WordV above, WordV top, WordV bottom, WordV below) {
        const Pairs d;
        const auto middle = hn::Add(hn::BitCast(d, top), hn::BitCast(d, bottom));
        const auto beside = hn::Add(hn::BitCast(d, above), hn::BitCast(d, below));
        const auto nine = hn::Add(hn::ShiftLeft<3>(middle), middle);
        return hn::BitCast(Words(), hn::Sub(nine, beside));
    }

    /// Codes luma and weighs the columns `first` to `end`, and those beside them.
    HWY_INLINE void weighColumns(int first, int end) {
        m_first = first;
        const int until = std::min(end + 2, m_pixels);
        for (int x = std::max(first - 2, 0); x < until; x += lanes) {
            const int at = std::min(x, m_pixels - lanes);
            const PixelV above = load(0, at);
            const PixelV top = load(1, at);
            const PixelV bottom = load(2, at);
            const PixelV below = load(3, at);
            codeLuma(top, m_out.top + at);
            codeLuma(bottom, m_out.bottom + at);
            hn::StoreU(weighedUp(above.even, top.even, bottom.even, below.even), Words(),
                       column(m_even, at));
            hn::StoreU(weighedUp(above.odd, top.odd, bottom.odd, below.odd), Words(),
                       column(m_odd, at));
        }
        if (first == 0) {
            *column(m_even, -1) = *column(m_even, 0);
            *column(m_odd, -1) = *column(m_odd, 0);
        }
        if (end == m_pixels) {
            *column(m_even, end) = *column(m_even, end - 1);
            *column(m_odd, end) = *column(m_odd, end - 1);
        }
    }

    HWY_INLINE std::uint32_t* column(std::uint32_t* columns, int x) const {
        return columns + (x - m_first + margin);
    }

    /// Sums of the two columns in the middle, and of the two beside them.
    struct Across {
        WordV middle;
        WordV beside;
    };

    static HWY_INLINE Across across(const std::uint32_t* at) {
        const Words d;
        const Pairs halves;
        const auto lower = hn::LoadU(d, at);
        const auto upper = hn::LoadU(d, at + lanes);
        const auto before = hn::ConcatOdd(d, hn::LoadU(d, at + lanes - 2), hn::LoadU(d, at - 2));
        const auto behind = hn::ConcatEven(d, hn::LoadU(d, at + lanes + 2), hn::LoadU(d, at + 2));
        const auto even = hn::ConcatEven(d, upper, lower);
        const auto odd = hn::ConcatOdd(d, upper, lower);
        const auto sum = [&](WordV a, WordV b) HWY_ATTR {
            return hn::BitCast(d, hn::Add(hn::BitCast(halves, a), hn::BitCast(halves, b)));
        };
        return {sum(even, odd), sum(before, behind)};
    }

    template<int component>
    static HWY_INLINE IntV weighedAcross(const Across& even, const Across& odd) {
        const IntV middle = signedComponent<component>(even.middle, odd.middle);
        const IntV beside = signedComponent<component>(even.beside, odd.beside);
        return hn::Sub(hn::Add(hn::ShiftLeft<3>(middle), middle), beside);
    }

    static HWY_INLINE void storeChroma(IntV sum, std::uint8_t* chroma) {
        hn::StoreU(hn::DemoteTo(Bytes(), hn::ShiftRight<Bt709::chromaBits>(sum)), Bytes(), chroma);
    }

    HWY_INLINE void codeChroma(int first, int end) {
        using Format = typename P::FORMAT;
        for (int x = first; x < end; x += 2 * lanes) {
            const int at = std::min(x, end - 2 * lanes);
            const Across even = across(column(m_even, at));
            const Across odd = across(column(m_odd, at));
            const IntV red = weighedAcross<Format::red>(even, odd);
            const IntV green = weighedAcross<Format::green>(even, odd);
            const IntV blue = weighedAcross<Format::blue>(even, odd);
            storeChroma(weighed(red, green, blue, Bt709::cbRed, Bt709::cbGreen, Bt709::cbBlue,
                                Bt709::chromaBase),
                        m_out.cb + at / 2);
            storeChroma(weighed(red, green, blue, Bt709::crRed, Bt709::crGreen, Bt709::crBlue,
                                Bt709::chromaBase),
                        m_out.cr + at / 2);
        }
    }

    const Rows& m_rows;
    int m_pixels;
    const Halved& m_out;
    int m_first = 0;
    // Of the columns of a stretch, from `margin` before it.
    std::uint32_t m_even[stretch + 2 * lanes + 2 * margin];
    std::uint32_t m_odd[stretch + 2 * lanes + 2 * margin];
};

/// Rows that are shorter than the vectors are left to the reference.
template<class P, bool overBlack>
void codeRows(const typename YCbCrRows<P>::Rows& rows, int pixels,
              const typename YCbCrRows<P>::Halved& out) {
    if (YCbCrCoder<P, overBlack>::canCode(pixels)) {
        YCbCrCoder<P, overBlack>::code(rows, pixels, out);
    } else if (overBlack) {
        yCbCrRows<P>(0).codeOverBlack(rows, pixels, out);
    } else {
        yCbCrRows<P>(0).code(rows, pixels, out);
    }
}

template<class P>
class YCbCrDecoder {
    using Samples = typename YCbCrRows<P>::Samples;

public:
    static void decode(const Samples& samples, int pixels, const YCbCrWeights& weights,
                       std::uint8_t* row) {
        int x = 0;
        for (; x + lanes <= pixels; x += lanes) {
            decodeBlock({samples.luma + x, samples.cb + x, samples.cr + x}, weights,
                        row + std::ptrdiff_t{x} * componentsPerPixel);
        }
        if (x < pixels) {
            decodeRest({samples.luma + x, samples.cb + x, samples.cr + x}, pixels - x, weights,
                       row + std::ptrdiff_t{x} * componentsPerPixel);
        }
    }

private:
    static constexpr int lanes = PIXELS_AT_ONCE;

    static HWY_INLINE IntV load(const std::uint16_t* samples, std::int32_t zero) {
        const IntV wide = hn::PromoteTo(Ints(), hn::LoadU(Shorts(), samples));
        return hn::Sub(wide, hn::Set(Ints(), zero));
    }
    static HWY_INLINE IntV times(IntV samples, std::int32_t weight) {
        return hn::Mul(samples, hn::Set(Ints(), weight));
    }
    template<int component>
    static HWY_INLINE WordV placed(IntV sum) {
        const IntV value = hn::ShiftRight<decodedBits>(sum);
        const IntV limited = hn::Min(hn::Max(value, hn::Zero(Ints())), hn::Set(Ints(), 255));
        return hn::ShiftLeft<component * 8>(hn::BitCast(Words(), limited));
    }

    static HWY_INLINE void decodeBlock(const Samples& samples, const YCbCrWeights& weights,
                                       std::uint8_t* row) {
        using Format = typename P::FORMAT;
        const IntV half = hn::Set(Ints(), 1 << (decodedBits - 1));
        const IntV luma = hn::Add(times(load(samples.luma, weights.black), weights.luma), half);
        const IntV cb = load(samples.cb, 32768);
        const IntV cr = load(samples.cr, 32768);
        const IntV green = hn::Add(times(cb, weights.greenByCb), times(cr, weights.greenByCr));
        const WordV red = placed<Format::red>(hn::Add(luma, times(cr, weights.redByCr)));
        const WordV blue = placed<Format::blue>(hn::Add(luma, times(cb, weights.blueByCb)));
        const WordV opaque = hn::Set(Words(), 255U << (Format::alpha * 8));
        const WordV pixels =
            hn::Or(hn::Or(red, placed<Format::green>(hn::Add(luma, green))), hn::Or(blue, opaque));
        const hn::Repartition<std::uint8_t, Words> bytes;
        hn::StoreU(hn::BitCast(bytes, pixels), bytes, row);
    }

    static void decodeRest(const Samples& samples, int pixels, const YCbCrWeights& weights,
                           std::uint8_t* row) {
        std::uint16_t in[3][lanes] = {};
        std::uint8_t out[lanes * componentsPerPixel];
        const auto count = static_cast<std::size_t>(pixels);
        std::memcpy(in[0], samples.luma, count * sizeof(std::uint16_t));
        std::memcpy(in[1], samples.cb, count * sizeof(std::uint16_t));
        std::memcpy(in[2], samples.cr, count * sizeof(std::uint16_t));
        decodeBlock({in[0], in[1], in[2]}, weights, out);
        std::memcpy(row, out, count * componentsPerPixel);
    }
};

template<class P>
void enterYCbCr(YCbCrRows<P>& table) {
    table.code = &codeRows<P, false>;
    table.codeOverBlack = &codeRows<P, true>;
    table.decode = &YCbCrDecoder<P>::decode;
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
