// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/TVortelLogoPanelView.h"

#include "editor/panels/TVortelAboutBox.h"
#include "editor/panels/VortelLogo.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/controls/TBitmapView.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/text/TTextView.h"
#include "framework/gui/views/TMainFrameView.h"

#include <utility>

namespace {

constexpr int kLogoLift = 5;
constexpr int kTextFromBottom = 5;

} // namespace

TVortelLogoPanelView::TVortelLogoPanelView(TVortelDocument& document)
    : mDocument(&document),
      mBackground(MakePtr<TBackgroundView>(TSkin::kPanelBackground)),
      mLogo(MakePtr<TBitmapView>(MakeVortelLogo())),
      mVersionText(MakePtr<TTextView>(VortelVersionLine(), kFaintBodyText, kAlignCenter)) {
	AddChild(mBackground);
	AddChild(mLogo);
	AddChild(mVersionText);
}

void TVortelLogoPanelView::OnResized() {
	mBackground->SetSize(Width(), Height());
	mLogo->SetPosition((Width() - mLogo->Width()) / 2, (Height() - mLogo->Height()) / 2 - kLogoLift);
	mVersionText->SetPosition(
	    (Width() - mVersionText->Width()) / 2, Height() - mVersionText->Height() - kTextFromBottom);
}

void TVortelLogoPanelView::ApplyColors() {
	mLogo->SetBitmap(MakeVortelLogo());
}

TVortelAboutBox* TVortelLogoPanelView::AboutBox() const noexcept {
	return mAboutBox.Get();
}

bool TVortelLogoPanelView::OnLeftMouseDown(int, int, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	mPressed = true;
	return true;
}

bool TVortelLogoPanelView::OnLeftMouseUp(int, int, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	if (std::exchange(mPressed, false))
		OpenAboutBox();
	return true;
}

void TVortelLogoPanelView::OpenAboutBox() {
	if (mAboutBox || !MainFrame())
		return;
	const TPtr<TVortelAboutBox> box = MakePtr<TVortelAboutBox>(MainFrame()->Window());
	mAboutBox = box.Get();
	box->RunModal();
}
