// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TColor.h"

#include <cstdint>
#include <optional>

class TBitmap;

enum TTextAlign : int32_t { kAlignLeft = 0, kAlignRight = 1, kAlignCenter = 2 };

/// What the skin must know of a button to draw it.
struct TButtonLook {
	enum TState : int32_t { kPressed = 0, kUp = 1, kHoverOnUp = 2, kHoverOnPressed = 3 };

	/// Which corners are round: of a group, the outer ones.
	enum TGroupPosition : int32_t {
		kAlone = 0,
		kAloneInGroup = 1,
		kLeftPiece = 2,
		kRightPiece = 3,
		kTopPiece = 4,
		kBottomPiece = 5,
		kMiddlePiece = 6, // of a row
		kMiddleOfColumn = 7
	};

	TState mState = kUp;
	TGroupPosition mGroupPosition = kAlone;
	bool mIsEnabled = true;
	bool mIsHeld = false;             // the mouse button is down on it: the content sinks by a pixel
	bool mIsLabelHighlighted = false; // "Button_Highlight_Font" instead of "Button_Font"

	TString mLabel;
	int32_t mFont = 0;
	TTextAlign mTextAlign = kAlignCenter;
	int32_t mTextOffset = 0; // moves the label to the right

	TBitmap* mpBitmap = nullptr; // a TRecolorableBitmap takes the label's colour
	bool mIconIsRight = false;   // of the label
	int32_t mLabelGap = 0;       // between the two

	std::optional<TColor> mTextColor; // instead of the skin's

	bool IsSelected() const { return mState == kPressed || mState == kHoverOnPressed; }

	bool IsHighlighted() const { return mState == kHoverOnUp || mState == kHoverOnPressed; }
};
