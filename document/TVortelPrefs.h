// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TApplicationPreferences.h"
#include "framework/document/observables/TObservableBaseType.h"

/// The preferences of this plug-in. Made and ended explicitly, in each instance that has a user; the command-line
/// program has none. Needs TBaseViewsPrefs.
class TVortelPrefs final : public TApplicationPreferences {
public:
	TVortelPrefs();

	static void Create();

	/// Null where there are none.
	static TVortelPrefs* Instance() noexcept { return static_cast<TVortelPrefs*>(TApplicationPreferences::Instance()); }

	/// The bank for new instances; empty for that of the resources.
	TObservableBaseType<TString>& DefaultBankFilename() noexcept { return mDefaultBankFilename; }

	/// Where file dialogs start.
	TObservableBaseType<TString>& LastUsedPath() noexcept { return mLastUsedPath; }

	/// Where there is no bank for new instances, they get random programs.
	TObservableBaseType<bool>& RandomizeOnLoad() noexcept { return mRandomizeOnLoad; }

	TObservableBaseType<bool>& ShowToolTips() noexcept { return mpShowToolTips; }

	TObservableBaseType<bool>& WarpCursorOnDrag() noexcept { return mpWarpCursorOnDrag; }

	/// How large editors are drawn from their next start on, in the words of TGraphPortPrefs. Empty: as large as the
	/// display asks for; the file then says nothing of it.
	TObservableBaseType<TString>& UiScaleFactor() noexcept { return mpGraphPortPrefs->mUiScaleFactor; }

	void OnLoadBegin() override;

private:
	/// Named as the port looks for it before there are preferences.
	struct TGraphPortGroup final : TDocumentNode {
		TGraphPortGroup() { FinishDeclaration(); }

		TObservableBaseType<TString> mUiScaleFactor;
	};

	TObservableBaseType<TString> mDefaultBankFilename;
	TObservableBaseType<TString> mLastUsedPath;
	TObservableBaseType<bool>& mpShowToolTips;
	TObservableBaseType<bool>& mpWarpCursorOnDrag;
	TObservableBaseType<bool> mRandomizeOnLoad;
	const TPtr<TGraphPortGroup> mpGraphPortPrefs;
};
