// Stamps in the 8-bit formats: a pixel is a lane of 32 bits.

#if defined(ORBEL_STAMP8_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_STAMP8_INL_H
#undef ORBEL_STAMP8_INL_H
#else
#define ORBEL_STAMP8_INL_H
#endif

#include "pixel/kernels/Colour-inl.h"
#include "render/kernels/Ring8-inl.h"

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// A stamp on pixels of four bytes. Alphas are computed in single precision with a bound on the
/// error; where that bound leaves open which whole number an alpha comes to, the pixel is computed
/// again as `HQDrawSphere` does.
template<class P>
class Stamp8 : Lanes8<P> {
    using typename Lanes8<P>::U32;
    using typename Lanes8<P>::I32;
    using Lanes8<P>::SHIFT;
    using Lanes8<P>::ALPHA;
    using Lanes8<P>::pixelsOf;
    using Lanes8<P>::between;

public:
    /// Makes opaque what the stamp covers. Of every row the run that was filled last is remembered,
    /// and only what a stamp adds to it is written: stamps of a stroke cover much of the same.
    void fillSolid(const StampRows& rows, const StampSpans& spans) {
        for (int k = 0; k < spans.count; ++k) {
            const int y = spans.first + k;
            Run run{spans.solidLeft[k], spans.solidRight[k]};
            Run& filled = m_filled[static_cast<std::size_t>(y - rows.first)];
            if (run.left > run.right || (run.left >= filled.left && run.right <= filled.right)) {
                continue;
            }
            const bool narrow = run.right - run.left < 2 * fewestPixels();
            const bool apart = narrow || run.left > filled.right + 1 || run.right + 1 < filled.left;
            const Run known = apart ? Run{run.right + 1, run.right} : filled;
            run.left = std::min(run.left, known.left);
            run.right = std::max(run.right, known.right);
            extendSolid(rows, y, known, run);
            filled = run;
        }
    }

    /// Paints the whole stamp, or only what `fillSolid` has left out.
    void paint(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans,
               bool solidIsFilled) {
        if (!solidIsFilled) {
            coverSolid(rows, stamp, spans);
        }
        if (stamp.brush.inner > 0.0) {
            Ring8<P, false>(rows, stamp).paint(spans, solidIsFilled);
        } else {
            Ring8<P, true>(rows, stamp).paint(spans, solidIsFilled);
        }
    }

    /// Whether a stamp is so small that to find its spans would take longer than to paint it as it
    /// is. Where a core does not cover fully, sums may be whole numbers too often for that.
    static bool goesWithoutSpans(const PlacedStamp& stamp) {
        const int width = stamp.box.right - stamp.box.left + 1;
        return width <= MOST_COLUMNS &&
               (stamp.amount == P::MAX_VALUE() || !(stamp.brush.inner > 0.0));
    }

    /// Paints such a stamp.
    static void paintSmall(const StampRows& rows, const PlacedStamp& stamp) {
        if (stamp.brush.inner > 0.0) {
            Ring8<P, false>(rows, stamp).paintBox();
        } else {
            Ring8<P, true>(rows, stamp).paintBox();
        }
    }

    /// How far from the centre pixels can change: not where full cover of a transparent pixel would
    /// come to less than a half. Near the rim the cover is at most 3 s s, at a depth of s widths of
    /// the ring.
    static double reach(const PlacedStamp& stamp) {
        const double depth = std::min(std::sqrt(0.499 / 3 / stamp.amount), 1.0);
        return stamp.brush.outer - depth * (stamp.brush.outer - stamp.brush.inner);
    }

    /// Pixels that a raster must have in a row.
    static int fewestPixels() { return static_cast<int>(hn::Lanes(U32())); }

private:
    static constexpr int MOST_COLUMNS = 32; // of a stamp that is painted without its spans

    struct Run {
        int left;
        int right;
    };

    static std::array<Run, StampKernels::mostRows> nothingFilled() {
        std::array<Run, StampKernels::mostRows> filled;
        filled.fill({0, -2});
        return filled;
    }

    /// Makes opaque what `run` has beyond `known`, of which it is an extension.
    static void extendSolid(const StampRows& rows, int y, const Run& known, const Run& run) {
        const U32 du;
        const int lanes = static_cast<int>(hn::Lanes(du));
        const auto full = hn::Set(du, ALPHA);
        const auto fill = [du](std::uint32_t* at, hn::Vec<U32> added)
                              HWY_ATTR { hn::StoreU(hn::Or(hn::LoadU(du, at), added), du, at); };
        std::uint32_t* const row = pixelsOf(rows, y);
        const int last = run.right + 1 - lanes; // where a vector within the run may begin
        if (last < run.left) {
            const int start = std::min(run.left, rows.width - lanes);
            const auto within = hn::RebindMask(du, between(I32(), start, run.left, run.right));
            fill(row + start, hn::IfThenElseZero(within, full));
            return;
        }
        for (int i = run.left; i < known.left; i += lanes) {
            fill(row + std::min(i, last), full);
        }
        for (int i = last; i + lanes - 1 > known.right; i -= lanes) {
            fill(row + std::max(i, run.left), full);
        }
    }

    void fillTable(double amount) {
        for (std::size_t a = 0; a < 255; ++a) {
            m_alphas[a] = coveredAlpha<P>(static_cast<std::uint8_t>(a), 1.0, amount);
        }
        m_alphas[255] = 255;
        m_amount = amount;
    }

    /// Looks up what full cover comes to where the stamp covers fully.
    void coverSolid(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans) {
        const U32 du;
        const int lanes = static_cast<int>(hn::Lanes(du));
        for (int k = 0; k < spans.count; ++k) {
            int i = spans.solidLeft[k];
            const int right = spans.solidRight[k];
            if (i <= right && m_amount != stamp.amount) {
                fillTable(stamp.amount);
            }
            std::uint8_t* const row = rows.row(spans.first + k);
            for (; i + lanes - 1 <= right; i += lanes) {
                std::uint32_t* const at = reinterpret_cast<std::uint32_t*>(row) + i;
                const auto pixel = hn::LoadU(du, at);
                const auto shifted = hn::ShiftRight<SHIFT>(pixel);
                const auto alpha = SHIFT == 24 ? shifted : hn::And(shifted, hn::Set(du, 255));
                const auto found = hn::GatherIndex(du, m_alphas.data(), hn::BitCast(I32(), alpha));
                hn::StoreU(hn::Or(hn::And(pixel, hn::Set(du, ~ALPHA)), hn::ShiftLeft<SHIFT>(found)),
                           du, at);
            }
            for (; i <= right; ++i) {
                std::uint8_t& alpha = row[i * 4 + P::FORMAT::alpha];
                alpha = static_cast<std::uint8_t>(m_alphas[alpha]);
            }
        }
    }

    std::array<Run, StampKernels::mostRows> m_filled = nothingFilled();
    double m_amount = -1.0;                    // of the stamps that the table stands for
    std::array<std::uint32_t, 256> m_alphas{}; // what full cover makes of each alpha
};

/// Replaces pixels by those of a table that stand for their alphas. Most are as transparent as
/// all around them.
template<class P>
void recolour8(std::uint8_t* row, int pixels, const std::uint32_t* byAlpha) {
    using U32 = typename Lanes8<P>::U32;
    using I32 = typename Lanes8<P>::I32;
    const U32 du;
    const int lanes = static_cast<int>(hn::Lanes(du));
    const auto low = hn::Set(du, 255U);
    const auto blank = hn::Set(du, byAlpha[0]);
    auto* at = reinterpret_cast<std::uint32_t*>(row);
    for (; pixels >= lanes; pixels -= lanes, at += lanes) {
        const auto alpha = hn::And(hn::ShiftRight<Lanes8<P>::SHIFT>(hn::LoadU(du, at)), low);
        const bool isBlank = hn::AllTrue(du, hn::Eq(alpha, hn::Zero(du)));
        hn::StoreU(isBlank ? blank : hn::GatherIndex(du, byAlpha, hn::BitCast(I32(), alpha)), du,
                   at);
    }
    for (auto* rest = reinterpret_cast<std::uint8_t*>(at); pixels > 0; --pixels, rest += 4) {
        std::memcpy(rest, byAlpha + rest[P::FORMAT::alpha], 4);
    }
}

/// Takes pixels into a mean as `blendImages` does. Where neither has anything but what is all
/// around them, what that comes to is known.
template<class P>
void takeIntoMean8(const std::uint8_t* sample, std::uint8_t* mean, int pixels,
                   const MeanStep& step) {
    using U32 = typename Lanes8<P>::U32;
    using I32 = typename Lanes8<P>::I32;
    const U32 du;
    const CrossFadeBlock<P> fade{hn::Set(Floats(), step.amount),
                                 hn::Set(Floats(), 1.0F - step.amount)};
    const auto blank = hn::Set(du, step.blank);
    const auto before = hn::Set(du, step.before);
    HWY_ALIGN std::uint32_t row[hn::MaxLanes(U32())];
    auto* const coloured = reinterpret_cast<std::uint8_t*>(row);
    const auto take = [&](std::uint32_t* to) HWY_ATTR {
        auto pixel = hn::Load(du, row);
        const auto drawn = hn::Or(hn::Xor(pixel, blank), hn::Xor(hn::LoadU(du, to), before));
        if (hn::AllTrue(du, hn::Eq(drawn, hn::Zero(du)))) {
            hn::StoreU(hn::Set(du, step.after), du, to);
            return;
        }
        if (step.byAlpha != nullptr) {
            const auto alpha = hn::And(hn::ShiftRight<Lanes8<P>::SHIFT>(pixel), hn::Set(du, 255U));
            hn::Store(hn::GatherIndex(du, step.byAlpha, hn::BitCast(I32(), alpha)), du, row);
        }
        fade(coloured, reinterpret_cast<std::uint8_t*>(to), reinterpret_cast<std::uint8_t*>(to));
    };
    const int lanes = static_cast<int>(hn::Lanes(du));
    for (; pixels >= lanes;
         pixels -= lanes, sample += std::ptrdiff_t{4} * lanes, mean += std::ptrdiff_t{4} * lanes) {
        hn::Store(hn::LoadU(du, reinterpret_cast<const std::uint32_t*>(sample)), du, row);
        take(reinterpret_cast<std::uint32_t*>(mean));
    }
    if (pixels > 0) {
        const auto bytes = static_cast<std::size_t>(pixels) * 4;
        HWY_ALIGN std::uint32_t rest[hn::MaxLanes(U32())] = {};
        std::memset(row, 0, sizeof(row));
        std::memcpy(row, sample, bytes);
        std::memcpy(rest, mean, bytes);
        take(rest);
        std::memcpy(mean, rest, bytes);
    }
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
