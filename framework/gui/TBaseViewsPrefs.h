// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TObservableBaseType.h"
#include "framework/foundation/TSingleton.h"

/// What all views go by. The program's preferences declare these values as their own and so keep them. Main thread.
class TBaseViewsPrefs final : public TSingleton<TBaseViewsPrefs> {
public:
	TObservableBaseType<bool>& ShowTooltips() noexcept { return mShowTooltips; }

	/// Whether the mouse goes back to where a drag began.
	TObservableBaseType<bool>& WarpCursorOnDrag() noexcept { return mWarpCursorOnDrag; }

private:
	TObservableBaseType<bool> mShowTooltips{true};
	TObservableBaseType<bool> mWarpCursorOnDrag{true};
};
