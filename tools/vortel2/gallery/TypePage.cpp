// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TSurface.h"
#include "framework/gui/text/TTextView.h"
#include "tools/vortel2/gallery/GalleryPages.h"

namespace Gallery {

namespace {

constexpr TPointT<int> kSwatch{14, 14};
constexpr const char* kSentence = "Hamburgefonstiv 0123456789 Il1 |/ äöüß é — … 1/16th 440 Hz";

void AddFonts(TSheet& sheet) {
	static constexpr const char* kNames[] = {"standard", "big", "bold", "italic", "monospaced"};
	sheet.Section("Fonts", {0, 0}, 460);
	for (int font = 0; font < TFontSource::kNumberOfFonts; ++font)
		sheet.Add(MakePtr<TTextView>(TString(kSentence, kUtf8Encoding), kBodyText, kAlignLeft, font), kNames[font]);
}

void AddDirections(TSheet& sheet) {
	sheet.Section("Turned, outlined, two-coloured", {510, 0}, 430);
	const auto color = [] { return TSkinColors::Instance()->MainColor(TSkinColors::kBodyFont); };
	for (const int rotation : {TFont::kNoRotation, TFont::kClockwise, TFont::kMirrored, TFont::kCounterClockwise})
		sheet.Add(
		    MakeSample(
		        {60, 60},
		        [rotation, color](TSurface& port, const TRectT<int>& rect) {
			        port.DrawRotatedText({rect.mLeft, rect.mTop}, "Rotated", color(), rotation, TFontEngine::kStandard);
		        }),
		    TString::ToString(rotation * 90) + TString(u"\u00b0"));
	sheet.Add(
	    MakeSample(
	        {70, 60},
	        [color](TSurface& port, const TRectT<int>& rect) {
		        TFont& font = *TGraphPort::Instance()->Font(TFontEngine::kStandardBig);
		        font.DrawOutlinedText(port, {rect.mLeft, rect.mTop}, "Outlined", {0, 0, 0}, 1, TFont::kLeaveMask, 1.0f);
		        font.DrawText(port, {rect.mLeft, rect.mTop}, "Outlined", color(), TFont::kLeaveMask, 1.0f);
	        }),
	    "outline");
	sheet.Add(
	    MakeSample(
	        {70, 60},
	        [color](TSurface& port, const TRectT<int>& rect) {
		        TGraphPort::Instance()
		            ->Font(TFontEngine::kStandardBig)
		            ->DrawThresholdText(
		                port, {rect.mLeft, rect.mTop}, "Threshold", color(), color() * 0.5f, {0.25f, 0.6f}, 1.0f);
	        }),
	    "threshold");
}

void AddGroup(TSheet& sheet, const TString& heading, TPointT<int> corner, int width, TSkinColors::TGroup group) {
	sheet.Section(heading, corner, width);
	for (int index = 0; index < TSkinColors::kGroupSizes[static_cast<std::size_t>(group)]; ++index) {
		const auto swatch = MakeSample(kSwatch, [group, index](TSurface& port, const TRectT<int>& rect) {
			port.FillRect(rect, TSkinColors::Instance()->Color(group, index), 1.0f);
		});
		swatch->SetToolTip(TSkinColors::LabelOf(group, index));
		sheet.Add(swatch, TString());
	}
}

void AddInstrumentColors(TSheet& sheet) {
	sheet.Section("The instrument's colours", {0, 400}, 930);
	for (int index = 0; index < TVortelSkinColors::kNumberOfVortelColors; ++index) {
		const auto swatch = MakeSample(kSwatch, [index](TSurface& port, const TRectT<int>& rect) {
			port.FillRect(rect, TVortelSkinColors::Instance()->VortelColor(index), 1.0f);
		});
		swatch->SetToolTip(TVortelSkinColors::VortelKeyOf(index));
		sheet.Add(swatch, TString());
	}
}

} // namespace

TPtr<TView> MakeTypePage() {
	const auto page = MakePtr<TView>();
	TSheet sheet(*page);
	AddFonts(sheet);
	AddDirections(sheet);
	AddGroup(sheet, "Main colours", {0, 210}, 460, TSkinColors::kMain);
	AddGroup(sheet, "Automation", {510, 210}, 450, TSkinColors::kAutomation);
	AddGroup(sheet, "Pattern", {0, 300}, 460, TSkinColors::kPattern);
	AddGroup(sheet, "Meters", {510, 270}, 450, TSkinColors::kVuMeter);
	AddGroup(sheet, "Default colours", {510, 330}, 450, TSkinColors::kDefault);
	AddInstrumentColors(sheet);
	return page;
}

} // namespace Gallery
