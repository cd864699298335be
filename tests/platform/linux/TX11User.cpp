// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/linux/TX11User.h"

#include "platform/KeyCodes.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <xcb/xtest.h>

namespace {

template <class T>
using TReply = std::unique_ptr<T, decltype(&std::free)>;

template <class T>
TReply<T> Owned(T* reply) {
	return {reply, &std::free};
}

} // namespace

TX11User::TX11User()
    : mpXcb(xcb_connect(nullptr, nullptr)),
      mpScreen(xcb_setup_roots_iterator(xcb_get_setup(mpXcb)).data) {}

TX11User::~TX11User() {
	xcb_disconnect(mpXcb);
}

void TX11User::Fake(uint8_t type, int detail, TPointT<int> position) {
	xcb_test_fake_input(
	    mpXcb, type, static_cast<uint8_t>(detail), XCB_CURRENT_TIME, Root(), static_cast<int16_t>(position.mX),
	    static_cast<int16_t>(position.mY), 0);
	Sync();
}

void TX11User::MovePointer(TPointT<int> position) {
	Fake(XCB_MOTION_NOTIFY, 0, position);
}

void TX11User::Button(int button, bool press) {
	Fake(press ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button, {});
}

void TX11User::Key(int keycode, bool press) {
	Fake(press ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode, {});
}

int TX11User::KeycodeOf(int code) {
	static const std::map<int, int> kKeycodes{
	    {kKey0 + 2, 11},        {kKeyA, 38},           {kKeyA + 4, 26},
	    {kKeyLeftBracket, 34},  {kKeyReturn, 36},      {kKeyLeftShift, 50},
	    {kKeyRightShift, 62},   {kKeyLeftCommand, 37}, {kKeyLeftOption, 64},
	    {kKeyRightOption, 108}, {kKeyNumpad0 + 7, 79}, {kKeyEscape, 9},
	    {kKeySpace, 65},
	};
	const auto found = kKeycodes.find(code);
	return found == kKeycodes.end() ? 0 : found->second;
}

xcb_window_t TX11User::OpenWindow(const TRectT<int>& place, bool show) {
	const xcb_window_t window = xcb_generate_id(mpXcb);
	const uint32_t values[]{
	    0, 1,
	    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
	        XCB_EVENT_MASK_PROPERTY_CHANGE};
	xcb_create_window(
	    mpXcb, XCB_COPY_FROM_PARENT, window, Root(), static_cast<int16_t>(place.mLeft),
	    static_cast<int16_t>(place.mTop), static_cast<uint16_t>(place.mWidth), static_cast<uint16_t>(place.mHeight), 0,
	    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
	    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
	if (show)
		xcb_map_window(mpXcb, window);
	Sync();
	return window;
}

void TX11User::Configure(xcb_window_t window, uint16_t mask, const uint32_t* values) {
	xcb_configure_window(mpXcb, window, mask, values);
	Sync();
}

void TX11User::Focus(xcb_window_t window) {
	xcb_set_input_focus(mpXcb, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
	Sync();
}

xcb_window_t TX11User::FocusHolder() const {
	return Owned(xcb_get_input_focus_reply(mpXcb, xcb_get_input_focus(mpXcb), nullptr))->focus;
}

uint32_t TX11User::PixelAt(xcb_window_t window, TPointT<int> point) const {
	const auto reply = Owned(xcb_get_image_reply(
	    mpXcb,
	    xcb_get_image(
	        mpXcb, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<int16_t>(point.mX), static_cast<int16_t>(point.mY), 1,
	        1, ~0u),
	    nullptr));
	return reply ? *reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply.get())) & 0xFFFFFF : ~0u;
}

void TX11User::Sync() const {
	FocusHolder();
}
