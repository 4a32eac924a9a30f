#pragma once

#include <string>

namespace orbel::app {

/// What came of loading a plug-in.
struct PluginProbe {
    bool loads = false;
    std::string words; ///< what it says of itself, or why it does not load
};

/// Loads a plug-in in a process of its own, so that nothing it does can harm this one; one that
/// takes longer than ten seconds does not load. The frei0r plug-in is asked for a picture of a
/// built-in shape as well.
[[nodiscard]] PluginProbe probeFrei0r(const std::string& file);
[[nodiscard]] PluginProbe probeOfx(const std::string& file);

} // namespace orbel::app
