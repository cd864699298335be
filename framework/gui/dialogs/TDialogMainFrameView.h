// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/dialogs/TWindowCaption.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/views/TMainFrameView.h"

class TDialog;
class TWindowResizeBorder;

/// The ground of a dialog, with its one content view. When that takes another size, so does the window. Main thread.
class TDialogBackgroundView final : public TBackgroundView {
public:
	explicit TDialogBackgroundView(TDialog& dialog);

	TView* Content() const noexcept { return mContent.Get(); }

	void SetContent(const TPtr<TView>& view);

	void OnResized() override;
	void OnChildResized(TView& child) override;
	void OnTimer() override;

private:
	void PlaceContent();

	TWeakPtr<TDialog> mDialog;
	TPtr<TView> mContent;
};

/// The frame of a dialog: border, caption and content, unless the platform draws the first two. Main thread.
class TDialogMainFrameView final : public TMainFrameView {
public:
	static constexpr int kCaptionHeight = 22;

	TDialogMainFrameView(TDialog& dialog, int32_t captionButtons, bool hasCaption);
	~TDialogMainFrameView() override;

	void SetContent(const TPtr<TView>& view, const TString& title, bool nativeDecorations);

	TView* Content() const noexcept { return mContent->Content(); }

	TPointT<int> FrameSizeFor(TPointT<int> contentSize) const;
	/// For the caption to show the title and all its buttons.
	int MinimumWidthFor(const TString& title) const;

	void OnResized() override;
	void Draw(TSurface& port) override;
	bool HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;

private:
	int BorderWidth() const;
	int HeadHeight() const;

	TWeakPtr<TDialog> mDialog;
	TPtr<TWindowResizeBorder> mResizeBorder;
	TPtr<TWindowCaption> mCaption;
	bool mNativeDecorations = false;
	const bool mHasCaption;
	TPtr<TDialogBackgroundView> mContent;
};
