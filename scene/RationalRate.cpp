#include "scene/RationalRate.h"

#include <cmath>
#include <initializer_list>
#include <numeric>

namespace orbel {

FrameRate rationalRate(double framesPerSecond) {
    for (const int whole : {24, 30, 48, 60, 120}) {
        const double broadcast = whole * 1000.0 / 1001.0;
        if (std::fabs(framesPerSecond - broadcast) < 0.005) {
            return {whole * 1000, 1001};
        }
    }
    const int thousandths = static_cast<int>(std::lround(framesPerSecond * 1000.0));
    const int common = std::gcd(thousandths, 1000);
    return {thousandths / common, 1000 / common};
}

} // namespace orbel
