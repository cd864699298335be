// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/views/TView.h"

class TBitmapView;
class TButton;

/// What the about box shows. Has the size that it needs. Main thread.
class TVortelAboutBoxView final : public TView {
public:
	explicit TVortelAboutBoxView(const TFunctionPtr<void>& okAction);

private:
	void AddSwitches();
	void AddScaleChoice();
	/// In the middle, below what is there.
	void Place(const TPtr<TView>& view, int gap);

	int Scale() const;
	void SetScale(int factor);

	int mBottom = 0;
};
