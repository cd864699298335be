// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/Vst2Instances.h"

#include "framework/foundation/files/TLog.h"
#include "plugin/CreatePluginShell.h"
#include "plugin/TFormatInstances.h"
#include "shell/vst2/TVstPluginShell.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <string>

namespace {

constexpr const char* kLogCategory = "VST Shell";

constinit TFormatInstances sInstances(kVst2Host);
std::atomic<int> sLiveInstances{0};

/// Hosts write at most 64 bytes; some know no limit.
std::string AskForText(audioMasterCallback host, int opcode) {
	constexpr std::size_t kRoom = 1024;
	std::array<char, kRoom> text{};
	host(nullptr, opcode, 0, 0, text.data(), 0.0f);
	return {text.data(), strnlen(text.data(), kRoom)};
}

void GreetHost(audioMasterCallback host) {
	const std::string vendor = AskForText(host, audioMasterGetVendorString);
	const std::string product = AskForText(host, audioMasterGetProductString);
	const int version = static_cast<int>(host(nullptr, audioMasterGetVendorVersion, 0, 0, nullptr, 0.0f));
	if (vendor == product)
		TLog::Instance()->Log(kLogCategory, "Running in '%s %d'", vendor.c_str(), version);
	else
		TLog::Instance()->Log(kLogCategory, "Running in '%s %s %d'", vendor.c_str(), product.c_str(), version);
}

} // namespace

TVstPluginShell* Vst2Instances::Create(audioMasterCallback host) {
	if (!host || host(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0)
		return nullptr;
	if (sLiveInstances.load() == 0)
		GreetHost(host);
	auto* shell = static_cast<TVstPluginShell*>(sInstances.Create(reinterpret_cast<void*>(host)));
	if (shell)
		++sLiveInstances;
	return shell;
}

void Vst2Instances::Release(TVstPluginShell* shell) {
	--sLiveInstances;
	sInstances.Release(shell);
}
