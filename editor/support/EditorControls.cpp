// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/support/EditorControls.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/layout/TDynamicLayoutView.h"
#include "framework/gui/text/TTextView.h"

namespace EditorControls {

namespace {

constexpr int kTextMargins = 10;
constexpr int kMenuMargins = 25; // with the arrow
constexpr int kArrowGap = 3;

TPtr<TButton> MakeButton(const TString& label, const TString& toolTip, const TFunctionPtr<void>& action, int width) {
	const auto button = MakePtr<TButton>(label, kToolButton);
	button->SetToolTip(toolTip);
	button->SetClickAction(action);
	button->SetSize(width, kButtonHeight);
	return button;
}

} // namespace

int TextWidth(const TString& text) {
	return TGraphPort::Instance()->Font(TFontEngine::kStandard)->TextWidth(text);
}

TPtr<TButton> MakeTextButton(const TString& label, const TString& toolTip, const TFunctionPtr<void>& action) {
	return MakeButton(label, toolTip, action, TextWidth(label) + kTextMargins);
}

TPtr<TButton> MakeMenuButton(const TString& label, const TString& toolTip, const TFunctionPtr<void>& action) {
	const TPtr<TButton> button = MakeButton(label, toolTip, action, TextWidth(label) + kMenuMargins);
	const auto arrow = MakePtr<TRecolorableBitmap>("Icons/ArrowDown.bmp");
	button->SetBitmaps(arrow, arrow, false);
	button->SetBitmapIsRight(true);
	button->SetLabelGap(kArrowGap);
	return button;
}

TPtr<TButton>
MakeIconButton(const TString& name, const TString& icon, const TString& toolTip, const TFunctionPtr<void>& action) {
	const TPtr<TButton> button = MakeButton(name, toolTip, action, kButtonHeight);
	const auto bitmap = MakePtr<TRecolorableBitmap>(icon);
	button->SetBitmaps(bitmap, bitmap, true);
	return button;
}

TPtr<TTextView> MakeCaption(const TString& text) {
	return MakePtr<TTextView>(text, kStrongBodyText, kAlignCenter, TFontEngine::kBold);
}

void SetLengths(TView& view, int minimumWidth, int minimumHeight) {
	view.SetSizePolicy(
	    MakePtr<TDynamicLength>(minimumWidth, TLengthPolicy::kNoLimit),
	    MakePtr<TDynamicLength>(minimumHeight, TLengthPolicy::kNoLimit));
}

void SetFixedLengths(TView& view, int width, int height) {
	view.SetSizePolicy(MakePtr<TFixedLength>(width), MakePtr<TFixedLength>(height));
}

TPtr<TDynamicRowLayoutView> MakeRow(int spacing, int margins) {
	const auto row = MakePtr<TDynamicRowLayoutView>();
	row->SetSpacing(spacing);
	row->SetMargins(margins);
	return row;
}

TPtr<TDynamicColumnLayoutView> MakeColumn(int spacing, int margins) {
	const auto column = MakePtr<TDynamicColumnLayoutView>();
	column->SetSpacing(spacing);
	column->SetMargins(margins);
	return column;
}

} // namespace EditorControls
