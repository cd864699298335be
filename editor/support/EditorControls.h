// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TFunctionPtr.h"

class TButton;
class TDynamicColumnLayoutView;
class TDynamicRowLayoutView;
class TTextView;
class TView;

/// How the editor's panels make their buttons, captions and layouts, so that all look and measure the same. Main
/// thread.
namespace EditorControls {

constexpr int kButtonHeight = 20;
constexpr int kSpacing = 3; // between controls of a group

/// Logical pixels, in font 0.
int TextWidth(const TString& text);

/// As wide as its label asks for.
TPtr<TButton> MakeTextButton(const TString& label, const TString& toolTip, const TFunctionPtr<void>& action);
/// With the arrow of a menu behind the label.
TPtr<TButton> MakeMenuButton(const TString& label, const TString& toolTip, const TFunctionPtr<void>& action);
/// Square; name: what the button would be called if it were not for the icon.
TPtr<TButton>
MakeIconButton(const TString& name, const TString& icon, const TString& toolTip, const TFunctionPtr<void>& action);
/// The text above or below a control, in strong letters.
TPtr<TTextView> MakeCaption(const TString& text);

void SetLengths(TView& view, int minimumWidth, int minimumHeight);
void SetFixedLengths(TView& view, int width, int height);

TPtr<TDynamicRowLayoutView> MakeRow(int spacing, int margins);
TPtr<TDynamicColumnLayoutView> MakeColumn(int spacing, int margins);

} // namespace EditorControls
