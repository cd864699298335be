// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TVst3PluginShell;

/// The entry of VST 3: instances made for the factory, and ended when the host gives the last reference back.
namespace Vst3Instances {

/// With one reference for the host; null, with a line in the log, if it cannot be made. Any thread.
TVst3PluginShell* Create();
void Release(TVst3PluginShell* shell);

} // namespace Vst3Instances
