#pragma once

#include "bench/frame/Subject.h"

#include "doors/memory/ParameterStore.h"
#include "params/InstanceData.h"

namespace orbel::bench {

/// The parameters of the star: "Normal", with this brush.
void setStroke(const StrokeKind& kind, ParameterStore* parameters, Orbel_UserData* shape);

} // namespace orbel::bench
