// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"

class TControl;
class TMultilineTextView;

/// The one tool tip. A new one takes the place of the one that is shown. Main thread.
class TToolTipWindow final : public TViewWindow {
public:
	/// Opens at once, beside the pointer.
	static TPtr<TToolTipWindow> Open(TView& target, const TString& text);

	/// Null while there is none.
	static TToolTipWindow* Current() noexcept { return sCurrent.Get(); }

	/// Makes this the way in which views show their tips.
	static void InstallPresenter();

	/// Says something else, about another view.
	void Retarget(TView& target, const TString& text);

	TView* Target() const noexcept { return mTarget.Get(); }

	const TString& Text() const noexcept { return mText; }

private:
	TToolTipWindow(TWindow* parent, TView& target, const TString& text);

	void ShowText();

	static inline TWeakPtr<TToolTipWindow> sCurrent; // until it is destroyed

	TWeakPtr<TView> mTarget;
	TString mText;
};

/// The text of a tool tip, and below it the key of the control that it is about. Main thread.
class TToolTipMainFrameView final : public TMainFrameView {
public:
	/// target: null for a text about nothing.
	TToolTipMainFrameView(const TString& text, TView* target, int wrapWidth);

	void Draw(TSurface& port) override;

private:
	TControl* ControlWithKeyHint() const;
	int KeyHintWidth(const TControl& control) const;
	void DrawKeyHint(TSurface& port, const TControl& control);

	TPtr<TMultilineTextView> mTextView;
	TWeakPtr<TView> mTarget;
};
