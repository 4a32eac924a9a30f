#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// Renders one frame of `host`: takes the process-wide lock for the whole call and picks the
/// instance for the output's pixel format. Safe to call from several threads; calls run one at a
/// time. Returns 0 on success, 1 (nothing drawn) for a layout that is not rendered, otherwise the
/// first error or abort code of the frame.
int Render(PluginHost_API* host);

// The six instances behind the dispatcher. The caller holds the lock.
int Render_ARGB8(PluginHost_API* host);
int Render_RGBA8(PluginHost_API* host);
int Render_ARGB16(PluginHost_API* host);
int Render_RGBA16(PluginHost_API* host);
int Render_ARGB32(PluginHost_API* host);
int Render_RGBA32(PluginHost_API* host);

} // namespace orbel
