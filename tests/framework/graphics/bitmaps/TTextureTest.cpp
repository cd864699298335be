// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TTexture.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/bitmaps/TPanelTexture.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TLogFolder.h"

#include <chrono>
#include <gmock/gmock.h>
#include <thread>

namespace {

using testing::ElementsAre;

constexpr TColor kColor{200, 200, 200};

/// Lets a test look at what is kept.
class TOpenTexture final : public TPanelTexture {
public:
	using TPanelTexture::mCache;
	using TPanelTexture::TPanelTexture;

	std::vector<int> Heights() const {
		std::vector<int> heights;
		for (const auto& [size, entry] : mCache)
			heights.push_back(size.mY);
		return heights;
	}
};

class TTextureTest : public TGraphicsFixture {
protected:
	void SetUp() override {
		TGraphicsFixture::SetUp();
		const TPtr<TSurface> image = MakeSurface(2, 3);
		for (int y = 0; y < 3; ++y)
			for (int x = 0; x < 2; ++x)
				image->SetPixel({x, y}, {(y + 1) * 50 + x, 0, 0}, 1.0f);
		image->SaveToFile(mFolder.Path("a.bmp"), TSurface::kBmp);
	}

	static std::vector<int> ColumnOf(TSurface& surface, int x) {
		std::vector<int> values;
		for (int y = 0; y < surface.Size().mY; ++y)
			values.push_back(RowOf(surface, y)[static_cast<std::size_t>(x)]);
		return values;
	}

	TLogFolder mFolder;
	TObservableBaseType<float> mBevel{10.0f}; // the image without colour
};

TEST_F(TTextureTest, PlainTexturesStandStillAndShineThroughTheirColour) {
	const TPtr<TSurface> image = MakeRow({128, 0, 255});
	image->SaveToFile(mFolder.Path("row.bmp"), TSurface::kBmp);
	const TPtr<TTexture> texture = MakePtr<TTexture>(mFolder.Path("row.bmp"));
	texture->SetColor({100, 100, 100});
	const TPtr<TSurface> surface = MakeSurface(7, 1);
	texture->DrawRect(*surface, {1, 0, 5, 1});
	EXPECT_THAT(RowOf(*surface), ElementsAre(0, 50, 150, 100, 50, 150, 0));
	texture->SetColor({10, 10, 10});
	texture->DrawRect(*surface, {0, 0, 2, 1});
	EXPECT_THAT(RowOf(*surface), ElementsAre(10, 5, 150, 100, 50, 150, 0));
	texture->DrawRect(*surface, {90, 0, 2, 1});
	texture->DrawRoundedRect(*MakeSurface(9, 9), {0, 0, 9, 9}, 2, 2, 2, 2);
	texture->DrawCircle(*MakeSurface(9, 9), {4.5f, 4.5f}, 3.0f);
}

TEST_F(TTextureTest, PanelsStretchInOneDirectionAndStartAtTheRectangle) {
	const TPtr<TOpenTexture> panel =
	    MakePtr<TOpenTexture>(mFolder.Path("a.bmp"), TPanelTexture::kStretchHeight, mBevel);
	panel->SetColor(kColor);
	const TPtr<TSurface> surface = MakeSurface(6, 8);
	panel->DrawRect(*surface, {1, 1, 5, 6});
	EXPECT_THAT(ColumnOf(*surface, 1), ElementsAre(0, 50, 50, 100, 100, 150, 150, 0));
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(0, 50, 51, 50, 51, 50));
	panel->DrawRect(*surface, {0, 1, 3, 6});
	EXPECT_THAT(panel->Heights(), ElementsAre(6)); // whatever the width
	panel->DrawCircle(*surface, {3.0f, 4.0f}, 3.0f);
	EXPECT_THAT(panel->Heights(), ElementsAre(6));

	const TPtr<TOpenTexture> column =
	    MakePtr<TOpenTexture>(mFolder.Path("a.bmp"), TPanelTexture::kStretchWidth, mBevel);
	column->DrawRect(*surface, {0, 0, 4, 8});
	EXPECT_THAT(RowOf(*surface, 3), ElementsAre(50, 50, 51, 51, testing::_, testing::_));
}

TEST_F(TTextureTest, BevelsSayHowMuchOfTheImageIsSeen) {
	const TPtr<TOpenTexture> panel =
	    MakePtr<TOpenTexture>(mFolder.Path("a.bmp"), TPanelTexture::kStretchHeight, mBevel);
	panel->SetColor(kColor);
	const auto first = [&](float bevel) {
		mBevel.Set(bevel);
		const TPtr<TSurface> surface = MakeSurface(2, 3);
		panel->DrawRect(*surface, {0, 0, 2, 3});
		return RowOf(*surface)[0];
	};
	EXPECT_EQ(first(10.0f), 50);
	EXPECT_EQ(first(1.25f), (200 * 230 + 50 * 25) >> 8); // 0.90309 of the colour
	EXPECT_EQ(first(0.5f), 200);
	EXPECT_EQ(panel->mCache.size(), 1u); // each value begins anew
	panel->SetColor(kColor);
	EXPECT_EQ(panel->mCache.size(), 1u);
	panel->SetColor({1, 1, 1});
	EXPECT_EQ(panel->mCache.size(), 0u);
}

TEST_F(TTextureTest, TheOldestGoesWhileAllAreYoungElseTheLeastUsed) {
	const TPtr<TSurface> surface = MakeSurface(4, 20);
	const auto fill = [&] {
		const TPtr<TOpenTexture> panel =
		    MakePtr<TOpenTexture>(mFolder.Path("a.bmp"), TPanelTexture::kStretchHeight, mBevel);
		for (int height = 8; height > 0; --height)
			for (int use = 0; use < (height == 3 ? 1 : 4); ++use)
				panel->DrawRect(*surface, {0, 0, 4, height});
		return panel;
	};
	TPtr<TOpenTexture> young;
	TStopwatch watch;
	do { // until the machine was quick enough
		watch.Restart();
		young = fill();
		young->DrawRect(*surface, {0, 0, 4, 9});
	} while (watch.ElapsedMilliseconds() > 150.0f);
	EXPECT_THAT(young->Heights(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 9));

	const TPtr<TOpenTexture> old = fill();
	std::this_thread::sleep_for(std::chrono::milliseconds(210));
	old->DrawRect(*surface, {0, 0, 4, 9});
	EXPECT_THAT(old->Heights(), ElementsAre(1, 2, 4, 5, 6, 7, 8, 9));
}

TEST_F(TTextureTest, RoundButtonsFillTheirRectangleAtEveryScale) {
	const TPtr<TRoundButtonTexture> button =
	    MakePtr<TRoundButtonTexture>(mFolder.Path("a.bmp"), TPanelTexture::kStretchHeight, mBevel);
	const TPtr<TSurface> surface = MakeSurface(8, 6, kScaleOf200);
	button->DrawRect(*surface, {1, 0, 3, 3});
	EXPECT_THAT(RowOf(*surface, 5), ElementsAre(0, 0, 150, 150, 150, 151, 151, 151));
	EXPECT_EQ(surface->Scale(), kScaleOf200);
	const TPtr<TSurface> dot = MakeSurface(6, 6);
	button->DrawCircle(*dot, {3.0f, 3.0f}, 3.0f);
	EXPECT_EQ(RowOf(*dot, 3)[1], 100);
}

TEST_F(TTextureTest, WithoutAnImageThereIsAMessageOnceOrNoneAtAll) {
	const TPtr<TTexture> broken = MakePtr<TTexture>(mFolder.Path("none.bmp"));
	const TPtr<TSurface> surface = MakeRow({7, 7});
	EXPECT_THROW(broken->DrawRect(*surface, {0, 0, 1, 1}), TReadableException);
	broken->DrawRect(*surface, {0, 0, 1, 1});
	EXPECT_THAT(RowOf(*surface), ElementsAre(0, 7));

	const TPtr<TVoidRecolorableTexture> plain = MakePtr<TVoidRecolorableTexture>();
	plain->SetColor(kColor);
	plain->DrawRect(*surface, {1, 0, 1, 1});
	EXPECT_THAT(RowOf(*surface), ElementsAre(0, 200));
}

} // namespace
