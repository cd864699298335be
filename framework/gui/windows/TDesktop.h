// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "platform/TPlatform.h"

class TApplicationEvent;
class TWindow;

/// The open windows of an instance, and what the system tells about all of them at once. Made when TPlatform already
/// answers. Main thread.
class TDesktop final : public TSingleton<TDesktop>, private TPlatformClient {
public:
	/// Null if there is none.
	TWindow* WindowWithId(int32_t id) const;
	/// The one opened first of those that belong to no other: the editor, or a program's window. Null without one.
	TWindow* MainWindow() const;

	/// In the order of opening.
	const TList<TWindow*>& OpenWindows() const noexcept { return mOpenWindows; }

	/// Of this instance; null when another program's, or none, lies there.
	TWindow* WindowUnderPointer() const;

	/// The window that saw the mouse last; null once it is gone.
	TWindow* LastMouseWindow() const noexcept { return mLastMouseWindow.Get(); }

	void SetLastMouseWindow(TWindow* window);

	/// Of the screen at a point, in its pixels.
	TRectT<int> WorkAreaAt(TPointT<int> screenPoint) const;

	/// Whether the keys come to a window of this instance or to the host's window around one.
	bool IsApplicationActive() const noexcept { return mIsActive; }

	/// What a program does when the user closes its main window; without it the window just closes.
	void SetQuitAction(const TFunctionPtr<void>& action) { mQuitAction = action; }

	const TFunctionPtr<void>& QuitAction() const noexcept { return mQuitAction; }

	static void CreateService();

private:
	friend class TWindow;

	void OnCreated() override;
	void OnBeforeDestruction() override;

	void OnClipboardChanged() override;
	void OnKeyboardLayoutChanged() override;
	void OnScreensChanged() override;
	void OnApplicationActivated() override;
	void OnApplicationDeactivated() override;

	void OnWindowOpened(TWindow& window) { mOpenWindows.Append(&window); }

	void OnWindowClosed(TWindow& window);

	TList<TWindow*> mOpenWindows;
	TWeakPtr<TWindow> mLastMouseWindow;
	TFunctionPtr<void> mQuitAction;
	bool mIsActive = true;
};
