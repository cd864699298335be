// SPDX-License-Identifier: GPL-3.0-or-later
// The names that a VST 2 host looks up in the shared object. Nothing else is visible from outside.

#include "plugin/EntryFiles.h"
#include "plugin/Vst2Instances.h"
#include "shell/vst2/TVstPluginShell.h"

namespace {

AEffect* CreateEffect(audioMasterCallback host) noexcept {
	try {
		static const bool isDirected = (EntryFiles::Direct(), true);
		TVstPluginShell* shell = isDirected ? Vst2Instances::Create(host) : nullptr;
		return shell ? shell->getAeffect() : nullptr;
	} catch (...) {
		return nullptr;
	}
}

} // namespace

extern "C" {

[[gnu::visibility("default")]] AEffect* VSTPluginMain(audioMasterCallback host) {
	return CreateEffect(host);
}

[[gnu::visibility("default")]] AEffect* main_macho(audioMasterCallback host) {
	return CreateEffect(host);
}
}
