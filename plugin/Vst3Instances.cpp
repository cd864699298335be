// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/Vst3Instances.h"

#include "plugin/CreatePluginShell.h"
#include "plugin/TFormatInstances.h"
#include "shell/vst3/TVst3PluginShell.h"

namespace {

constinit TFormatInstances sInstances(kVst3Host);

} // namespace

TVst3PluginShell* Vst3Instances::Create() {
	return static_cast<TVst3PluginShell*>(sInstances.Create(nullptr));
}

void Vst3Instances::Release(TVst3PluginShell* shell) {
	sInstances.Release(shell);
}
