#pragma once

#include "host/AlphaHandling.h"
#include "pixel/HiddenColour.h"
#include "pixel/RowKernels.h"
#include "render/FrameTarget.h"

#include <cmath>
#include <cstddef>

namespace orbel {

/// Combines rows of the layer with rows of the picture, in the way that the host carries alpha.
template<class P>
class RowFinisher {
    using T = typename P::Component;

public:
    RowFinisher(const AlphaHandling& alpha, const RowKernels<P>& rows)
        : m_alpha(alpha), m_rowKernels(rows) {}

    /// Makes a row of the picture straight.
    void straighten(T* input, int count) const {
        if (m_alpha.source == SourceAlpha::Premultiplied) {
            m_rowKernels.unPremult(input, count);
        } else if (m_alpha.source == SourceAlpha::Opaque) {
            for (std::ptrdiff_t i = 0; i < count; ++i) {
                input[i * componentsPerPixel + P::FORMAT::alpha] = static_cast<T>(P::MAX_VALUE());
            }
        }
    }

    /// Whether `finishTransparent` stands for `finish` where the layer's alpha is 0. It stays 0
    /// under any opacity but an infinite one.
    [[nodiscard]] bool canFinishTransparent(const LayerFinish& how) const {
        return isFused() && how.code != 0 && std::isfinite(static_cast<float>(how.opacity));
    }
    /// The picture shows through, whatever the colour of the layer, which need not be written.
    void finishTransparent(T* input, T* layer, int count) const {
        m_rowKernels.finishTransparent(input, layer, count);
    }

    /// Straightens the row of the picture, combines both and delivers them.
    void finish(T* input, T* layer, int count, const LayerFinish& how) const {
        if (isFused()) {
            fadeAlone(layer, count, how);
            m_rowKernels.finish[static_cast<std::size_t>(how.code)](
                input, layer, count, static_cast<float>(how.opacity));
            return;
        }
        straighten(input, count);
        combine(input, layer, count, how);
        deliver(input, layer, count);
    }

    /// Combines a straight row of the picture with the layer.
    void combine(const T* input, T* layer, int count, const LayerFinish& how) const {
        fadeAlone(layer, count, how);
        if (const auto composite = m_rowKernels.composite[static_cast<std::size_t>(how.code)];
            composite != nullptr) {
            composite(layer, input, layer, count, static_cast<float>(how.opacity), 1.0F);
        }
    }

    /// Gives both back as the host carries alpha.
    void deliver(T* input, T* layer, int count) const {
        if (m_alpha.source == SourceAlpha::Premultiplied) {
            m_rowKernels.premult(input, count);
        }
        if (m_alpha.output == OutputAlpha::Premultiplied) {
            m_rowKernels.premult(layer, count);
        } else {
            clearHiddenColour<P>(input, layer, count);
        }
    }

private:
    /// Whether one pass over the row does it all.
    [[nodiscard]] bool isFused() const {
        return m_alpha.source == SourceAlpha::Premultiplied &&
               m_alpha.output == OutputAlpha::Premultiplied;
    }
    // Without a code the layer stays alone, under its opacity.
    void fadeAlone(T* layer, int count, const LayerFinish& how) const {
        if (how.code == 0 && how.opacity != 1.0) {
            m_rowKernels.multiplyAlpha(layer, count, static_cast<float>(how.opacity));
        }
    }

    AlphaHandling m_alpha;
    const RowKernels<P>& m_rowKernels;
};

} // namespace orbel
