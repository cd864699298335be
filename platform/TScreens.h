// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TRectT.h"

struct TScreen {
	TRectT<int> mBounds;   // pixels, in the coordinates that all screens share
	TRectT<int> mWorkArea; // without docks and panels
	int mDpi = 96;
	TString mDeviceName{}; // of the graphics device; may be empty

	friend bool operator==(const TScreen&, const TScreen&) = default;
};

/// The screens of this moment. GUI thread.
class TScreens {
public:
	virtual ~TScreens() = default;

	/// Empty where there is no display.
	virtual const TList<TScreen>& All() const = 0;

	/// The screen that holds the point, else the nearest; an empty one of 96 DPI where there is none.
	TScreen At(TPointT<int> point) const;
};
