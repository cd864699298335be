// SPDX-License-Identifier: GPL-3.0-or-later
// The names that a VST 3 host looks up in the shared object. Nothing else is visible from outside.

#include "plugin/EntryFiles.h"
#include "plugin/Vst3Instances.h"
#include "shell/vst3/TVst3PluginFactory.h"

namespace {

TVst3PluginFactory* Factory() {
	static TVst3PluginFactory* factory = [] {
		EntryFiles::Direct();
		static TVst3PluginFactory made(&Vst3Instances::Create);
		return &made;
	}();
	return factory;
}

} // namespace

extern "C" {

SMTG_EXPORT_SYMBOL Steinberg::IPluginFactory* PLUGIN_API GetPluginFactory() {
	try {
		Factory()->addRef();
		return Factory();
	} catch (...) {
		return nullptr;
	}
}

// Hosts enter and leave the module as often as they like; instances count for themselves.
SMTG_EXPORT_SYMBOL bool ModuleEntry(void* /*sharedLibraryHandle*/) {
	return true;
}

SMTG_EXPORT_SYMBOL bool ModuleExit() {
	return true;
}

SMTG_EXPORT_SYMBOL bool bundleEntry(void* /*bundle*/) {
	return true;
}

SMTG_EXPORT_SYMBOL bool bundleExit() {
	return true;
}
}
