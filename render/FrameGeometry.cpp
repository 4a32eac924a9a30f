#include "render/FrameGeometry.h"

namespace orbel {

FrameGeometry frameGeometry(PluginHost_API* host) {
    FrameGeometry frame{};
    frame.width = host->getOutputWidth();
    frame.height = host->getOutputHeight();
    frame.scaleX = host->getScaleX();
    frame.scaleY = host->getScaleY();
    frame.diagonalScale =
        host->math_sqrt(frame.scaleX * frame.scaleX + frame.scaleY * frame.scaleY);
    frame.centre = {0.5 * frame.width / frame.scaleX, 0.5 * frame.height / frame.scaleY, 0.0};
    return frame;
}

} // namespace orbel
