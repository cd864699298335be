// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TWindowCaption.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/controls/TBitmapView.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/dialogs/TWindowDragBar.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/menus/TContextMenu.h"
#include "framework/gui/text/TTextView.h"
#include "framework/gui/windows/TWindow.h"

#include <algorithm>
#include <array>

namespace {

constexpr TPointT<int> kIconPosition{4, 2};
constexpr int kIconSize = 16;
constexpr int kTitleGap = 4;
constexpr int kButtonSize = 18;
constexpr int kButtonMargin = 2;

} // namespace

TWindowCaption::TWindowCaption(TWindow* window, int32_t buttons)
    : mBackground(MakePtr<TBackgroundView>(TSkin::kControlBarBackground)),
      mDragBar(MakePtr<TWindowDragBar>(window)),
      mTitle(MakePtr<TTextView>(TString(), kStrongBodyText, kAlignLeft, 2)),
      mWindow(window) {
	AddChild(mBackground);
	AddChild(mTitle);
	AddChild(mDragBar); // the title can be taken hold of, too
	AddIcon();
	if (buttons & kMinimizeButton)
		mMinimizeButton = AddButton("Icons/Minimize.bmp", &TWindowCaption::MinimizeWindow);
	if (buttons & kMaximizeButton)
		mMaximizeButton = AddButton("Icons/Maximize.bmp", &TWindowCaption::MaximizeWindow);
	if (buttons & kCloseButton)
		mCloseButton = AddButton("Icons/Exit.bmp", &TWindowCaption::CloseWindow);
}

TWindowCaption::~TWindowCaption() = default;

/// Without its picture a caption goes without an icon.
void TWindowCaption::AddIcon() {
	try {
		mIcon = MakePtr<TBitmapView>(MakePtr<TBitmap>("Icons/WindowIcon16.png"));
		mIcon->SetRect({kIconPosition.mX, kIconPosition.mY, kIconSize, kIconSize});
		mIcon->SetLeftDownAction({this, &TWindowCaption::OpenWindowMenu});
		AddChild(mIcon);
	} catch (const TReadableException&) {
		mIcon = nullptr;
	}
}

TPtr<TButton> TWindowCaption::AddButton(const char* image, void (TWindowCaption::*action)()) {
	const TPtr<TButton> button = MakePtr<TButton>(TString(), kPlainButton);
	try {
		const TPtr<TBitmap> bitmap = MakePtr<TRecolorableBitmap>(image);
		button->SetBitmaps(bitmap, bitmap, true);
	} catch (const TReadableException&) {
		// A button without a picture still works.
	}
	button->SetSize(kButtonSize, kButtonSize);
	button->SetClickAction({this, action});
	AddChild(button);
	return button;
}

void TWindowCaption::SetTitle(const TString& title) {
	mTitle->SetText(title);
}

int TWindowCaption::ButtonsWidth() const {
	const int gap = mWindow && mWindow->IsResizable() ? 3 : 1;
	int width = 0;
	for (const TPtr<TButton>& button : {mCloseButton, mMaximizeButton, mMinimizeButton})
		width += button ? kButtonSize + gap : 0;
	return width;
}

void TWindowCaption::OnResized() {
	mBackground->SetSize(Width(), Height());
	mDragBar->SetSize(Width(), Height());
	const int gap = mWindow && mWindow->IsResizable() ? 3 : 1;
	int right = Width() - kButtonMargin;
	for (const TPtr<TButton>& button : {mCloseButton, mMaximizeButton, mMinimizeButton})
		if (button) {
			button->SetPosition(right - kButtonSize, (Height() - kButtonSize) / 2);
			right -= kButtonSize + gap;
		}
	const int left = mIcon ? kIconPosition.mX + kIconSize + kTitleGap : kTitleGap;
	mTitle->SetRect({left, 0, std::max(right - left, 0), Height()});
}

void TWindowCaption::OnFrame() {
	if (mMaximizeButton && mWindow && mWindow->IsMaximized() != mShowsMaximized)
		ShowMaximizedState(!mShowsMaximized);
}

void TWindowCaption::ShowMaximizedState(bool isMaximized) {
	mShowsMaximized = isMaximized;
	try {
		const TPtr<TBitmap> bitmap =
		    MakePtr<TRecolorableBitmap>(isMaximized ? "Icons/Restore.bmp" : "Icons/Maximize.bmp");
		mMaximizeButton->SetBitmaps(bitmap, bitmap, true);
	} catch (const TReadableException&) {
		mMaximizeButton->Invalidate();
	}
}

void TWindowCaption::OpenWindowMenu() {
	struct TLine {
		const char* mText;
		void (TWindowCaption::*mAction)();
		bool mEnabled;
	};

	const bool isResizable = mWindow && mWindow->IsResizable();
	const bool isMaximized = mWindow && mWindow->IsMaximized();
	const std::array<TLine, 4> lines{{
	    {"Restore", &TWindowCaption::RestoreWindow, isMaximized},
	    {"Minimize", &TWindowCaption::MinimizeWindow, static_cast<bool>(mMinimizeButton)},
	    {"Maximize", &TWindowCaption::MaximizeWindow, isResizable && !isMaximized},
	    {"Close", &TWindowCaption::CloseWindow, true},
	}};
	TContextMenu::TEntries entries;
	for (const TLine& line : lines) {
		entries.Append(MakePtr<TMenuEntry>(line.mText, TFunctionPtr<void>(this, line.mAction)));
		entries[entries.Count() - 1]->SetEnabled(line.mEnabled);
	}
	entries[entries.Count() - 1]->SetSeparator(TMenuEntry::kSeparatorAbove);
	TContextMenu::OpenBelow(*this, entries);
}

void TWindowCaption::CloseWindow() {
	if (mWindow)
		mWindow->RequestClose();
}

void TWindowCaption::MaximizeWindow() {
	if (mWindow && mWindow->IsMaximized())
		mWindow->Restore();
	else if (mWindow)
		mWindow->Maximize();
}

void TWindowCaption::MinimizeWindow() {
	if (mWindow)
		mWindow->Minimize();
}

void TWindowCaption::RestoreWindow() {
	if (mWindow)
		mWindow->Restore();
}
