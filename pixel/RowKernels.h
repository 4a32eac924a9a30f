#pragma once

#include "pixel/PixelTraits.h"
#include "pixel/TransferCodes.h"

#include <array>
#include <cstddef>

namespace orbel {

/// The amounts of a colour modulation by alpha.
struct HslAmounts {
    double lowAlphaValue;      ///< added to the value, the more transparent the more
    double lowAlphaHueDegrees; ///< added to the hue, the more transparent the more
    double highAlphaSat;       ///< added to the saturation, the more opaque the more

    /// Whether the modulation changes anything; without amounts it is not to be run.
    [[nodiscard]] bool any() const {
        return lowAlphaValue != 0.0 || lowAlphaHueDegrees != 0.0 || highAlphaSat != 0.0;
    }
};

/// What can be done to a row of pixels: one immutable table per pixel format and acceleration
/// level, of plain functions that all levels fill with the same effect to the byte. `row` and the
/// like point at the first component of a run of `pixels` pixels, aligned for the component, of
/// which none is allowed to be negative. Rows that are read and written may be the same, but may
/// not overlap otherwise.
template<typename P>
struct RowKernels {
    using T = typename P::Component;
    /// Combines `front` with `behind` into `out`, which may be one of them. Opacities are
    /// fractions.
    using Composite = void (*)(const T* front, const T* behind, T* out, int pixels, float opacity1,
                               float opacity2);
    /// Un-premultiplies `input`, combines `layer`, in front, with it into `layer`, and
    /// premultiplies both. The opacity is that of the layer.
    using Finish = void (*)(T* input, T* layer, int pixels, float opacity);

    static constexpr int codes = TRANSFER_CODES;

    /// Sets every pixel to one, given in the order of memory.
    void (*fill)(T* row, int pixels, const T* pixel);
    /// Divides colours by alpha; see `UnPremult`.
    void (*unPremult)(T* row, int pixels);
    /// Multiplies colours by alpha; see `Premult`.
    void (*premult)(T* row, int pixels);
    /// Multiplies alphas by a fraction; see `MultiplyAlpha`.
    void (*multiplyAlpha)(T* row, int pixels, float amount);
    /// Modulates colours by alpha, whatever the amounts; see `HSLModulate`.
    void (*hslModulate)(T* row, int pixels, const HslAmounts& amounts);
    /// Cross-fades `components` single components; see `BlendImages`, which alone knows that 1.0
    /// copies and 0.0 does nothing.
    void (*blendImages)(const T* from, T* to, std::ptrdiff_t components, float amount);
    /// By code of `TransferComposite`; null where a code does nothing.
    std::array<Composite, codes> composite;
    /// By code of `TransferComposite`; never null. Where a code does nothing, only the alpha passes
    /// are made.
    std::array<Finish, codes> finish;
    /// The same where the layer's alpha is 0 over the whole run, for every code but 1 that has a
    /// composite and opacities that are finite and not negative: the layer is not read and becomes
    /// the picture.
    void (*finishTransparent)(T* input, T* layer, int pixels);
};

/// The functions of a level; levels above the best one give the best.
template<typename P>
const RowKernels<P>& rowKernels(int level);

/// The functions of the level in use.
template<typename P>
const RowKernels<P>& rowKernels();

#define ORBEL_EXTERN_ROW_KERNELS(P)                                                                \
    extern template const RowKernels<P>& rowKernels<P>(int level);                                 \
    extern template const RowKernels<P>& rowKernels<P>();
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_EXTERN_ROW_KERNELS)
#undef ORBEL_EXTERN_ROW_KERNELS

} // namespace orbel
