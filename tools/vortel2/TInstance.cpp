// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/TInstance.h"

#include "plugin/CreatePluginShell.h"
#include "tools/vortel2/ToolErrors.h"

namespace {

constexpr int kProgramHost = 3;

} // namespace

TInstance::TInstance() : mpShell(static_cast<TProgramPluginShell*>(CreatePluginShell(kProgramHost, nullptr))) {
	if (!mpShell)
		throw TWorkError("the plug-in could not be started");
}

TInstance::~TInstance() {
	ReleasePluginShell(mpShell);
}
