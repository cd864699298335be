// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TButton.h"

class TScrollBarButtonBase;

/// Scrolls by a thumb on a track and arrows at both ends. The numbers lie elsewhere: the range (all pixels), the window
/// (those that are shown) and the position (the first one shown). Main thread.
class TScrollBarBase : public TControl {
public:
	static constexpr int kThickness = 16;
	static constexpr int kDefaultArrowStep = 16;

	enum TOrientation : int32_t { kVertical = 0, kHorizontal = 1 };

	~TScrollBarBase() override;

	/// Values may go before the bar. A position that cannot be set cannot be scrolled.
	void SetPositionValue(TValue<int>* value);
	void SetWindowValue(TValue<int>* value);
	void SetRangeValue(TValue<int>* value);

	int Position() const;
	int Window() const;
	int Range() const;

	bool CanScroll() const { return Range() > Window(); }

	/// Within what can be shown.
	void SetPosition(int position);
	void Step(int delta);
	/// Where Step would lead.
	int PositionAfter(int delta) const;

	void SetArrowStep(int step) noexcept { mArrowStep = step; }

	int ArrowStep() const noexcept { return mArrowStep; }

	/// Shows nothing, and lets the mouse through, while there is nothing to scroll.
	void SetAutoHide(bool autoHide);
	void SetHasButtons(bool hasButtons);

	bool IsHidden() const noexcept { return mHidden; }

	/// Called when the bar hides itself or shows itself again.
	void AddHiddenAction(const TFunctionPtr<void>& action);

	int Orientation() const noexcept { return mOrientation; }

	TScrollBarButtonBase& Track() const noexcept { return *mTrack; }

	bool ContainsPoint(int x, int y) const override;
	void Draw(TSurface& port) override;
	void OnResized() override;
	void OnEnabledChanged() override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;

protected:
	TScrollBarBase(int orientation, const TPtr<TScrollBarButtonBase>& track);

	TValue<int>* WindowValue() const noexcept { return mWindowValue.Get(); }

private:
	static constexpr int kLargestStep = 1 << 30;

	void Rebind(TWeakPtr<TValue<int>>& place, TValue<int>* value);
	void OnNumberChanged(TObservable* value, int32_t reason);
	void UpdateHidden();
	void ArrowBack() { Step(-mArrowStep); }

	void ArrowForward() { Step(mArrowStep); }

	const int mOrientation;
	bool mHasButtons = true;
	bool mAutoHide = false;
	bool mHidden = false;
	TList<TFunctionPtr<void>> mHiddenActions;
	bool mButtonsShown = false;
	bool mTrackShown = false;
	int mArrowStep = kDefaultArrowStep;
	TPtr<TButton> mUpButton;
	TPtr<TButton> mDownButton;
	TPtr<TScrollBarButtonBase> mTrack;
	TWeakPtr<TValue<int>> mPositionValue;
	TWeakPtr<TValue<int>> mWindowValue;
	TWeakPtr<TValue<int>> mRangeValue;
};

class TScrollBar : public TScrollBarBase {
public:
	explicit TScrollBar(int orientation);
};

/// The ends of its thumb can be dragged, which changes the window. Main thread.
class TZoomableScrollBar : public TScrollBarBase {
public:
	explicit TZoomableScrollBar(int orientation);

	/// Clamped to what is left of the range. The window value must be one that can be set.
	void SetWindow(int window);
	void SetPositionAndWindow(int position, int window);
};
