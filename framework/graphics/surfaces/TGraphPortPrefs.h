// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/observables/TObservableEnum.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/graphics/surfaces/TGraphPort.h"

/// The names are "Auto", "100%" and "200%".
class TUiScaleFactorEnum final : public TObservableEnum<TGraphPort::TScaleFactor> {
public:
	TList<TString> EnumerationNames() const override;
};

/// How the program shows itself and takes input. A node that a program's preferences may take in; in a plug-in nobody
/// does, and the values are their defaults or what the running program sets. Made before the port, when TPlatform
/// already answers. GUI thread.
class TGraphPortPrefs final : public TSingleton<TGraphPortPrefs>, public TDocumentNode {
public:
	using TTextList = TObservableList<TObservableBaseType<TString>>;

	TGraphPortPrefs();
	~TGraphPortPrefs() override;

	/// In the current storage and in all that are made later.
	static void CreateInstance();

	/// Off: every display counts as one of 96 DPI.
	TObservableBaseType<bool> mEnableHiDPIDisplay{true};
	TUiScaleFactorEnum mUIScaleFactor;

	TObservableBaseType<bool> mWindowedMode{true};
	TObservableBaseType<TPointT<int>> mWindowedModePosition{{-1, -1}}; // -1,-1: not set
	TObservableBaseType<TPointT<int>> mWindowedModeSize;               // logical pixels
	TObservableBaseType<bool> mWindowedModeIsMaximized{false};
	TObservableBaseType<TPointT<int>> mFullScreenMonitorMatchPos{{0, 0}};

	TObservableBaseType<bool> mVisualEffects{true};
	TObservableBaseType<bool> mEnableExternEditorKeyboardAccess{false};
	TObservableBaseType<bool> mApplyFrameRate{true};
	TObservableBaseType<int> mMaxFrameRate{60}; // a second
	TObservableBaseType<bool> mForceUsingSystemWindowDecorations{false};
	TObservableBaseType<bool> mEnableLayeredDrawing{false};
	TObservableBaseType<bool> mEnableLayeredDrawingVSync{true};
	TObservableBaseType<bool> mApplyDisplayColorProfile{false};

	TObservableBaseType<bool> mOverrideSystemShortcuts{false};
	TObservableBaseType<bool> mUseRightSideModifiersAsMappableKeys{false};
	TObservableBaseType<bool> mCapsLockKeyWorkaround{false};

	TObservableBaseType<bool> mApplyMouseWheelAcceleration{true};

	TTextList mRecentFiles;
	TTextList mRecentLoadedFiles;
	TTextList mRecentSavedFiles;
	TTextList mDisabledScriptingTools;
	TObservableBaseType<bool> mWarnAboutUnsavedDocumentChanges{true};
	TObservableBaseType<bool> mQuitAndSaveBackupOnFatalError{true};
	TObservableBaseType<bool> mShowScriptingDevelopmentTools{false};
	TObservableBaseType<bool> mApplicationStartsFirstTime{true};

	/// Fired around the change when the DPI of the display that "Auto" goes by has become another.
	TObservableBang mDisplayChanged;

private:
	void DeclareMembers();
};
