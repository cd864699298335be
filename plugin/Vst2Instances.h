// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst2/Vst2Interfaces.h"

class TVstPluginShell;

/// The entry of VST 2: instances made for a host that has given its callback, and ended when the host closes them.
namespace Vst2Instances {

/// Null if the host says no version, or, with a line in the log, if the instance cannot be made. Any thread.
TVstPluginShell* Create(audioMasterCallback host);
void Release(TVstPluginShell* shell);

} // namespace Vst2Instances
