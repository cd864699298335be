// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/values/TColor.h"
#include "framework/graphics/skin/THsvColor.h"

#include <array>
#include <cstdint>
#include <numeric>

/// All colours of the interface, and the settings of its look: what a theme file holds. Read while drawing, written by
/// loading a theme. Made before TSkin. GUI thread.
class TSkinColors : public TSingleton<TSkinColors>, public TDocumentNode {
public:
	using TColorValue = TObservableBaseType<TColor>;

	enum TGroup : int32_t { kMain, kAutomation, kPattern, kVuMeter, kDefault, kNumberOfGroups };

	enum TMainColor : int32_t {
		kMainBack,
		kMainFont,
		kAlternateMainBack,
		kAlternateMainFont,
		kBodyBack,
		kBodyFont,
		kStrongBodyFont,
		kButtonBack,
		kButtonFont,
		kButtonHighlightFont,
		kSelectedButtonBack,
		kSelectedButtonFont,
		kSelectionBack,
		kSelectionFont,
		kStandBySelectionBack,
		kStandBySelectionFont,
		kMidiMappingBack,
		kMidiMappingFont,
		kToolTipBack,
		kToolTipFont,
		kValueBoxBack,
		kValueBoxFont,
		kValueBoxFontIcons,
		kScrollbar,
		kSlider,
		kFolder,
		kNumberOfMainColors
	};

	enum TAutomationColor : int32_t {
		kAutomationGrid,
		kAutomationLineEdge,
		kAutomationLineFill,
		kAutomationPoint,
		kAutomationMarkerPlay,
		kAutomationMarkerSingle,
		kAutomationMarkerPair,
		kAutomationMarkerDiamond,
		kNumberOfAutomationColors
	};

	/// The order of the fonts after each ground.
	enum TPatternFont : int32_t {
		kPatternFont,
		kPatternFontVolume,
		kPatternFontPanning,
		kPatternFontPitch,
		kPatternFontDelay,
		kPatternFontGlobal,
		kPatternFontOther,
		kPatternFontDspFx,
		kPatternFontUnused,
		kNumberOfPatternFonts
	};

	enum TPatternColor : int32_t {
		kPatternDefaultBack,
		kPatternDefaultFont, // and from here on TPatternFont
		kPatternHighlightedBack = kPatternDefaultFont + kNumberOfPatternFonts,
		kPatternHighlightedFont, // and from here on TPatternFont
		kPatternPlayPositionBack = kPatternHighlightedFont + kNumberOfPatternFonts,
		kPatternPlayPositionFont,
		kPatternCenterBarBack,
		kPatternCenterBarFont,
		kPatternCenterBarBackStandBy,
		kPatternCenterBarFontStandBy,
		kPatternSelection,
		kPatternStandBySelection,
		kPatternMuteState,
		kNumberOfPatternColors
	};

	enum TVuMeterColor : int32_t {
		kVuMeterMeter,
		kVuMeterMeterLow,
		kVuMeterMeterMiddle,
		kVuMeterMeterHigh,
		kVuMeterPeak,
		kVuMeterBackNormal,
		kVuMeterBackClipped,
		kNumberOfVuMeterColors
	};

	/// first: kPatternDefaultFont or kPatternHighlightedFont.
	static constexpr int32_t PatternFontOf(TPatternColor first, TPatternFont font) {
		return static_cast<int32_t>(first) + static_cast<int32_t>(font);
	}

	static constexpr int32_t kNumberOfDefaultColors = 16;
	static constexpr std::array<int32_t, kNumberOfGroups> kGroupSizes{
	    kNumberOfMainColors, kNumberOfAutomationColors, kNumberOfPatternColors, kNumberOfVuMeterColors,
	    kNumberOfDefaultColors};
	static constexpr int32_t kNumberOfColors = std::accumulate(kGroupSizes.begin(), kGroupSizes.end(), 0);
	static constexpr const char* kNoTextures = "None";
	static constexpr const char* kDefaultTextures = "Default";

	/// Holds the defaults; once it answers as the Instance, the user's theme, unless themes are switched off.
	TSkinColors();
	~TSkinColors() override;

	/// For the whole process: off for programs that are to look the same for every user. On at first.
	static void SetReadsThemes(bool readsThemes);

	virtual void SetDefaults();

	/// The colours from which ApplyAdjustments starts.
	virtual void TakeSnapshot();
	/// Sets all colours to those of the snapshot, shifted by the members below.
	virtual void ApplyAdjustments();

	virtual void ResetToDefaults() { SetDefaults(); }

	TColor MainColor(int32_t index) const { return Color(kMain, index); }

	TColor AutomationColor(int32_t index) const { return Color(kAutomation, index); }

	TColor PatternColor(int32_t index) const { return Color(kPattern, index); }

	TColor VuMeterColor(int32_t index) const { return Color(kVuMeter, index); }

	TColor DefaultColor(int32_t index) const { return Color(kDefault, index); }

	TColor Color(TGroup group, int32_t index) const { return mColors[Place(group, index)].Get(); }

	/// To watch or to set it.
	TColorValue& Value(TGroup group, int32_t index) { return mColors[Place(group, index)]; }

	/// The name of the element in a theme file, and the name for the user.
	static TString KeyOf(TGroup group, int32_t index);
	static TString LabelOf(TGroup group, int32_t index);

	/// The user's own theme, else the one that the program brings; without either, or if it cannot be read, the
	/// defaults.
	void LoadDefaultTheme();

	/// 0.2 to 3; above 1.25 edges and lines grow stronger.
	TObservableBaseType<float>& ContrastAdjustment() { return mContrastAdjustment; }

	TObservableBaseType<float>& ButtonBevalAmount() { return mButtonBevalAmount; }

	TObservableBaseType<float>& BodyBevalAmount() { return mBodyBevalAmount; }

	TObservableBaseType<TString>& TextureSet() { return mTextureSet; }

	/// Brings the textures of TSkin up to date with what was read or set. A set that cannot be loaded becomes "None",
	/// with a warning to the user.
	void ReloadTextures();

	float mHueShift = 0.0f; // degrees
	float mSaturationShift = 0.0f;
	float mBrightnessShift = 0.0f;
	float mContrastShift = 0.0f; // -1 to 1
	bool mInvertColors = false;

protected:
	/// After a theme was read, or could not be.
	virtual void OnReadFinished(bool succeeded);

	void OnCreated() override;
	void OnLoadBegin() override;
	void OnLoadEnd(bool success) override;

	TObservableBaseType<float> mButtonBevalAmount{1.25f};
	TObservableBaseType<float> mBodyBevalAmount{1.25f};
	TObservableBaseType<float> mContrastAdjustment{1.25f};
	TObservableBaseType<TString> mTextureSet;

private:
	static std::size_t Place(TGroup group, int32_t index);
	void ResetAdjustments();

	std::array<TColorValue, kNumberOfColors> mColors;
	std::array<THsvColor, kNumberOfColors> mSnapshot;
	bool mLoadingDefaults = false;
};
