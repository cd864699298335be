// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObserver.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TRectT.h"
#include "framework/graphics/skin/TButtonLook.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <array>
#include <cstdint>

class TSkinColors;
class TTexture;

/// The one place that knows what shapes look like: views hand it a surface and a rectangle. Made after TSkinColors,
/// whose colours it reads with every drawing; the textures are coloured once for a theme. GUI thread.
///
/// Rectangles and points are logical pixels. Outlines are one logical pixel wide and lie inside the rectangle.
class TSkin : public TSingleton<TSkin> {
public:
	enum TState : int32_t { kNormal = 0, kHighlighted = 1, kDimmed = 2, kNumberOfStates = 3 };
	enum TOrientation : int32_t { kVertical = 0, kHorizontal = 1 };

	enum TTextureGroup : int32_t {
		kPanelTexture,
		kInnerBodyTexture,
		kBodyTexture,
		kControlBarTexture,
		kVerticalSliderBarTexture,
		kHorizontalSliderBarTexture,
		kVerticalScrollBarTexture,
		kHorizontalScrollBarTexture,
		kScrollBarButtonTexture,
		kPressedScrollBarButtonTexture,
		kButtonTexture,
		kPressedButtonTexture,
		kRoundButtonTexture,
		kPressedRoundButtonTexture,
		kHorizontalSliderCapTexture,
		kVerticalSliderCapTexture,
		kNumberOfTextureGroups
	};

	/// The numbers that views are given.
	enum TBackground : int32_t {
		kNoBackground = 0,
		kBodyBackground = 1,
		kInnerBodyBackground = 2, // a box for text, and so are 6 to 8
		kPanelBackground = 3,
		kControlBarBackground = 4,
		kMainBackground = 5,
		kTextBoxBackground = 6,
		kListBoxBackground = 7,
		kValueBoxBackground = 8,
		kMenuBackground = 9,
		kNumberOfBackgrounds
	};

	/// Which ends have round corners.
	enum TBevelStyle : int32_t {
		kSquareBevel = 0,
		kRoundBevel = 1,
		kRoundBevel2 = 2,
		kLeftRoundBevel = 3,
		kRoundBevel4 = 4,
		kRightRoundBevel = 5
	};

	enum TEntryState : int32_t {
		kEntryAtRest,
		kEntryHovered,
		kEntrySelected,
		kEntrySelectedStandBy // in a list without the focus
	};

	TSkin();
	~TSkin() override;

	// Textures

	/// After a colour has changed.
	virtual void Recolor();
	/// After the texture set has changed. Throws TReadableException if one of its files cannot be used.
	virtual void ReloadTextures();
	virtual TTexture& Texture(TTextureGroup group, TState state);
	/// Whether the set can be chosen: all its files are there. "None" always can.
	static bool HasTextureSet(const TString& name);

	// Sizes and colours

	/// A length that grows half as fast as the scale, for corners.
	virtual float ScaledBevel(const TSurface& port, float amount) const;
	/// Scales the brightness by the factor, along the contrast that the theme asks for.
	virtual TColor Darken(const TColor& color, float factor) const;
	virtual TColor StateColor(const TColor& color, TState state) const;
	virtual TColor BrightEdgeColor(const TColor& color) const;
	virtual TColor ShadowEdgeColor(const TColor& color) const;
	/// Between the body and its text.
	virtual TColor MidToneColor() const;
	virtual TColor InnerFrameColor() const;
	virtual TColor InnerFrameShadowColor() const;
	/// The text on a disabled control.
	virtual TColor DisabledTextColor(const TColor& text, const TColor& back) const;

	virtual int32_t ScrollBarThickness() const { return 16; }

	virtual int32_t MinimumThumbLength() const { return 16; }

	// Grounds

	/// The rectangle as a view's ground. IsOpaque: whether nothing below shines through.
	virtual void DrawBackground(TSurface& port, const TRectT<int>& rect, TBackground kind);
	virtual bool IsOpaque(TBackground kind) const;
	virtual void DrawPanel(TSurface& port, const TRectT<int>& rect, TState state);
	/// With the title in the middle of its top.
	virtual void DrawTitledPanel(TSurface& port, const TRectT<int>& rect, const TString& title, TState state);
	/// A plain ground of that colour with the corners of a box.
	virtual void DrawRoundedPanel(TSurface& port, const TRectT<int>& rect, const TColor& color);
	virtual void DrawControlBar(TSurface& port, const TRectT<int>& rect, TState state);
	virtual void DrawTabArea(TSurface& port, const TRectT<int>& rect);

	// Boxes with text

	/// A ground for text that can be edited or picked. isEditing: it takes the keys right now.
	virtual void DrawTextBoxFrame(TSurface& port, const TRectT<int>& rect, bool isEnabled, bool isEditing);
	/// The same with a value in it, in a box of at least 3 by 3.
	virtual void DrawValueBox(
	    TSurface& port, const TRectT<int>& rect, const TString& text, int32_t font, TTextAlign align, bool isEnabled);
	virtual void DrawCaret(TSurface& port, const TRectT<int>& rect, const TColor& color);
	/// Text in a rectangle: 2 free at the side it is aligned to, in the middle of the height.
	virtual void DrawText(
	    TSurface& port, const TRectT<int>& rect, const TString& text, const TColor& color, int32_t font,
	    TTextAlign align);
	/// The top left corner of that text.
	static TPointT<int> TextPosition(const TRectT<int>& rect, TPointT<int> textSize, TTextAlign align);

	// Buttons

	virtual void DrawButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look);
	virtual void DrawRoundButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look);
	/// Nothing but the image, and the label if there is one.
	virtual void DrawBitmapButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look);
	/// In a colour of its own instead of the theme's button colours.
	virtual void
	DrawColoredButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back);
	/// As a row of a list, and as an entry of a menu bar.
	virtual void DrawListEntryButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look);
	virtual void DrawMenuButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look);

	// Scroll bars and sliders

	virtual void DrawScrollBarTrack(TSurface& port, const TRectT<int>& rect, TOrientation orientation, bool isEnabled);
	virtual void DrawScrollBarThumb(
	    TSurface& port, const TRectT<int>& rect, TOrientation orientation, bool isHighlighted, bool isEnabled);
	/// The arrows at its ends.
	virtual void DrawScrollBarButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look);
	virtual void DrawSliderBar(TSurface& port, const TRectT<int>& rect, TOrientation orientation, TState state);
	/// A ring without its texts, from its start or its middle to the position, 0 to 1; others are cut to that.
	virtual void DrawRotary(
	    TSurface& port, const TRectT<int>& rect, float position, bool isHighlighted, bool isEnabled, bool fromMiddle);
	virtual void DrawSliderCap(TSurface& port, const TRectT<int>& rect, TOrientation orientation, TState state);

	// Lists, menus and what floats

	virtual void DrawListEntryBackground(TSurface& port, const TRectT<int>& rect, TEntryState state);
	/// Of a text over DrawListEntryBackground.
	virtual TColor ListEntryTextColor(TEntryState state) const;
	virtual void DrawMenuEntryBackground(TSurface& port, const TRectT<int>& rect, bool isHighlighted);
	/// A line through the middle of the rectangle's height.
	virtual void DrawMenuSeparator(TSurface& port, const TRectT<int>& rect);
	virtual void DrawCheckMark(TSurface& port, const TRectT<int>& rect, const TColor& color);
	virtual void DrawToolTipBackground(TSurface& port, const TRectT<int>& rect);
	virtual void DrawFocusFrame(TSurface& port, const TRectT<int>& rect, float opacity);
	virtual void
	DrawDragText(TSurface& port, const TRectT<int>& rect, const TString& text, int32_t font, float opacity);
	/// Around the rectangle, `size` wide and a little lower.
	virtual void DrawShadow(TSurface& port, const TRectT<int>& rect, int32_t size, float opacity);

	// Pieces

	/// A bright edge at the top and left, a dark one at the bottom and right.
	virtual void DrawBevel(TSurface& port, const TRectT<int>& rect, TBevelStyle style, float amount);
	/// From the top row's colour to the bottom row's, a surface pixel at a time.
	virtual void FillGradient(TSurface& port, const TRectT<int>& rect, const TColor& top, const TColor& bottom);
	/// One colour, from the opacity at the start (top, left) to that at the end.
	virtual void FillFade(
	    TSurface& port, const TRectT<int>& rect, const TColor& color, float startOpacity, float endOpacity,
	    TOrientation orientation);
	/// One logical pixel wide.
	virtual void StrokeOutline(
	    TSurface& port, const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity);

	/// What lies inside of StrokeOutline with the same rectangle and radii, and a little below it.
	virtual void FillInOutline(TSurface& port, const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii);

protected:
	/// The colours of the current instance.
	static TSkinColors& Colors();
	static TColor MainColor(int32_t index);

	/// Of a button's text and icon, on its ground.
	virtual TColor ButtonTextColor(const TButtonLook& look, const TColor& back) const;
	/// Icon and label of a button: in the middle of the rectangle, or as the look aligns the label.
	void DrawButtonContent(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& color);
	/// What the group leaves round.
	static TCornerRadii CornersOf(TButtonLook::TGroupPosition position, float radius);
	/// Between two of 0 to 1 along a rotary's ring, `inner` and `outer` from its center; surface pixels. Cut to the
	/// ring.
	static void FillRingSegment(
	    TSurface& port, const TRectT<int>& rect, float from, float to, float inner, float outer, const TColor& color);
	/// In surface pixels.
	static float LineWidth(const TSurface& port);

	void OnCreated() override;

private:
	void DrawTexturedButton(
	    TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back, TTexture& texture);

	TPtr<TTexture> mTextures[kNumberOfTextureGroups][kNumberOfStates];
};
