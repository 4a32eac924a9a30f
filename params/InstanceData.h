#pragma once

#include "host/PluginHost.h"

#include <string_view>

namespace orbel {

/// The one datum of an instance beyond its parameters: the path of its shape file, NUL-terminated
/// in the file system's encoding. Doors without a project of their own hang one on the host
/// object's user-data pointer and offer "Presets" as an integer parameter.
struct Orbel_UserData {
    char path[1024] = {};
    /// The contents of an SVG file, for where `path` names none that can be read. Borrowed from the
    /// door for the length of a render; never part of a project.
    std::string_view svg;
};

/// Copies `path` into the record, cut to 1023 bytes; the rest of the buffer becomes zero. The SVG
/// text stays.
void setUserDataPath(Orbel_UserData* data, const char* path);

/// A new record with an empty path, owned by the caller until `freeUserData`.
[[nodiscard]] Orbel_UserData* allocUserData();
void freeUserData(Orbel_UserData* data);

/// The instance's shape at the current time: a built-in preset wins over a chosen file and text.
/// The preset's path passes through `expandFormatText`. 0 on success; 1, with `data` untouched,
/// when the host keeps no shape.
int getUserData(PluginHost_API* host, Orbel_UserData* data);

/// Stores a chosen file's path and switches "Presets" to none so that it takes effect. 0 on
/// success, 1 when the host keeps no shape.
int setUserData(PluginHost_API* host, Orbel_UserData* data);

} // namespace orbel
