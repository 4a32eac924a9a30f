#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#if __has_include(<FxPlug/FxPlugSDK.h>)
#import <FxPlug/FxPlugSDK.h>
#import <PluginManager/PluginManager.h>
#define ORBEL_VENDOR_FXPLUG 1
#if __LP64__
typedef NSUInteger FxUInt;
#else
typedef UInt32 FxUInt;
#endif
#else
#include "doors/fxplug/platform/FxProtocols.h"
#endif

namespace orbel {

/// The field order in a render request, 0 for a progressive sequence. The host's headers renamed
/// the member once, in the same place.
[[nodiscard]] inline auto& fieldOf(auto& info) {
#if defined(ORBEL_VENDOR_FXPLUG)
    return info.fieldOrder;
#else
    return info.field;
#endif
}

} // namespace orbel
