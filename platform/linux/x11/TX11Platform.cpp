// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Platform.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "platform/linux/dialogs/TSystemFileDialog.h"

#include <xcb/randr.h>
#include <xcb/render.h>
#include <xcb/xfixes.h>

#include <optional>
#include <poll.h>

namespace {

constexpr const char* kLogCategory = "X11";

bool IsKey(const xcb_generic_event_t& event) {
	const int type = event.response_type & 0x7F;
	return type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE;
}

/// Requests about windows that somebody else has destroyed fail as a matter of course.
void LogError(const xcb_generic_error_t& error) {
	if (error.error_code != XCB_WINDOW && error.error_code != XCB_DRAWABLE && error.error_code != XCB_MATCH)
		TLog::Instance()->Log(
		    kLogCategory, "Request %d.%d failed with error %d.", error.major_code, error.minor_code, error.error_code);
}

} // namespace

/// While one lives, events are being handled, and the connection stays even if the last window closes.
class TX11Platform::TRound {
public:
	explicit TRound(TX11Platform& platform) : mPlatform(platform) { ++mPlatform.mRounds; }

	~TRound() {
		--mPlatform.mRounds;
		mPlatform.DisconnectIfUnused();
	}

	TRound(const TRound&) = delete;
	TRound& operator=(const TRound&) = delete;

private:
	TX11Platform& mPlatform;
};

TX11Platform::TX11Platform() {
	mPointer.SetOnPress([](TX11Window& window) { window.OnPress(); });
	mFocus.SetOnActiveChanged([this](bool isActive) {
		if (mpClient)
			isActive ? mpClient->OnApplicationActivated() : mpClient->OnApplicationDeactivated();
	});
	mFocus.SetOnKeyWindow([this](TX11Window* window) { OnKeyWindow(window); });
	mInputMethod.SetHandlers(
	    [this](const xcb_key_press_event_t& event) {
		    if (TX11Window* window = mWindows.Find(mTextWindow))
			    DeliverKey(*window, event, true);
	    },
	    [this](const TString& text) {
		    if (TX11Window* window = mWindows.Find(mTextWindow))
			    window->Client().OnGlueText(text);
	    });
}

TX11Platform::~TX11Platform() {
	mpClient = nullptr;
	while (!mWindows.All().empty())
		mWindows.All().back()->Close();
	Disconnect();
}

void TX11Platform::Connect() {
	mpConnection = std::make_unique<TX11Connection>();
	TX11Connection& connection = *mpConnection;
	for (xcb_extension_t* extension : {&xcb_xfixes_id, &xcb_randr_id, &xcb_input_id, &xcb_render_id})
		xcb_prefetch_extension_data(connection.Xcb(), extension);
	const auto* shapes = xcb_get_extension_data(connection.Xcb(), &xcb_xfixes_id);
	const auto version =
	    shapes && shapes->present
	        ? connection.Reply(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(connection.Xcb(), 5, 0))
	        : nullptr;
	mHasShapes = version && version->major_version >= 2;
	mScreens.Connect(connection);
	mKeyboard.Connect(connection);
	mPointer.Connect(connection);
	mFocus.Connect(connection);
	mClipboard.Connect(connection);
	mDrop.Connect(connection);
	mPresenter.Connect(connection);
	mInputMethod.Connect(connection);
	connection.Flush();
	if (connection.IsBroken()) {
		Disconnect();
		throw TReadableException("The connection to the display was lost while it was opened.");
	}
}

void TX11Platform::Disconnect() {
	if (!mpConnection)
		return;
	mInputMethod.Disconnect();
	mPresenter.Disconnect();
	mDrop.Disconnect();
	mClipboard.Disconnect();
	mFocus.Disconnect();
	mPointer.Disconnect();
	mKeyboard.Disconnect();
	mScreens.Disconnect();
	mpConnection = nullptr;
}

void TX11Platform::DisconnectIfUnused() {
	if (mRounds == 0 && mWindows.All().empty())
		Disconnect();
}

void TX11Platform::LoseConnection() {
	TLog::Instance()->LogText(kLogCategory, "The connection to the display was lost.");
	while (!mWindows.All().empty())
		mWindows.All().back()->Lose("The connection to the display was lost.");
}

TPtr<TWindowGlue> TX11Platform::CreateWindow(TWindowGlueClient& client, int kind, TWindowGlue* parent) {
	const TRound round(*this);
	if (mpConnection && mpConnection->IsBroken()) {
		LoseConnection();
		Disconnect();
	}
	if (!mpConnection)
		Connect();
	auto* owner = static_cast<TX11Window*>(parent);
	if (owner && !owner->IsOpen())
		throw TReadableException("The window that the new one belongs to has closed.");
	const auto window = MakePtr<TX11Window>(*this, client, kind, owner);
	if (kind != kPopupWindow && kind != kToolTipWindow)
		mDrop.Announce(window->Id());
	return window.Get();
}

void TX11Platform::Forget(TX11Window& window) {
	mWindows.Remove(window);
	mPointer.Forget(window);
	mDrop.Forget(window);
	mFocus.Forget(window);
	mInputMethod.Leave(window.Id());
	if (mTextWindow == window.Id())
		mTextWindow = 0;
	const TRound round(*this);
	if (!mWindows.All().empty())
		mFocus.Settle();
}

TWindowGlueClient* TX11Platform::WindowUnderPointer() const {
	const TX11Window* window = mPointer.WindowUnder();
	return window && window->IsVisible() ? &window->Client() : nullptr;
}

int TX11Platform::EventDescriptor() const {
	return mpConnection ? mpConnection->Descriptor() : -1;
}

// Whoever plays the main role meanwhile may close the last window and with it the connection.
bool TX11Platform::WaitForTick() {
	if (!mpConnection)
		return false;
	mpConnection->Flush();
	if (!mpConnection->HasSetAside()) {
		pollfd input{mpConnection->Descriptor(), POLLIN, 0};
		std::optional<TThreadManager::TReleasedScope> released;
		if (TThreadManager::Instance())
			released.emplace();
		poll(&input, 1, kTickMilliseconds);
	}
	return mpConnection && !mpConnection->IsBroken();
}

void TX11Platform::ProcessEvents() {
	if (!mpConnection)
		return;
	const TRound round(*this);
	while (TXcbEvent event = mpConnection->NextEvent())
		Handle(*event);
	Settle();
	if (mpConnection->IsBroken())
		LoseConnection();
	else
		mpConnection->Flush();
}

void TX11Platform::Settle() {
	mPointer.Settle();
	for (std::size_t i = 0; i < mWindows.All().size(); ++i)
		mWindows.All()[i]->Settle();
	mFocus.Settle();
	mInputMethod.Settle();
	mClipboard.Settle();
	mKeyboard.Refresh();
	TellClient();
}

void TX11Platform::TellClient() {
	const bool hasNewLayout = mKeyboard.TakeLayoutChange();
	const bool hasNewScreens = mScreens.TakeChange();
	const bool hasNewClipboard = mClipboard.TakeChange();
	if (hasNewClipboard && mFocus.KeyWindow())
		mClipboard.ReadAhead();
	if (hasNewLayout && mpClient)
		mpClient->OnKeyboardLayoutChanged();
	if (hasNewScreens && mpClient)
		mpClient->OnScreensChanged();
	if (hasNewClipboard && mpClient)
		mpClient->OnClipboardChanged();
}

void TX11Platform::Handle(xcb_generic_event_t& event) {
	if (event.response_type == 0) {
		LogError(reinterpret_cast<const xcb_generic_error_t&>(event));
		return;
	}
	if (mInputMethod.HandleEvent(event) || mPointer.HandleEvent(event))
		return;
	if (IsKey(event)) {
		mPointer.DeliverMove();
		OnKey(reinterpret_cast<const xcb_key_press_event_t&>(event));
		return;
	}
	if ((event.response_type & 0x7F) == XCB_KEYMAP_NOTIFY) {
		mKeyboard.OnKeymapNotify(reinterpret_cast<const xcb_keymap_notify_event_t&>(event));
		return;
	}
	if (mKeyboard.HandleEvent(event) || mFocus.HandleEvent(event) || mDrop.HandleEvent(event) ||
	    mClipboard.HandleEvent(event) || mScreens.HandleEvent(event))
		return;
	bool isOutside = false;
	for (TX11Window* window : mWindows.All())
		isOutside = window->HandleOutsideEvent(event) || isOutside;
	if (isOutside)
		return;
	// The window stands at the same place in all events that are left.
	if (TX11Window* window = mWindows.Find(reinterpret_cast<const xcb_configure_notify_event_t&>(event).event))
		window->HandleEvent(event);
}

void TX11Platform::OnKey(const xcb_key_press_event_t& event) {
	if (IsPassedOn(event))
		return;
	mpConnection->SetUserTime(event.time);
	TX11Window* window = mFocus.TargetOfKeys(event.event);
	if (!window)
		return;
	if (!window->TakesKeys() && !window->HasEmbedderFocus()) {
		window->SendKeyToHost(event);
		return;
	}
	TRectT<int> caret;
	const bool isEditing = window->Client().IsGlueEditingText(caret);
	mTextWindow = window->Id();
	if (isEditing && mInputMethod.Take(event, window->Id(), caret))
		return;
	DeliverKey(*window, event, isEditing);
}

void TX11Platform::DeliverKey(TX11Window& window, const xcb_key_press_event_t& event, bool isEditing) {
	const TX11Keyboard::TStroke stroke = mKeyboard.Translate(event, isEditing);
	const TPtr<TX11Window> keep(&window);
	if (stroke.mIsKey)
		window.Client().OnGlueKey(stroke.mKey);
	else if (!stroke.mText.IsEmpty())
		window.Client().OnGlueText(stroke.mText);
}

void TX11Platform::OnKeyWindow(TX11Window* window) {
	mKeyboard.ForgetSequence();
	if (window)
		mClipboard.ReadAhead();
}

TX11Platform::TPassedKey& TX11Platform::PassedKey(const xcb_key_press_event_t& event) {
	return (event.response_type & 0x7F) == XCB_KEY_RELEASE ? mPassedRelease : mPassedPress;
}

bool TX11Platform::MayPassOn(const xcb_key_press_event_t& event) {
	if (event.time == XCB_CURRENT_TIME)
		return true;
	const TPassedKey before = std::exchange(PassedKey(event), {event.time, event.detail});
	return before.mTime != event.time || before.mKeycode != event.detail; // keys of one chord may share their time
}

/// Some hosts send such keys on to the window that they embed; the time tells that it is the same key again.
bool TX11Platform::IsPassedOn(const xcb_key_press_event_t& event) {
	const bool isSent = (event.response_type & 0x80) != 0;
	return isSent && event.time != XCB_CURRENT_TIME && PassedKey(event).mTime == event.time;
}

TOwnerPtr<TFileDialogImpl> TX11Platform::StartFileDialog(const TFileDialogSettings& settings, TWindowGlue* parent) {
	auto* window = static_cast<TX11Window*>(parent);
	return std::make_unique<TSystemFileDialog>(settings, window && window->IsOpen() ? window->TopLevel() : 0);
}
