// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/skin/TSkin.h"

class TVortelSkinColors;

/// The program's own look: flat, with thin outlines, without textures.
class TVortelSkin final : public TSkin {
public:
	/// The program's TSkin, in this storage and in all that are made later; after TVortelSkinColors. End:
	/// TSkin::Destroy.
	static void Create();
	/// The TSkin of the current storage, which is this class; null without one.
	static TVortelSkin* Instance();

	void DrawPanel(TSurface& port, const TRectT<int>& rect, TState state) override;
	void DrawRoundedPanel(TSurface& port, const TRectT<int>& rect, const TColor& color) override;
	void DrawControlBar(TSurface& port, const TRectT<int>& rect, TState state) override;
	void DrawTabArea(TSurface& port, const TRectT<int>& rect) override;
	void DrawTextBoxFrame(TSurface& port, const TRectT<int>& rect, bool isEnabled, bool isEditing) override;
	void DrawButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) override;
	void DrawRoundButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) override;
	void DrawBitmapButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) override;
	void
	DrawColoredButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back) override;
	void DrawScrollBarTrack(TSurface& port, const TRectT<int>& rect, TOrientation orientation, bool isEnabled) override;
	void DrawScrollBarThumb(
	    TSurface& port, const TRectT<int>& rect, TOrientation orientation, bool isHighlighted, bool isEnabled) override;
	void DrawScrollBarButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) override;
	void DrawRotary(
	    TSurface& port, const TRectT<int>& rect, float position, bool isHighlighted, bool isEnabled,
	    bool fromMiddle) override;
	void DrawToolTipBackground(TSurface& port, const TRectT<int>& rect) override;

	/// A block of the matrix or a row's name.
	void DrawBlock(TSurface& port, const TRectT<int>& rect, const TColor& color, float opacity);

private:
	static TVortelSkinColors& VortelColors();
	static TColor PanelColor();
	static TColor ScrollBarGround();
	/// Outlines grow with the contrast that the theme asks for.
	static float OutlineOpacity(float usual);

	void DrawFlatButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back);
};
