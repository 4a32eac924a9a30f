#pragma once

namespace orbel {

class PluginHost_API;

/// Declares every parameter to the host, in table order, through the creation interface of its
/// record. A host that turns one down gets the rest all the same. Always 1; nothing is declared
/// without a record.
int ParamsSetup(PluginHost_API* host);

/// Declares "Shape" with an empty path. 0, or 1 without a record.
int AddPathProperty(PluginHost_API* host);
/// Completes the table of built-in shapes and declares "Presets" over it. 0, or 1 without a record.
int AddPathPresetProperty(PluginHost_API* host);
/// Declares nothing: these hosts have no composition camera to choose.
int AddCompCameraParam(PluginHost_API* host);
/// Declares nothing: "Motion Blur" is a row of the table.
int AddMBlurPopup(PluginHost_API* host);

} // namespace orbel
