// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/skin/TSkin.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/graphics/bitmaps/TPanelTexture.h"
#include "framework/graphics/skin/TSkinColors.h"

#include <algorithm>
#include <cmath>

namespace {

using C = TSkinColors;

/// How a texture stretches, and to which amount of bevel it listens.
enum class TTextureKind { kTiled, kPanelInHeight, kButtonInHeight, kButtonInWidth, kRound };

struct TTextureFacts {
	const char* mFile;
	TTextureKind mKind;
	C::TMainColor mColor;
	float mDarkening; // of the colour, for all states
	bool mIsButton;   // its states are steps of their own
};

constexpr float kDimmedFactor = 0.71428573f; // 1 / 1.4
constexpr float kHighlightedFactor = 1.4f;

constexpr TTextureFacts kTextures[TSkin::kNumberOfTextureGroups] = {
    {"PanelBlending.bmp", TTextureKind::kPanelInHeight, C::kBodyBack, 1.0f, false},
    {"InnerBodyTexture.bmp", TTextureKind::kTiled, C::kBodyBack, kDimmedFactor, false},
    {"BodyTexture.bmp", TTextureKind::kTiled, C::kBodyBack, 1.0f, false},
    {"ControlBarBlending.bmp", TTextureKind::kPanelInHeight, C::kBodyBack, 1.0f, false},
    {"VScrollBarBlending.bmp", TTextureKind::kButtonInWidth, C::kSlider, 1.0f, false},
    {"HScrollBarBlending.bmp", TTextureKind::kButtonInHeight, C::kSlider, 1.0f, false},
    {"VScrollBarBlending.bmp", TTextureKind::kButtonInWidth, C::kScrollbar, 1.0f, false},
    {"HScrollBarBlending.bmp", TTextureKind::kButtonInHeight, C::kScrollbar, 1.0f, false},
    {"ButtonBlending.bmp", TTextureKind::kButtonInHeight, C::kScrollbar, kHighlightedFactor, false},
    {"PressedButtonBlending.bmp", TTextureKind::kButtonInHeight, C::kScrollbar, kHighlightedFactor, false},
    {"ButtonBlending.bmp", TTextureKind::kButtonInHeight, C::kButtonBack, 1.0f, true},
    {"PressedButtonBlending.bmp", TTextureKind::kButtonInHeight, C::kSelectedButtonBack, 1.0f, true},
    {"RoundButtonBlending.bmp", TTextureKind::kRound, C::kButtonBack, 1.0f, true},
    {"PressedRoundButtonBlending.bmp", TTextureKind::kRound, C::kSelectedButtonBack, 1.0f, true},
    {"HSliderBlending.bmp", TTextureKind::kButtonInHeight, C::kSlider, 1.0f, false},
    {"VSliderBlending.bmp", TTextureKind::kButtonInWidth, C::kSlider, 1.0f, false},
};

/// The variant with "Mac" in its name is preferred. Empty where the set lacks the file.
TString TexturePath(const TString& set, const char* file) {
	const TDirectory folder = Folders::ResourceBase().Descend("Skin").Descend("Textures").Descend(set);
	const TString path = folder.FilePath(file);
	TString variant = path;
	variant.ReplaceLast(".bmp", "Mac.bmp");
	if (TFile(variant).Exists())
		return variant;
	return TFile(path).Exists() ? path : TString();
}

TPtr<TTexture> MakeTexture(const TTextureFacts& facts, const TString& path, TSkinColors& colors) {
	switch (facts.mKind) {
	case TTextureKind::kPanelInHeight:
		return MakePtr<TPanelTexture>(path, TPanelTexture::kStretchHeight, colors.BodyBevalAmount());
	case TTextureKind::kButtonInHeight:
		return MakePtr<TButtonTexture>(path, TPanelTexture::kStretchHeight, colors.ButtonBevalAmount());
	case TTextureKind::kButtonInWidth:
		return MakePtr<TButtonTexture>(path, TPanelTexture::kStretchWidth, colors.ButtonBevalAmount());
	case TTextureKind::kRound:
		return MakePtr<TRoundButtonTexture>(path, TPanelTexture::kStretchHeight, colors.ButtonBevalAmount());
	case TTextureKind::kTiled:
		break;
	}
	return MakePtr<TTexture>(path);
}

} // namespace

TSkin::TSkin() {
	for (auto& group : mTextures)
		for (TPtr<TTexture>& texture : group)
			texture = MakePtr<TVoidRecolorableTexture>();
}

TSkin::~TSkin() = default;

void TSkin::OnCreated() {
	Colors().ReloadTextures();
}

TSkinColors& TSkin::Colors() {
	return *TSkinColors::Instance();
}

TColor TSkin::MainColor(int32_t index) {
	return Colors().MainColor(index);
}

// Textures

bool TSkin::HasTextureSet(const TString& name) {
	if (name == TSkinColors::kNoTextures)
		return true;
	// A name out of a theme must not lead to another folder.
	if (name.IsEmpty() || name.StartsWithChar(u'.') || name.FindChar(u'/') >= 0 || name.FindChar(u'\\') >= 0)
		return false;
	return std::ranges::none_of(
	    kTextures, [&](const TTextureFacts& facts) { return TexturePath(name, facts.mFile).IsEmpty(); });
}

void TSkin::ReloadTextures() {
	TSkinColors& colors = Colors();
	const TString set = colors.TextureSet().Get();
	for (int32_t group = 0; group < kNumberOfTextureGroups; ++group) {
		const TTextureFacts& facts = kTextures[group];
		const TString path = set == TSkinColors::kNoTextures ? TString() : TexturePath(set, facts.mFile);
		for (TPtr<TTexture>& texture : mTextures[group])
			texture = set == TSkinColors::kNoTextures ? TPtr<TTexture>(MakePtr<TVoidRecolorableTexture>())
			                                          : MakeTexture(facts, path, colors);
		// Whether the image can be used must be known now; it is made ready when it is drawn.
		mTextures[group][kNormal]->Load();
		mTextures[group][kNormal]->Reset();
	}
	Recolor();
}

void TSkin::Recolor() {
	for (int32_t group = 0; group < kNumberOfTextureGroups; ++group) {
		const TTextureFacts& facts = kTextures[group];
		TColor base = MainColor(facts.mColor);
		if (facts.mDarkening != 1.0f)
			base = Darken(base, facts.mDarkening);
		for (int32_t state = 0; state < kNumberOfStates; ++state) {
			const bool isDimmedButton = facts.mIsButton && state == kDimmed;
			mTextures[group][state]->SetColor(
			    isDimmedButton ? Darken(base, 0.6666667f) : StateColor(base, static_cast<TState>(state)));
		}
	}
}

TTexture& TSkin::Texture(TTextureGroup group, TState state) {
	return *mTextures[group][state];
}

// Sizes and colours

float TSkin::ScaledBevel(const TSurface& port, float amount) const {
	return amount * (ScaleValue(port.Scale()) + 1.0f) / 2.0f;
}

float TSkin::LineWidth(const TSurface& port) {
	return ScaleValue(port.Scale());
}

TColor TSkin::Darken(const TColor& color, float factor) const {
	THsvColor hsv = THsvColor::From(color);
	if (hsv.mValue <= 0.0001f)
		return color;
	const float contrast = std::clamp(Colors().ContrastAdjustment().Get(), 0.2f, 3.0f);
	const float bent = std::pow(std::pow(hsv.mValue, 1.0f / contrast) * factor, contrast) / factor;
	hsv.mValue = bent > 0.0f ? std::min(bent, 1.0f) : 0.0f; // also for a factor that is no use
	return hsv.ToColor();
}

TColor TSkin::StateColor(const TColor& color, TState state) const {
	if (state == kNormal)
		return color;
	return Darken(color, state == kHighlighted ? kHighlightedFactor : kDimmedFactor);
}

TColor TSkin::BrightEdgeColor(const TColor& color) const {
	return Darken(color, 0.25f);
}

TColor TSkin::ShadowEdgeColor(const TColor& color) const {
	return Darken(color, 0.6060606f);
}

TColor TSkin::MidToneColor() const {
	return Mix(MainColor(C::kBodyBack), MainColor(C::kMainFont), 0.5f);
}

TColor TSkin::InnerFrameColor() const {
	return Darken(MainColor(C::kBodyBack), 0.6896551f);
}

TColor TSkin::InnerFrameShadowColor() const {
	return Darken(MainColor(C::kBodyBack), 0.6060606f);
}

TColor TSkin::DisabledTextColor(const TColor& text, const TColor& back) const {
	return Mix(text, back, 0.35f);
}

// Grounds

void TSkin::DrawBackground(TSurface& port, const TRectT<int>& rect, TBackground kind) {
	switch (kind) {
	case kBodyBackground:
		return Texture(kBodyTexture, kNormal).DrawRect(port, rect);
	case kPanelBackground:
		return DrawPanel(port, rect, kNormal);
	case kControlBarBackground:
		return DrawControlBar(port, rect, kNormal);
	case kMainBackground:
		return port.FillRect(rect, MainColor(C::kMainBack), 1.0f);
	case kMenuBackground:
		port.FillRect(rect, MainColor(C::kBodyBack), 1.0f);
		return StrokeOutline(port, rect, MidToneColor(), {}, 1.0f);
	case kInnerBodyBackground:
	case kTextBoxBackground:
	case kListBoxBackground:
	case kValueBoxBackground:
		return DrawTextBoxFrame(port, rect, true, false);
	case kNoBackground:
	case kNumberOfBackgrounds:
		return;
	}
}

bool TSkin::IsOpaque(TBackground kind) const {
	return kind == kBodyBackground || kind == kMainBackground || kind == kMenuBackground || kind == kPanelBackground ||
	       kind == kControlBarBackground;
}

void TSkin::DrawPanel(TSurface& port, const TRectT<int>& rect, TState state) {
	Texture(kPanelTexture, state).DrawRect(port, rect);
	DrawBevel(port, rect, kSquareBevel, 0.25f);
}

void TSkin::DrawTitledPanel(TSurface& port, const TRectT<int>& rect, const TString& title, TState state) {
	constexpr int kTitleFont = 2;
	DrawPanel(port, rect, state);
	const TRectT<int> line{rect.mLeft, rect.mTop + 2, rect.mWidth, port.LineHeight(kTitleFont) + 4};
	DrawText(port, line, title, MainColor(C::kBodyFont), kTitleFont, kAlignCenter);
}

void TSkin::DrawRoundedPanel(TSurface& port, const TRectT<int>& rect, const TColor& color) {
	const TCornerRadii radii = TCornerRadii::All(std::round(ScaledBevel(port, 3.0f)));
	FillInOutline(port, rect, color, radii);
	StrokeOutline(port, rect, Darken(color, 0.25f), radii, 1.0f);
}

void TSkin::DrawControlBar(TSurface& port, const TRectT<int>& rect, TState state) {
	Texture(kControlBarTexture, state).DrawRect(port, rect);
	DrawBevel(port, rect, kSquareBevel, 0.25f);
}

void TSkin::DrawTabArea(TSurface& port, const TRectT<int>& rect) {
	DrawPanel(port, rect, kNormal);
}
