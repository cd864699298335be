// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/gallery/TGalleryView.h"

#include "editor/devices/TVortelTabbedView.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "tools/vortel2/gallery/GalleryPages.h"

TGalleryView::TGalleryView() : mTabs(MakePtr<TVortelTabbedView>()) {
	const auto background = MakePtr<TBackgroundView>(TSkin::kBodyBackground);
	background->SetSize(kWidth, kHeight);
	AddChild(background);
	AddChild(mTabs);
	SetSize(kWidth, kHeight);
	mTabs->AddTab(Gallery::MakeControlsPage(), "Controls");
	mTabs->AddTab(Gallery::MakeShapesPage(), "Shapes");
	mTabs->AddTab(Gallery::MakeTypePage(), "Type and colours");
	mTabs->AddTab(Gallery::MakePicturesPage(), "Pictures");
	mTabs->SelectTab(0);
}

void TGalleryView::OnResized() {
	if (mTabs)
		mTabs->SetSize(Width(), Height());
}
