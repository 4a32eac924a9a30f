#pragma once

#include "doors/fxplug/FxPlugInterface.h"
#include "doors/fxplug/Owned.h"

namespace orbel {

// The host's objects for its interfaces, borrowed; nil when the host has none. Ask anew for every
// use: what a host offers depends on the moment.
[[nodiscard]] id<FxParameterCreationAPI> creationApi(id<PROAPIAccessing> manager);
[[nodiscard]] id<FxParameterRetrievalAPI> retrievalApi(id<PROAPIAccessing> manager);
[[nodiscard]] id<FxParameterSettingAPI> settingApi(id<PROAPIAccessing> manager);
[[nodiscard]] id<FxCustomParameterActionAPI> actionApi(id<PROAPIAccessing> manager);
[[nodiscard]] id<Fx3DAPI> threeDApi(id<PROAPIAccessing> manager);

/// What the host says about itself; nil when the host has no such class.
[[nodiscard]] Owned<FxHostCapabilities*> makeHostCapabilities(id<PROAPIAccessing> manager);

/// The code for `g_hostIndex`: what the host says about itself, else what its process is called. A
/// host that cannot be told is taken for Final Cut Pro after a modal alert. [main thread]
[[nodiscard]] int GetHostIndex(id<PROAPIAccessing> manager);

} // namespace orbel
