#pragma once

#include "pixel/RowKernels.h"
#include "pixel/YCbCrRows.h"

namespace orbel {

// The units of vector kernels. Each enters its functions of a level, 1 or more, into a table that
// is filled already, and leaves what the level has none for.

/// The passes over colour and alpha, and those of finishing a row.
template<typename P>
void enterColourKernels(int level, RowKernels<P>& table);

/// The transfer modes.
template<typename P>
void enterModeKernels(int level, RowKernels<P>& table);

/// The ways to and from Y'CbCr, of the 8-bit formats.
template<typename P>
void enterYCbCrKernels(int level, YCbCrRows<P>& table);

} // namespace orbel
