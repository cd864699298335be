// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/TVortelCommonDeviceControls.h"

#include "document/TVortelDocument.h"
#include "editor/devices/TVortelDeviceParameterView.h"
#include "editor/support/EditorControls.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/gui/controls/TButtonField.h"
#include "framework/gui/layout/TDynamicLayoutView.h"
#include "framework/gui/text/TTextView.h"

#include <array>

using namespace EditorControls;

namespace {

constexpr int kSectionGap = 14; // between filter, mixer and commands
constexpr int kCellGap = 5;
constexpr int kTitleHeight = 18;
constexpr int kTitleToCells = 12;
constexpr int kFilterTitleWidth = 50;
constexpr int kFilterTypesWidth = 45;
constexpr int kMixerTitleWidth = 143;
constexpr int kCellWidth = 50;
constexpr int kCellHeight = 60;
constexpr int kCommandHeight = 18;
constexpr int kCommandGap = 2;
constexpr int kCommandMargins = 10;

/// By value, as they sound.
struct TFilterType {
	const char* mName;
	const char* mToolTip;
	const char* mIcon;
};

constexpr std::array<TFilterType, 5> kFilterTypes{{
    {"Off", "Off", "Icons/FilterOff.png"},
    {"LP", "Low-pass", "Icons/FilterLowpass.png"},
    {"HP", "High-pass", "Icons/FilterHighpass.png"},
    {"BP", "Band-pass", "Icons/FilterBandpass.png"},
    {"BS", "Band-stop", "Icons/FilterBandstop.png"},
}};

TPtr<TView> MakeTitle(const TString& text, int width, TTextAlign alignment) {
	const auto title = MakePtr<TTextView>(text, kStrongBodyText, alignment, TFontEngine::kBold);
	title->SetSize(width, kTitleHeight);
	return title;
}

TPtr<TView> MakeCell(const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip) {
	return MakePtr<TVortelDeviceParameterViewCompactRotary>(parameter, toolTip, kCellWidth, kCellHeight);
}

} // namespace

TVortelCommonDeviceControls::TVortelCommonDeviceControls(TVortelDevice& device)
    : mpDevice(&device),
      mLayout(MakeRow(kSectionGap, 0)) {
	mLayout->SetHorizontalAlignment(kLayoutEnd);
	mLayout->SetVerticalAlignment(kLayoutCenter);
	if (device.DeviceIndex() >= 1) {
		mLayout->AddChild(MakeFilterSection());
		mLayout->AddChild(MakeMixerSection());
	}
	mLayout->AddChild(MakeCommands());
	AddChild(mLayout);
	const TPointT<int> needed = mLayout->MinimumSize();
	SetSize(needed.mX, needed.mY);
}

void TVortelCommonDeviceControls::OnResized() {
	mLayout->SetSize(Width(), Height());
}

TPtr<TView> TVortelCommonDeviceControls::MakeFilterSection() {
	const auto title = MakeRow(kCellGap, 0);
	title->AddChild(MakeTitle("Filter", kFilterTitleWidth, kAlignCenter));
	title->AddChild(MakeFilterTypes());
	const auto cells = MakeRow(kCellGap, 0);
	cells->AddChild(MakeCell(mpDevice->mpFilterFrequency, "Filter frequency."));
	cells->AddChild(MakeCell(mpDevice->mpFilterQ, "Filter Q/bandwidth."));
	const auto section = MakeColumn(kTitleToCells, 0);
	section->AddChild(title);
	section->AddChild(cells);
	return section;
}

/// Curves instead of the names, which do not fit into nine pixels.
TPtr<TView> TVortelCommonDeviceControls::MakeFilterTypes() {
	const auto field = MakePtr<TSwitchButtonField<int>>(
	    TFunctionPtr<int>(this, &TVortelCommonDeviceControls::FilterType),
	    TFunctionPtr<void, int>(this, &TVortelCommonDeviceControls::SetFilterType),
	    static_cast<int>(kFilterTypes.size()), static_cast<int>(kFilterTypes.size()));
	int index = 0;
	for (const TFilterType& type : kFilterTypes) {
		field->SetButtonName(index, type.mName);
		field->SetButtonBitmap(index, MakePtr<TRecolorableBitmap>(type.mIcon));
		field->SetButtonToolTip(index, type.mToolTip);
		++index;
	}
	field->SetSize(kFilterTypesWidth, kTitleHeight);
	return field;
}

TPtr<TView> TVortelCommonDeviceControls::MakeMixerSection() {
	const auto cells = MakeRow(kCellGap, 0);
	cells->AddChild(MakeCell(mpDevice->mpMixerMix, "Dry/wet mix."));
	cells->AddChild(MakeCell(mpDevice->mpMixerPanning, "Panning"));
	cells->AddChild(MakeCell(mpDevice->mpMixerVolume, "Volume."));
	const auto section = MakeColumn(kTitleToCells, 0);
	section->SetHorizontalAlignment(kLayoutCenter);
	section->AddChild(MakeTitle("Mixer", kMixerTitleWidth, kAlignCenter));
	section->AddChild(cells);
	return section;
}

TPtr<TView> TVortelCommonDeviceControls::MakeCommands() {
	TVortelDevice* device = mpDevice.Get();
	const auto column = MakeColumn(kCommandGap, 0);
	for (const TPtr<TButton>& button :
	     {MakeTextButton(
	          "Copy", "Copy all parameters to the clipboard.", {this, &TVortelCommonDeviceControls::CopyParameters}),
	      MakeTextButton(
	          "Paste", "Paste all parameters from the clipboard.",
	          {this, &TVortelCommonDeviceControls::PasteParameters}),
	      MakeTextButton("Init", "Initialise all parameters.", {device, &TVortelDevice::Init}),
	      MakeTextButton("Rand", "Randomize all parameters.", {device, &TVortelDevice::Randomize}),
	      MakeTextButton("Mutate", "Mutate all parameters.", {device, &TVortelDevice::Mutate})}) {
		button->SetSize(TextWidth("Mutate") + kCommandMargins, kCommandHeight);
		column->AddChild(button);
	}
	return column;
}

void TVortelCommonDeviceControls::CopyParameters() {
	if (mpDevice && mpDevice->Document())
		mpDevice->CopyParameters(mpDevice->Document()->ParameterClipboard());
}

void TVortelCommonDeviceControls::PasteParameters() {
	if (mpDevice && mpDevice->Document())
		mpDevice->PasteParameters(mpDevice->Document()->ParameterClipboard());
}

int TVortelCommonDeviceControls::FilterType() const {
	return mpDevice ? static_cast<int>(mpDevice->mpFilterType->RealValue()) : 0;
}

void TVortelCommonDeviceControls::SetFilterType(int type) {
	if (mpDevice)
		mpDevice->mpFilterType->SetRealValueByUser(static_cast<float>(type));
}
