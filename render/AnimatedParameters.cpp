#include "render/AnimatedParameters.h"

#include "render/Units.h"

namespace orbel {

AnimatedParameters animatedParametersAt(PluginHost_API* host, long time,
                                        const AnimatedParameters& now) {
    HostParameterReader reader(host, timeObjectAt(host, time));
    AnimatedParameters sample = now;
    readSampledArguments(reader, &sample);
    return sample;
}

} // namespace orbel
