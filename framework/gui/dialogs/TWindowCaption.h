// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TView.h"

class TBackgroundView;
class TBitmapView;
class TButton;
class TTextView;
class TWindowDragBar;

/// Buttons of a caption.
enum TCaptionButtons : int32_t { kCloseButton = 1, kMaximizeButton = 2, kMinimizeButton = 4 };

/// The title bar of a window that draws its own: icon, title and buttons on what the window is moved by. Main thread.
class TWindowCaption final : public TView {
public:
	/// TCaptionButtons.
	TWindowCaption(TWindow* window, int32_t buttons);
	~TWindowCaption() override;

	void SetTitle(const TString& title);

	/// What all buttons together need. In a window that can be resized they stand further apart.
	int ButtonsWidth() const;

	void OnResized() override;
	void OnFrame() override;

private:
	TPtr<TButton> AddButton(const char* image, void (TWindowCaption::*action)());
	void AddIcon();
	void OpenWindowMenu();
	void CloseWindow();
	void MaximizeWindow();
	void MinimizeWindow();
	void RestoreWindow();
	void ShowMaximizedState(bool isMaximized);

	TPtr<TBackgroundView> mBackground;
	TPtr<TWindowDragBar> mDragBar;
	TPtr<TBitmapView> mIcon;
	TPtr<TTextView> mTitle;
	TPtr<TButton> mCloseButton;
	TPtr<TButton> mMaximizeButton;
	TPtr<TButton> mMinimizeButton;
	TWeakPtr<TWindow> mWindow;
	bool mShowsMaximized = false;
};
