// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TEditorWindow.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/views/TViewWindow.h"
#include "platform/TPlatform.h"

#include <algorithm>
#include <cmath>

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

int TEditorWindow::FollowHostScale(TAudioPluginShell::TGui& gui, float scale, int before) {
	gui.Prepare();
	CurrentScale(); // the first time, it reads what the user has chosen
	TUiScaleFactorEnum& factor = TGraphPortPrefs::Instance()->mUIScaleFactor;
	if (factor.Get() != TGraphPort::kAutomaticScale && factor.Get() != before)
		return before;
	constexpr float kStandardDpi = 96.0f;
	constexpr float kMostScale = 100.0f;
	const int dpi = static_cast<int>(std::lround(kStandardDpi * std::min(scale, kMostScale)));
	const int wanted = ScaleForDpi(dpi) == kScaleOf200 ? TGraphPort::kScale200 : TGraphPort::kScale100;
	factor.Set(wanted);
	return wanted;
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
