// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/skin/SkinColorUpgrades.h"

#include "framework/document/xml/TDocumentTranslator.h"
#include "framework/graphics/skin/TSkinColors.h"

#include <algorithm>
#include <cmath>

namespace {

struct TRename {
	const char* mGroup; // empty: outside of any
	const char* mOldName;
	const char* mNewName;
};

/// The first themes held their values as elements <Property name="...">, some in groups of the same form.
constexpr TRename kRenames[] = {
    {"", "mTextureSet", "TextureSet"},
    {"", "mButtonBevalAmount", "ButtonBevalAmount"},
    {"", "mBodyBevalAmount", "BodyBevalAmount"},
    {"mMain", "MainBack", "Main_Back"},
    {"mMain", "MainText", "Main_Font"},
    {"mMain", "SelectedText", "Selection_Font"},
    {"mMain", "SelectionBar", "Selection_Back"},
    {"mMain", "Body", "Body_Back"},
    {"mMain", "BodyFont", "Body_Font"},
    {"mMain", "Button", "Button_Back"},
    {"mMain", "ButtonFont", "Button_Font"},
    {"mMain", "selected ButtonFont", "Selected_Button_Font"},
    {"mMain", "Slider", "Fader"},
    {"mMain", "Folder", "Folder"},
    {"mMain", "ValueFont", "ValueBox_Font"},
    {"mMain", "ValueBack", "ValueBox_Back"},
    {"mMain", "ToolTipBack", "ToolTip_Back"},
    {"mMain", "ToolTipText", "ToolTip_Font"},
    {"mEnvelope", "Line", "Automation_Line_Edge"},
    {"mEnvelope", "Point", "Automation_Point"},
    {"mEnvelope", "LineFill", "Automation_Line_Fill"},
    {"mEnvelope", "Grid", "Automation_Grid"},
    {"mEnvelope", "PlayingPos", "Automation_Marker_Play"},
    {"mEnvelope", "SingleMarker", "Automation_Marker_Single"},
    {"mEnvelope", "LoopMarker", "Automation_Marker_Pair"},
    {"mPatternSmall", "default", "Pattern_Default_Font"},
    {"mPatternSmall", "default back", "Pattern_Default_Back"},
    {"mPatternSmall", "highlighted", "Pattern_Highlighted_Font"},
    {"mPatternSmall", "highlighted back", "Pattern_Highlighted_Back"},
    {"mPatternSmall", "PlayerPosition", "Pattern_PlayPosition_Font"},
    {"mPatternSmall", "PlayerPosition Back", "Pattern_PlayPosition_Back"},
    {"mPatternSmall", "marked back", "Pattern_Selection"},
    {"mPatternSmall", "center bar", "Pattern_CenterBar_Font"},
    {"mPatternSmall", "center bar back", "Pattern_CenterBar_Back"},
    {"mVuMeter", "Meter", "VuMeter_Meter"},
    {"mVuMeter", "Back normal", "VuMeter_Back_Normal"},
    {"mVuMeter", "Back clipped", "VuMeter_Back_Clipped"},
    {"mVuMeter", "Peak", "VuMeter_Peak"},
};

constexpr const char* kGroups[] = {"mMain", "mEnvelope", "mPatternSmall", "mVuMeter"};

constexpr int kBright = 128;

TString PropertyPath(const TString& parent, const TString& name) {
	return TString::Format("%s/Property[@name='%s']", parent, name);
}

void AddRenames(TDocumentTranslator& translator) {
	const TString root = "/SkinColors";
	const TString everything = PropertyPath(root, "mpSkinColors");
	translator.AddMoveNode(everything + "/*", root);
	translator.AddRemoveNode(everything);
	for (const TRename& rename : kRenames) {
		const bool isInGroup = *rename.mGroup != 0;
		const TString parent = isInGroup ? PropertyPath(root, rename.mGroup) : root;
		translator.AddRenameNode(PropertyPath(parent, rename.mOldName), rename.mNewName);
		if (isInGroup)
			translator.AddMoveNode(parent + "/" + rename.mNewName, root);
	}
	for (const char* group : kGroups)
		translator.AddRemoveNode(PropertyPath(root, group));
}

int SumOf(const TColor& color) {
	return color.mRed + color.mGreen + color.mBlue;
}

bool IsBright(const TColor& color) {
	return SumOf(color) / 3 >= kBright;
}

/// The colours of a theme, as the steps see them.
struct TTheme {
	explicit TTheme(TDocumentNode* node) : mColors(static_cast<TSkinColors&>(*node)) {}

	TColor Main(int32_t index) const { return mColors.MainColor(index); }

	TColor Pattern(int32_t index) const { return mColors.PatternColor(index); }

	void SetMain(int32_t index, const TColor& color) { mColors.Value(TSkinColors::kMain, index).Set(color); }

	void SetPattern(int32_t index, const TColor& color) { mColors.Value(TSkinColors::kPattern, index).Set(color); }

	TSkinColors& mColors;
};

using C = TSkinColors;

void AddColorsOfVersion1(TDocumentNode* node) {
	TTheme theme(node);
	theme.mColors.Value(C::kVuMeter, C::kVuMeterMeterHigh).Set({200, 40, 40});
	theme.SetMain(C::kScrollbar, theme.Main(C::kButtonBack) * 1.15f);
	theme.SetMain(C::kStandBySelectionBack, Mix(theme.Main(C::kSelectionBack), theme.Main(C::kMainBack), 0.5f));
}

void SetPatternFonts(TDocumentNode* node) {
	constexpr TColor kFonts[] = {{189, 255, 199}, {235, 235, 151}, {255, 190, 135}, {174, 199, 249}, {246, 171, 229}};
	TTheme theme(node);
	const auto normal = static_cast<float>(SumOf(theme.Pattern(C::kPatternDefaultFont)));
	const auto highlighted = static_cast<float>(SumOf(theme.Pattern(C::kPatternHighlightedFont)));
	for (std::size_t i = 0; i < std::size(kFonts); ++i) {
		const auto font = static_cast<C::TPatternFont>(C::kPatternFontVolume + i);
		theme.SetPattern(C::PatternFontOf(C::kPatternDefaultFont, font), kFonts[i]);
		theme.SetPattern(C::PatternFontOf(C::kPatternHighlightedFont, font), kFonts[i] / (normal / highlighted));
	}
}

void DeriveAlternateColors(TDocumentNode* node) {
	TTheme theme(node);
	theme.SetMain(C::kAlternateMainBack, theme.Main(C::kMainBack) * 0.985f);
	theme.SetMain(C::kAlternateMainFont, theme.Main(C::kMainFont) * 0.985f);
}

void BendBevelAmounts(TDocumentNode* node) {
	TSkinColors& colors = TTheme(node).mColors;
	for (auto* amount : {&colors.ButtonBevalAmount(), &colors.BodyBevalAmount()})
		amount->Set(std::clamp(std::pow(10.0f, amount->Get() - 1.0f), 1.0f, 2.0f));
}

void SplitBodyFont(TDocumentNode* node) {
	TTheme theme(node);
	const TColor font = theme.Main(C::kBodyFont);
	theme.SetMain(C::kBodyFont, Mix(font, theme.Main(C::kBodyBack), 0.75f));
	theme.SetMain(C::kStrongBodyFont, IsBright(font) ? font * 1.25f : font / 1.25f);
}

void DeriveValueBoxIcons(TDocumentNode* node) {
	TTheme theme(node);
	theme.SetMain(C::kValueBoxFontIcons, Mix(theme.Main(C::kValueBoxFont), theme.Main(C::kValueBoxBack), 0.75f));
}

void SetMidiMappingColors(TDocumentNode* node) {
	TTheme theme(node);
	theme.SetMain(C::kMidiMappingBack, {255, 0, 0});
	theme.SetMain(C::kMidiMappingFont, {0, 0, 0});
}

void DeriveButtonHighlight(TDocumentNode* node) {
	TTheme theme(node);
	const TColor font = theme.Main(C::kValueBoxFont);
	theme.SetMain(C::kButtonHighlightFont, IsBright(theme.Main(C::kButtonBack)) ? font / 2.0f : font * 2.0f);
}

void DeriveMarks(TDocumentNode* node) {
	TTheme theme(node);
	theme.SetPattern(C::kPatternMuteState, theme.Main(C::kValueBoxFont));
	theme.mColors.Value(C::kAutomation, C::kAutomationMarkerDiamond).Set(theme.Main(C::kValueBoxFont));
}

void AddPatternFonts(TDocumentNode* node) {
	TTheme theme(node);
	for (const C::TPatternColor first : {C::kPatternDefaultFont, C::kPatternHighlightedFont})
		for (const C::TPatternFont font : {C::kPatternFontDspFx, C::kPatternFontUnused})
			theme.SetPattern(C::PatternFontOf(first, font), theme.Pattern(first));
	const TColor standBy = Mix(theme.Main(C::kMainBack), theme.Pattern(C::kPatternDefaultFont), 0.5f);
	theme.SetPattern(C::kPatternCenterBarBackStandBy, standBy);
	theme.SetPattern(C::kPatternCenterBarFontStandBy, standBy);
}

void DeriveStrongerAlternateColors(TDocumentNode* node) {
	TTheme theme(node);
	const TColor back = theme.Main(C::kMainBack);
	theme.SetMain(C::kAlternateMainBack, IsBright(back) ? back * 0.85f : back / 0.65f);
	theme.SetMain(C::kAlternateMainFont, theme.Main(C::kMainFont));
}

TPtr<TDocumentTranslator> MakeTranslator() {
	const auto translator = MakePtr<TDocumentTranslator>();
	translator->BeginStep();
	AddRenames(*translator);
	translator->AddDocumentFunction(&AddColorsOfVersion1);
	translator->EndStep();
	for (const TDocumentTranslator::TDocumentFunction function :
	     {&SetPatternFonts, &DeriveAlternateColors, &BendBevelAmounts, &SplitBodyFont, &DeriveValueBoxIcons,
	      &SetMidiMappingColors, &DeriveButtonHighlight, &DeriveMarks, &AddPatternFonts,
	      &DeriveStrongerAlternateColors}) {
		translator->BeginStep();
		translator->AddDocumentFunction(function);
		translator->EndStep();
	}
	translator->BeginStep();
	translator->AddRenameNode("//Mute_State", "Pattern_Mute_State");
	translator->AddRenameNode("//SliderBar_Back", "Scrollbar");
	translator->AddRenameNode("//Fader", "Slider");
	translator->EndStep();
	return translator;
}

} // namespace

void SkinColorUpgrades::Declare() {
	[[maybe_unused]] static const bool sIsDeclared = [] {
		TDocumentTranslator::Register("SkinColors", MakeTranslator());
		return true;
	}();
}
