#pragma once

#include "host/PluginHost.h"

namespace orbel {

// Where an instance's shape comes from. A built-in preset comes before a chosen file; the text that
// a door may offer (`PluginHost_API::getShapeText`) comes last and is no part of this.

/// The one datum of an instance beyond its parameters: the path of its shape file, NUL-terminated
/// in the file system's encoding, empty for none. Doors without a project of their own hang one on
/// the host object's user-data pointer and offer "Presets" as an integer parameter.
struct Orbel_UserData {
    char path[1024] = {};
};

/// Copies `path` into the record, cut to 1023 bytes; the rest of the buffer becomes zero.
void setUserDataPath(Orbel_UserData* data, const char* path);

/// The same with the path of a built-in shape, read as format text by `expandFormatText`. False,
/// `data` untouched, for 0 ("None") and for an index that is not in the table, or not yet: see
/// `buildStaticSVGShapeInfo`.
bool setPresetPath(Orbel_UserData* data, int preset);

/// A new record with an empty path, owned by the caller until `freeUserData`.
[[nodiscard]] Orbel_UserData* allocUserData();
void freeUserData(Orbel_UserData* data);

/// The instance's shape at the current time: a built-in preset wins over a chosen file, whether the
/// preset's file exists or not. 0 on success; 1, with `data` untouched, when the host keeps no
/// shape.
int getUserData(PluginHost_API* host, Orbel_UserData* data);

/// Stores a chosen file's path and switches "Presets" to none so that it takes effect. 0 on
/// success, 1 when the host keeps no shape.
int setUserData(PluginHost_API* host, Orbel_UserData* data);

} // namespace orbel
