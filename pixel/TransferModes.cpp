#include "pixel/TransferModesImpl.h"

namespace orbel {

#define ORBEL_INSTANTIATE_TRANSFER_MODES(P) ORBEL_TRANSFER_MODES(, P)
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_INSTANTIATE_TRANSFER_MODES)

} // namespace orbel
