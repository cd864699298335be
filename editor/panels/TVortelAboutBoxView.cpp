// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/TVortelAboutBoxView.h"

#include "document/TVortelPrefs.h"
#include "editor/panels/VortelLogo.h"
#include "editor/support/EditorControls.h"
#include "editor/support/TVortelSeparatorView.h"
#include "framework/foundation/values/ProductInfo.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/controls/TBitmapView.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/controls/TButtonField.h"
#include "framework/gui/controls/TSwitchButton.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/text/TTextView.h"

using namespace EditorControls;

namespace {

constexpr int kWidth = 300;
constexpr int kMargin = 20;
constexpr int kGap = 8;
constexpr int kWideGap = 14;
constexpr int kRuleWidth = 260;
constexpr int kSwitchesLeft = 85;
constexpr int kOkWidth = 80;
constexpr int kOkHeight = 22;
constexpr int kScaleWidth = 150;

struct TSwitch {
	const char* mLabel;
	const char* mToolTip;
	TObservableBaseType<bool>& mValue;
};

} // namespace

TVortelAboutBoxView::TVortelAboutBoxView(const TFunctionPtr<void>& okAction) {
	Place(MakePtr<TBitmapView>(MakeVortelLogo()), kMargin);
	Place(MakePtr<TTextView>(VortelVersionLine(), kStrongBodyText, kAlignCenter), kGap);
	Place(MakePtr<TTextView>(TString("Built on ") + ProductInfo::BuildDate(), kFaintBodyText, kAlignCenter), 0);
	const auto rule = MakePtr<TVortelSeparatorView>();
	rule->SetSize(kRuleWidth, 2);
	Place(rule, kGap);
	AddSwitches();
	AddScaleChoice();
	const auto ok = MakePtr<TButton>("OK", kToolButton);
	ok->SetSize(kOkWidth, kOkHeight);
	ok->SetClickAction(okAction);
	Place(ok, kWideGap);
	SetSize(kWidth, mBottom + kMargin);
}

void TVortelAboutBoxView::Place(const TPtr<TView>& view, int gap) {
	view->SetPosition((kWidth - view->Width()) / 2, mBottom + gap);
	mBottom = view->Position().mY + view->Height();
	AddChild(view);
}

void TVortelAboutBoxView::AddSwitches() {
	TBaseViewsPrefs& views = *TBaseViewsPrefs::Instance();
	const auto add = [this](const char* label, const char* toolTip, TObservableBaseType<bool>& value) {
		const auto pair = MakePtr<TSwitchButtonViewPair<bool>>(&value, label);
		pair->SetToolTip(toolTip);
		Place(pair, mBottom == 0 ? 0 : 2);
		pair->SetPosition(kSwitchesLeft, pair->Position().mY);
	};
	mBottom += kGap;
	add("Tool tips",
	    "Show tool tips when hovering over controls in the interface. (Hint: You're looking at one right now!)",
	    views.ShowTooltips());
	add("Mouse warping",
	    "Enable mouse position warping when  adjusting rotary knobs, sliders, and other controls. Tablet users may "
	    "need to disable this feature.",
	    views.WarpCursorOnDrag());
	if (TVortelPrefs* preferences = TVortelPrefs::Instance())
		add("Randomize on load", "Randomize all programs when a new instance of the plugin is loaded.",
		    preferences->RandomizeOnLoad());
}

void TVortelAboutBoxView::AddScaleChoice() {
	const auto field = MakePtr<TSwitchButtonField<int>>(
	    TFunctionPtr<int>(this, &TVortelAboutBoxView::Scale),
	    TFunctionPtr<void, int>(this, &TVortelAboutBoxView::SetScale), 3, 3);
	field->SetButtonName(0, "Auto");
	field->SetButtonName(1, "100 %");
	field->SetButtonName(2, "200 %");
	field->SetSize(kScaleWidth, kButtonHeight);
	field->SetToolTip("Size of the interface.");
	Place(field, kGap);
}

int TVortelAboutBoxView::Scale() const {
	return TGraphPortPrefs::Instance()->mUIScaleFactor.Get();
}

/// At once, and for the next start.
void TVortelAboutBoxView::SetScale(int factor) {
	TUiScaleFactorEnum& scale = TGraphPortPrefs::Instance()->mUIScaleFactor;
	if (TVortelPrefs* preferences = TVortelPrefs::Instance()) {
		TUiScaleFactorEnum wanted;
		wanted.Set(factor);
		preferences->UiScaleFactor().Set(factor == TGraphPort::kAutomaticScale ? TString() : wanted.ToString());
	}
	scale.Set(factor); // the window changes, and this view with it
}
