#pragma once

#include <string>

namespace orbel::ofx {

/// The folder of resources in the bundle that this code was loaded from; empty when it cannot be
/// told.
[[nodiscard]] std::string bundleResources();

} // namespace orbel::ofx
