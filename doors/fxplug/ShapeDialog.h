#pragma once

namespace orbel {

class PluginHost_API;

/// Lets the user choose an ".svg" file in a modal panel and stores its path in the instance, which
/// also switches "Presets" to none. Nothing changes when the user cancels or there is no panel; a
/// path that is no ASCII or too long stores the empty path. Always 0. [main thread]
int loadSVGShape(PluginHost_API* host);

} // namespace orbel
