// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Wheel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

double Value(xcb_input_fp3232_t value) {
	return value.integral + value.frac / 4294967296.0;
}

/// Calls `take` with each class of the device that is one of T.
template <class T>
void ForEachClass(const xcb_input_xi_device_info_t& device, int type, auto take) {
	for (auto i = xcb_input_xi_device_info_classes_iterator(&device); i.rem > 0; xcb_input_device_class_next(&i))
		if (i.data->type == type)
			take(*reinterpret_cast<const T*>(i.data));
}

} // namespace

int TWheelAxis::MoveTo(double position) {
	mRest += (position - std::exchange(mPosition, position)) / mIncrement;
	const double notches = std::trunc(mRest);
	mRest -= notches;
	return static_cast<int>(std::clamp(notches, -100.0, 100.0));
}

void TWheelAxis::Place(double position) {
	mPosition = position;
	mRest = 0;
}

bool TX11Wheel::Connect(TX11Connection& connection) {
	const auto* extension = xcb_get_extension_data(connection.Xcb(), &xcb_input_id);
	if (!extension || !extension->present)
		return false;
	const auto version =
	    connection.Reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(connection.Xcb(), 2, 1));
	if (!version || version->major_version < 2 || (version->major_version == 2 && version->minor_version < 1))
		return false;
	mpConnection = &connection;
	ReadDevices();
	return true;
}

void TX11Wheel::Disconnect() {
	mpConnection = nullptr;
	mAxes.clear();
}

void TX11Wheel::ReadDevices() {
	if (!mpConnection)
		return;
	mAxes.clear();
	const auto reply = mpConnection->Reply(
	    xcb_input_xi_query_device_reply, xcb_input_xi_query_device(mpConnection->Xcb(), XCB_INPUT_DEVICE_ALL));
	if (!reply)
		return;
	for (auto i = xcb_input_xi_query_device_infos_iterator(reply.get()); i.rem > 0; xcb_input_xi_device_info_next(&i)) {
		const xcb_input_xi_device_info_t& device = *i.data;
		if (device.type != XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER && device.type != XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE)
			continue;
		ForEachClass<xcb_input_scroll_class_t>(
		    device, XCB_INPUT_DEVICE_CLASS_TYPE_SCROLL, [&](const xcb_input_scroll_class_t& scroll) {
			    const double increment = Value(scroll.increment);
			    if (increment != 0)
				    mAxes.push_back(
				        {device.deviceid, scroll.number, scroll.scroll_type == XCB_INPUT_SCROLL_TYPE_VERTICAL,
				         TWheelAxis(increment, 0)});
		    });
		ForEachClass<xcb_input_valuator_class_t>(
		    device, XCB_INPUT_DEVICE_CLASS_TYPE_VALUATOR, [&](const xcb_input_valuator_class_t& valuator) {
			    for (TDeviceAxis& axis : mAxes)
				    if (axis.mDevice == device.deviceid && axis.mNumber == valuator.number)
					    axis.mAxis.Place(Value(valuator.value));
		    });
	}
}

TPointT<int> TX11Wheel::NotchesOf(const xcb_input_motion_event_t& event) {
	TPointT<int> notches;
	const uint32_t* mask = xcb_input_button_press_valuator_mask(&event);
	const xcb_input_fp3232_t* value = xcb_input_button_press_axisvalues(&event);
	for (int number = 0; number < event.valuators_len * 32; ++number) {
		if ((mask[number / 32] >> (number % 32) & 1) == 0)
			continue;
		for (TDeviceAxis& axis : mAxes) {
			if (axis.mDevice != event.sourceid || axis.mNumber != number)
				continue;
			int& along = axis.mIsVertical ? notches.mY : notches.mX;
			along -= axis.mAxis.MoveTo(Value(*value)); // positions grow downward and to the right
		}
		++value;
	}
	return notches;
}

bool TX11Wheel::IsKnown(const xcb_input_button_press_event_t& event) const {
	const bool isMade = (event.flags & XCB_INPUT_POINTER_EVENT_FLAGS_POINTER_EMULATED) != 0;
	return isMade && std::any_of(mAxes.begin(), mAxes.end(), [&](const TDeviceAxis& axis) {
		       return axis.mDevice == event.sourceid;
	       });
}
