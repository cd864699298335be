// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TView.h"

/// One line of text that is dragged. Main thread.
class TDefaultDragImage final : public TView {
public:
	explicit TDefaultDragImage(const TString& text);

	/// The mouse looks for what lies below it.
	bool HitTest(int /*x*/, int /*y*/) override { return false; }

	void Draw(TSurface& port) override;

private:
	const TString mText;
};
