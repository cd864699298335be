// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/views/TView.h"

#include <optional>

/// Paints one of the skin's backgrounds on its rectangle, and a line of text on it if there is one. Main thread.
class TBackgroundView : public TView {
public:
	/// TSkin::TBackground.
	explicit TBackgroundView(int kind);

	int Kind() const noexcept { return mKind; }

	void SetKind(int kind);

	const TString& Text() const noexcept { return mText; }

	void SetText(const TString& text);

	int Font() const noexcept { return mFont; }

	void SetFont(int font);

	/// Until it is set, that of the skin for the kind.
	TColor TextColor() const;
	void SetTextColor(std::optional<TColor> color);

	TTextAlign TextAlignment() const noexcept { return mTextAlignment; }

	void SetTextAlignment(TTextAlign alignment);
	/// Left and right, kept free of text.
	void SetTextInsets(int left, int right);

	/// A box shows its text 2 pixels in from its edges.
	bool IsTextBox() const noexcept { return mKind == kLowBox || (mKind >= kFirstBox && mKind <= kLastBox); }

	/// Where the text stands, in coordinates of the window.
	TRectT<int> TextRect() const;
	/// With the frame of a box whose text is being typed.
	void SetIsEdited(bool isEdited);
	/// Left and right: the view is a part of a ground that goes on beyond its edges.
	void SetOutsets(int left, int right);

	int LeftOutset() const noexcept { return mLeftOutset; }

	int RightOutset() const noexcept { return mRightOutset; }

	/// The background alone, on any rectangle of the window: for views that have one without holding it as a child.
	void DrawBackground(TSurface& port, const TRectT<int>& rect) const;
	/// Nothing shows through it.
	bool IsOpaque() const;

	bool IsRectCovered(const TRectT<int>& rect) const override;
	void Draw(TSurface& port) override;

private:
	// The kinds that are boxes; TSkin knows one of them.
	static constexpr int kLowBox = TSkin::kInnerBodyBackground;
	static constexpr int kFirstBox = TSkin::kTextBoxBackground;
	static constexpr int kLastBox = 8;

	int mKind;
	TString mText;
	int mFont = 0;
	std::optional<TColor> mTextColor;
	TTextAlign mTextAlignment = kAlignLeft;
	int mLeftInset = 0;
	int mRightInset = 0;
	int mLeftOutset = 0;
	int mRightOutset = 0;
	bool mIsEdited = false;
};
