#pragma once

namespace orbel {

/// How the pixels of a picture that comes from a host carry their alpha.
enum class SourceAlpha {
    Premultiplied, ///< the colour is already multiplied by the alpha
    Straight,      ///< the colour stands on its own
    Opaque,        ///< the alpha says nothing and counts as the maximum
};

/// How a host wants the alpha of the finished picture.
enum class OutputAlpha {
    Premultiplied,
    /// The colour stands on its own: black where the alpha is 0, but in pixels that are as they
    /// came.
    Straight,
};

/// What a host says about the alpha of one frame. The core works on straight pixels: only what
/// differs from that costs a pass over the picture, and the losses of one.
struct AlphaHandling {
    SourceAlpha source = SourceAlpha::Premultiplied;
    OutputAlpha output = OutputAlpha::Premultiplied;
};

} // namespace orbel
