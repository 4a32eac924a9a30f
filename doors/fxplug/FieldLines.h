#pragma once

#include "doors/fxplug/FxPlugInterface.h"
#include "doors/fxplug/Owned.h"

namespace orbel {

/// A full-height frame made of one field: every row twice. Nil when the host makes no bitmap.
[[nodiscard]] Owned<FxBitmap*> render_lineDouble(FxBitmap* field);

/// Writes every second row of a frame into a field, from row 1 on when `odd` is set.
void render_lineHalf(FxBitmap* frame, FxBitmap* field, bool odd);

/// The input in the output's size and pixel size: the input itself when it has both, else a new
/// bitmap with the input in its top left corner, unscaled. Nil when there is no input or no new
/// bitmap.
[[nodiscard]] Owned<FxBitmap*> getSameSizedInputAsOutput(FxBitmap* input, FxBitmap* output);

} // namespace orbel
