// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TWindowDragBar.h"

#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TWindow.h"

bool TWindowDragBar::CanMove() const {
	return mWindow && !mWindow->HasNativeDecorations() && !mWindow->IsMaximized();
}

bool TWindowDragBar::WantsMouseCapture(int x, int y, int modifiers) {
	return (modifiers & kMouseRightHeld) == 0 && ContainsPoint(x, y);
}

bool TWindowDragBar::OnLeftMouseDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (mWindow)
		mPressOffset = TCursor::Instance()->MousePosition() - mWindow->Position();
	return true;
}

bool TWindowDragBar::OnLeftDoubleClick(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (!mWindow || !mWindow->IsResizable())
		return true;
	if (mWindow->IsMaximized())
		mWindow->Restore();
	else
		mWindow->Maximize();
	return true;
}

bool TWindowDragBar::OnMouseDrag(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (CanMove())
		mWindow->SetPosition(TCursor::Instance()->MousePosition() - mPressOffset);
	return true;
}

bool TWindowDragBar::OnMouseHover(int /*x*/, int /*y*/, int /*modifiers*/) {
	SetCursor(CanMove() ? int{kMoveCursor} : kInheritCursor);
	return false;
}
