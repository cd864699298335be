// SPDX-License-Identifier: GPL-3.0-or-later
// An editor's window inside the host's, and how the two share the keyboard.

#include "framework/foundation/text/TReadableException.h"
#include "platform/linux/x11/TX11Platform.h"
#include "platform/linux/x11/TX11Window.h"

namespace {

/// What an embedder may say, by the XEmbed protocol. None of it is needed: hosts that speak no XEmbed are the rule.
enum TEmbedderMessage : uint32_t {
	kEmbeddedNotify = 0,
	kWindowActivate = 1,
	kWindowDeactivate = 2,
	kFocusIn = 4,
	kFocusOut = 5
};

constexpr uint32_t kXembedMapped = 1;

} // namespace

void TX11Window::Embed(TNativeWindow host, bool wantsKeyboardInput) {
	if (!IsOpen() || !IsEditor())
		return;
	if (host == 0)
		throw TReadableException("The host provides no window for the editor.");
	const TPtr<TX11Window> keep(this);
	mpHost = std::make_unique<TX11Host>(Connection(), static_cast<xcb_window_t>(host));
	mWantsKeyboardInput = wantsKeyboardInput;
	const TX11Connection& connection = Connection();
	const uint32_t info[]{0, kXembedMapped};
	connection.SetProperty(mId, connection.Atom(TX11Atom::kXembedInfo), connection.Atom(TX11Atom::kXembedInfo), info);
	const uint32_t isOurs = false;
	xcb_change_window_attributes(Xcb(), mId, XCB_CW_OVERRIDE_REDIRECT, &isOurs);
	xcb_reparent_window(Xcb(), mId, mpHost->Window(), 0, 0);
	if (mIsShown)
		Map(false, false);
	connection.Flush();
	mpPlatform->Focus().MayHaveMoved();
	FindPlace();
	if (IsOpen())
		UpdateVisibility();
}

/// A host that takes its window away from around us ends the embedding, not the window.
void TX11Window::OnReparent(const xcb_reparent_notify_event_t& event) {
	mMustFindPlace = true;
	if (IsManaged()) {
		mFrame = event.parent == Connection().Root() ? xcb_window_t{XCB_WINDOW_NONE} : event.parent;
		if (mFrame != XCB_WINDOW_NONE)
			xcb_change_window_attributes(Xcb(), mFrame, XCB_CW_EVENT_MASK, &kEventsOfOthers);
	}
	if (!mpHost || event.parent == mpHost->Window())
		return;
	if (event.parent == Connection().Root()) {
		xcb_unmap_window(Xcb(), mId);
		mpHost = nullptr;
	} else {
		try {
			mpHost = std::make_unique<TX11Host>(Connection(), event.parent);
		} catch (const TReadableException&) {
			mpHost = nullptr;
		}
	}
	UpdateVisibility();
}

void TX11Window::Resize(TPointT<int> size) {
	SetClientSize(size);
}

void TX11Window::ForceResize(TPointT<int> oldSize, TPointT<int> newSize) {
	if (!IsOpen())
		return;
	const TPtr<TX11Window> keep(this);
	const auto around =
	    mpHost ? Connection().Reply(xcb_get_geometry_reply, xcb_get_geometry(Xcb(), mpHost->TopLevel())) : nullptr;
	if (around) {
		const TPointT<int> growth = newSize - oldSize;
		const uint32_t size[]{
		    static_cast<uint32_t>(std::max(around->width + growth.mX, 1)),
		    static_cast<uint32_t>(std::max(around->height + growth.mY, 1))};
		xcb_configure_window(Xcb(), mpHost->TopLevel(), XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
	}
	SetClientSize(newSize);
}

void TX11Window::SetWantsKeyboardInput(bool wants) {
	if (!IsOpen() || std::exchange(mWantsKeyboardInput, wants) == wants)
		return;
	if (!wants)
		GiveFocusBack();
	else if (IsVisible())
		TakeFocus();
}

/// With no window manager between, as in a host's window, nobody else brings the focus where the user points.
void TX11Window::OnPress() {
	const bool takesFocus = IsManaged() || IsInsideParent() || (mpHost && mWantsKeyboardInput);
	if (takesFocus && !IsKey())
		TakeFocus();
}

void TX11Window::TakeFocus() {
	const xcb_window_t holder = mpPlatform->Focus().Holder();
	if (!mpPlatform->WindowList().Find(holder))
		mFocusBefore = holder;
	else if (holder != mId && mFocusBefore == 0)
		mFocusBefore =
		    mpParent && holder == mpParent->mId ? holder : mpPlatform->WindowList().Find(holder)->mFocusBefore;
	mpPlatform->Focus().Take(*this);
}

/// Only what is ours to give: the user may have put the focus elsewhere meanwhile.
void TX11Window::GiveFocusBack() {
	const xcb_window_t before = std::exchange(mFocusBefore, XCB_WINDOW_NONE);
	if (before == XCB_WINDOW_NONE || mpPlatform->Focus().Holder() != mId)
		return;
	xcb_window_t next = before;
	const bool isWindow = next > XCB_INPUT_FOCUS_POINTER_ROOT;
	if (isWindow && !Connection().Reply(xcb_get_geometry_reply, xcb_get_geometry(Xcb(), next)))
		next = Root().TopLevel();
	xcb_set_input_focus(Xcb(), XCB_INPUT_FOCUS_PARENT, next, XCB_CURRENT_TIME);
	Connection().Flush();
	mpPlatform->Focus().MayHaveMoved();
}

void TX11Window::OnEmbedderMessage(const xcb_client_message_event_t& event) {
	switch (event.data.data32[1]) {
	case kFocusIn:
		mHasEmbedderFocus = true;
		break;
	case kFocusOut:
		mHasEmbedderFocus = false;
		break;
	case kEmbeddedNotify:
	case kWindowActivate:
	case kWindowDeactivate:
		break;
	default:
		return;
	}
	mpPlatform->Focus().MayHaveMoved();
}

void TX11Window::PassKeyToHost(const TGlueKeyEvent& event) {
	if (!IsOpen() || event.mNative == 0)
		return;
	xcb_key_press_event_t native{};
	native.response_type = event.mIsRelease ? XCB_KEY_RELEASE : XCB_KEY_PRESS;
	native.detail = static_cast<xcb_keycode_t>(event.mNative & 0xFF);
	native.state = static_cast<uint16_t>(event.mNative >> 8 & 0xFFFF);
	native.time = static_cast<xcb_timestamp_t>(event.mNative >> 32);
	native.root = Connection().Root();
	native.same_screen = true;
	Root().SendKeyToHost(native);
}

void TX11Window::SendKeyToHost(const xcb_key_press_event_t& event) {
	if (!mpHost || !mpPlatform->MayPassOn(event))
		return;
	xcb_key_press_event_t passed = event;
	passed.response_type &= 0x7F;
	passed.event = mpHost->TopLevel();
	passed.child = XCB_WINDOW_NONE;
	const bool isRelease = passed.response_type == XCB_KEY_RELEASE;
	xcb_send_event(
	    Xcb(), true, mpHost->TopLevel(), isRelease ? XCB_EVENT_MASK_KEY_RELEASE : XCB_EVENT_MASK_KEY_PRESS,
	    reinterpret_cast<const char*>(&passed));
	Connection().Flush();
}
