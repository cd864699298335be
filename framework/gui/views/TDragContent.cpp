// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TDragContent.h"

#include "framework/gui/views/TMainFrameView.h"

TDragContent::TDragContent(const TString& description, TGuiEventTarget* source, const TList<TDragImage>& images)
    : mDescription(description),
      mSource(source),
      mImages(images) {
	const TView* view = source ? source->AsView() : nullptr;
	if (TMainFrameView* mainFrame = view ? view->MainFrame() : nullptr)
		for (const TDragImage& image : mImages)
			mainFrame->AddChild(image.mpView);
}

TDragContent::~TDragContent() {
	for (const TDragImage& image : mImages)
		if (TView* parent = image.mpView->Parent())
			parent->RemoveChild(image.mpView.Get());
}

void TDragContent::SetCurrentTarget(TGuiEventTarget* target) {
	mCurrentTarget = target;
}
