// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11InputMethod.h"

#include "platform/linux/text/Utf8Text.h"

#include <cstdlib>
#include <string_view>

namespace {

constexpr std::chrono::seconds kLongestSilence{1};

/// "@im=NAME" of XMODIFIERS; "none" and "local" are the names of nobody.
bool IsWanted() {
	const char* modifiers = std::getenv("XMODIFIERS");
	const std::string_view text(modifiers ? modifiers : "");
	const std::size_t at = text.find("@im=");
	if (at == text.npos)
		return false;
	const std::string_view name = text.substr(at + 4, text.find('@', at + 1) - at - 4);
	return !name.empty() && name != "none" && name != "local";
}

} // namespace

void TX11InputMethod::SetHandlers(
    std::function<void(const xcb_key_press_event_t&)> onKey, std::function<void(const TString&)> onText) {
	mOnKey = std::move(onKey);
	mOnText = std::move(onText);
}

void TX11InputMethod::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	if (!IsWanted())
		return;
	if (!mpLibrary)
		mpLibrary = std::make_unique<TInputMethodLibrary>();
	if (!mpLibrary->IsLoaded())
		return;
	const TBrokenPipeGuard guard;
	mpLibrary->mInitCompoundText();
	mpMethod = mpLibrary->mCreate(connection.Xcb(), connection.ScreenNumber(), nullptr);
	if (!mpMethod)
		return;
	mpLibrary->mUseCompoundText(mpMethod, true);
	mpLibrary->mUseUtf8(mpMethod, true);
	using TThis = TX11InputMethod;
	xcb_xim_im_callback callbacks{};
	callbacks.set_event_mask = [](xcb_xim_t*, xcb_xic_t, uint32_t, uint32_t synchronous, void* self) {
		static_cast<TThis*>(self)->mAnswersKeys = (synchronous & XCB_EVENT_MASK_KEY_PRESS) != 0;
	};
	callbacks.forward_event = [](xcb_xim_t*, xcb_xic_t, xcb_key_press_event_t* event, void* self) {
		static_cast<TThis*>(self)->OnKeyBack(*event);
	};
	callbacks.commit_string = [](xcb_xim_t*, xcb_xic_t, uint32_t, char* bytes, uint32_t length, uint32_t*, size_t,
	                             void* self) { static_cast<TThis*>(self)->OnCommit(bytes, length); };
	callbacks.sync = [](xcb_xim_t*, xcb_xic_t, void* self) { static_cast<TThis*>(self)->OnAnswer(); };
	callbacks.disconnected = [](xcb_xim_t*, void* self) { static_cast<TThis*>(self)->OnClosed(); };
	mpLibrary->mSetCallbacks(mpMethod, &callbacks, this);
	mpLibrary->mOpen(
	    mpMethod, [](xcb_xim_t*, void* self) { static_cast<TThis*>(self)->OnOpened(); }, true, this);
}

void TX11InputMethod::Disconnect() {
	if (mpMethod) {
		const TBrokenPipeGuard guard;
		mPending.clear();
		mWaiting.clear();
		CloseContext();
		mpLibrary->mClose(mpMethod);
		mpLibrary->mDestroy(std::exchange(mpMethod, nullptr));
	}
	mIsOpen = mIsOpeningContext = false;
	mWindow = 0;
	mpConnection = nullptr;
}

bool TX11InputMethod::HandleEvent(xcb_generic_event_t& event) {
	const TBrokenPipeGuard guard;
	return mpMethod && mpLibrary->mFilterEvent(mpMethod, &event);
}

void TX11InputMethod::OnOpened() {
	mIsOpen = true;
}

void TX11InputMethod::OnClosed() {
	mIsOpen = mIsOpeningContext = false;
	mContext = 0;
	mWindow = 0;
	ReturnPending();
}

void TX11InputMethod::OpenContext(xcb_window_t window) {
	CloseContext();
	mWindow = window;
	mCaret = {};
	mIsCaretPlaced = true;
	mIsOpeningContext = true;
	const uint32_t style = XCB_IM_PreeditPosition | XCB_IM_StatusNothing;
	xcb_point_t place{};
	const TBrokenPipeGuard guard;
	xcb_xim_nested_list preedit =
	    mpLibrary->mCreateNestedList(mpMethod, XCB_XIM_XNSpotLocation, &place, static_cast<void*>(nullptr));
	mpLibrary->mCreateContext(
	    mpMethod,
	    [](xcb_xim_t*, xcb_xic_t context, void* self) { static_cast<TX11InputMethod*>(self)->OnContext(context); },
	    this, XCB_XIM_XNInputStyle, &style, XCB_XIM_XNClientWindow, &mWindow, XCB_XIM_XNFocusWindow, &mWindow,
	    XCB_XIM_XNPreeditAttributes, &preedit, static_cast<void*>(nullptr));
	std::free(preedit.data);
}

void TX11InputMethod::OnContext(xcb_xic_t context) {
	mIsOpeningContext = false;
	if (mWindow == 0) { // it has closed meanwhile
		mpLibrary->mDestroyContext(mpMethod, context, nullptr, nullptr);
		return;
	}
	mContext = context;
	if (context != 0)
		mpLibrary->mSetContextFocus(mpMethod, context);
}

void TX11InputMethod::CloseContext() {
	if (mContext == 0)
		return;
	const TBrokenPipeGuard guard;
	mpLibrary->mUnsetContextFocus(mpMethod, mContext);
	mpLibrary->mDestroyContext(mpMethod, std::exchange(mContext, xcb_xic_t{0}), nullptr, nullptr);
}

void TX11InputMethod::PlaceCaret(const TRectT<int>& caret) {
	if (caret == mCaret)
		return;
	const TBrokenPipeGuard guard;
	mCaret = caret;
	mIsCaretPlaced = false;
	xcb_point_t place{static_cast<int16_t>(caret.mLeft), static_cast<int16_t>(caret.Bottom())};
	xcb_xim_nested_list preedit =
	    mpLibrary->mCreateNestedList(mpMethod, XCB_XIM_XNSpotLocation, &place, static_cast<void*>(nullptr));
	mpLibrary->mSetContextValues(
	    mpMethod, mContext,
	    [](xcb_xim_t*, xcb_xic_t, void* self) { static_cast<TX11InputMethod*>(self)->mIsCaretPlaced = true; }, this,
	    XCB_XIM_XNPreeditAttributes, &preedit, static_cast<void*>(nullptr));
	std::free(preedit.data);
}

bool TX11InputMethod::Take(const xcb_key_press_event_t& event, xcb_window_t window, const TRectT<int>& caret) {
	if (!mIsOpen)
		return false;
	if (mWindow != window && !mIsOpeningContext)
		OpenContext(window);
	if (mContext == 0 || mWindow != window)
		return false;
	if (!mIsCaretPlaced) {
		mWaiting.push_back({event, TClock::now()});
		return true;
	}
	if (!Forward(event))
		return false;
	PlaceCaret(caret);
	return true;
}

bool TX11InputMethod::Forward(const xcb_key_press_event_t& event) {
	const TBrokenPipeGuard guard;
	xcb_key_press_event_t copy = event;
	if (!mpLibrary->mForwardEvent(mpMethod, mContext, &copy))
		return false;
	if (mAnswersKeys)
		mPending.push_back({event, TClock::now()});
	return true;
}

/// The library would take keys while the caret's new place has not been confirmed, and leave them lying.
void TX11InputMethod::ForwardWaiting() {
	for (const TPending& waiting : std::exchange(mWaiting, {}))
		if (mContext == 0 || !Forward(waiting.mEvent))
			OnKeyBack(waiting.mEvent);
}

void TX11InputMethod::Leave(xcb_window_t window) {
	if (!mpMethod || mWindow != window)
		return;
	mPending.clear();
	mWaiting.clear();
	mWindow = 0;
	CloseContext();
}

void TX11InputMethod::OnAnswer() {
	if (!mPending.empty())
		mPending.pop_front();
}

void TX11InputMethod::OnKeyBack(const xcb_key_press_event_t& event) {
	if (mOnKey)
		mOnKey(event);
}

void TX11InputMethod::OnCommit(const char* bytes, uint32_t length) {
	TString text;
	if (mpLibrary->mEncoding(mpMethod) == XCB_XIM_UTF8_STRING) {
		text = TextOfUtf8({bytes, length});
	} else {
		std::size_t size = 0;
		const TXcbPtr<char> utf8(mpLibrary->mCompoundTextToUtf8(bytes, length, &size));
		if (utf8)
			text = TextOfUtf8({utf8.get(), size});
	}
	if (mOnText && !text.IsEmpty())
		mOnText(text);
}

void TX11InputMethod::ReturnPending() {
	for (const TPending& pending : std::exchange(mPending, {}))
		OnKeyBack(pending.mEvent);
	for (const TPending& waiting : std::exchange(mWaiting, {}))
		OnKeyBack(waiting.mEvent);
}

void TX11InputMethod::Settle() {
	if (mIsCaretPlaced)
		ForwardWaiting();
	const auto isSilent = [now = TClock::now()](const std::deque<TPending>& keys) {
		return !keys.empty() && now - keys.front().mSince > kLongestSilence;
	};
	if (!isSilent(mPending) && !isSilent(mWaiting))
		return;
	mIsOpen = false;
	ReturnPending();
}
