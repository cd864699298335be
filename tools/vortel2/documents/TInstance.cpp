// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/TInstance.h"

#include "tools/vortel2/files/ToolErrors.h"

TInstance::TInstance() : mpInstance(TProgramInstance::Create()) {
	if (!mpInstance)
		throw TWorkError("the plug-in could not be started");
}
