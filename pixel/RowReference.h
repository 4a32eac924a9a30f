#pragma once

#include "pixel/RowKernels.h"

namespace orbel {

/// The functions that compute pixel by pixel: the reference that all others match.
template<typename P>
const RowKernels<P>& rowReference();

#define ORBEL_EXTERN_ROW_REFERENCE(P) extern template const RowKernels<P>& rowReference<P>();
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_EXTERN_ROW_REFERENCE)
#undef ORBEL_EXTERN_ROW_REFERENCE

} // namespace orbel
