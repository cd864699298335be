// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TPlatform.h"
#include "platform/linux/fonts/TFontconfigLookup.h"
#include "platform/linux/x11/TX11Clipboard.h"
#include "platform/linux/x11/TX11Drop.h"
#include "platform/linux/x11/TX11Focus.h"
#include "platform/linux/x11/TX11InputMethod.h"
#include "platform/linux/x11/TX11Keyboard.h"
#include "platform/linux/x11/TX11Pointer.h"
#include "platform/linux/x11/TX11Presenter.h"
#include "platform/linux/x11/TX11Screens.h"
#include "platform/linux/x11/TX11Window.h"
#include "platform/linux/x11/TX11Windows.h"

#include <memory>

/// The platform of Linux desktops. It has a connection of its own to the X server from its first window to its last;
/// with the connection everything ends that was asked of the server. It owns no thread and touches no signal, locale or
/// error handler of the process.
class TX11Platform final : public TPlatform {
public:
	TX11Platform();
	~TX11Platform() override;

	void SetClient(TPlatformClient* client) override { mpClient = client; }

	TPtr<TWindowGlue> CreateWindow(TWindowGlueClient& client, int kind, TWindowGlue* parent) override;
	TWindowGlueClient* WindowUnderPointer() const override;
	void ProcessEvents() override;
	int EventDescriptor() const override;
	bool WaitForTick() override;

	TCursorImpl& Cursor() override { return mPointer; }

	TKeyboardImpl& Keyboard() override { return mKeyboard; }

	TClipboardImpl& Clipboard() override { return mClipboard; }

	const TScreens& Screens() const override { return mScreens; }

	TFontLookup& Fonts() override { return mFonts; }

	TOwnerPtr<TFileDialogImpl> StartFileDialog(const TFileDialogSettings& settings, TWindowGlue* parent) override;

	// For its windows; while there is one, there is a connection.

	const TX11Connection& Connection() const { return *mpConnection; }

	TX11Windows& WindowList() { return mWindows; }

	TX11Presenter& Presenter() { return mPresenter; }

	TX11Pointer& Pointer() { return mPointer; }

	TX11Focus& Focus() { return mFocus; }

	/// Whether windows may have another shape for the pointer.
	bool HasShapes() const { return mHasShapes; }

	/// A window has closed. With the last one the connection ends, at the latest with the present round of events.
	void Forget(TX11Window& window);
	/// A key goes to the host once, whatever comes back.
	bool MayPassOn(const xcb_key_press_event_t& event);

private:
	struct TPassedKey {
		xcb_timestamp_t mTime = 0;
		xcb_keycode_t mKeycode = 0;
	};

	class TRound;

	void Connect();
	void Disconnect();
	void DisconnectIfUnused();
	void LoseConnection();
	void Handle(xcb_generic_event_t& event);
	void OnKey(const xcb_key_press_event_t& event);
	bool IsPassedOn(const xcb_key_press_event_t& event);
	TPassedKey& PassedKey(const xcb_key_press_event_t& event);
	void DeliverKey(TX11Window& window, const xcb_key_press_event_t& event, bool isEditing);
	void OnKeyWindow(TX11Window* window);
	void Settle();
	void TellClient();

	TPlatformClient* mpClient = nullptr;
	TFontconfigLookup mFonts;
	std::unique_ptr<TX11Connection> mpConnection;
	TX11Windows mWindows;
	TX11Screens mScreens;
	TX11Keyboard mKeyboard;
	TX11Pointer mPointer{mWindows, mKeyboard};
	TX11Focus mFocus{mWindows};
	TX11Clipboard mClipboard;
	TX11Drop mDrop{mWindows};
	TX11InputMethod mInputMethod;
	TX11Presenter mPresenter;
	xcb_window_t mTextWindow = 0; // whose keys the input method has seen last
	bool mHasShapes = false;
	int mRounds = 0; // how deep we are in events
	TPassedKey mPassedPress;
	TPassedKey mPassedRelease;
};
