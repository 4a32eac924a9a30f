// Finishing rows on vectors: un-premultiply, composite and premultiply in one visit of a pixel.

#if defined(ORBEL_FINISH_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_FINISH_INL_H
#undef ORBEL_FINISH_INL_H
#else
#define ORBEL_FINISH_INL_H
#endif

#include "pixel/kernels/Blend-inl.h"
#include "pixel/kernels/Modulate-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

/// The finish of pixels that the layer leaves alone.
template<typename P>
struct TransparentBlock {
    using T = typename P::Component;

    HWY_INLINE void operator()(T* input, T* layer) const {
        using A = VectorOf<P>;
        if constexpr (sizeof(T) == 1) {
            if (finishOpaque(input, layer)) {
                return;
            }
        }
        const PixelsOf<P> p = unPremultiplied(loadPixels<P>(input));
        const PixelsOf<P> finished = premultiplied(p);
        storePixels<P>(input, finished);
        if constexpr (A::isInteger) {
            storePixels<P>(layer, finished);
        } else {
            // An infinite alpha becomes NaN in the layer.
            const auto alpha = hn::Sub(p.a, A::multiply(hn::Zero(A::tag), p.a));
            const auto same = hn::Eq(hn::BitCast(Ints(), alpha), hn::BitCast(Ints(), p.a));
            if (hn::AllTrue(Ints(), same)) {
                storePixels<P>(layer, finished);
            } else {
                storePixels<P>(layer, premultiplied<A>({p.r, p.g, p.b, alpha}));
            }
        }
    }

private:
    /// Opaque pixels, as bytes: multiplied by full alpha, colours above 128 lose one. Returns
    /// whether all pixels were opaque; else nothing was done.
    static HWY_INLINE bool finishOpaque(T* input, T* layer) {
        const hn::Repartition<T, Words> bytes;
        const WordV alphas = hn::Set(Words(), 255U << (8 * P::FORMAT::alpha));
        const auto pixels = hn::LoadU(bytes, input);
        const WordV words = hn::BitCast(Words(), pixels);
        if (!hn::AllTrue(Words(), hn::Eq(hn::And(words, alphas), alphas))) {
            return false;
        }
        const WordV ones = hn::AndNot(alphas, hn::Set(Words(), 0x01010101U));
        const auto above = hn::SaturatedSub(pixels, hn::Set(bytes, T{128}));
        const auto less = hn::Min(above, hn::BitCast(bytes, ones));
        const auto finished = hn::Sub(pixels, less);
        hn::StoreU(finished, bytes, input);
        hn::StoreU(finished, bytes, layer);
        return true;
    }
};

/// The finish of all others, for an opacity between 0 and 1.
template<typename P, class Mode>
struct FinishBlock {
    using T = typename P::Component;
    float opacity;

    HWY_INLINE void operator()(T* input, T* layer) const {
        using A = VectorOf<P>;
        const PixelsOf<P> front = loadPixels<P>(layer);
        if (hn::AllTrue(A::tag, hn::Eq(front.a, hn::Zero(A::tag)))) {
            TransparentBlock<P>()(input, layer);
            return;
        }
        PixelsOf<P> behind = loadPixels<P>(input);
        if (!(sizeof(T) != 2 && isOpaque(behind))) {
            behind = unPremultiplied(behind);
        }
        const PixelsOf<P> c = combined<A, Mode>(front, behind, opacity, 1.0F);
        storePixels<P>(input, premultiplied(behind));
        storePixels<P>(layer, premultiplied(c));
    }
};

/// The steps of finishing one after another, without a way through memory in between.
template<typename P, class Mode>
struct JointBlock {
    using T = typename P::Component;
    float opacity;

    HWY_INLINE void operator()(T* input, T* layer) const {
        const PixelsOf<P> behind = unPremultiplied(loadPixels<P>(input));
        const PixelsOf<P> c =
            combined<VectorOf<P>, Mode>(loadPixels<P>(layer), behind, opacity, 1.0F);
        storePixels<P>(input, premultiplied(behind));
        storePixels<P>(layer, premultiplied(c));
    }
};

/// The same for "behind", where the picture lies in front.
template<typename P>
struct JointBehindBlock {
    using T = typename P::Component;
    float opacity;

    HWY_INLINE void operator()(T* input, T* layer) const {
        const PixelsOf<P> picture = unPremultiplied(loadPixels<P>(input));
        const PixelsOf<P> c = combinedBehind(loadPixels<P>(layer), picture, opacity, 1.0F);
        storePixels<P>(input, premultiplied(picture));
        storePixels<P>(layer, premultiplied(c));
    }
};

template<typename P, class Mode>
struct CompositeBlock {
    using T = typename P::Component;
    float opacity1;
    float opacity2;

    HWY_INLINE void operator()(const T* front, const T* behind, T* out) const {
        storePixels<P>(out, combined<VectorOf<P>, Mode>(loadPixels<P>(front), loadPixels<P>(behind),
                                                        opacity1, opacity2));
    }
};

template<typename P>
struct BehindBlock {
    using T = typename P::Component;
    float opacity1;
    float opacity2;

    HWY_INLINE void operator()(const T* back, const T* front, T* out) const {
        storePixels<P>(
            out, combinedBehind(loadPixels<P>(back), loadPixels<P>(front), opacity1, opacity2));
    }
};

/// Opacities that leave components out of range are left to the reference.
template<typename P, int code, class Block>
struct CompositeKernel {
    using T = typename P::Component;

    static void composite(const T* front, const T* behind, T* out, int pixels, float opacity1,
                          float opacity2) {
        if (isOrdinary<P>(opacity1) && isOrdinary<P>(opacity2)) {
            forEachBlock<T>(Block{opacity1, opacity2}, front, behind, out, pixels);
        } else {
            rowReference<P>().composite[code](front, behind, out, pixels, opacity1, opacity2);
        }
    }
};

/// Leaves the layer as it is.
template<typename P>
void compositeNothing(const typename P::Component*, const typename P::Component*,
                      typename P::Component*, int, float, float) {}

/// The steps of finishing one after another, for as many pixels as stay in the nearest cache.
template<typename P, typename RowKernels<P>::Composite composite>
void finishInSteps(typename P::Component* input, typename P::Component* layer, int pixels,
                   float opacity) {
    using Colours = ColourKernels<P>;
    constexpr int most = 256;
    while (pixels > 0) {
        const int now = HWY_MIN(pixels, most);
        Colours::unPremult(input, now);
        composite(layer, input, layer, now, opacity, 1.0F);
        Colours::premult(input, now);
        Colours::premult(layer, now);
        input += componentsPerPixel * now;
        layer += componentsPerPixel * now;
        pixels -= now;
    }
}

template<typename P>
struct FinishKernels {
    using T = typename P::Component;

    static void finishTransparent(T* input, T* layer, int pixels) {
        constexpr TransparentBlock<P> kernel;
        for (; pixels >= PIXELS_AT_ONCE; pixels -= PIXELS_AT_ONCE) {
            fetchAhead(layer);
            kernel(input, layer);
            input += componentsPerPixel * PIXELS_AT_ONCE;
            layer += componentsPerPixel * PIXELS_AT_ONCE;
        }
        forEachBlock(kernel, input, layer, pixels);
    }

    template<class Block>
    static void finishJointly(T* input, T* layer, int pixels, float opacity) {
        forEachBlock(Block{opacity}, input, layer, pixels);
    }

    static void finishInFront(T* input, T* layer, int pixels, float opacity) {
        if (isFraction(opacity)) {
            forEachBlock(FinishBlock<P, InFront>{opacity}, input, layer, pixels);
        } else {
            rowReference<P>().finish[TRANSFER_IN_FRONT](input, layer, pixels, opacity);
        }
    }
};

template<typename P>
void enterColours(RowKernels<P>& table) {
    ColourKernels<P>::enter(table);
    table.hslModulate = &hslModulate<P>;
    table.finishTransparent = &FinishKernels<P>::finishTransparent;
}

/// Any code of a mode: they all do the same.
constexpr int codeOf(TransferMode mode) {
    int code = 0;
    forEachCodeOf(mode, [&code](std::size_t one) { code = static_cast<int>(one); });
    return code;
}

template<typename P>
void enter(RowKernels<P>& table, TransferMode mode, typename RowKernels<P>::Composite composite,
           typename RowKernels<P>::Finish finish) {
    forEachCodeOf(mode, [&](std::size_t code) {
        table.composite[code] = composite;
        table.finish[code] = finish;
    });
}

/// Float components take long to be sorted, so that fewer visits of a pixel are worth more code,
/// unless `isLong` says that it would be a lot.
template<typename P, TransferMode mode, class Block, class Joint, bool isLong = false>
void enterComposite(RowKernels<P>& table) {
    using Kernel = CompositeKernel<P, codeOf(mode), Block>;
    if constexpr (P::is32Bit() && !isLong) {
        enter(table, mode, &Kernel::composite, &FinishKernels<P>::template finishJointly<Joint>);
    } else {
        enter(table, mode, &Kernel::composite, &finishInSteps<P, &Kernel::composite>);
    }
}

template<typename P, TransferMode mode, class Mode>
void enterMode(RowKernels<P>& table) {
    enterComposite<P, mode, CompositeBlock<P, Mode>, JointBlock<P, Mode>,
                   Mode::kind == ModeKind::NON_SEPARABLE>(table);
}

template<typename P>
void enterModes(RowKernels<P>& table) {
    table.finish.fill(&finishInSteps<P, &compositeNothing<P>>);
    enterComposite<P, TransferMode::Behind, BehindBlock<P>, JointBehindBlock<P>>(table);
    enterMode<P, TransferMode::InFront, InFront>(table);
    enterMode<P, TransferMode::Plus, Plus>(table);
    enterMode<P, TransferMode::Multiply, Multiply>(table);
    enterMode<P, TransferMode::Screen, Screen>(table);
    enterMode<P, TransferMode::Overlay, Overlay>(table);
    enterMode<P, TransferMode::SoftLight, SoftLight>(table);
    enterMode<P, TransferMode::HardLight, HardLight>(table);
    enterMode<P, TransferMode::Darken, Darken>(table);
    enterMode<P, TransferMode::Lighten, Lighten>(table);
    enterMode<P, TransferMode::Difference, Difference>(table);
    enterMode<P, TransferMode::ColourDodge, ColourDodge>(table);
    enterMode<P, TransferMode::ColourBurn, ColourBurn>(table);
    enterMode<P, TransferMode::Exclusion, Exclusion>(table);
    enterMode<P, TransferMode::Hue, Hue>(table);
    enterMode<P, TransferMode::Saturation, Saturation>(table);
    enterMode<P, TransferMode::Colour, Colour>(table);
    enterMode<P, TransferMode::Luma, Luma>(table);
    enter(table, TransferMode::ScreenSpecial, table.composite[TRANSFER_SCREEN],
          table.finish[TRANSFER_SCREEN]);
    table.finish[TRANSFER_IN_FRONT] = &FinishKernels<P>::finishInFront;
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
