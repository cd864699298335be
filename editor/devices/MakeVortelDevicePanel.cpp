// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/MakeVortelDevicePanel.h"

#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "editor/devices/TVortelCommonDeviceControls.h"
#include "editor/devices/TVortelDeviceParameterView.h"
#include "editor/devices/TVortelDeviceTimeModeSwitch.h"
#include "editor/devices/TVortelGaterSequencerView.h"
#include "editor/support/EditorControls.h"
#include "editor/support/TVortelSeparatorView.h"
#include "framework/gui/controls/TButtonField.h"
#include "framework/gui/controls/TValueDragger.h"
#include "framework/gui/layout/TDynamicLayoutView.h"
#include "framework/gui/text/TTextView.h"

#include <initializer_list>

using namespace EditorControls;

namespace {

constexpr int kCellWidth = 70;
constexpr int kCellHeight = 100;
constexpr int kCellGap = 8;
constexpr int kPanelMargin = 10;
constexpr int kRuleWidth = 1;
constexpr int kRuleGap = 5;

constexpr int kLofiTypeHeight = 50;

constexpr int kStepsWidth = 180;
constexpr int kStepsTitleHeight = 16;
constexpr int kStepsLabelHeight = 15;
constexpr int kStepsGap = 5;
constexpr int kStepCountWidth = 46;
constexpr int kStepsHeight = 75;
constexpr int kFewestGaterSteps = 2;
constexpr int kMostGaterSteps = 16;

using TParameter = TPtr<TVortelDeviceParameter>;

TPtr<TVortelDeviceParameterViewRotary> MakeRotary(const TParameter& parameter, const TString& toolTip) {
	return MakePtr<TVortelDeviceParameterViewRotary>(parameter, toolTip, kCellWidth, kCellHeight);
}

void AddRotaries(TView& panel, std::initializer_list<TParameter> parameters) {
	for (const TParameter& parameter : parameters)
		panel.AddChild(MakeRotary(parameter, parameter->ToolTip()));
}

void AddTimeMode(TView& panel, const TParameter& parameter) {
	panel.AddChild(MakePtr<TVortelDeviceTimeModeSwitch>(*parameter, kCellWidth, kCellHeight));
}

void AddChoice(TView& panel, const TParameter& parameter, int height) {
	panel.AddChild(MakeVortelChoiceField(*parameter, kCellWidth, height));
}

void AddWeights(TView& panel, TVortelDocument& document) {
	for (int32_t index = 0; index < TVortelDocument::kNumberOfDevices; ++index) {
		const TVortelDevice* device = document.Device(index);
		const auto rotary = MakeRotary(device->mpRandomWeight, device->Name() + " weight.");
		rotary->SetTitle(device->Name());
		panel.AddChild(rotary);
	}
}

int StepCount(TVortelDeviceParameter* parameter) {
	return static_cast<int>(parameter->RealValue());
}

void SetStepCount(TVortelDeviceParameter* parameter, int count) {
	parameter->SetRealValueByUser(static_cast<float>(count));
}

TPtr<TView> MakeStepsLabel(const TString& text) {
	const auto label = MakePtr<TTextView>(text, kBodyText);
	label->SetSize(TextWidth(text + "X"), kStepsLabelHeight);
	return label;
}

TPtr<TView> MakeStepsTitle(TVortelGaterDevice& device) {
	TVortelDeviceParameter* count = device.mpNumVolumeSteps.Get();
	const auto dragger = MakePtr<TValueDragger<int>>(
	    TFunctionPtr<int>(count, &StepCount), TFunctionPtr<void, int>(count, &SetStepCount), kFewestGaterSteps,
	    kMostGaterSteps);
	dragger->SetSize(kStepCountWidth, kStepsTitleHeight);
	dragger->SetToolTip("Set the envelope length.");
	const auto line = MakePtr<TView>();
	line->SetSizePolicy(MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(1));
	const auto title = MakeRow(kStepsGap, 0);
	title->SetVerticalAlignment(kLayoutCenter);
	title->AddChild(MakeStepsLabel("Volume"));
	title->AddChild(line);
	title->AddChild(MakeStepsLabel("Steps"));
	title->AddChild(dragger);
	SetFixedLengths(*title, kStepsWidth, kStepsTitleHeight);
	return title;
}

void AddGaterSteps(TView& panel, TVortelDocument& document, TVortelGaterDevice& device) {
	const auto steps = MakePtr<TVortelGaterSequencerView>(document, device);
	steps->SetSize(kStepsWidth, kStepsHeight);
	const auto block = MakeColumn(kStepsGap, 0);
	block->AddChild(MakeStepsTitle(device));
	block->AddChild(steps);
	panel.AddChild(block);
}

void AddGater(TView& panel, TVortelDocument& document) {
	TVortelGaterDevice& device = *document.GaterDevice();
	AddTimeMode(panel, device.mpTimeMode);
	AddRotaries(panel, {device.mpTime, device.mpSmoothing});
	AddGaterSteps(panel, document, device);
}

void AddModulator(TView& panel, TVortelDocument& document) {
	const TVortelModulatorDevice& device = *document.ModulatorDevice();
	AddRotaries(
	    panel, {device.mpFrequency, device.mpAmount, device.mpOscVolume, device.mpSpread, device.mpFMAmount,
	            device.mpFMAttack, device.mpFMRelease});
}

void AddTapeStop(TView& panel, TVortelDocument& document) {
	const TVortelTapeStopDevice& device = *document.TapeStopDevice();
	AddTimeMode(panel, device.mpTimeMode);
	AddRotaries(panel, {device.mpSlowDown, device.mpSpeedUp});
	AddChoice(panel, device.mpPlayMode, kCellHeight);
}

void AddRetrigger(TView& panel, TVortelDocument& document) {
	const TVortelRetriggerDevice& device = *document.RetriggerDevice();
	AddTimeMode(panel, device.mpTimeMode);
	AddRotaries(panel, {device.mpTimeA, device.mpTimeB, device.mpABTime, device.mpDecay});
}

void AddReverser(TView& panel, TVortelDocument& document) {
	const TVortelReverserDevice& device = *document.ReverserDevice();
	AddTimeMode(panel, device.mpTimeMode);
	AddRotaries(panel, {device.mpTime, device.mpPointA, device.mpPointB});
}

void AddStretcher(TView& panel, TVortelDocument& document) {
	const TVortelStretcherDevice& device = *document.StretcherDevice();
	AddRotaries(
	    panel, {device.mpSpeed, device.mpGrainSize, device.mpJitter, device.mpSmoothing, device.mpFMAmount,
	            device.mpFMAttack, device.mpFMRelease});
}

void AddLofi(TView& panel, TVortelDocument& document) {
	const TVortelLofiDevice& device = *document.LofiDevice();
	AddChoice(panel, device.mpType, kLofiTypeHeight);
	AddRotaries(
	    panel, {device.mpBitDepth, device.mpFrequency, device.mpFMAmount, device.mpFMAttack, device.mpFMRelease});
}

void AddDistortion(TView& panel, TVortelDocument& document) {
	const TVortelDistortionDevice& device = *document.DistortionDevice();
	AddChoice(panel, device.mpType, kCellHeight);
	AddRotaries(panel, {device.mpDrive, device.mpTone, device.mpWetOut, device.mpDryOut});
}

void AddDelay(TView& panel, TVortelDocument& document) {
	const TVortelDelayDevice& device = *document.DelayDevice();
	AddTimeMode(panel, device.mpTimeMode);
	AddRotaries(
	    panel, {device.mpTime, device.mpSlew, device.mpSpread, device.mpSend, device.mpFeedback, device.mpReturn});
}

void AddShuffler(TView& panel, TVortelDocument& document) {
	const TVortelShufflerDevice& device = *document.ShufflerDevice();
	AddTimeMode(panel, device.mpTimeMode);
	AddRotaries(
	    panel, {device.mpMinTime, device.mpMaxTime, device.mpRange, device.mpShuffleChance, device.mpRepeatChance,
	            device.mpReverseChance});
}

using TAddControls = void (*)(TView& panel, TVortelDocument& document);

/// By device index.
constexpr TAddControls kPanels[TVortelDocument::kNumberOfDevices] = {
    &AddWeights, &AddModulator,  &AddTapeStop, &AddRetrigger, &AddReverser, &AddStretcher,
    &AddLofi,    &AddDistortion, &AddGater,    &AddDelay,     &AddShuffler,
};

} // namespace

TPtr<TView> MakeVortelDevicePanel(TVortelDocument& document, int32_t deviceIndex) {
	const auto controls = MakeRow(kCellGap, 0);
	controls->SetMargins(kPanelMargin, kPanelMargin, 0, 0);
	controls->SetVerticalAlignment(kLayoutCenter);
	kPanels[deviceIndex](*controls, document);
	SetLengths(*controls, 0, 0);

	const auto rule = MakePtr<TVortelSeparatorView>();
	rule->SetSizePolicy(MakePtr<TFixedLength>(2 * kRuleWidth), MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit));

	const auto common = MakePtr<TVortelCommonDeviceControls>(*document.Device(deviceIndex));
	common->SetSizePolicy(MakePtr<TFixedLength>(common->Width()), MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit));

	const auto panel = MakeRow(kRuleGap, 0);
	panel->AddChild(controls);
	panel->AddChild(rule);
	panel->AddChild(common);
	return panel;
}
