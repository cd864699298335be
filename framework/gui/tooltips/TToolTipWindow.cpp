// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/tooltips/TToolTipWindow.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/controls/TControl.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/text/TMultilineTextView.h"
#include "framework/gui/views/TToolTipPresenter.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TDesktop.h"

#include <algorithm>

namespace {

constexpr int kWidestText = 420;
constexpr int kHintFont = 0;
constexpr int kHintLeft = 4;
constexpr int kAroundHint = 8;
constexpr int kAroundSuffix = 12;
constexpr int kSuffixGap = 4;
constexpr const char* kNoKeyText = "[noKey]";
constexpr TPointT<int> kPointerOffset{6, 18}; // pixels of the screen

/// The tool tips of all windows.
class TWindowPresenter final : public TToolTipPresenter {
public:
	bool IsOpen() const override { return TToolTipWindow::Current() && TToolTipWindow::Current()->IsVisible(); }

	TString Text() const override { return IsOpen() ? TToolTipWindow::Current()->Text() : TString(); }

	TView* Target() const override { return IsOpen() ? TToolTipWindow::Current()->Target() : nullptr; }

	void Show(TView& target, const TString& text) override {
		if (IsOpen())
			TToolTipWindow::Current()->Retarget(target, text);
		else
			TToolTipWindow::Open(target, text);
	}

	void Close() override {
		if (TToolTipWindow* window = TToolTipWindow::Current())
			window->Close();
	}
};

TWindow* WindowOf(const TView& view) {
	return view.MainFrame() ? view.MainFrame()->Window() : nullptr;
}

/// Where the tip goes that is to be at the pointer: to the left of the screen's right edge, above the pointer where it
/// would pass the lower edge. Pixels of the screen.
TPointT<int> PlaceInArea(TPointT<int> mouse, TPointT<int> size, const TRectT<int>& area) {
	TPointT<int> place = mouse + kPointerOffset;
	place.mX = std::min(place.mX, area.Right() - size.mX);
	if (place.mY + size.mY > area.Bottom())
		place.mY = mouse.mY - size.mY;
	place = {std::max(place.mX, area.mLeft), std::max(place.mY, area.mTop)};
	place.mY = std::min(place.mY, area.Bottom() - size.mY);
	return place;
}

} // namespace

void TToolTipWindow::InstallPresenter() {
	static TWindowPresenter presenter;
	TToolTipPresenter::SetInstance(&presenter);
}

TPtr<TToolTipWindow> TToolTipWindow::Open(TView& target, const TString& text) {
	TWindow* parent = WindowOf(target);
	if (!parent)
		return nullptr;
	if (TToolTipWindow* older = Current())
		older->Close();
	const TPtr<TToolTipWindow> window(new TToolTipWindow(parent, target, text));
	window->ShowText();
	window->Show(false, true);
	return window;
}

TToolTipWindow::TToolTipWindow(TWindow* parent, TView& target, const TString& text)
    : TViewWindow(parent, kToolTipWindow),
      mTarget(&target),
      mText(text) {
	sCurrent = this;
	SetIsSubWindow(true);
}

void TToolTipWindow::Retarget(TView& target, const TString& text) {
	mTarget = &target;
	mText = text;
	ShowText();
}

void TToolTipWindow::ShowText() {
	const TPointT<int> mouse = TCursor::Instance()->MousePosition();
	const TRectT<int> area = TDesktop::Instance()->WorkAreaAt(mouse);
	const int areaWidth = area.mWidth * UiScale().mY / UiScale().mX;
	const TPtr<TToolTipMainFrameView> frame =
	    MakePtr<TToolTipMainFrameView>(mText, mTarget.Get(), std::min(kWidestText, areaWidth / 3));
	const TPointT<int> size = frame->Size();
	if (!(size == ClientSize()) || !IsVisible())
		SetClientRect(PlaceInArea(mouse, Scaled(size, UiScale()), area), size);
	SetMainFrame(frame);
}

// The frame

TToolTipMainFrameView::TToolTipMainFrameView(const TString& text, TView* target, int wrapWidth)
    : mTextView(MakePtr<TMultilineTextView>(text, wrapWidth)),
      mTarget(target) {
	mTextView->SetColor(TSkinColors::Instance()->MainColor(TSkinColors::kToolTipFont));
	AddChild(mTextView);
	TPointT<int> size = mTextView->Size();
	if (const TControl* control = ControlWithKeyHint()) {
		size.mY += TextMetrics::LineHeight(kHintFont);
		size.mX = std::max(size.mX, KeyHintWidth(*control));
	}
	SetSize(size.mX, size.mY);
}

TControl* TToolTipMainFrameView::ControlWithKeyHint() const {
	auto* control = dynamic_cast<TControl*>(mTarget.Get());
	return control && control->HasKeyHint() ? control : nullptr;
}

int TToolTipMainFrameView::KeyHintWidth(const TControl& control) const {
	if (!control.ToolTipKey().IsKey())
		return TextMetrics::Width(kNoKeyText, kHintFont) + kAroundHint;
	const TString suffix = control.ToolTipKeySuffix();
	const int suffixWidth = suffix.IsEmpty() ? 0 : TextMetrics::Width(suffix, kHintFont) + kAroundSuffix;
	return control.ToolTipKeyWidth() + kAroundHint + suffixWidth;
}

void TToolTipMainFrameView::Draw(TSurface& port) {
	const TRectT<int> rect = AbsoluteRect();
	TSkin::Instance()->DrawToolTipBackground(port, rect);
	if (const TControl* control = ControlWithKeyHint())
		DrawKeyHint(port, *control);
	const TColor back = TSkinColors::Instance()->MainColor(TSkinColors::kToolTipBack);
	TSkin::Instance()->StrokeOutline(port, rect, back * 0.5f, {}, 1.0f);
}

void TToolTipMainFrameView::DrawKeyHint(TSurface& port, const TControl& control) {
	const TColor color = TSkinColors::Instance()->MainColor(TSkinColors::kToolTipFont);
	TPointT<int> pen{AbsolutePosition().mX + kHintLeft, AbsolutePosition().mY + mTextView->Height() - 2};
	if (!control.ToolTipKey().IsKey()) {
		port.DrawText(pen, kNoKeyText, color, kHintFont);
		return;
	}
	const int lineHeight = TextMetrics::LineHeight(kHintFont);
	pen.mX = port.DrawText(pen, "[", color, kHintFont).mX;
	pen.mX = control.DrawToolTipKey(port, {pen.mX, pen.mY, Width(), lineHeight}, color);
	pen.mX = port.DrawText(pen, "]", color, kHintFont).mX;
	port.DrawText({pen.mX + kSuffixGap, pen.mY}, control.ToolTipKeySuffix(), color, kHintFont);
}
