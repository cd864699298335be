// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/TProgramInstance.h"

#include "plugin/CreatePluginShell.h"
#include "plugin/TFormatInstances.h"

namespace {

constinit TFormatInstances sInstances(kProgramHost);

} // namespace

TOwnerPtr<TProgramInstance> TProgramInstance::Create(TProgramPluginShell::THost* host) {
	TAudioPluginShell* shell = sInstances.Create(host);
	return TOwnerPtr<TProgramInstance>(
	    shell ? new TProgramInstance(static_cast<TProgramPluginShell*>(shell)) : nullptr);
}

TProgramInstance::~TProgramInstance() {
	sInstances.Release(mpShell);
}
