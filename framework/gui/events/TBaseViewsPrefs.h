// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/instance/TSingleton.h"

/// What all views go by. The program's preferences declare these values as their own and so keep them; they
/// are there as long as those, with or without an editor. Main thread.
class TBaseViewsPrefs final : public TSingleton<TBaseViewsPrefs> {
public:
	TObservableBaseType<bool>& ShowTooltips() noexcept { return mShowTooltips; }

	/// Whether the mouse goes back to where a drag began.
	TObservableBaseType<bool>& WarpCursorOnDrag() noexcept { return mWarpCursorOnDrag; }

	// How often held buttons and keys repeat, in milliseconds

	TObservableBaseType<int>& LeftButtonRepeatInterval() noexcept { return mLeftButtonRepeatInterval; }

	TObservableBaseType<int>& RightButtonRepeatInterval() noexcept { return mRightButtonRepeatInterval; }

	TObservableBaseType<int>& KeyRepeatInterval() noexcept { return mKeyRepeatInterval; }

	/// In the current storage alone.
	static void CreateService() {
		SetCreateInEveryStorage(false);
		Create([] { return new TBaseViewsPrefs; }, [](TBaseViewsPrefs* prefs) { delete prefs; });
	}

private:
	TObservableBaseType<bool> mShowTooltips{true};
	TObservableBaseType<bool> mWarpCursorOnDrag{true};
	TObservableBaseType<int> mLeftButtonRepeatInterval{20};
	TObservableBaseType<int> mRightButtonRepeatInterval{60};
	TObservableBaseType<int> mKeyRepeatInterval{40};
};
