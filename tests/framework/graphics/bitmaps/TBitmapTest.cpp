// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TBitmap.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/bitmaps/TCustomBitmap.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/surfaces/TAlphaMask.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TLogFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class TBitmapTest : public TGraphicsFixture {
protected:
	/// Of one grey, and half transparent if it has alpha.
	void WriteImage(const std::string& name, TPointT<int> size, int grey, bool hasAlpha = false) {
		const TPtr<TSurface> image = MakeSurface(size.mX, size.mY);
		image->Clear({grey, grey, grey});
		if (hasAlpha)
			image->CreateAlphaMask(0.5f);
		image->SaveToFile(mFolder.Path(name), name.ends_with("bmp") ? TSurface::kBmp : TSurface::kPng);
	}

	static void UseScale(TGraphPort::TScaleFactor factor) { Preferences().mUIScaleFactor.SetValue(factor); }

	/// The grey that the bitmap is drawn in, and the size of its pixels.
	static std::pair<int, TPointT<int>> Drawn(TBitmap& bitmap) {
		const TPtr<TSurface> surface = MakeSurface(8, 8, CurrentScale());
		bitmap.DrawAt(*surface, {0, 0}, 1.0f);
		return {RowOf(*surface)[0], bitmap.Surface()->Size()};
	}

	TLogFolder mFolder;
};

TEST_F(TBitmapTest, LoadsWhatFitsTheScaleAndAgainWhenThatChanges) {
	WriteImage("a.png", {2, 2}, 10);
	WriteImage("a@2x.png", {4, 4}, 20);
	WriteImage("a@4x.png", {8, 8}, 40);
	TBitmap bitmap(mFolder.Path("a.png"));
	EXPECT_FALSE(bitmap.Surface());
	EXPECT_EQ(Drawn(bitmap), (std::pair{10, TPointT<int>{2, 2}}));
	UseScale(TGraphPort::kScale200);
	EXPECT_FALSE(bitmap.Surface());
	EXPECT_EQ(Drawn(bitmap), (std::pair{20, TPointT<int>{4, 4}}));
	EXPECT_EQ(bitmap.Size(), (TPointT<int>{2, 2}));
	EXPECT_EQ(bitmap.Surface()->Scale(), kScaleOf200);
}

TEST_F(TBitmapTest, LargerImagesStandInAtDoubleScale) {
	UseScale(TGraphPort::kScale200);
	WriteImage("solid.png", {2, 2}, 10);
	WriteImage("solid@4x.png", {8, 8}, 40);
	TBitmap solid(mFolder.Path("solid.png"));
	EXPECT_EQ(Drawn(solid), (std::pair{40, TPointT<int>{4, 4}})); // reduced once

	WriteImage("clear.png", {2, 2}, 10, true);
	WriteImage("clear@4x.png", {8, 8}, 40, true);
	TBitmap clear(mFolder.Path("clear.png"));
	EXPECT_EQ(Drawn(clear), (std::pair{20, TPointT<int>{8, 8}})); // 40 * 126 / 255, scaled each time
	EXPECT_EQ(clear.Size(), (TPointT<int>{2, 2}));

	WriteImage("alone.png", {2, 2}, 10);
	TBitmap alone(mFolder.Path("alone.png"));
	EXPECT_EQ(Drawn(alone), (std::pair{10, TPointT<int>{2, 2}}));
	const TPtr<TSurface> surface = MakeSurface(5, 1, kScaleOf200);
	alone.DrawAt(*surface, {0, 0}, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(10, 10, 10, 10, 0));
}

TEST_F(TBitmapTest, BmpHasAKeyAndNeverAlpha) {
	WriteImage("a.bmp", {2, 1}, 50, true);
	TBitmap bitmap(mFolder.Path("a.bmp"));
	const TPtr<TSurface> surface = MakeRow({1, 2, 3});
	bitmap.DrawAt(*surface, {1, 0}, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(1, 50, 50));
	bitmap.SetKeyColor(true, {50, 50, 50});
	const TPtr<TSurface> keyed = MakeRow({1, 2, 3});
	bitmap.DrawAt(*keyed, {1, 0}, 1.0f);
	Port().ReloadBitmaps();
	bitmap.DrawAt(*keyed, {0, 0}, 1.0f); // remembered for what is loaded later
	EXPECT_THAT(RowOf(*keyed), ElementsAre(1, 2, 3));
}

TEST_F(TBitmapTest, ColoursShineThroughWhereTheImageIsBright) {
	WriteImage("a.bmp", {1, 1}, 128);
	WriteImage("b.png", {1, 1}, 255, true);
	TRecolorableBitmap solid(mFolder.Path("a.bmp"));
	TRecolorableBitmap clear(mFolder.Path("b.png"));
	const auto drawn = [&] {
		const TPtr<TSurface> surface = MakeSurface(2, 1);
		solid.DrawAt(*surface, {0, 0}, 1.0f);
		clear.DrawAt(*surface, {1, 0}, 1.0f);
		return RowOf(*surface);
	};
	EXPECT_THAT(drawn(), ElementsAre(128, 126));
	solid.SetColors({200, 0, 0}, {9, 9, 9});
	clear.SetColors({100, 0, 0}, {});
	EXPECT_THAT(drawn(), ElementsAre(100, 49)); // alpha 127 and 126
	EXPECT_EQ(solid.Background(), (TColor{9, 9, 9}));
	solid.ClearColors();
	EXPECT_THAT(drawn(), ElementsAre(128, 49));
}

TEST_F(TBitmapTest, CustomBitmapsAreBlackAgainAtAnotherScale) {
	TCustomBitmap bitmap({3, 2});
	EXPECT_EQ(bitmap.Size(), (TPointT<int>{3, 2}));
	bitmap.Load();
	bitmap.Surface()->FillRect({0, 0, 1, 1}, {255, 0, 0}, 1.0f);
	EXPECT_EQ(Drawn(bitmap), (std::pair{255, TPointT<int>{3, 2}}));
	UseScale(TGraphPort::kScale200);
	EXPECT_EQ(Drawn(bitmap), (std::pair{0, TPointT<int>{6, 4}}));
}

TEST_F(TBitmapTest, MissingAndBrokenFilesAreTold) {
	const TString missing = mFolder.Path("none.png");
	try {
		TBitmap bitmap(missing);
		FAIL();
	} catch (const TReadableException& failure) {
		EXPECT_TRUE(failure.Message().StartsWith(
		    TString::Format("Failed to load the resource file: '%s'.\n\nPlease ", missing)));
		EXPECT_TRUE(failure.Message().EndsWith(" !"));
		EXPECT_FALSE(failure.Message().Find("$M") >= 0);
	}
	WriteImage("a.png", {2, 2}, 10);
	EXPECT_THROW(TBitmap(mFolder.Path("none.png")), TReadableException);
	mFolder.Write("b.png", "no image");
	TBitmap bitmap(mFolder.Path("b.png"));
	EXPECT_THROW(bitmap.Size(), TReadableException);
	mFolder.Write("b.png", mFolder.Read("a.png"));
	EXPECT_EQ(bitmap.Size(), (TPointT<int>{2, 2})); // asked again
	EXPECT_EQ(ResourceImagePath("Icons/No.png"), Folders::ResourceBase().Path() + "Skin/Icons/No.png");
}

} // namespace
