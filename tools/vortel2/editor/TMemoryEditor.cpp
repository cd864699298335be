// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/TMemoryEditor.h"

#include "framework/graphics/skin/TSkinColors.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TDesktop.h"
#include "plugin/EditorServices.h"
#include "tools/vortel2/editor/WritePng.h"
#include "tools/vortel2/files/TReplacedFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <chrono>
#include <vector>

namespace {

constexpr TPointT<int> kScreenSize{2400, 1500}; // logical pixels
constexpr int kDoubleScaleDpi = 168;
/// Any number will do as a host's window.
constexpr TNativeWindow kHostWindow = 1;

TList<TScreen> sScreens; // of the next platform

void WriteBlackPng(const std::string& path, TPointT<int> size) {
	WritePng(path, size, std::vector<uint32_t>(static_cast<std::size_t>(size.mX) * static_cast<std::size_t>(size.mY)));
}

TPlatform* CreateMemoryPlatform() {
	auto* platform = new THeadlessPlatform;
	platform->SetScreens(sScreens);
	return platform;
}

bool IsDoubleScale(const TMemoryEditor::TSetup& setup) {
	return setup.mScaleFactor == TGraphPort::kScale200 ||
	       (setup.mScaleFactor == TGraphPort::kAutomaticScale && setup.mDpi >= kDoubleScaleDpi);
}

} // namespace

TMemoryEditor::TMemoryEditor(TInstance& instance, const TSetup& setup) : mInstance(instance), mSetup(setup) {
	const int scale = IsDoubleScale(setup) ? 2 : 1;
	const TRectT<int> bounds{0, 0, kScreenSize.mX * scale, kScreenSize.mY * scale};
	sScreens.Clear();
	sScreens.Append({bounds, bounds, setup.mDpi, "memory"});
	EditorServices::SetPlatformFactory(&CreateMemoryPlatform);
	AsGui([&] {
		TSkinColors::SetReadsThemes(false);
		EditorServices::Start();
		mpPlatform = static_cast<THeadlessPlatform*>(TPlatform::Instance());
		TGraphPortPrefs& preferences = *TGraphPortPrefs::Instance();
		preferences.mUIScaleFactor.Set(static_cast<TGraphPort::TScaleFactor>(setup.mScaleFactor));
		preferences.mApplyFrameRate.Set(false);
		mpPlatform->MoveHost(Scaled(setup.mCorner, CurrentScale()));
		if (!setup.mThemeFile.empty())
			TSkinColors::Instance()->Load(TString(setup.mThemeFile.c_str(), kUtf8Encoding));
	});
}

TMemoryEditor::~TMemoryEditor() {
	Close();
}

void TMemoryEditor::Open() {
	if (IsOpen())
		return;
	AsGui([&] {
		TAudioPluginShell::TGui& gui = *mInstance.Shell().Gui();
		mpWindow = std::make_unique<TEditorWindow>(gui, kHostWindow);
		if (mSetup.mMakeFrame)
			mpWindow->Window().SetMainFrame(mSetup.mMakeFrame());
	});
}

void TMemoryEditor::Close() {
	if (!IsOpen())
		return;
	AsGui([&] {
		mFrames += static_cast<int>(mpWindow->Frame().Frames());
		mpWindow.reset();
	});
}

void TMemoryEditor::Tick() {
	AsGui([&] {
		mPresentedBefore = 0;
		for (const THeadlessWindow* window : mpPlatform->Windows())
			mPresentedBefore += window->PresentedRects();
	});
	if (!IsOpen())
		return mInstance.Shell().Tick();
	AsGui([&] {
		mpWindow->Tick();
		if (IsOpen()) // what runs in a tick may close it
			GrantSize();
	});
}

/// As a host does that gives an editor whatever size it asks for.
void TMemoryEditor::GrantSize() {
	const TPointT<int> wanted = Scaled(mInstance.Shell().Gui()->Size(), CurrentScale());
	if (mpWindow->IsOpen() && !(mpWindow->Size() == wanted))
		mpWindow->SetSize(wanted);
}

void TMemoryEditor::AdvanceNanoseconds(int64_t nanoseconds) {
	mClock.Advance(std::chrono::nanoseconds(nanoseconds));
}

TPointT<int> TMemoryEditor::Corner() const {
	return mpPlatform->HostCorner();
}

TUiScale TMemoryEditor::Scale() const {
	return AsGui([] { return CurrentScale(); });
}

TPointT<int> TMemoryEditor::OnScreen(TPointT<int> point) const {
	return Corner() + Scaled(point, Scale());
}

std::string TMemoryEditor::Views() {
	return AsGui([&] {
		int presented = -mPresentedBefore;
		for (const THeadlessWindow* window : mpPlatform->Windows())
			presented += window->PresentedRects();
		const int frames = mFrames + (IsOpen() ? static_cast<int>(mpWindow->Frame().Frames()) : 0);
		return DescribeWindows(*mpPlatform, Corner(), {presented, frames});
	});
}

void TMemoryEditor::SaveViews(const std::string& path) {
	const std::string views = Views();
	TReplacedFile file(path);
	file.Write({reinterpret_cast<const uint8_t*>(views.data()), views.size()});
	file.Commit();
}

void TMemoryEditor::SavePicture(const std::string& path, int window) {
	AsGui([&] {
		if (!IsOpen() && window == 0) // nothing is to be seen
			return WriteBlackPng(path, Scaled(mInstance.Shell().Gui()->Size(), Scale()));
		const TList<TWindow*>& windows = TDesktop::Instance()->OpenWindows();
		if (window >= windows.Count())
			throw TWorkError(path + ": there is no window " + std::to_string(window));
		const auto& glue = static_cast<const THeadlessWindow&>(*windows[window]->Glue());
		WritePng(path, glue.ClientSize(), glue.Pixels());
	});
}
