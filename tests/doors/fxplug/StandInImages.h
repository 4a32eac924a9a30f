#pragma once

#include "doors/fxplug/platform/FxProtocols.h"

#include <atomic>

namespace orbel::fxtest {

/// What the stand-in for a host application says about itself, and what it refuses. One per
/// process, as in a real host.
struct HostManners {
    int kind = 0;             ///< as `g_hostIndex`; any other number claims to be none of the three
    bool knowsExpress = true; ///< hosts before 1.2 do not know `hostIsFCE`
    bool describesItself = true;               ///< whether there is an FxHostCapabilities to be had
    UInt32 version = 0x01230000;               ///< 1.2.3
    std::atomic<int> bitmapsUntilFailure = -1; ///< then `initWithInfo:` answers nil; -1 never
    bool answersPremultiplied = true;          ///< whether images know `setIsPremultiplied:`
    int versionQuestions = 0;                  ///< how often it was asked for its version
};
[[nodiscard]] HostManners& manners();
/// A host of this kind that refuses nothing.
void resetManners(int kind);

/// Host images alive now.
[[nodiscard]] int liveImages();

/// Whether nothing was written behind the pixels of any row.
[[nodiscard]] bool paddingIntact(FxBitmap* bitmap);

} // namespace orbel::fxtest
