// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPair.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/gui/controls/TControl.h"

/// Shows a picture and can act on the mouse. Main thread.
class TBitmapView : public TControl {
public:
	enum THorizontalAlign : int32_t { kLeft = 0, kRight = 1, kCenter = 2 };

	/// Takes the picture's size.
	explicit TBitmapView(const TPtr<TBitmap>& bitmap);

	/// What is drawn now.
	virtual TBitmap* CurrentBitmap() const { return mBitmap.Get(); }

	virtual void OnBitmapChanged() {}

	/// Whether the picture is drawn in colours of its own (0) or in those that it was given (1).
	virtual int BitmapMode() const { return 0; }

	virtual TPair<TColor, TColor> BitmapColors() const { return {}; }

	virtual void SetBitmapMode(int /*mode*/, const TPair<TColor, TColor>& /*colors*/) {}

	void SetBitmap(const TPtr<TBitmap>& bitmap);

	const TPtr<TBitmap>& Bitmap() const noexcept { return mBitmap; }

	void SetOpacity(float opacity);
	void SetHorizontalAlign(int align);

	/// A button without anything of its own is as good as the left one. Commands come before actions.
	void SetLeftDownAction(const TFunctionPtr<void>& action) { mLeft.mDown = action; }

	void SetRightDownAction(const TFunctionPtr<void>& action) { mRight.mDown = action; }

	void SetMiddleDownAction(const TFunctionPtr<void>& action) { mMiddle.mDown = action; }

	void SetLeftUpAction(const TFunctionPtr<void>& action) { mLeft.mUp = action; }

	void SetRightUpAction(const TFunctionPtr<void>& action) { mRight.mUp = action; }

	void SetMiddleUpAction(const TFunctionPtr<void>& action) { mMiddle.mUp = action; }

	void SetLeftCommand(const TKeyCommand& command) { mLeft.mCommand = command; }

	void SetRightCommand(const TKeyCommand& command) { mRight.mCommand = command; }

	void SetMiddleCommand(const TKeyCommand& command) { mMiddle.mCommand = command; }

	void SetRepeat(bool repeat) { mRepeat = repeat; }

	bool WantsMouseCapture(int x, int y, int modifiers) override;
	void Draw(TSurface& port) override;
	void OnEnabledChanged() override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnRightMouseDown(int x, int y, int modifiers) override;
	bool OnMiddleMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnRightMouseUp(int x, int y, int modifiers) override;
	bool OnMiddleMouseUp(int x, int y, int modifiers) override;

private:
	struct TMouseButtonActions {
		TFunctionPtr<void> mDown;
		TFunctionPtr<void> mUp;
		TKeyCommand mCommand;

		bool IsAnything() const { return mDown || mUp || mCommand; }
	};

	bool HasAction() const;
	bool Act(const TMouseButtonActions& button, bool isRelease, int x, int y, int modifiers);

	TPtr<TBitmap> mBitmap;
	float mOpacity = 1.0f;
	int mHorizontalAlign = kCenter;
	TMouseButtonActions mLeft;
	TMouseButtonActions mRight;
	TMouseButtonActions mMiddle;
	bool mRepeat = false;
};

/// A picture tinted with colours, and another or a brighter one while the mouse is over it. Main thread.
class TRecolorableBitmapView : public TBitmapView {
public:
	static constexpr float kDefaultHighlight = 1.25f;

	explicit TRecolorableBitmapView(const TPtr<TRecolorableBitmap>& bitmap);

	/// Nothing happens when these are the colours already.
	void Recolor(const TColor& fore, const TColor& back);
	/// Drawn instead while highlighted, in the fore colour times the strength.
	void SetHighlightBitmap(const TPtr<TRecolorableBitmap>& bitmap, float strength = kDefaultHighlight);
	void ClearHighlightBitmap();

	bool IsHighlighted() const noexcept { return mHighlighted; }

	TBitmap* CurrentBitmap() const override;

	int BitmapMode() const override { return mIsTinted ? 1 : 0; }

	TPair<TColor, TColor> BitmapColors() const override { return {mFore, mBack}; }

	void SetBitmapMode(int mode, const TPair<TColor, TColor>& colors) override;
	void OnBitmapChanged() override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	void OnMouseCaptureTaken(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;

private:
	TRecolorableBitmap* RecolorableBitmap() const;
	void Tint();
	void SetHighlighted(bool highlighted);

	bool mIsTinted = false;
	TColor mFore;
	TColor mBack;
	TPtr<TRecolorableBitmap> mHighlightBitmap;
	float mHighlightStrength = kDefaultHighlight;
	bool mHighlighted = false;
};
