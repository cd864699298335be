// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TGraphPortPrefs.h"

#include "framework/document/nodes/TNameRules.h"
#include "framework/graphics/surfaces/UiScale.h"
#include "platform/TPlatform.h"

namespace {

constexpr TPointT<int> kMainScreen{1, 1};

TScreen MainScreen() {
	const TPlatform* const platform = TPlatform::Instance();
	return platform ? platform->Screens().At(kMainScreen) : TScreen{};
}

/// Most of what docks and panels leave free.
TPointT<int> DefaultWindowSize(const TScreen& screen) {
	const TPointT<int> size{screen.mWorkArea.mWidth * 19 / 20, screen.mWorkArea.mHeight * 18 / 20};
	return Unscaled(size, ScaleForDpi(screen.mDpi));
}

bool DrawsLayered(const TScreen& screen) {
	constexpr int kFineScreen = 192; // dots per inch
	return screen.mDpi >= kFineScreen && !screen.mDeviceName.IsEmpty() &&
	       !screen.mDeviceName.StartsWithIgnoringCase("Intel Iris");
}

} // namespace

TList<TString> TUiScaleFactorEnum::EnumerationNames() const {
	return {"Auto", "100%", "200%"};
}

TGraphPortPrefs::TGraphPortPrefs() {
	const TScreen screen = MainScreen();
	mWindowedModeSize.Set(DefaultWindowSize(screen));
	mEnableLayeredDrawing.Set(DrawsLayered(screen));
	DeclareMembers();
	FinishDeclaration();
}

TGraphPortPrefs::~TGraphPortPrefs() = default;

void TGraphPortPrefs::CreateInstance() {
	Create([] { return new TGraphPortPrefs; }, [](TGraphPortPrefs* preferences) { delete preferences; });
}

void TGraphPortPrefs::DeclareMembers() {
	const auto declare = [this](auto& value, const char* name) {
		AddProperty(&value, TNameRules::MemberNameToElementName(name), kWrite);
	};
	AddComment("DPI scaling");
	declare(mEnableHiDPIDisplay, "mEnableHiDPIDisplay");
	declare(mUIScaleFactor, "mUIScaleFactor");
	AddComment("Window Metrics");
	declare(mWindowedMode, "mWindowedMode");
	declare(mWindowedModePosition, "mWindowedModePosition");
	declare(mWindowedModeSize, "mWindowedModeSize");
	declare(mWindowedModeIsMaximized, "mWindowedModeIsMaximized");
	declare(mFullScreenMonitorMatchPos, "mFullScreenMonitorMatchPos");
	AddComment("Window Performance");
	declare(mVisualEffects, "mVisualEffects");
	declare(mEnableExternEditorKeyboardAccess, "mEnableExternEditorKeyboardAccess");
	declare(mApplyFrameRate, "mApplyFrameRate");
	declare(mMaxFrameRate, "mMaxFrameRate");
	declare(mForceUsingSystemWindowDecorations, "mForceUsingSystemWindowDecorations");
	declare(mEnableLayeredDrawing, "mEnableLayeredDrawing");
	declare(mEnableLayeredDrawingVSync, "mEnableLayeredDrawingVSync");
	declare(mApplyDisplayColorProfile, "mApplyDisplayColorProfile");
	AddComment("Keyboard Handling");
	declare(mOverrideSystemShortcuts, "mOverrideSystemShortcuts");
	declare(mUseRightSideModifiersAsMappableKeys, "mUseRightSideModifiersAsMappableKeys");
	declare(mCapsLockKeyWorkaround, "mCapsLockKeyWorkaround");
	AddComment("Mouse Handling");
	declare(mApplyMouseWheelAcceleration, "mApplyMouseWheelAcceleration");
	AddComment("Application Prefs");
	declare(mRecentFiles, "mRecentFiles");
	declare(mRecentLoadedFiles, "mRecentLoadedFiles");
	declare(mRecentSavedFiles, "mRecentSavedFiles");
	declare(mDisabledScriptingTools, "mDisabledScriptingTools");
	declare(mWarnAboutUnsavedDocumentChanges, "mWarnAboutUnsavedDocumentChanges");
	declare(mQuitAndSaveBackupOnFatalError, "mQuitAndSaveBackupOnFatalError");
	declare(mShowScriptingDevelopmentTools, "mShowScriptingDevelopmentTools");
	declare(mApplicationStartsFirstTime, "mApplicationStartsFirstTime");
}
