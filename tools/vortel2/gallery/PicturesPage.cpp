// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TPanelTexture.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/controls/TBitmapView.h"
#include "tools/vortel2/gallery/GalleryPages.h"

namespace Gallery {

namespace {

constexpr const char* kTintedIcons[] = {
    "ArrowUp.bmp",        "ArrowDown.bmp", "ArrowLeft.bmp",        "ArrowRight.bmp",     "Clear.bmp",
    "DragHandle.png",     "Randomise.bmp", "Rename.bmp",           "Locked.png",         "Unlocked.png",
    "Loop.png",           "SwitchOn.bmp",  "SwitchOff.bmp",        "Exit.bmp",           "Minimize.bmp",
    "Maximize.bmp",       "Restore.bmp",   "KeyCommand_Apple.bmp", "KeyAlt_Apple.bmp",   "KeyMeta_Apple.bmp",
    "KeyShift_Apple.bmp", "FilterOff.png", "FilterLowpass.png",    "FilterHighpass.png", "FilterBandpass.png",
    "FilterBandstop.png"};
constexpr const char* kColouredPictures[] = {
    "Icons/WindowIcon16.png", "Icons/Dialog_Alert.png", "Icons/Dialog_Standard.png", "Logos/Logo.png",
    "Logos/LogoOnLight.png"};
constexpr const char* kTextures[] = {
    "PanelBlending.bmp",      "ControlBarBlending.bmp",    "BodyTexture.bmp",         "InnerBodyTexture.bmp",
    "ButtonBlending.bmp",     "PressedButtonBlending.bmp", "RoundButtonBlending.bmp", "PressedRoundButtonBlending.bmp",
    "HScrollBarBlending.bmp", "VScrollBarBlending.bmp",    "HSliderBlending.bmp",     "VSliderBlending.bmp"};

void AddIcons(TSheet& sheet) {
	sheet.Section("Icons, in the colours of text, value and selection", {0, 0}, 930);
	for (const int color : {TSkinColors::kBodyFont, TSkinColors::kValueBoxFont, TSkinColors::kSelectionBack})
		for (const char* name : kTintedIcons) {
			const auto icon = MakePtr<TRecolorableBitmap>(TString("Icons/") + name);
			const auto view = MakePtr<TRecolorableBitmapView>(icon);
			view->Recolor(TSkinColors::Instance()->MainColor(color), {0, 0, 0});
			view->SetSize(24, 18);
			view->SetToolTip(name);
			sheet.Add(view, TString());
		}
}

void AddPictures(TSheet& sheet) {
	sheet.Section("Pictures in colours of their own", {0, 120}, 930);
	for (const char* name : kColouredPictures)
		sheet.Add(MakePtr<TBitmapView>(MakePtr<TBitmap>(name)), name);
}

void AddTextures(TSheet& sheet) {
	sheet.Section("The texture set \"Default\"", {0, 230}, 930);
	for (const char* name : kTextures)
		sheet.Add(MakePtr<TBitmapView>(MakePtr<TBitmap>(TString("Textures/Default/") + name)), name);
}

} // namespace

TPtr<TView> MakePicturesPage() {
	const auto page = MakePtr<TView>();
	TSheet sheet(*page);
	AddIcons(sheet);
	AddPictures(sheet);
	AddTextures(sheet);
	return page;
}

} // namespace Gallery
