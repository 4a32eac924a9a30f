#pragma once

#include "doors/ofx/platform/OfxTypes.h"

namespace orbel::ofx {

/// Answers an action of the host; actions that the effect has nothing to say to get
/// `STAT_REPLY_DEFAULT`. Throws nothing.
OfxStatus answerAction(const char* action, const void* handle, OfxPropertySetHandle inArgs,
                       OfxPropertySetHandle outArgs) noexcept;

} // namespace orbel::ofx
