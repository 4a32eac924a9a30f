#pragma once

#include <string>
#include <vector>

namespace orbel::app {

/// A host and the folders that it looks for plug-ins in, first one first.
struct PluginHostFolders {
    std::string host;
    std::vector<std::string> folders;
    std::string setting; ///< the environment variable that changes the list
};

/// Hosts that load frei0r plug-ins, each with its own rules about `FREI0R_PATH`.
[[nodiscard]] std::vector<PluginHostFolders> frei0rHosts();

/// Hosts that load OFX plug-ins: the standard's own rule, and one that differs.
[[nodiscard]] std::vector<PluginHostFolders> ofxHosts();

/// The binary of the OFX bundle in a folder of plug-ins, for this kind of machine.
[[nodiscard]] std::string ofxBinary(const std::string& folder);

} // namespace orbel::app
