#pragma once

#include "bench/frame/Subject.h"

#include "host/memory/ParameterStore.h"
#include "params/InstanceData.h"

namespace orbel::bench {

/// The parameters of the star: "Normal", with this brush.
void setStroke(const StrokeKind& kind, ParameterStore* parameters, Orbel_UserData* shape);

} // namespace orbel::bench
