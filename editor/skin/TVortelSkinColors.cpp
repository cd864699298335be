// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/skin/TVortelSkinColors.h"

#include "framework/document/nodes/TNameRules.h"

namespace {

using C = TVortelSkinColors;

struct TVortelFacts {
	const char* mName;
	TColor mDefault;
};

constexpr TColor kBodyBack{40, 42, 44};
constexpr TColor kGridLineDefault = kBodyBack * 0.75f;

/// In the order of TVortelColor.
constexpr std::array<TVortelFacts, C::kNumberOfVortelColors> kVortelColors{{
    {"mVortel[kPalette0]", {192, 192, 192}},
    {"mVortel[kPalette1]", {255, 79, 69}},
    {"mVortel[kPalette2]", {255, 115, 26}},
    {"mVortel[kPalette3]", {255, 212, 39}},
    {"mVortel[kPalette4]", {159, 206, 38}},
    {"mVortel[kPalette5]", {9, 212, 101}},
    {"mVortel[kPalette6]", {10, 223, 200}},
    {"mVortel[kPalette7]", {17, 207, 255}},
    {"mVortel[kPalette8]", {136, 147, 255}},
    {"mVortel[kPalette9]", {206, 117, 255}},
    {"mVortel[kPalette10]", {255, 94, 162}},
    {"mVortel[kPaletteText]", {255, 255, 255}},
    {"mVortel[kBodyPanelOutline]", {255, 255, 255}},
    {"mVortel[kControlOutline]", {255, 255, 255}},
    {"mVortel[kGridBack]", {0, 2, 4}},
    {"mVortel[kGridLine]", kGridLineDefault},
    {"mVortel[kGridHighlight]", kGridLineDefault * 2.0f},
    {"mVortel[kGridText]", {255, 255, 255}},
    {"mVortel[kKnobActive]", {220, 222, 224}},
    {"mVortel[kKnobInactive]", kBodyBack * 1.5f},
    {"mVortel[kKnobBackground]", kBodyBack * 0.5f},
}};

struct TMainDefault {
	C::TMainColor mIndex;
	TColor mColor;
};

/// Where this program is darker than the base class.
constexpr TMainDefault kMainDefaults[] = {
    {C::kMainBack, {20, 22, 24}},
    {C::kMainFont, {200, 202, 204}},
    {C::kSelectionBack, {0, 160, 220}},
    {C::kSelectionFont, {0, 2, 4}},
    {C::kBodyBack, kBodyBack},
    {C::kBodyFont, {200, 202, 204}},
    {C::kStrongBodyFont, {255, 255, 255}},
    {C::kButtonBack, kBodyBack * 1.33f},
    {C::kButtonFont, {255, 255, 255}},
    {C::kSelectedButtonBack, {200, 202, 204}},
    {C::kSelectedButtonFont, {20, 22, 24}},
    {C::kValueBoxBack, {25, 27, 29}},
    {C::kValueBoxFont, {0, 160, 220}},
    {C::kValueBoxFontIcons, {200, 202, 204}},
    {C::kToolTipBack, {240, 242, 244}},
    {C::kToolTipFont, {0, 2, 4}},
    {C::kSlider, {200, 202, 204}},
};

std::size_t At(int32_t index) {
	return static_cast<std::size_t>(index);
}

} // namespace

TVortelSkinColors::TVortelSkinColors() {
	for (std::size_t i = 0; i < mVortel.size(); ++i)
		AddProperty(&mVortel[i], TNameRules::MemberNameToElementName(kVortelColors[i].mName), kWrite);
	TVortelSkinColors::SetDefaults();
}

TVortelSkinColors::~TVortelSkinColors() = default;

void TVortelSkinColors::Create() {
	TSkinColors::Create(
	    [] { return static_cast<TSkinColors*>(new TVortelSkinColors); }, [](TSkinColors* colors) { delete colors; });
}

TVortelSkinColors* TVortelSkinColors::Instance() {
	return static_cast<TVortelSkinColors*>(TSkinColors::Instance());
}

void TVortelSkinColors::SetDefaults() {
	TSkinColors::SetDefaults();
	for (const TMainDefault& facts : kMainDefaults)
		Value(kMain, facts.mIndex).Set(facts.mColor);
	for (std::size_t i = 0; i < mVortel.size(); ++i)
		mVortel[i].Set(kVortelColors[i].mDefault);
	TextureSet().Set(kNoTextures);
	TakeSnapshot();
}

TColor TVortelSkinColors::VortelColor(int32_t index) const {
	return mVortel[At(index)].Get();
}

TSkinColors::TColorValue& TVortelSkinColors::VortelValue(int32_t index) {
	return mVortel[At(index)];
}

TColor TVortelSkinColors::RowColor(int32_t row) const {
	return VortelColor(kPalette0 + row);
}

TString TVortelSkinColors::VortelKeyOf(int32_t index) {
	return kVortelColors[At(index)].mName;
}
