// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/surfaces/TSurface.h"
#include "framework/gui/views/TView.h"
#include "tools/vortel2/gallery/GalleryPages.h"

#include <array>
#include <utility>

namespace Gallery {

namespace {

constexpr std::pair<TButtonLook::TState, const char*> kButtonStates[] = {
    {TButtonLook::kUp, "up"},
    {TButtonLook::kHoverOnUp, "hover"},
    {TButtonLook::kPressed, "pressed"},
    {TButtonLook::kHoverOnPressed, "hover on pressed"}};

constexpr std::pair<TSkin::TEntryState, const char*> kEntryStates[] = {
    {TSkin::kEntryAtRest, "at rest"},
    {TSkin::kEntryHovered, "hovered"},
    {TSkin::kEntrySelected, "selected"},
    {TSkin::kEntrySelectedStandBy, "without focus"}};

TVortelSkin& Skin() {
	return *TVortelSkin::Instance();
}

TButtonLook Look(TButtonLook::TState state, bool isEnabled) {
	TButtonLook look;
	look.mState = state;
	look.mIsEnabled = isEnabled;
	look.mLabel = "Rand";
	return look;
}

void AddButtons(TSheet& sheet) {
	sheet.Section("Buttons", {0, 0}, 450);
	for (const auto& [state, name] : kButtonStates)
		sheet.Add(
		    MakeSample(
		        {48, 20},
		        [state = state](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawButton(port, rect, Look(state, true));
		        }),
		    name);
	sheet.Add(
	    MakeSample(
	        {48, 20}, [](TSurface& port,
	                     const TRectT<int>& rect) { Skin().DrawButton(port, rect, Look(TButtonLook::kUp, false)); }),
	    "disabled");
	for (const auto& [state, name] : kButtonStates)
		sheet.Add(
		    MakeSample(
		        {24, 24},
		        [state = state](TSurface& port, const TRectT<int>& rect) {
			        TButtonLook look = Look(state, true);
			        look.mLabel = TString();
			        Skin().DrawRoundButton(port, rect, look);
		        }),
		    name);
	for (int row = 1; row <= 10; row += 3)
		sheet.Add(
		    MakeSample(
		        {20, 24},
		        [row](TSurface& port, const TRectT<int>& rect) {
			        TButtonLook look = Look(TButtonLook::kUp, true);
			        look.mLabel = "S";
			        Skin().DrawColoredButton(port, rect, look, TVortelSkinColors::Instance()->RowColor(row) * 0.5f);
		        }),
		    "row");
}

void AddPanels(TSheet& sheet) {
	sheet.Section("Panels and boxes", {470, 0}, 460);
	const auto add = [&](const char* name, auto draw) { sheet.Add(MakeSample({80, 40}, draw), name); };
	using TRect = const TRectT<int>&;
	add("panel", [](TSurface& port, TRect rect) { Skin().DrawPanel(port, rect, TSkin::kNormal); });
	add("titled panel",
	    [](TSurface& port, TRect rect) { Skin().DrawTitledPanel(port, rect, "Title", TSkin::kNormal); });
	add("control bar", [](TSurface& port, TRect rect) { Skin().DrawControlBar(port, rect, TSkin::kNormal); });
	add("tab area", [](TSurface& port, TRect rect) { Skin().DrawTabArea(port, rect); });
	add("text box", [](TSurface& port, TRect rect) { Skin().DrawTextBoxFrame(port, rect, true, false); });
	add("editing", [](TSurface& port, TRect rect) { Skin().DrawTextBoxFrame(port, rect, true, true); });
	add("disabled", [](TSurface& port, TRect rect) { Skin().DrawTextBoxFrame(port, rect, false, false); });
	add("value box",
	    [](TSurface& port, TRect rect) { Skin().DrawValueBox(port, rect, "1 / 16th", 0, kAlignCenter, true); });
	add("tool tip", [](TSurface& port, TRect rect) { Skin().DrawToolTipBackground(port, rect); });
	add("focus", [](TSurface& port, TRect rect) { Skin().DrawFocusFrame(port, rect, 1.0f); });
}

void AddLists(TSheet& sheet) {
	sheet.Section("Lists and menus", {0, 150}, 450);
	for (const auto& [state, name] : kEntryStates)
		sheet.Add(
		    MakeSample(
		        {90, 16},
		        [state = state](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawListEntryBackground(port, rect, state);
			        Skin().DrawText(port, rect, "Entry", Skin().ListEntryTextColor(state), 0, kAlignLeft);
		        }),
		    name);
	for (const bool isHighlighted : {false, true})
		sheet.Add(
		    MakeSample(
		        {90, 18},
		        [isHighlighted](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawMenuEntryBackground(port, rect, isHighlighted);
		        }),
		    isHighlighted ? "chosen" : "menu entry");
	sheet.Add(
	    MakeSample({90, 9}, [](TSurface& port, const TRectT<int>& rect) { Skin().DrawMenuSeparator(port, rect); }),
	    "separator");
	sheet.Add(
	    MakeSample(
	        {90, 18},
	        [](TSurface& port, const TRectT<int>& rect) { Skin().DrawDragText(port, rect, "Drag", 0, 0.85f); }),
	    "drag text");
}

void AddBars(TSheet& sheet) {
	sheet.Section("Scroll bars and sliders", {470, 150}, 460);
	for (const bool isHighlighted : {false, true})
		sheet.Add(
		    MakeSample(
		        {100, 16},
		        [isHighlighted](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawScrollBarTrack(port, rect, TSkin::kHorizontal, true);
			        const TRectT<int> thumb{rect.mLeft + 20, rect.mTop, 40, rect.mHeight};
			        Skin().DrawScrollBarThumb(port, thumb, TSkin::kHorizontal, isHighlighted, true);
		        }),
		    isHighlighted ? "hovered" : "scroll bar");
	for (const TSkin::TState state : {TSkin::kNormal, TSkin::kHighlighted, TSkin::kDimmed})
		sheet.Add(
		    MakeSample(
		        {60, 16},
		        [state](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawSliderBar(port, {rect.mLeft, rect.mTop + 4, rect.mWidth, 8}, TSkin::kHorizontal, state);
			        Skin().DrawSliderCap(port, {rect.mLeft + 25, rect.mTop, 10, 16}, TSkin::kHorizontal, state);
		        }),
		    state == TSkin::kNormal        ? "slider"
		    : state == TSkin::kHighlighted ? "highlighted"
		                                   : "dimmed");
}

void AddInstrument(TSheet& sheet) {
	sheet.Section("Blocks and rotaries", {0, 290}, 930);
	for (int row = 0; row < TVortelSkinColors::kNumberOfRowColors; ++row)
		sheet.Add(
		    MakeSample(
		        {70, 22},
		        [row](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawBlock(port, rect, TVortelSkinColors::Instance()->RowColor(row), 1.0f);
		        }),
		    TString("row ") + TString::ToString(row));
	struct TEncoder {
		const char* mName;
		float mPosition;
		bool mIsHighlighted;
		bool mIsEnabled;
		bool mIsBipolar;
	};
	static constexpr TEncoder kEncoders[] = {
	    {"at 0", 0.0f, false, true, false},     {"at 70 %", 0.7f, false, true, false},
	    {"hovered", 0.7f, true, true, false},   {"disabled", 0.7f, false, false, false},
	    {"at 100 %", 1.0f, false, true, false}, {"left", 0.2f, false, true, true},
	    {"centre", 0.5f, false, true, true},    {"right", 0.8f, false, true, true}};
	for (const TEncoder& encoder : kEncoders)
		sheet.Add(
		    MakeSample(
		        {66, 66},
		        [encoder](TSurface& port, const TRectT<int>& rect) {
			        Skin().DrawRotary(
			            port, rect, encoder.mPosition, encoder.mIsHighlighted, encoder.mIsEnabled, encoder.mIsBipolar);
		        }),
		    encoder.mName);
}

} // namespace

TPtr<TView> MakeShapesPage() {
	const auto page = MakePtr<TView>();
	TSheet sheet(*page);
	AddButtons(sheet);
	AddPanels(sheet);
	AddLists(sheet);
	AddBars(sheet);
	AddInstrument(sheet);
	return page;
}

} // namespace Gallery
