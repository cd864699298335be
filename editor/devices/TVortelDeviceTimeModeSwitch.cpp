// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/TVortelDeviceTimeModeSwitch.h"

#include "framework/gui/controls/TButtonField.h"

namespace {

int Choice(TVortelDeviceParameter* parameter) {
	return static_cast<int>(parameter->RealValue());
}

void SetChoice(TVortelDeviceParameter* parameter, int choice) {
	parameter->SetRealValueByUser(static_cast<float>(choice));
}

} // namespace

TPtr<TSwitchButtonField<int>> MakeVortelChoiceField(TVortelDeviceParameter& parameter, int width, int height) {
	const auto& names = static_cast<const TVortelEnumValueConverter&>(*parameter.Converter()).Names();
	const auto field = MakePtr<TSwitchButtonField<int>>(
	    TFunctionPtr<int>(&parameter, &Choice), TFunctionPtr<void, int>(&parameter, &SetChoice),
	    static_cast<int>(names.size()), 1);
	for (int index = 0; index < static_cast<int>(names.size()); ++index)
		field->SetButtonName(index, names[static_cast<std::size_t>(index)]);
	field->SetToolTip(parameter.ToolTip());
	field->SetSize(width, height);
	return field;
}

TVortelDeviceTimeModeSwitch::TVortelDeviceTimeModeSwitch(TVortelDeviceParameter& parameter, int width, int height)
    : mpField(MakeVortelChoiceField(parameter, width, height)) {
	AddChild(mpField);
	SetSize(width, height);
}

void TVortelDeviceTimeModeSwitch::OnResized() {
	mpField->SetSize(Width(), Height());
}
