// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/CreatePluginShell.h"

#include "document/TVortelDocument.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/foundation/TLog.h"
#include "framework/foundation/TReadableException.h"
#include "framework/foundation/TThreadCommunicator.h"
#include "plugin/Vst3Instances.h"
#include "shell/program/TProgramPluginShell.h"
#include "shell/vst3/TVst3PluginShell.h"

#include <mutex>

namespace {

constexpr const char* kLogCategory = "Vortel";

std::mutex sApiMutex; // instances of different formats may be made at the same time
int32_t sApiUsers = 0;

void Log(const char* text) {
	TLog::Instance()->LogText(kLogCategory, text);
}

void RetainApi() {
	const std::lock_guard guard(sApiMutex);
	if (++sApiUsers == 1)
		Log("Initializing the API...");
}

void ReleaseApi() {
	const std::lock_guard guard(sApiMutex);
	if (--sApiUsers == 0)
		Log("Finalizing the API...");
}

TVortelDocument::TOptions DocumentOptions(int32_t hostKind) {
	return {.mLoadDefaultBank = hostKind != kProgramHost, .mRandomizeOnLoad = false};
}

TPtr<TAudioPluginShell> CreateAdapter(
    int32_t hostKind, void* hostContext, const TPtr<TVortelDocument>& document,
    const TPtr<TVortelAudioEngine>& engine) {
	if (hostKind == kProgramHost)
		return MakePtr<TProgramPluginShell>(
		    document.Get(), engine.Get(), nullptr, static_cast<TProgramPluginShell::THost*>(hostContext));
	if (hostKind == kVst3Host)
		return MakePtr<TVst3PluginShell>(document.Get(), engine.Get(), nullptr, &Vst3Instances::Release);
	throw TReadableException(TString("There is no adapter for host format ") + TString::ToString(hostKind));
}

TPtr<TAudioPluginShell> CreateInstance(int32_t hostKind, void* hostContext) {
	const auto document = MakePtr<TVortelDocument>(DocumentOptions(hostKind));
	const auto engine = MakePtr<TVortelAudioEngine>(document.Get());
	return CreateAdapter(hostKind, hostContext, document, engine);
}

// The queued commands release objects through the singletons of this instance's storage, so they run while it lives.
void EndInstance() {
	TThreadCommunicator::Instance()->FlushAllCommands();
	ReleaseApi();
}

} // namespace

TAudioPluginShell* CreatePluginShell(int32_t hostKind, void* hostContext) {
	RetainApi();
	Log("Creating plugin shell instance...");
	try {
		const TPtr<TAudioPluginShell> shell = CreateInstance(hostKind, hostContext);
		shell->Retain();
		return shell.Get();
	} catch (const TReadableException& failure) {
		TLog::Instance()->Log(kLogCategory, "Creating the plugin GUI FAILED (%s)", failure.what());
	} catch (...) {
		EndInstance();
		throw;
	}
	EndInstance();
	return nullptr;
}

void ReleasePluginShell(TAudioPluginShell* shell) {
	Log("Releasing plugin shell instance...");
	shell->Release();
	EndInstance();
}
