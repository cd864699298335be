// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/CreatePluginShell.h"

#include "document/TVortelDocument.h"
#include "document/TVortelPrefs.h"
#include "editor/panels/TVortelMainFrameView.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "plugin/EditorServices.h"
#include "plugin/TProgramInstance.h"
#include "plugin/Vst2Instances.h"
#include "plugin/Vst3Instances.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"
#include "shell/program/TProgramPluginShell.h"
#include "shell/vst2/TVstPluginShell.h"
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
	TBaseViewsPrefs::CreateService();
}

void ReleaseApi() {
	const std::lock_guard guard(sApiMutex);
	TBaseViewsPrefs::Destroy();
	if (--sApiUsers == 0)
		Log("Finalizing the API...");
}

/// Our own programs start the same on every machine.
TVortelDocument::TOptions DocumentOptions(int32_t hostKind) {
	TVortelPrefs* preferences = TVortelPrefs::Instance();
	if (!preferences || hostKind == kProgramHost)
		return {};
	TString bank = preferences->DefaultBankFilename().Get();
	if (bank.IsEmpty())
		bank = Folders::ResourceBase().FilePath("DefaultBank.v2bnk");
	return {.mDefaultBank = bank, .mRandomizeOnLoad = preferences->RandomizeOnLoad().Get()};
}

TPtr<TAudioPluginShell> CreateAdapter(
    int32_t hostKind, void* hostContext, const TPtr<TVortelDocument>& document,
    const TPtr<TVortelAudioEngine>& engine) {
	const auto gui = MakePtr<TVortelMainFrameView>(document.Get(), engine.Get(), &EditorServices::Start);
	if (hostKind == kProgramHost)
		return MakePtr<TProgramPluginShell>(
		    document.Get(), engine.Get(), gui.Get(), static_cast<TProgramPluginShell::THost*>(hostContext));
	if (hostKind == kVst2Host)
		return MakePtr<TVstPluginShell>(
		    document.Get(), engine.Get(), gui.Get(), reinterpret_cast<audioMasterCallback>(hostContext),
		    &Vst2Instances::Release);
	if (hostKind == kVst3Host)
		return MakePtr<TVst3PluginShell>(document.Get(), engine.Get(), gui.Get(), &Vst3Instances::Release);
	if (hostKind == kAudioUnitHost)
		return MakePtr<TAudioUnitPluginShell>(
		    document.Get(), engine.Get(), gui.Get(), static_cast<AudioComponentInstance>(hostContext));
	throw TReadableException(TString("There is no adapter for host format ") + TString::ToString(hostKind));
}

TPtr<TAudioPluginShell> CreateInstance(int32_t hostKind, void* hostContext) {
	if (hostKind != kProgramHost || TProgramInstance::UsesPreferences())
		TVortelPrefs::Create();
	const auto document = MakePtr<TVortelDocument>(DocumentOptions(hostKind));
	const auto engine = MakePtr<TVortelAudioEngine>(document.Get());
	return CreateAdapter(hostKind, hostContext, document, engine);
}

// The queued commands release objects through the singletons of this instance's storage, so they run while it lives.
void EndInstance() {
	EditorServices::End();
	TVortelPrefs::Destroy();
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
