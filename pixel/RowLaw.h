#pragma once

#include "pixel/RowKernels.h"

namespace orbel {

/// The functions that compute pixel by pixel: the law that all others follow.
template<typename P>
const RowKernels<P>& rowLaw();

#define ORBEL_EXTERN_ROW_LAW(P) extern template const RowKernels<P>& rowLaw<P>();
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_EXTERN_ROW_LAW)
#undef ORBEL_EXTERN_ROW_LAW

} // namespace orbel
