// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3PluginEditor.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "platform/TPlatform.h"
#include "shell/vst3/Vst3HostCall.h"

#include <cstring>
#include <utility>

using namespace Steinberg;

namespace {

constexpr const char* kLogCategory = "VST3 Shell";

// The helper library does not define it.
const TUID kContentScaleId = INLINE_UID(0x65ED9690, 0x8AC44525, 0x8AADEF7A, 0x72EA703F);

ViewRect RectOf(TPointT<int> size) {
	return {0, 0, size.mX, size.mY};
}

} // namespace

TVst3PluginShell::TPluginEditor::TPluginEditor(TVst3PluginShell& shell) : mShell(shell), mpGui(shell.Gui()) {
	mShell.addRef();
	if (TObservable* value = mpGui->WantsKeyboardInputValue())
		value->AddObserver({this, &TPluginEditor::OnWantsKeyboardInput});
}

TVst3PluginShell::TPluginEditor::~TPluginEditor() {
	Close();
}

// References

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::queryInterface(const TUID interfaceId, void** object) {
	if (!object)
		return kInvalidArgument;
	*object = nullptr;
	const bool isOffered = Offer<IPlugView>(this, FUnknown_iid, interfaceId, object) ||
	                       Offer<IPlugView>(this, IPlugView_iid, interfaceId, object) ||
	                       Offer<IPlugViewContentScaleSupport>(this, kContentScaleId, interfaceId, object);
	return isOffered ? kResultOk : kNoInterface;
}

uint32 PLUGIN_API TVst3PluginShell::TPluginEditor::addRef() {
	return static_cast<uint32>(mReferenceCount.fetch_add(1) + 1);
}

/// The shell's last reference may go with it, and the storage with that: nothing of the editor is touched any more.
uint32 PLUGIN_API TVst3PluginShell::TPluginEditor::release() {
	const int32 left = mReferenceCount.fetch_sub(1) - 1;
	if (left > 0)
		return static_cast<uint32>(left);
	TVst3PluginShell& shell = mShell;
	HostCall(StorageId(), [this] {
		const TThreadManager::THostScope role(kMainThread);
		if (mShell.mpEditor == this)
			mShell.mpEditor = nullptr;
		Close();
		delete this;
		return kResultOk;
	});
	shell.release();
	return 0;
}

// Opening and closing

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::isPlatformTypeSupported(FIDString type) {
	return type && std::strcmp(type, kPlatformTypeX11EmbedWindowID) == 0 ? kResultTrue : kResultFalse;
}

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::attached(void* parent, FIDString type) {
	return HostCall(StorageId(), [&]() -> tresult {
		const TThreadManager::THostScope role(kMainThread);
		if (isPlatformTypeSupported(type) != kResultTrue)
			return kResultFalse;
		if (!parent) {
			TLog::Instance()->LogText(kLogCategory, "Host provides no valid window parent ptr for editor");
			return kResultOk;
		}
		if (IsOpen()) {
			TLog::Instance()->LogText(
			    kLogCategory, "Host requests opening editor, but the editor is already open. Closing and reopening...");
			Close();
		}
		TLog::Instance()->LogText(kLogCategory, "Open plugin editor...");
		try {
			Open(static_cast<TNativeWindow>(reinterpret_cast<uintptr_t>(parent)));
			return kResultOk;
		} catch (const TReadableException& failure) {
			Close();
			TSystemGlobals::Instance()->ShowMessage(
			    TString::Format("Failed to initialize the plugin GUI: '%s'", failure.Message()), kErrorMessage);
			return kResultFalse;
		}
	});
}

void TVst3PluginShell::TPluginEditor::Open(TNativeWindow parent) {
	FollowHostScale();
	mpWindow = std::make_unique<TEditorWindow>(*mpGui, parent);
	mpTimer = TVst3Timer::Start(mpFrame, this, TPlatform::kTickMilliseconds);
	if (mpTimer)
		mpTimer->Watch(mpWindow->EventDescriptor());
	Tick();
}

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::removed() {
	return HostCall(StorageId(), [this]() -> tresult {
		const TThreadManager::THostScope role(kMainThread);
		if (!IsOpen()) {
			TLog::Instance()->LogText(kLogCategory, "Host requests closing editor, but the open is not open");
			return kResultFalse;
		}
		TLog::Instance()->LogText(kLogCategory, "Closing plugin editor...");
		Close();
		return kResultOk;
	});
}

void TVst3PluginShell::TPluginEditor::Close() {
	if (const IPtr<TVst3Timer> timer = std::exchange(mpTimer, nullptr))
		timer->Stop();
	mResizeRequested = false;
	// Taken out first: what the window's end brings about finds a closed editor.
	std::exchange(mpWindow, nullptr).reset();
}

// Frames

void TVst3PluginShell::TPluginEditor::OnTimer() noexcept {
	const TKeptForCall kept(*this);
	HostCall(StorageId(), [this] {
		// The next tick will do while the host works with the document on another thread.
		const TThreadManager::THostScope role(kMainThread, TThreadManager::TPatience::kNone);
		if (role.IsTaken())
			Tick();
		return kResultOk;
	});
}

void TVst3PluginShell::TPluginEditor::Tick() {
	if (mpWindow)
		mpWindow->Tick();
}

void TVst3PluginShell::TPluginEditor::OnWantsKeyboardInput(TObservable*, int32_t reason) {
	if (reason == kDidChange && mpWindow)
		mpWindow->UpdateWantsKeyboardInput();
}

// Sizes

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::getSize(ViewRect* size) {
	if (!size)
		return kInvalidArgument;
	return HostCall(StorageId(), [&] {
		const TThreadManager::THostScope role(kMainThread);
		FollowHostScale();
		*size = RectOf(IsOpen() ? mpWindow->Size() : TEditorWindow::SizeOf(*mpGui));
		return kResultOk;
	});
}

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::setContentScaleFactor(ScaleFactor factor) {
	if (!(factor > 0.0f))
		return kInvalidArgument;
	return HostCall(StorageId(), [&] {
		const TThreadManager::THostScope role(kMainThread);
		mShell.mHostScale = factor;
		if (IsOpen())
			FollowHostScale();
		return kResultOk;
	});
}

/// The host may say it long before there is a screen to ask.
void TVst3PluginShell::TPluginEditor::FollowHostScale() {
	if (mShell.mHostScale > 0.0f)
		mShell.mHostScaleFactor = TEditorWindow::FollowHostScale(*mpGui, mShell.mHostScale, mShell.mHostScaleFactor);
}

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::onSize(ViewRect* newSize) {
	if (!newSize)
		return kInvalidArgument;
	return HostCall(StorageId(), [&] {
		const TThreadManager::THostScope role(kMainThread);
		// A size of the host's own does not reach the editor: that stays whole, in the corner.
		if (std::exchange(mResizeRequested, false) && mpWindow)
			mpWindow->SetSize({newSize->getWidth(), newSize->getHeight()});
		return kResultOk;
	});
}

bool TVst3PluginShell::TPluginEditor::RequestResize(TSize oldSize, TSize newSize) {
	if (!mpFrame || !IsOpen())
		return false;
	mResizeRequested = true;
	ViewRect rect = RectOf(newSize);
	if (mpFrame->resizeView(this, &rect) == kResultOk) {
		// Hosts that agree without answering with a size.
		if (std::exchange(mResizeRequested, false) && mpWindow)
			mpWindow->SetSize(newSize);
		return true;
	}
	mResizeRequested = false;
	TLog::Instance()->LogText("VST Shell", "Resize request failed. Force resize...");
	if (mpWindow)
		mpWindow->ForceSize(oldSize, newSize);
	return false;
}

tresult PLUGIN_API TVst3PluginShell::TPluginEditor::setFrame(IPlugFrame* frame) {
	return HostCall(StorageId(), [&] {
		const TThreadManager::THostScope role(kMainThread);
		mpFrame = frame;
		return kResultOk;
	});
}
