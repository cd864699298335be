// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TRectT.h"

#include <functional>

class TSurface;
class TView;

/// The pages of the gallery. Main thread.
namespace Gallery {

TPtr<TView> MakeControlsPage();
TPtr<TView> MakeShapesPage();
TPtr<TView> MakeTypePage();
TPtr<TView> MakePicturesPage();

/// A view that draws what a function draws.
TPtr<TView> MakeSample(TPointT<int> size, std::function<void(TSurface& port, const TRectT<int>& rect)> draw);

/// Puts samples side by side, each with its name below, in rows under a heading.
class TSheet {
public:
	explicit TSheet(TView& page) : mPage(page) {}

	/// Begins a new section at a place of the page.
	void Section(const TString& heading, TPointT<int> corner, int width);
	void Add(const TPtr<TView>& view, const TString& name);

private:
	TView& mPage;
	TPointT<int> mCorner;
	int mWidth = 0;
	TPointT<int> mNext;
	int mRowHeight = 0;
};

} // namespace Gallery
