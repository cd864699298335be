// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"
#include "platform/linux/x11/TX11Connection.h"

#include <vector>
#include <xcb/xinput.h>

/// A smooth wheel's way, cut into notches. What is left over counts for the next.
class TWheelAxis {
public:
	TWheelAxis(double increment, double position) : mIncrement(increment), mPosition(position) {}

	/// How many whole notches the wheel has gone on to this position.
	int MoveTo(double position);
	/// It has moved while nobody looked.
	void Place(double position);

private:
	double mIncrement; // of one notch; negative where the axis runs the other way
	double mPosition;
	double mRest = 0; // notches
};

/// The smooth wheels of all pointing devices. A device that has them also sends button events made from its movements,
/// which are then left out. GUI thread.
class TX11Wheel {
public:
	/// False without XInput 2.1, where wheels are buttons only.
	bool Connect(TX11Connection& connection);
	void Disconnect();

	/// The devices, or where their wheels stand, may be others now.
	void ReadDevices();

	/// Whole notches: x above 0 to the left, y above 0 upward.
	TPointT<int> NotchesOf(const xcb_input_motion_event_t& event);
	/// Whether a button event only repeats what NotchesOf knows.
	bool IsKnown(const xcb_input_button_press_event_t& event) const;

private:
	struct TDeviceAxis {
		xcb_input_device_id_t mDevice;
		uint16_t mNumber;
		bool mIsVertical;
		TWheelAxis mAxis;
	};

	TX11Connection* mpConnection = nullptr;
	std::vector<TDeviceAxis> mAxes;
};
