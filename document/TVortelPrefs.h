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

	void OnLoadBegin() override;

private:
	TObservableBaseType<TString> mDefaultBankFilename;
	TObservableBaseType<TString> mLastUsedPath;
	TObservableBaseType<bool>& mpShowToolTips;
	TObservableBaseType<bool>& mpWarpCursorOnDrag;
	TObservableBaseType<bool> mRandomizeOnLoad;
};
