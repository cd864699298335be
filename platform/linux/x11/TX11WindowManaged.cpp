// SPDX-License-Identifier: GPL-3.0-or-later
// What a window tells the window manager, and hears from it.

#include "platform/linux/x11/TX11Platform.h"
#include "platform/linux/x11/TX11Window.h"

#include <algorithm>
#include <unistd.h>
#include <xcb/xcb_icccm.h>

namespace {

constexpr std::string_view kWindowClass{"vortel2\0Vortel2\0", 16};
constexpr uint32_t kMotifHasDecorations = 2;

TX11Atom TypeOf(int kind) {
	switch (kind) {
	case kModalDialogWindow:
		return TX11Atom::kNetWmWindowTypeDialog;
	case kPopupWindow:
		return TX11Atom::kNetWmWindowTypePopupMenu;
	case kToolTipWindow:
		return TX11Atom::kNetWmWindowTypeTooltip;
	default:
		return TX11Atom::kNetWmWindowTypeNormal;
	}
}

} // namespace

/// Pop-ups and tool tips are described, too: compositors draw them by their type, and keep them with what they belong
/// to.
void TX11Window::Describe() {
	const TX11Connection& connection = Connection();
	if (mKind == kEmbeddedWindow) {
		const uint32_t info[]{0, 0}; // version, flags: mapped when the editor is shown
		connection.SetProperty(
		    mId, connection.Atom(TX11Atom::kXembedInfo), connection.Atom(TX11Atom::kXembedInfo), info);
		return;
	}
	const uint32_t type = connection.Atom(TypeOf(mKind));
	connection.SetProperty(mId, connection.Atom(TX11Atom::kNetWmWindowType), XCB_ATOM_ATOM, {&type, 1});
	connection.SetTextProperty(mId, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string(kWindowClass));
	WriteTransience();
	if (!IsManaged())
		return;
	const uint32_t protocols[]{connection.Atom(TX11Atom::kWmDeleteWindow), connection.Atom(TX11Atom::kNetWmPing)};
	connection.SetProperty(mId, connection.Atom(TX11Atom::kWmProtocols), XCB_ATOM_ATOM, protocols);
	const uint32_t process = static_cast<uint32_t>(getpid());
	connection.SetProperty(mId, connection.Atom(TX11Atom::kNetWmPid), XCB_ATOM_CARDINAL, {&process, 1});
	if (mKind == kModalDialogWindow) {
		const uint32_t states[]{
		    connection.Atom(TX11Atom::kNetWmStateModal), connection.Atom(TX11Atom::kNetWmStateSkipTaskbar)};
		connection.SetProperty(mId, connection.Atom(TX11Atom::kNetWmState), XCB_ATOM_ATOM, states);
	}
	xcb_icccm_wm_hints_t hints{};
	xcb_icccm_wm_hints_set_input(&hints, true);
	xcb_icccm_wm_hints_set_normal(&hints);
	xcb_icccm_set_wm_hints(Xcb(), mId, &hints);
	WriteDecorations();
}

void TX11Window::WriteTransience() {
	if (mpParent && mpParent->IsOpen())
		xcb_icccm_set_wm_transient_for(Xcb(), mId, mpParent->TopLevel());
}

void TX11Window::WriteSizeHints() {
	if (!IsManaged())
		return;
	xcb_size_hints_t hints{};
	xcb_icccm_size_hints_set_position(&hints, true, mPosition.mX, mPosition.mY);
	xcb_icccm_size_hints_set_size(&hints, true, mSize.mX, mSize.mY);
	xcb_icccm_size_hints_set_win_gravity(&hints, XCB_GRAVITY_STATIC); // positions are those of the client area
	if (mIsResizable) {
		xcb_icccm_size_hints_set_min_size(&hints, std::max(mMinimumSize.mX, 1), std::max(mMinimumSize.mY, 1));
	} else {
		xcb_icccm_size_hints_set_min_size(&hints, mSize.mX, mSize.mY);
		xcb_icccm_size_hints_set_max_size(&hints, mSize.mX, mSize.mY);
	}
	xcb_icccm_set_wm_normal_hints(Xcb(), mId, &hints);
}

void TX11Window::WriteDecorations() {
	const uint32_t hints[]{kMotifHasDecorations, 0, mHasDecorations, 0, 0};
	const xcb_atom_t atom = Connection().Atom(TX11Atom::kMotifWmHints);
	Connection().SetProperty(mId, atom, atom, hints);
}

bool TX11Window::HasWindowManager() const {
	const auto window =
	    Connection().Property(Connection().Root(), Connection().Atom(TX11Atom::kNetSupportingWmCheck), XCB_ATOM_WINDOW);
	return !window.empty() && Connection().Reply(xcb_get_geometry_reply, xcb_get_geometry(Xcb(), window[0]));
}

void TX11Window::SetTitle(const TString& title) {
	mTitle = title;
	if (!IsOpen())
		return;
	std::string bytes;
	title.ToBytes(bytes, kUtf8Encoding);
	Connection().SetTextProperty(
	    mId, Connection().Atom(TX11Atom::kNetWmName), Connection().Atom(TX11Atom::kUtf8String), bytes);
	Connection().SetTextProperty(mId, XCB_ATOM_WM_NAME, Connection().Atom(TX11Atom::kUtf8String), bytes);
	Connection().Flush();
}

void TX11Window::SetMinimumSize(TPointT<int> size) {
	mMinimumSize = size;
	if (IsOpen())
		WriteSizeHints();
}

void TX11Window::SetResizable(bool resizable) {
	mIsResizable = resizable;
	if (IsOpen())
		WriteSizeHints();
}

void TX11Window::SetHasNativeDecorations(bool decorations) {
	mHasDecorations = decorations;
	if (IsOpen() && IsManaged())
		WriteDecorations();
}

void TX11Window::AskForState(bool set, TX11Atom first, TX11Atom second) {
	Connection().TellWindowManager(
	    mId, Connection().Atom(TX11Atom::kNetWmState),
	    {set, Connection().Atom(first), Connection().Atom(second), 1, 0});
	Connection().Flush();
}

void TX11Window::Minimize() {
	if (!IsOpen() || !IsManaged())
		return;
	Connection().TellWindowManager(
	    mId, Connection().Atom(TX11Atom::kWmChangeState), {XCB_ICCCM_WM_STATE_ICONIC, 0, 0, 0, 0});
	Connection().Flush();
}

/// Without a window manager we do it ourselves, as well as that can be done.
void TX11Window::Maximize() {
	if (!IsOpen() || !IsManaged() || mIsMaximized)
		return;
	if (HasWindowManager()) {
		AskForState(true, TX11Atom::kNetWmStateMaximizedHorizontally, TX11Atom::kNetWmStateMaximizedVertically);
		return;
	}
	const TRectT<int> area = mpPlatform->Screens().At(mPosition).mWorkArea;
	mRestoredRect = {mPosition.mX, mPosition.mY, mSize.mX, mSize.mY};
	mIsMaximized = true;
	SetClientRect({area.mLeft, area.mTop}, {area.mWidth, area.mHeight});
}

void TX11Window::Restore() {
	if (!IsOpen() || !IsManaged())
		return;
	if (mIsMinimized) {
		Connection().TellWindowManager(
		    mId, Connection().Atom(TX11Atom::kNetActiveWindow), {1, Connection().UserTime(), 0, 0, 0});
		xcb_map_window(Xcb(), mId);
		Connection().Flush();
	} else if (mRestoredRect) {
		const TRectT<int> rect = *mRestoredRect;
		mRestoredRect.reset();
		mIsMaximized = false;
		SetClientRect({rect.mLeft, rect.mTop}, {rect.mWidth, rect.mHeight});
	} else if (mIsMaximized) {
		AskForState(false, TX11Atom::kNetWmStateMaximizedHorizontally, TX11Atom::kNetWmStateMaximizedVertically);
	}
}

void TX11Window::ReadState() {
	const TX11Connection& connection = Connection();
	const xcb_atom_t wmState = connection.Atom(TX11Atom::kWmState);
	const auto state = connection.Property(mId, wmState, wmState);
	const auto states = connection.Property(mId, connection.Atom(TX11Atom::kNetWmState), XCB_ATOM_ATOM);
	const auto has = [&](TX11Atom atom) {
		return std::find(states.begin(), states.end(), connection.Atom(atom)) != states.end();
	};
	mIsMinimized = has(TX11Atom::kNetWmStateHidden) || (!state.empty() && state[0] == XCB_ICCCM_WM_STATE_ICONIC);
	if (!mRestoredRect)
		mIsMaximized = has(TX11Atom::kNetWmStateMaximizedHorizontally) && has(TX11Atom::kNetWmStateMaximizedVertically);
}

/// Not every window manager says so to the window when it moves the frame around it.
bool TX11Window::HandleOutsideEvent(const xcb_generic_event_t& event) {
	if (mpHost)
		return mpHost->HandleEvent(event);
	const bool isOfFrame = mFrame != 0 && reinterpret_cast<const xcb_configure_notify_event_t&>(event).event == mFrame;
	mMustFindPlace = mMustFindPlace || isOfFrame;
	return isOfFrame;
}

void TX11Window::OnMessage(const xcb_client_message_event_t& event) {
	if (event.format != 32)
		return;
	if (event.type == Connection().Atom(TX11Atom::kWmProtocols))
		OnProtocol(event);
	else if (event.type == Connection().Atom(TX11Atom::kXembed))
		OnEmbedderMessage(event);
}

void TX11Window::OnProtocol(const xcb_client_message_event_t& event) {
	const xcb_atom_t protocol = event.data.data32[0];
	if (protocol == Connection().Atom(TX11Atom::kWmDeleteWindow)) {
		mpClient->OnGlueCloseAsked();
	} else if (protocol == Connection().Atom(TX11Atom::kNetWmPing)) {
		const auto* data = event.data.data32;
		Connection().TellWindowManager(Connection().Root(), event.type, {data[0], data[1], data[2], data[3], data[4]});
		Connection().Flush();
	}
}
