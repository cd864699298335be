// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/skin/TSkinColors.h"

/// The program's own colours beside those of the base class, and its dark defaults.
class TVortelSkinColors final : public TSkinColors {
public:
	enum TVortelColor : int32_t {
		kPalette0, // neutral; 1 to 10 are those of the effects, in their fixed order
		kPalette1,
		kPalette2,
		kPalette3,
		kPalette4,
		kPalette5,
		kPalette6,
		kPalette7,
		kPalette8,
		kPalette9,
		kPalette10,
		kPaletteText,
		kBodyPanelOutline,
		kControlOutline,
		kGridBack,
		kGridLine,
		kGridHighlight,
		kGridText,
		kKnobActive,
		kKnobInactive,
		kKnobBackground,
		kNumberOfVortelColors
	};

	static constexpr int32_t kNumberOfRowColors = 11;

	TVortelSkinColors();
	~TVortelSkinColors() override;

	/// The program's TSkinColors, in this storage and in all that are made later. End: TSkinColors::Destroy.
	static void Create();
	/// The TSkinColors of the current storage, which are this class; null without any.
	static TVortelSkinColors* Instance();

	void SetDefaults() override;

	TColor VortelColor(int32_t index) const;
	TColorValue& VortelValue(int32_t index);

	/// Of the matrix row, 0 to 10: by its position on the display, not by the device.
	TColor RowColor(int32_t row) const;

	/// The member's name, as in "mVortel[kPalette0]".
	static TString VortelKeyOf(int32_t index);

private:
	std::array<TColorValue, kNumberOfVortelColors> mVortel;
};
