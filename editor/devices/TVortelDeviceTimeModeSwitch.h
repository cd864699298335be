// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDeviceParameter.h"
#include "framework/gui/views/TView.h"

template <class T>
class TSwitchButtonField;

/// The names that a parameter's value can have as buttons in one column. Main thread.
TPtr<TSwitchButtonField<int>> MakeVortelChoiceField(TVortelDeviceParameter& parameter, int width, int height);

/// The timing mode of a device. Main thread.
class TVortelDeviceTimeModeSwitch final : public TView {
public:
	TVortelDeviceTimeModeSwitch(TVortelDeviceParameter& parameter, int width, int height);

	void OnResized() override;

private:
	TPtr<TSwitchButtonField<int>> mpField;
};
