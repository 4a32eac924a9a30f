#include "pixel/ColourOpsImpl.h"

namespace orbel {

#define ORBEL_INSTANTIATE_COLOUR_OPS(P) ORBEL_COLOUR_OPS(, P)
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_INSTANTIATE_COLOUR_OPS)

} // namespace orbel
