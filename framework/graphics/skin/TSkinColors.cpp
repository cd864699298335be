// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/skin/TSkinColors.h"

#include "framework/document/nodes/TNameRules.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/TSystemFolders.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/skin/SkinColorUpgrades.h"
#include "framework/graphics/skin/TSkin.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

struct TColorFacts {
	const char* mKey;
	const char* mLabel;
	TColor mDefault;
};

/// In the order of the groups and of their enumerations.
constexpr std::array<TColorFacts, TSkinColors::kNumberOfColors> kColors{{
    {"Main_Back", "Main Back", {162, 162, 162}},
    {"Main_Font", "Main Font", {0, 0, 0}},
    {"Alternate_Main_Back", "Alternate Main Back", {150, 150, 150}},
    {"Alternate_Main_Font", "Alternate Main Font", {0, 0, 0}},
    {"Body_Back", "Body Back", {196, 196, 196}},
    {"Body_Font", "Body Font", {27, 31, 30}},
    {"Strong_Body_Font", "Strong Body Font", {0, 0, 0}},
    {"Button_Back", "Button Back", {251, 251, 251}},
    {"Button_Font", "Button Font", {27, 31, 30}},
    {"Button_Highlight_Font", "Highlighted Button Font", {0, 96, 160}},
    {"Selected_Button_Back", "Selected Button Back", {127, 218, 239}},
    {"Selected_Button_Font", "Selected Button Font", {0, 0, 0}},
    {"Selection_Back", "Selection Back", {255, 239, 89}},
    {"Selection_Font", "Selection Font", {0, 0, 0}},
    {"StandBy_Selection_Back", "Selection Back Standby", {108, 110, 112}},
    {"StandBy_Selection_Font", "Selection Font Standby", {255, 255, 255}},
    {"Midi_Mapping_Back", "MIDI Mapping Back", {255, 0, 0}},
    {"Midi_Mapping_Font", "MIDI Mapping Font", {0, 0, 0}},
    {"ToolTip_Back", "Tooltip Back", {249, 249, 249}},
    {"ToolTip_Font", "Tooltip Font", {64, 64, 64}},
    {"ValueBox_Back", "Value Box Back", {228, 228, 228}},
    {"ValueBox_Font", "Value Box Font", {27, 31, 30}},
    {"ValueBox_Font_Icons", "Value Box Icons", {64, 66, 66}},
    {"Scrollbar", "Scrollbar", {100, 100, 100}},
    {"Slider", "Slider", {120, 235, 254}},
    {"Folder", "Folder", {214, 176, 92}},

    {"Automation_Grid", "Grid", {231, 224, 224}},
    {"Automation_Line_Edge", "Line Edge", {60, 60, 60}},
    {"Automation_Line_Fill", "Line Fill", {120, 120, 120}},
    {"Automation_Point", "Point", {27, 31, 30}},
    {"Automation_Marker_Play", "Play Marker", {0, 140, 60}},
    {"Automation_Marker_Single", "Single Marker", {200, 40, 40}},
    {"Automation_Marker_Pair", "Marker Pair", {40, 80, 200}},
    {"Automation_Marker_Diamond", "Diamond Marker", {200, 120, 0}},

    {"Pattern_Default_Back", "Default Back", {134, 134, 134}},
    {"Pattern_Default_Font", "Default Font", {0, 0, 0}},
    {"Pattern_Default_Font_Volume", "Default Font Volume", {0, 60, 10}},
    {"Pattern_Default_Font_Panning", "Default Font Pan", {60, 60, 0}},
    {"Pattern_Default_Font_Pitch", "Default Font Pitch", {80, 30, 0}},
    {"Pattern_Default_Font_Delay", "Default Font Delay", {0, 30, 80}},
    {"Pattern_Default_Font_Global", "Default Font Global FX", {80, 0, 60}},
    {"Pattern_Default_Font_Other", "Default Font Other FX", {0, 60, 60}},
    {"Pattern_Default_Font_DspFx", "Default Font DSP FX", {40, 0, 80}},
    {"Pattern_Default_Font_Unused", "Default Font Unused FX", {80, 80, 80}},
    {"Pattern_Highlighted_Back", "Highlighted Back", {150, 150, 150}},
    {"Pattern_Highlighted_Font", "Highlighted Font", {0, 0, 0}},
    {"Pattern_Highlighted_Font_Volume", "Highlighted Font Volume", {0, 70, 12}},
    {"Pattern_Highlighted_Font_Panning", "Highlighted Font Pan", {70, 70, 0}},
    {"Pattern_Highlighted_Font_Pitch", "Highlighted Font Pitch", {92, 36, 0}},
    {"Pattern_Highlighted_Font_Delay", "Highlighted Font Delay", {0, 36, 92}},
    {"Pattern_Highlighted_Font_Global", "Highlighted Font Global FX", {92, 0, 70}},
    {"Pattern_Highlighted_Font_Other", "Highlighted Font Other FX", {0, 70, 70}},
    {"Pattern_Highlighted_Font_DspFx", "Highlighted Font DSP FX", {46, 0, 92}},
    {"Pattern_Highlighted_Font_Unused", "Highlighted Font Unused", {92, 92, 92}},
    {"Pattern_PlayPosition_Back", "Play Position Back", {40, 40, 40}},
    {"Pattern_PlayPosition_Font", "Play Position Font", {255, 255, 255}},
    {"Pattern_CenterBar_Back", "Center Bar Back", {255, 239, 89}},
    {"Pattern_CenterBar_Font", "Center Bar Font", {0, 0, 0}},
    {"Pattern_CenterBar_Back_StandBy", "Center Bar Back Standby", {108, 110, 112}},
    {"Pattern_CenterBar_Font_StandBy", "Center Bar Font Standby", {255, 255, 255}},
    {"Pattern_Selection", "Selection", {127, 218, 239}},
    {"Pattern_StandBy_Selection", "Selection Standby", {108, 110, 112}},
    {"Pattern_Mute_State", "Mute State", {200, 40, 40}},

    {"VuMeter_Meter", "Meter", {254, 0, 0}},
    {"VuMeter_Meter_Low", "Meter Low", {64, 180, 64}},
    {"VuMeter_Meter_Middle", "Meter Mid", {220, 180, 40}},
    {"VuMeter_Meter_High", "Meter High", {200, 40, 40}},
    {"VuMeter_Peak", "Peak", {255, 255, 255}},
    {"VuMeter_Back_Normal", "Back Normal", {60, 60, 60}},
    {"VuMeter_Back_Clipped", "Back Clipped", {160, 0, 0}},

    // A hue wheel in steps of 30 degrees, then greys.
    {"Default_Color_01", "Default Color 01", {99, 99, 140}},
    {"Default_Color_02", "Default Color 02", {120, 99, 140}},
    {"Default_Color_03", "Default Color 03", {140, 99, 140}},
    {"Default_Color_04", "Default Color 04", {140, 99, 120}},
    {"Default_Color_05", "Default Color 05", {140, 99, 99}},
    {"Default_Color_06", "Default Color 06", {140, 120, 99}},
    {"Default_Color_07", "Default Color 07", {140, 140, 99}},
    {"Default_Color_08", "Default Color 08", {120, 140, 99}},
    {"Default_Color_09", "Default Color 09", {99, 140, 99}},
    {"Default_Color_10", "Default Color 10", {99, 140, 120}},
    {"Default_Color_11", "Default Color 11", {99, 140, 140}},
    {"Default_Color_12", "Default Color 12", {99, 120, 140}},
    {"Default_Color_13", "Default Color 13", {80, 80, 80}},
    {"Default_Color_14", "Default Color 14", {110, 110, 110}},
    {"Default_Color_15", "Default Color 15", {140, 140, 140}},
    {"Default_Color_16", "Default Color 16", {170, 170, 170}},
}};

constexpr const char* kLogCategory = "Skin";
constexpr float kDefaultAmount = 1.25f; // of bevels and contrast

bool sReadsThemes = true;

float ShiftedContrast(float value, float shift) {
	if (shift == 0.0f)
		return value;
	const double slope = std::tan((static_cast<double>(shift) + 1.0) * std::numbers::pi / 4.0);
	return static_cast<float>((static_cast<double>(value) - 0.5) * slope + 0.5);
}

/// Empty without one.
TString DefaultThemePath() {
	if (const TSystemFolders* system = Folders::System()) {
		const TDirectory product = system->PreferencesDirectory();
		const TString own = product.IsEmpty() ? TString() : product.Descend("Skin").FilePath("DefaultTheme.xml");
		if (TFile(own).Exists())
			return own;
	}
	const TString shipped = Folders::ResourceBase().Descend("Themes").FilePath("Default.xml");
	return TFile(shipped).Exists() ? shipped : TString();
}

} // namespace

TSkinColors::TSkinColors() {
	SkinColorUpgrades::Declare();
	ReserveMembers(kNumberOfColors + 4, 0);
	for (std::size_t i = 0; i < mColors.size(); ++i)
		AddProperty(&mColors[i], kColors[i].mKey, kWrite);
	AddProperty(&mButtonBevalAmount, TNameRules::MemberNameToElementName("mButtonBevalAmount"), kWrite);
	AddProperty(&mBodyBevalAmount, TNameRules::MemberNameToElementName("mBodyBevalAmount"), kWrite);
	AddProperty(&mContrastAdjustment, TNameRules::MemberNameToElementName("mContrastAdjustment"), kWrite);
	AddProperty(&mTextureSet, TNameRules::MemberNameToElementName("mTextureSet"), kWrite);
	// Here and not in a derived class: themes are named after this one.
	FinishDeclaration();
	TSkinColors::SetDefaults();
}

TSkinColors::~TSkinColors() = default;

void TSkinColors::SetReadsThemes(bool readsThemes) {
	sReadsThemes = readsThemes;
}

void TSkinColors::OnCreated() {
	if (sReadsThemes)
		LoadDefaultTheme();
}

void TSkinColors::SetDefaults() {
	for (std::size_t i = 0; i < mColors.size(); ++i)
		mColors[i].Set(kColors[i].mDefault);
	mButtonBevalAmount.Set(kDefaultAmount);
	mBodyBevalAmount.Set(kDefaultAmount);
	mContrastAdjustment.Set(kDefaultAmount);
	mTextureSet.Set(TSkin::HasTextureSet(kDefaultTextures) ? kDefaultTextures : kNoTextures);
	ResetAdjustments();
}

std::size_t TSkinColors::Place(TGroup group, int32_t index) {
	const auto before = kGroupSizes.begin() + group;
	return static_cast<std::size_t>(std::accumulate(kGroupSizes.begin(), before, index));
}

TString TSkinColors::KeyOf(TGroup group, int32_t index) {
	return kColors[Place(group, index)].mKey;
}

TString TSkinColors::LabelOf(TGroup group, int32_t index) {
	return kColors[Place(group, index)].mLabel;
}

// Adjusting all colours together

void TSkinColors::ResetAdjustments() {
	mHueShift = mSaturationShift = mBrightnessShift = mContrastShift = 0.0f;
	mInvertColors = false;
	TakeSnapshot();
}

void TSkinColors::TakeSnapshot() {
	for (std::size_t i = 0; i < mColors.size(); ++i)
		mSnapshot[i] = THsvColor::From(mColors[i].Get());
}

void TSkinColors::ApplyAdjustments() {
	for (std::size_t i = 0; i < mColors.size(); ++i) {
		THsvColor hsv = mSnapshot[i];
		hsv.mHue += mHueShift / 360.0f;
		hsv.mHue -= std::floor(hsv.mHue);
		hsv.mSaturation = std::clamp(hsv.mSaturation + mSaturationShift, 0.0f, 1.0f);
		hsv.mValue = std::clamp(hsv.mValue + mBrightnessShift, 0.0f, 1.0f);
		hsv.mValue = std::clamp(ShiftedContrast(hsv.mValue, mContrastShift), 0.0f, 1.0f);
		TColor color = hsv.ToColor();
		if (mInvertColors)
			color = {255 - color.mRed, 255 - color.mGreen, 255 - color.mBlue};
		mColors[i].Set(color);
	}
	if (TSkin* skin = TSkin::Instance())
		skin->Recolor();
}

// Themes

void TSkinColors::LoadDefaultTheme() {
	const TString path = DefaultThemePath();
	if (path.IsEmpty())
		return;
	mLoadingDefaults = true;
	try {
		Load(path);
	} catch (const TReadableException& failure) {
		TLog::Instance()->LogString(
		    kLogCategory, TString::Format("Failed to load the default theme: %s", failure.Message()));
		SetDefaults();
		ReloadTextures();
	}
	mLoadingDefaults = false;
}

void TSkinColors::OnLoadBegin() {
	SetDefaults();
}

void TSkinColors::OnLoadEnd(bool success) {
	OnReadFinished(success);
}

void TSkinColors::OnReadFinished(bool succeeded) {
	if (!succeeded && !mLoadingDefaults)
		LoadDefaultTheme();
	ResetAdjustments();
	if (!TSkin::HasTextureSet(mTextureSet.Get()))
		mTextureSet.Set(TSkin::HasTextureSet(kDefaultTextures) ? kDefaultTextures : kNoTextures);
	ReloadTextures();
}

void TSkinColors::ReloadTextures() {
	TSkin* skin = TSkin::Instance();
	if (!skin)
		return;
	try {
		skin->ReloadTextures();
	} catch (const TReadableException& failure) {
		const TString name = mTextureSet.Get();
		mTextureSet.Set(kNoTextures);
		skin->ReloadTextures();
		ShowUserMessage(
		    TString::Format(
		        "The texture set '%s' seems incomplete or broken. Switching back to the default set. (Error: '%s')",
		        name, failure.Message()),
		    kWarningMessage);
	}
}
