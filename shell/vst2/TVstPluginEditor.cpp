// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst2/TVstPluginEditor.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

#include <cstdint>
#include <utility>

namespace {

constexpr const char* kLogCategory = "VST Shell";

} // namespace

TVstPluginShell::TVstEditor::TVstEditor(TGui& gui) : mpGui(&gui) {
	if (TObservable* value = gui.WantsKeyboardInputValue())
		value->AddObserver({this, &TVstEditor::OnWantsKeyboardInput});
}

TVstPluginShell::TVstEditor::~TVstEditor() {
	if (IsOpen())
		close();
	if (TObservable* value = mpGui->WantsKeyboardInputValue())
		value->RemoveObserver({this, &TVstEditor::OnWantsKeyboardInput});
}

bool TVstPluginShell::TVstEditor::getRect(ERect** rect) {
	const TPointT<int> size = IsOpen() ? mpWindow->Size() : TEditorWindow::SizeOf(*mpGui);
	mRect = {0, 0, static_cast<short>(size.mY), static_cast<short>(size.mX)};
	*rect = &mRect;
	return true;
}

bool TVstPluginShell::TVstEditor::open(void* parent) {
	if (!parent) {
		TLog::Instance()->LogText(kLogCategory, "Host provides no valid window parent ptr for editor");
		return false;
	}
	if (IsOpen()) {
		TLog::Instance()->LogText(
		    kLogCategory, "Host requests opening editor, but the editor is already open. Closing and reopening...");
		close();
	}
	TLog::Instance()->LogText(kLogCategory, "Open plugin editor...");
	try {
		mpWindow =
		    std::make_unique<TEditorWindow>(*mpGui, static_cast<TNativeWindow>(reinterpret_cast<uintptr_t>(parent)));
		mpWindow->Tick();
		return IsOpen();
	} catch (const TReadableException& failure) {
		mpWindow.reset();
		TSystemGlobals::Instance()->ShowMessage(
		    TString::Format("Failed to initialize the plugin GUI: '%s'", failure.Message()), kErrorMessage);
		return false;
	}
}

void TVstPluginShell::TVstEditor::close() {
	if (!IsOpen()) {
		TLog::Instance()->LogText(kLogCategory, "Host requests closing editor, but the open is not open");
		return;
	}
	TLog::Instance()->LogText(kLogCategory, "Closing plugin editor...");
	// Taken out first: what the window's end brings about finds a closed editor.
	std::exchange(mpWindow, nullptr).reset();
}

void TVstPluginShell::TVstEditor::idle() {
	if (mpWindow)
		mpWindow->Tick();
	else
		TThreadCommunicator::Instance()->ProcessCommands();
}

void TVstPluginShell::TVstEditor::OnWantsKeyboardInput(TObservable*, int32_t reason) {
	if (reason == kDidChange && mpWindow)
		mpWindow->UpdateWantsKeyboardInput();
}

void TVstPluginShell::TVstEditor::SetSize(TSize size) {
	if (mpWindow)
		mpWindow->SetSize(size);
}

void TVstPluginShell::TVstEditor::ForceSize(TSize oldSize, TSize newSize) {
	if (mpWindow)
		mpWindow->ForceSize(oldSize, newSize);
}

// The shell's part of it

TVstPluginShell::TVstEditor* TVstPluginShell::OwnEditor() const {
	return static_cast<TVstEditor*>(Editor());
}

bool TVstPluginShell::RequestWindowResize(const TSize& oldSize, const TSize& newSize) {
	TLog::Instance()->Log(kLogCategory, "Requesting new window size: %d, %d", newSize.mX, newSize.mY);
	TVstEditor* editor = OwnEditor();
	const bool isOpen = editor && editor->IsOpen();
	if (sizeWindow(newSize.mX, newSize.mY)) {
		if (editor)
			editor->SetSize(newSize);
		return true;
	}
	TLog::Instance()->LogText(kLogCategory, "Resize request failed. Force resize...");
	if (editor)
		editor->ForceSize(oldSize, newSize);
	return isOpen;
}
