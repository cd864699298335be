// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "framework/foundation/values/TRectT.h"
#include "platform/linux/x11/TInputMethodLibrary.h"
#include "platform/linux/x11/TX11Connection.h"

#include <chrono>
#include <deque>
#include <functional>

/// The user's input method, where the environment names one that runs. While a text is edited it sees each key first:
/// it keeps it, gives it back, or sends a text instead, all later and in order. One that falls silent loses its say,
/// and the keys that it had come through. GUI thread.
class TX11InputMethod {
public:
	/// Keys that the method gives back, and texts that it writes, for the window that Take was last called with.
	void
	SetHandlers(std::function<void(const xcb_key_press_event_t&)> onKey, std::function<void(const TString&)> onText);

	void Connect(TX11Connection& connection);
	void Disconnect();

	/// True for an event of the conversation with the method.
	bool HandleEvent(xcb_generic_event_t& event);
	/// True if the method has the key now. The caret's place is in the window.
	bool Take(const xcb_key_press_event_t& event, xcb_window_t window, const TRectT<int>& caret);
	/// The window takes no texts any more.
	void Leave(xcb_window_t window);
	/// Keeps the conversation going, and gives up on a silent method; once in each tick.
	void Settle();

private:
	using TClock = std::chrono::steady_clock;

	struct TPending {
		xcb_key_press_event_t mEvent;
		TClock::time_point mSince;
	};

	void OnOpened();
	void OnContext(xcb_xic_t context);
	void OnAnswer();
	void OnKeyBack(const xcb_key_press_event_t& event);
	void OnCommit(const char* bytes, uint32_t length);
	void OnClosed();
	void OpenContext(xcb_window_t window);
	void CloseContext();
	void PlaceCaret(const TRectT<int>& caret);
	bool Forward(const xcb_key_press_event_t& event);
	void ForwardWaiting();
	void ReturnPending();

	std::function<void(const xcb_key_press_event_t&)> mOnKey;
	std::function<void(const TString&)> mOnText;
	TX11Connection* mpConnection = nullptr;
	TOwnerPtr<TInputMethodLibrary> mpLibrary;
	xcb_xim_t* mpMethod = nullptr;
	bool mIsOpen = false;
	bool mIsOpeningContext = false;
	bool mAnswersKeys = false; // says of each when it is done with it
	xcb_xic_t mContext = 0;
	xcb_window_t mWindow = 0; // of the context
	TRectT<int> mCaret;
	bool mIsCaretPlaced = true;    // the method knows where it is
	std::deque<TPending> mPending; // it owes an answer
	std::deque<TPending> mWaiting; // until the caret is placed
};
