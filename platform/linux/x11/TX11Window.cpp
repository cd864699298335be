// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Window.h"

#include "platform/WindowPlacement.h"
#include "platform/linux/x11/TX11Platform.h"

#include <algorithm>
#include <utility>
#include <xcb/xfixes.h>

namespace {

constexpr int kLongestSide = 32767;

constexpr uint32_t kEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_KEY_PRESS |
                             XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW |
                             XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_KEYMAP_STATE;

bool IsBefore(uint32_t sequence, uint32_t other) {
	return static_cast<int32_t>(sequence - other) < 0;
}

} // namespace

TX11Window::TX11Window(TX11Platform& platform, TWindowGlueClient& client, int kind, TX11Window* parent)
    : mpPlatform(&platform),
      mpClient(&client),
      mpParent(parent),
      mKind(kind),
      mHasDecorations(kind == kTopLevelWindow || kind == kSecondTopLevelWindow) {
	Create();
	Describe();
	platform.WindowList().Add(*this);
}

TX11Window::~TX11Window() {
	Leave();
}

const TX11Connection& TX11Window::Connection() const {
	return mpPlatform->Connection();
}

TX11Window& TX11Window::Root() {
	return mpParent ? mpParent->Root() : *this;
}

xcb_window_t TX11Window::TopLevel() const {
	if (mpHost)
		return mpHost->TopLevel();
	return mpParent && !IsManaged() ? mpParent->TopLevel() : mId;
}

/// Nothing is drawn under what we draw, and what stands is kept when the size changes: nothing flickers.
void TX11Window::Create() {
	const TX11Connection& connection = Connection();
	mId = connection.NewId();
	const xcb_window_t above = IsInsideParent() ? mpParent->mId : connection.Root();
	const uint32_t isOurs = !IsManaged();
	const uint32_t values[]{XCB_BACK_PIXMAP_NONE,   0,
	                        XCB_GRAVITY_NORTH_WEST, isOurs,
	                        connection.Colormap(),  mpPlatform->Pointer().CurrentCursor()};
	xcb_create_window(
	    Xcb(), connection.Depth(), mId, above, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
	    connection.Visual().visual_id,
	    XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP |
	        XCB_CW_CURSOR,
	    values);
	uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
	if (mKind != kToolTipWindow) {
		events = kEvents | mpPlatform->Pointer().SelectEvents(mId);
	} else if (mpPlatform->HasShapes()) {
		const xcb_xfixes_region_t nothing = connection.NewId();
		xcb_xfixes_create_region(Xcb(), nothing, 0, nullptr);
		xcb_xfixes_set_window_shape_region(Xcb(), mId, XCB_SHAPE_SK_INPUT, 0, 0, nothing);
		xcb_xfixes_destroy_region(Xcb(), nothing);
	}
	xcb_change_window_attributes(Xcb(), mId, XCB_CW_EVENT_MASK, &events);
}

/// What must be done in any case when the window ends here.
void TX11Window::Forget() {
	TX11Platform* platform = std::exchange(mpPlatform, nullptr);
	mIsShown = false;
	mpHost = nullptr;
	platform->Forget(*this);
}

void TX11Window::Leave() {
	if (!IsOpen())
		return;
	GiveFocusBack();
	xcb_destroy_window(Xcb(), mId);
	Connection().Flush();
	Forget();
}

void TX11Window::Close() {
	const TPtr<TX11Window> keep(this);
	Leave();
}

void TX11Window::Lose(const TString& reason) {
	if (!IsOpen())
		return;
	const TPtr<TX11Window> keep(this);
	Forget();
	mpClient->OnGlueLost(reason);
}

bool TX11Window::IsVisible() const {
	if (!IsOpen() || !mIsShown || mIsUnmapped)
		return false;
	if (IsInsideParent())
		return mpParent->IsVisible();
	return !IsEditor() || (mpHost && mpHost->IsViewable());
}

void TX11Window::UpdateVisibility() {
	const bool isVisible = IsVisible();
	if (std::exchange(mWasVisible, isVisible) == isVisible)
		return;
	if (mKind == kPopupWindow)
		mpPlatform->Focus().PopupsMayHaveChanged();
	mpClient->OnGlueVisibilityChanged(isVisible);
}

void TX11Window::Show(bool activate, bool front) {
	if (!IsOpen())
		return;
	const TPtr<TX11Window> keep(this);
	mIsShown = true;
	if (!IsEditor() || mpHost)
		Map(activate, front);
	UpdateVisibility();
	if (IsOpen() && (mKind == kPopupWindow || IsInsideParent()))
		mpPlatform->Focus().Settle();
}

void TX11Window::Map(bool activate, bool front) {
	mIsUnmapped = false;
	if (IsManaged()) {
		const uint32_t time = activate ? Connection().UserTime() : 0;
		if (!activate || time != 0) // 0 says: not to the front, and no keys
			Connection().SetProperty(mId, Connection().Atom(TX11Atom::kNetWmUserTime), XCB_ATOM_CARDINAL, {&time, 1});
	}
	if (front && !IsManaged()) {
		const uint32_t above = XCB_STACK_MODE_ABOVE;
		xcb_configure_window(Xcb(), mId, XCB_CONFIG_WINDOW_STACK_MODE, &above);
	}
	mMapped = xcb_map_window(Xcb(), mId).sequence;
	mMustFindPlace = true;
	if (IsInsideParent())
		TakeFocus();
	else if (IsManaged() && activate && !HasWindowManager())
		mpPlatform->Focus().Take(*this);
	else if (IsManaged() && activate && mWasVisible)
		Connection().TellWindowManager(
		    mId, Connection().Atom(TX11Atom::kNetActiveWindow), {1, Connection().UserTime(), 0, 0, 0});
	Connection().Flush();
}

void TX11Window::Hide() {
	if (!IsOpen() || !mIsShown)
		return;
	const TPtr<TX11Window> keep(this);
	GiveFocusBack();
	mIsShown = false;
	Unmap();
	UpdateVisibility();
	if (IsOpen() && (mKind == kPopupWindow || IsInsideParent()))
		mpPlatform->Focus().Settle();
}

/// The message beside the request is what window managers wait for.
void TX11Window::Unmap() {
	xcb_unmap_window(Xcb(), mId);
	if (IsManaged()) {
		xcb_unmap_notify_event_t event{};
		event.response_type = XCB_UNMAP_NOTIFY;
		event.event = Connection().Root();
		event.window = mId;
		xcb_send_event(
		    Xcb(), false, Connection().Root(),
		    XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
		    reinterpret_cast<const char*>(&event));
	}
	Connection().Flush();
}

bool TX11Window::IsKey() const {
	return IsOpen() && mpPlatform->Focus().KeyWindow() == this;
}

void TX11Window::SetPlace(TPointT<int> position) {
	if (std::exchange(mPosition, position) == position)
		return;
	for (TX11Window* window : mpPlatform->WindowList().All())
		if (window->IsInsideParent() && window->mpParent == this)
			window->mMustFindPlace = true;
	mpClient->OnGlueMoved(position);
}

void TX11Window::SetSize(TPointT<int> size) {
	if (std::exchange(mSize, size) != size)
		mpClient->OnGlueResized(size);
}

void TX11Window::SetClientRect(TPointT<int> position, TPointT<int> size) {
	if (!IsOpen())
		return;
	const TPtr<TX11Window> keep(this);
	size = {std::clamp(size.mX, 1, kLongestSide), std::clamp(size.mY, 1, kLongestSide)};
	if (IsManaged() && size != mSize && !mIsResizable) {
		const TPointT<int> before = std::exchange(mSize, size);
		WriteSizeHints();
		mSize = before;
	}
	const TPointT<int> corner = IsInsideParent() ? position - mpParent->mPosition : position;
	const uint32_t values[]{
	    static_cast<uint32_t>(corner.mX), static_cast<uint32_t>(corner.mY), static_cast<uint32_t>(size.mX),
	    static_cast<uint32_t>(size.mY)};
	constexpr uint16_t kSize = XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
	constexpr uint16_t kPlace = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y;
	const bool isPlacedByHost = mpHost != nullptr;
	mConfigured = isPlacedByHost ? xcb_configure_window(Xcb(), mId, kSize, values + 2).sequence
	                             : xcb_configure_window(Xcb(), mId, kPlace | kSize, values).sequence;
	Connection().Flush();
	SetSize(size);
	if (IsOpen() && !isPlacedByHost)
		SetPlace(position);
}

/// What comes from before our own last request is out of date.
void TX11Window::OnConfigure(const xcb_configure_notify_event_t& event) {
	mMustFindPlace = true;
	if (!IsBefore(FullSequence(event), mConfigured))
		SetSize({event.width, event.height});
}

void TX11Window::FindPlace() {
	const auto place = Connection().Reply(
	    xcb_translate_coordinates_reply, xcb_translate_coordinates(Xcb(), mId, Connection().Root(), 0, 0));
	if (place)
		SetPlace({place->dst_x, place->dst_y});
}

void TX11Window::OnExpose(const xcb_expose_event_t& event) {
	mExposed.push_back({event.x, event.y, event.width, event.height});
	if (event.count > 0)
		return;
	const std::vector<TRectT<int>> rects = std::exchange(mExposed, {});
	if (IsVisible())
		mpClient->OnGlueExposed(rects);
}

void TX11Window::OnUnmap(const xcb_unmap_notify_event_t& event) {
	if (mIsShown && !IsBefore(FullSequence(event), mMapped)) {
		mIsUnmapped = true;
		UpdateVisibility();
	}
}

bool TX11Window::HandleEvent(const xcb_generic_event_t& event) {
	const TPtr<TX11Window> keep(this);
	switch (event.response_type & 0x7F) {
	case XCB_EXPOSE:
		OnExpose(reinterpret_cast<const xcb_expose_event_t&>(event));
		return true;
	case XCB_CONFIGURE_NOTIFY:
		OnConfigure(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
		return true;
	case XCB_MAP_NOTIFY:
		mIsUnmapped = false;
		UpdateVisibility();
		return true;
	case XCB_UNMAP_NOTIFY:
		OnUnmap(reinterpret_cast<const xcb_unmap_notify_event_t&>(event));
		return true;
	case XCB_REPARENT_NOTIFY:
		OnReparent(reinterpret_cast<const xcb_reparent_notify_event_t&>(event));
		return true;
	case XCB_DESTROY_NOTIFY:
		Lose("The window was destroyed from outside.");
		return true;
	case XCB_PROPERTY_NOTIFY: {
		const xcb_atom_t atom = reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
		if (IsManaged() &&
		    (atom == Connection().Atom(TX11Atom::kNetWmState) || atom == Connection().Atom(TX11Atom::kWmState)))
			ReadState();
		return true;
	}
	case XCB_CLIENT_MESSAGE:
		OnMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
		return true;
	default:
		return false;
	}
}

void TX11Window::Settle() {
	const TPtr<TX11Window> keep(this);
	if (mpHost && mpHost->NeedsRefresh()) {
		mpHost->Refresh();
		mMustFindPlace = true;
		UpdateVisibility();
	}
	if (IsOpen() && std::exchange(mMustFindPlace, false))
		FindPlace();
}

void TX11Window::Present(const TGluePixels& picture, std::span<const TRectT<int>> rects) {
	if (IsVisible())
		mpPlatform->Presenter().Present(mId, picture, rects);
}

void TX11Window::CenterOnScreen() {
	if (!IsOpen())
		return;
	const TRectT<int> area = mpPlatform->Screens().At(mpParent ? mpParent->Position() : mPosition).mWorkArea;
	SetPosition(CenteredPosition(mSize, area, area));
}

void TX11Window::CenterInParent() {
	if (!IsOpen() || !mpParent)
		return CenterOnScreen();
	const TPointT<int> corner = mpParent->Position();
	const TPointT<int> size = mpParent->ClientSize();
	const TRectT<int> area = mpPlatform->Screens().At(corner).mWorkArea;
	SetPosition(CenteredPosition(mSize, {corner.mX, corner.mY, size.mX, size.mY}, area));
}
