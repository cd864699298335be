// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TBitmapView.h"

/// Two small arrows to step something. Main thread.
class TIncDecButtonPair : public TControl {
public:
	enum TOrientation : int32_t { kLeftRight = 0, kUpDown = 1 };

	explicit TIncDecButtonPair(int orientation);
	~TIncDecButtonPair() override;

	/// back: left or down. Repeated while an arrow is held. Called with 0 for the left mouse button, 1 for the right
	/// one.
	void SetActions(const TFunctionPtr<void, int>& back, const TFunctionPtr<void, int>& forward);

	void SetOpacity(float opacity);

	/// The arrows do.
	bool WantsMouseCapture(int /*x*/, int /*y*/, int /*modifiers*/) override { return false; }

	void OnResized() override;
	void OnEnabledChanged() override;
	void ApplyColors() override;

private:
	static TPtr<TRecolorableBitmapView> MakeArrow(int orientation, bool forward);

	void BackByLeft() { Act(mBackAction, 0); }

	void BackByRight() { Act(mBackAction, 1); }

	void ForwardByLeft() { Act(mForwardAction, 0); }

	void ForwardByRight() { Act(mForwardAction, 1); }

	static void Act(const TFunctionPtr<void, int>& action, int mouseButton) {
		if (action)
			action(mouseButton);
	}

	const int mOrientation;
	TPtr<TRecolorableBitmapView> mBack;
	TPtr<TRecolorableBitmapView> mForward;
	TPtr<TView> mLayout;
	TFunctionPtr<void, int> mBackAction;
	TFunctionPtr<void, int> mForwardAction;
};
