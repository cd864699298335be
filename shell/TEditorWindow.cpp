// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TEditorWindow.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/gui/views/TViewWindow.h"
#include "platform/TPlatform.h"

TEditorWindow::TEditorWindow(TAudioPluginShell::TGui& gui, TNativeWindow host) : mpGui(&gui) {
	gui.Prepare();
	mpFrame = std::make_shared<TEditorFrame>();
	mpWindow = MakePtr<TViewWindow>(nullptr, kEmbeddedWindow);
	mpWindow->SetDocument(gui.Document());
	mpWindow->SetClientSize(gui.Size()); // first: the frame takes the size of its window
	mpWindow->SetMainFrame(mpGui);
	mpWindow->Glue()->Embed(host, gui.WantsKeyboardInput());
	mpWindow->Show(gui.WantsKeyboardInput());
}

TEditorWindow::~TEditorWindow() {
	if (mpWindow->IsOpen())
		mpWindow->Close();
	mpWindow->SetMainFrame(nullptr);
	TThreadCommunicator::Instance()->ProcessCommands();
}

TPointT<int> TEditorWindow::SizeOf(TAudioPluginShell::TGui& gui) {
	gui.Prepare();
	return Scaled(gui.Size(), CurrentScale());
}

bool TEditorWindow::IsOpen() const {
	return mpWindow->IsOpen();
}

TPointT<int> TEditorWindow::Size() const {
	return IsOpen() ? mpWindow->Glue()->ClientSize() : TPointT<int>{};
}

void TEditorWindow::SetSize(TPointT<int> size) {
	if (IsOpen())
		mpWindow->Glue()->Resize(size);
}

void TEditorWindow::ForceSize(TPointT<int> oldSize, TPointT<int> newSize) {
	if (IsOpen())
		mpWindow->Glue()->ForceResize(oldSize, newSize);
}

void TEditorWindow::UpdateWantsKeyboardInput() {
	if (IsOpen())
		mpWindow->Glue()->SetWantsKeyboardInput(mpGui->WantsKeyboardInput());
}

int TEditorWindow::EventDescriptor() const {
	return TPlatform::Instance()->EventDescriptor();
}

void TEditorWindow::Tick() {
	// What runs in a tick may close the editor.
	const std::shared_ptr<TEditorFrame> kept = mpFrame;
	kept->EditorFrameTick(mpWindow.Get());
}
