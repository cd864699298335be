// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TDialogMainFrameView.h"

#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/dialogs/TDialog.h"
#include "framework/gui/dialogs/TWindowResizeBorder.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/layout/TextMetrics.h"

#include <algorithm>

namespace {

constexpr int kTitleFont = 2;
constexpr int kAroundTitle = 60;
constexpr int kAroundNativeTitle = 80;

} // namespace

TDialogBackgroundView::TDialogBackgroundView(TDialog& dialog)
    : TBackgroundView(TSkin::kPanelBackground),
      mDialog(&dialog) {}

void TDialogBackgroundView::SetContent(const TPtr<TView>& view) {
	if (mContent)
		RemoveChild(mContent.Get());
	mContent = view;
	AddChild(mContent);
	PlaceContent();
}

void TDialogBackgroundView::OnResized() {
	PlaceContent();
}

/// In a window that can be resized the content fills the room; else it keeps its size, in the middle.
void TDialogBackgroundView::PlaceContent() {
	if (!mContent || !HasSize())
		return;
	if (mDialog && mDialog->IsResizable())
		mContent->SetRect({0, 0, Width(), Height()});
	else
		mContent->SetPosition(std::max((Width() - mContent->Width()) / 2, 0), 0);
}

/// A burst of changes costs one resize.
void TDialogBackgroundView::OnChildResized(TView& /*child*/) {
	if (!IsTimerRunning())
		StartOneShotTimer(0);
}

void TDialogBackgroundView::OnTimer() {
	const bool fits = mContent->Width() <= Width() && mContent->Height() == Height();
	if (!fits && mDialog && mDialog->IsOpen() && !mDialog->IsResizable()) {
		const TPointT<int> size = mDialog->FrameSizeFor(mContent->Size());
		const TPointT<int> minimum{mDialog->MinimumSize().mX, size.mY};
		mDialog->SetMinimumSize(minimum);
		mDialog->SetClientSize({std::max(size.mX, minimum.mX), size.mY});
	}
	PlaceContent();
}

TDialogMainFrameView::TDialogMainFrameView(TDialog& dialog, int32_t captionButtons, bool hasCaption)
    : mDialog(&dialog),
      mResizeBorder(MakePtr<TWindowResizeBorder>(&dialog)),
      mCaption(MakePtr<TWindowCaption>(&dialog, captionButtons)),
      mHasCaption(hasCaption),
      mContent(MakePtr<TDialogBackgroundView>(dialog)) {
	AddChild(mContent);
	AddChild(mCaption);
	AddChild(mResizeBorder);
}

TDialogMainFrameView::~TDialogMainFrameView() = default;

int TDialogMainFrameView::BorderWidth() const {
	return mDialog && mDialog->IsResizable() && !mNativeDecorations ? 3 : 1;
}

int TDialogMainFrameView::HeadHeight() const {
	return mHasCaption ? kCaptionHeight : 0;
}

TPointT<int> TDialogMainFrameView::FrameSizeFor(TPointT<int> contentSize) const {
	if (mNativeDecorations)
		return contentSize;
	const int borders = 2 * BorderWidth();
	return {contentSize.mX + borders, contentSize.mY + borders + HeadHeight()};
}

int TDialogMainFrameView::MinimumWidthFor(const TString& title) const {
	return TextMetrics::Width(title, kTitleFont) + (mNativeDecorations ? kAroundNativeTitle : kAroundTitle) +
	       mCaption->ButtonsWidth();
}

void TDialogMainFrameView::SetContent(const TPtr<TView>& view, const TString& title, bool nativeDecorations) {
	mNativeDecorations = nativeDecorations;
	mCaption->SetTitle(title);
	mCaption->SetVisible(mHasCaption && !nativeDecorations);
	mResizeBorder->SetVisible(!nativeDecorations && mDialog && mDialog->IsResizable());
	mContent->SetContent(view);
	OnResized();
}

void TDialogMainFrameView::OnResized() {
	if (mNativeDecorations) {
		mContent->SetRect({0, 0, Width(), Height()});
		return;
	}
	const int border = BorderWidth();
	const int head = border + HeadHeight();
	mResizeBorder->SetRect({0, 0, Width(), Height()});
	mCaption->SetRect({border, border, Width() - 2 * border, kCaptionHeight});
	const int height = Height() - head - border;
	mContent->SetVisible(height >= 1);
	mContent->SetRect({border, head, Width() - 2 * border, height});
}

void TDialogMainFrameView::Draw(TSurface& port) {
	const TSkinColors& colors = *TSkinColors::Instance();
	port.FillRect(AbsoluteRect(), colors.MainColor(TSkinColors::kMainBack), 1.0f);
	if (!mNativeDecorations)
		TSkin::Instance()->StrokeOutline(port, AbsoluteRect(), TSkin::Instance()->MidToneColor(), {}, 1.0f);
}

bool TDialogMainFrameView::HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	const TKeptAlive kept(this);
	const TPtr<TDialog> dialog = mDialog.Get();
	const TWindow* main = TWindow::MainWindow();
	const TKeyboardBindings* bindings = main ? main->KeyBindings() : nullptr;
	if (bindings && key.IsKey() && key == bindings->KeyOf("Global", "Application", "Switch to other Application"))
		return false;
	return HandleFocusedKey(key, isRelease, isRepeat) ||
	       (dialog && dialog->KeyHandler() && dialog->KeyHandler()(key, isRelease, isRepeat)) ||
	       HandleFrameKey(key, isRelease, isRepeat);
}
