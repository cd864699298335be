// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/skin/TButtonLook.h"
#include "framework/gui/controls/TControl.h"

#include <optional>

class TBitmap;

enum TButtonStyle : int32_t {
	kPlainButton = 0,
	kRoundButton = 1, // when it is square
	kToolButton = 2,
	kLeftPieceButton = 3, // pieces of a pair
	kRightPieceButton = 4,
	kTopPieceButton = 5,
	kBottomPieceButton = 6,
	kBitmapButton = 7,
	kListEntryButton = 8,
	kMenuButton = 9,
	kScrollBarButton = 10
};

/// Pressed and up are where a button rests, the other two where it is while the mouse is over it.
enum TButtonState : int32_t { kButtonPressed = 0, kButtonUp = 1, kButtonHoverUp = 2, kButtonHoverPressed = 3 };

/// A button with a label or a picture; acts when it is released. Main thread.
class TButton : public TControl {
public:
	static constexpr int kDefaultHeight = 18;

	TButton() = default;

	/// TButtonStyle.
	explicit TButton(const TString& label, int style = kToolButton);

	void SetStyle(int style);

	int Style() const noexcept { return mStyle; }

	/// A button without a size takes that of the label.
	void SetLabel(const TString& label);

	const TString& Label() const noexcept { return mLabel; }

	void SetFont(int font);

	int Font() const noexcept { return mFont; }

	/// Of the wider one; 0 without a picture.
	int PictureWidth() const;
	void SetTextAlign(TTextAlign alignment);
	void SetTextOffset(int offset);
	/// Between label and picture.
	void SetLabelGap(int gap);
	/// Of the label; it is on the left otherwise.
	void SetBitmapIsRight(bool isRight);
	/// Instead of those of the skin, until nothing is given.
	void SetTextColor(std::optional<TColor> color);
	void SetBackColor(std::optional<TColor> color);
	/// TButtonState.
	void SetState(int state);

	int State() const noexcept { return mState; }

	/// Where the button stands in a group, for groups that the styles do not know.
	void SetGroupPosition(TButtonLook::TGroupPosition position);
	/// Where the button goes back to; also puts it there.
	void SetRestState(int state);

	int RestState() const noexcept { return mRestState; }

	/// Each stands in for the other when that is missing. A picture goes behind the label, unless the label is cleared:
	/// then it is only the button's name. A button without a size takes that of the larger picture.
	void SetBitmaps(const TPtr<TBitmap>& up, const TPtr<TBitmap>& down, bool clearLabel);
	void SetClickAction(const TFunctionPtr<void>& action);
	/// For the right mouse button; without one that is as good as the left.
	void SetSecondaryAction(const TFunctionPtr<void>& action);
	/// Commands come before actions.
	void SetClickCommand(const TKeyCommand& command);
	void SetSecondaryCommand(const TKeyCommand& command);
	/// Acts again and again while it is held.
	void SetRepeat(bool repeat);
	/// From the first frame on.
	void SetRepeatImmediately(bool immediately);

	/// One pixel larger on all sides, against missing by a hair.
	bool ContainsPoint(int x, int y) const override;
	void Draw(TSurface& port) override;
	void OnResized() override;
	void OnEnabledChanged() override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	void OnMouseCaptureTaken(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnRightMouseUp(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;

private:
	/// As the skin is told.
	TButtonLook Look() const;

	bool IsPressedState() const noexcept { return mState == kButtonPressed || mState == kButtonHoverPressed; }

	bool ActsOn(int x, int y, int modifiers) const;
	int HoverState() const noexcept { return mRestState == kButtonUp ? kButtonHoverUp : kButtonHoverPressed; }

	TBitmap* CurrentBitmap() const;

	TFunctionPtr<void> mClickAction;
	TKeyCommand mClickCommand;
	TFunctionPtr<void> mSecondaryAction;
	TKeyCommand mSecondaryCommand;
	int mStyle = kPlainButton;
	std::optional<TButtonLook::TGroupPosition> mGroupPosition;
	TString mLabel;
	int mFont = 0;
	TTextAlign mTextAlign = kAlignCenter;
	int mTextOffset = 0;
	int mLabelGap = 0;
	std::optional<TColor> mTextColor;
	std::optional<TColor> mBackColor;
	int mState = kButtonUp;
	int mRestState = kButtonUp;
	bool mRepeat = false;
	bool mImmediateRepeat = false;
	bool mLabelIsHidden = false;
	bool mBitmapIsRight = false;
	TPtr<TBitmap> mUpBitmap;
	TPtr<TBitmap> mDownBitmap;
};
