// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/text/TTextView.h"
#include "tools/vortel2/gallery/GalleryPages.h"

#include <algorithm>
#include <utility>

namespace Gallery {

namespace {

constexpr int kHeadingHeight = 20;
constexpr int kNameHeight = 15;
constexpr int kGap = 10;

class TSample final : public TView {
public:
	TSample(TPointT<int> size, std::function<void(TSurface&, const TRectT<int>&)> draw) : mDraw(std::move(draw)) {
		SetSize(size.mX, size.mY);
	}

	void Draw(TSurface& port) override { mDraw(port, AbsoluteRect()); }

private:
	const std::function<void(TSurface&, const TRectT<int>&)> mDraw;
};

TPtr<TTextView> MakeText(const TString& text, int style, int font, TPointT<int> corner) {
	const auto view = MakePtr<TTextView>(text, style, kAlignLeft, font);
	view->SetPosition(corner.mX, corner.mY);
	return view;
}

} // namespace

TPtr<TView> MakeSample(TPointT<int> size, std::function<void(TSurface&, const TRectT<int>&)> draw) {
	return MakePtr<TSample>(size, std::move(draw));
}

void TSheet::Section(const TString& heading, TPointT<int> corner, int width) {
	mPage.AddChild(MakeText(heading, kStrongBodyText, TFontEngine::kBold, corner));
	mCorner = mNext = {corner.mX, corner.mY + kHeadingHeight};
	mWidth = width;
	mRowHeight = 0;
}

void TSheet::Add(const TPtr<TView>& view, const TString& name) {
	const int nameWidth = TGraphPort::Instance()->Font(TFontEngine::kStandard)->TextWidth(name) + 4;
	const int width = std::max(view->Width(), nameWidth);
	if (mNext.mX > mCorner.mX && mNext.mX + width > mCorner.mX + mWidth) {
		mNext = {mCorner.mX, mNext.mY + mRowHeight};
		mRowHeight = 0;
	}
	view->SetPosition(mNext.mX, mNext.mY);
	mPage.AddChild(view);
	if (!name.IsEmpty())
		mPage.AddChild(MakeText(name, kFaintBodyText, TFontEngine::kStandard, {mNext.mX, mNext.mY + view->Height()}));
	mNext.mX += width + kGap;
	mRowHeight = std::max(mRowHeight, view->Height() + (name.IsEmpty() ? 0 : kNameHeight) + kGap / 2);
}

} // namespace Gallery
