// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TAggWorkspace.h"
#include "framework/graphics/surfaces/TClipGuard.h"
#include "framework/graphics/surfaces/TRoundedRectPatch.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TRealTimeWatch.h"

#include <array>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <limits>

namespace {

using testing::ElementsAre;
using TPoints = std::vector<TPointT<float>>;

constexpr TColor kWhite{255, 255, 255};

class SmoothShapesTest : public TGraphicsFixture {
protected:
	static std::string Drawn(int width, int height, const std::function<void(TSurface&)>& draw) {
		const TPtr<TSurface> surface = MakeSurface(width, height);
		draw(*surface);
		return Picture(*surface);
	}

	static void DrawEverything(TSurface& surface, TSurface& image) {
		surface.Clear({20, 30, 40});
		surface.FillRoundedRect({3, 2, 50, 30}, {200, 90, 60}, {4, 7, 2, 9}, 0.8f);
		surface.StrokeRoundedRect({3, 2, 50, 30}, kWhite, 1.5f, {4, 7, 2, 9}, 1.0f);
		surface.TextureRoundedRect({5, 20, 50, 30}, {2, 2}, image, {4, 7, 2, 9}, 0.7f);
		surface.FillEllipse({30.3f, 28.7f}, 20.2f, 9.9f, {0, 255, 0}, 0.5f);
		surface.StrokeCircle({12.5f, 40.0f}, 10.0f, {90, 90, 255}, 2.0f, 1.0f);
		surface.TextureCircle({45.0f, 44.0f}, 9.5f, {40, 40}, image, 1.0f);
		surface.StrokePolyline(TPoints{{-30, 5}, {70, 33}, {20, 58}}, {255, 0, 255}, 3.0f, 0.6f);
		surface.FillPolygon(TPoints{{40, 5}, {58, 50}, {33, 40}}, {0, 255, 255}, 0.4f);
		surface.StrokePolygon(TPoints{{5, 5}, {55, 10}, {30, 55}}, {1, 2, 3}, 1.0f, 1.0f);
	}
};

TEST_F(SmoothShapesTest, FilledRoundedRectsLeaveOnePixelFreeAndOutlinesNone) {
	EXPECT_EQ(
	    Drawn(
	        7, 6,
	        [](TSurface& surface) {
		        surface.FillRoundedRect({0, 0, 6, 5}, kWhite, {}, 1.0f);
	        }),
	    ".......\n"
	    ".####..\n"
	    ".####..\n"
	    ".####..\n"
	    ".......\n"
	    ".......\n");
	EXPECT_EQ(
	    Drawn(
	        7, 6,
	        [](TSurface& surface) {
		        surface.StrokeRoundedRect({0, 0, 6, 5}, kWhite, 1.0f, {}, 1.0f);
	        }),
	    "######.\n"
	    "#....#.\n"
	    "#....#.\n"
	    "#....#.\n"
	    "######.\n"
	    ".......\n");
	EXPECT_EQ(
	    Drawn(
	        3, 2,
	        [](TSurface& surface) {
		        surface.FillRoundedRect({0, 0, 2, 2}, kWhite, {}, 1.0f);
	        }),
	    "...\n...\n");
}

TEST_F(SmoothShapesTest, WidthsAndRadiiAreNotScaledButPlacesAre) {
	const TPtr<TSurface> surface = MakeSurface(12, 8, {8, 4});
	surface->StrokeRoundedRect({0, 0, 6, 4}, kWhite, 1.0f, {}, 1.0f);
	surface->FillCircle({3.0f, 2.0f}, 0.5f, kWhite, 1.0f);
	EXPECT_EQ(
	    Picture(*surface), "############\n"
	                       "#..........#\n"
	                       "#..........#\n"
	                       "#....##....#\n"
	                       "#....##....#\n"
	                       "#..........#\n"
	                       "#..........#\n"
	                       "############\n");
}

TEST_F(SmoothShapesTest, EachRadiusRoundsItsOwnCorner) {
	const TPointT<int> corners[] = {{0, 0}, {29, 0}, {0, 19}, {29, 19}};
	for (std::size_t rounded = 0; rounded < 4; ++rounded) {
		const TPtr<TSurface> surface = MakeSurface(30, 20);
		std::array<float, 4> radii{};
		radii[rounded] = 6.0f;
		surface->StrokeRoundedRect({0, 0, 30, 20}, kWhite, 1.0f, {radii[0], radii[1], radii[2], radii[3]}, 1.0f);
		for (std::size_t i = 0; i < 4; ++i)
			EXPECT_EQ(surface->Pixel(corners[i]) == TColor{}, i == rounded) << rounded << " " << i;
	}
}

TEST_F(SmoothShapesTest, CoverageIsAreaAndOpacityScalesIt) {
	const TPtr<TSurface> surface = MakeSurface(4, 2);
	surface->FillPolygon(TPoints{{0.5f, 0}, {2.25f, 0}, {2.25f, 1}, {0.5f, 1}}, kWhite, 1.0f);
	surface->FillPolygon(TPoints{{0.5f, 1}, {2.25f, 1}, {2.25f, 2}, {0.5f, 2}}, kWhite, 0.5f);
	EXPECT_THAT(RowOf(*surface, 0), ElementsAre(128, 255, 64, 0)); // in 256ths, as an alpha of at most 255
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(64, 127, 32, 0));  // of 127
}

TEST_F(SmoothShapesTest, StrokesHaveSquareEndsAndStandOnTheirLine) {
	EXPECT_EQ(
	    Drawn(
	        9, 4,
	        [](TSurface& surface) {
		        surface.StrokePolyline(TPoints{{2, 2}, {6, 2}}, kWhite, 2.0f, 1.0f);
	        }),
	    ".........\n"
	    ".######..\n"
	    ".######..\n"
	    ".........\n");
	// Around an ellipse, not on it.
	const TPtr<TSurface> ring = MakeSurface(20, 20);
	ring->StrokeCircle({10, 10}, 5.0f, kWhite, 2.0f, 1.0f);
	const std::vector<int> across = RowOf(*ring, 10);
	EXPECT_LE(across[2], 5); // 3 to 5 are 5 to 7 away from the centre, but for the curve
	EXPECT_GE(across[3], 225);
	EXPECT_GE(across[4], 225);
	EXPECT_LE(across[5], 40);
}

TEST_F(SmoothShapesTest, TexturesStartAtTheirOriginAndRepeat) {
	const TPtr<TSurface> tile = MakeRow({10, 20, 30});
	const TPtr<TSurface> surface = MakeSurface(8, 3);
	surface->TextureRoundedRect({0, 0, 8, 3}, {4, 0}, *tile, {}, 1.0f);
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(0, 10, 20, 30, 10, 20, 30, 0));
	surface->Clear({0, 0, 0});
	surface->TexturePolygon(TPoints{{0, 0}, {8, 0}, {8, 3}, {0, 3}}, {0, 0}, *tile, 0.5f);
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(5, 10, 15, 5, 10, 15, 5, 10));
}

TEST_F(SmoothShapesTest, PatchesCoverAsTheRasteriserDoes) {
	const auto workspace = MakePtr<TAggWorkspace>();
	const TRectT<int> rect{5, 3, 41, 37};
	for (const TRoundedRectShape& shape :
	     {TRoundedRectShape{1.0, {3, 3, 3, 3}, 0.0},
	      {0.5, {2, 2, 2, 2}, 1.0},
	      {1.0, {0, 12, 5.5f, 0.7f}, 2.0},
	      {0.75, {1, 7, 0, 3}, 1.5},
	      {1.0, {}, 0.0}}) {
		const TRoundedRectPatch patch(shape, *workspace);
		const int corner = patch.CornerSize();
		std::vector<std::vector<int>> expected(50, std::vector<int>(50)), covers = expected;
		workspace->Begin({50, 50});
		workspace->AddRoundedRect(rect, shape);
		workspace->Render(workspace->mPixels, 0, 50, [&](const agg::scanline32_u8& scanline) {
			auto span = scanline.begin();
			for (unsigned i = 0; i < scanline.num_spans(); ++i, ++span)
				for (int x = 0; x < span->len; ++x)
					expected[static_cast<std::size_t>(scanline.y())][static_cast<std::size_t>(span->x + x)] =
					    span->covers[x];
		});
		for (int y = 0; y < rect.mHeight; ++y) {
			const int inPatch = y < corner ? y : std::max(corner, y - rect.mHeight + 2 * corner + 1);
			const TRoundedRectPatch::TRow& row = patch.Rows()[static_cast<std::size_t>(inPatch)];
			const auto first = covers[static_cast<std::size_t>(rect.mTop + y)].begin() + rect.mLeft;
			const int middleEnd = rect.mWidth - corner + row.mMiddleEnd;
			std::copy(row.mLeft.begin(), row.mLeft.end(), first + row.mLeftStart);
			std::fill(first + row.mMiddleStart, first + middleEnd, row.mMiddle);
			std::copy(row.mRight.begin(), row.mRight.end(), first + middleEnd);
		}
		EXPECT_EQ(covers, expected) << "stroke " << shape.mStrokeWidth;
	}
}

TEST_F(SmoothShapesTest, WhatIsRepaintedInPartLooksAsIfPaintedWhole) {
	const TPtr<TSurface> image = MakeSurface(7, 5);
	image->FillRect({0, 0, 4, 3}, {250, 200, 0}, 1.0f);
	const TPtr<TSurface> whole = MakeSurface(60, 60);
	DrawEverything(*whole, *image);
	const TPtr<TSurface> pieces = MakeSurface(60, 60);
	for (int y = 0; y < 60; y += 7) {
		for (int x = 0; x < 60; x += 11) {
			const TClipGuard guard(*pieces, {x, y, 11, 7}, TClipGuard::kReplace);
			DrawEverything(*pieces, *image);
		}
	}
	EXPECT_TRUE(AreEqual(*whole, *pieces));
}

TEST_F(SmoothShapesTest, CoordinatesThatNoWindowHasDrawNothingOrWhatIsVisible) {
	constexpr float kHuge = 1e30f;
	const float kNoNumber = std::numeric_limits<float>::quiet_NaN();
	const TPtr<TSurface> image = MakeRow({10, 20});
	EXPECT_EQ(
	    Drawn(
	        2, 1,
	        [&](TSurface& surface) {
		        for (const float odd : {kHuge, -kHuge, kNoNumber}) {
			        surface.StrokePolyline(TPoints{{0, 0}, {odd, 1}}, kWhite, 1.0f, 1.0f);
			        surface.FillPolygon(TPoints{{0, 0}, {odd, 0}, {0, odd}}, kWhite, 1.0f);
			        surface.StrokePolygon(TPoints{{0, 0}, {2, 1}}, kWhite, odd, 1.0f);
			        surface.FillCircle({odd, 0}, 5.0f, kWhite, 1.0f);
			        surface.TextureCircle({0, 0}, odd, {0, 0}, *image, 1.0f);
			        surface.StrokeRoundedRect({0, 0, 2, 1}, kWhite, 1.0f, TCornerRadii::All(odd), 1.0f);
			        surface.FillRect({0, 0, 2, 1}, kWhite, std::min(odd, 0.0f) * 0.0f);
		        }
		        surface.FillEllipse({0, 0}, -1.0f, 5.0f, kWhite, 1.0f);
		        surface.FillPolygon({}, kWhite, 1.0f);
		        surface.StrokePolyline(TPoints{{1, 1}}, kWhite, 1.0f, 1.0f);
	        }),
	    "..\n");
	EXPECT_EQ(
	    Drawn(
	        2, 1,
	        [](TSurface& surface) {
		        surface.FillPolygon(TPoints{{-9e5f, -9e5f}, {9e5f, -9e5f}, {9e5f, 9e5f}, {-9e5f, 9e5f}}, kWhite, 1.0f);
	        }),
	    "##\n");
}

TEST_F(SmoothShapesTest, WarmShapesAllocateNothing) {
	if (!TRealTimeWatch::IsAvailable())
		return; // the sanitizers have an allocator of their own
	const TPtr<TSurface> image = MakeSurface(7, 5);
	const TPtr<TSurface> surface = MakeSurface(60, 60);
	const TPoints line{{5, 5}, {55, 10}, {30, 55}, {31, 56}, {40, 2}};
	const auto draw = [&] {
		surface->FillRoundedRect({3, 2, 50, 30}, kWhite, {4, 7, 2, 9}, 0.8f);
		surface->StrokeRoundedRect({3, 2, 50, 30}, kWhite, 1.5f, {4, 7, 2, 9}, 1.0f);
		surface->TextureRoundedRect({5, 20, 50, 30}, {2, 2}, *image, {4, 7, 2, 9}, 0.7f);
		surface->FillEllipse({30.3f, 28.7f}, 20.2f, 9.9f, kWhite, 0.5f);
		surface->StrokeCircle({12.5f, 40.0f}, 10.0f, kWhite, 2.0f, 1.0f);
		surface->StrokePolyline(line, kWhite, 3.0f, 1.0f);
		surface->DrawBitmap({0, 0}, *image, {0, 0, 7, 5}, false, 0.5f);
	};
	draw();
	const std::size_t before = TRealTimeWatch::NumberOfOffences();
	{
		const TRealTimeWatch watch;
		draw();
	}
	EXPECT_EQ(TRealTimeWatch::NumberOfOffences(), before) << TRealTimeWatch::FirstOffence();
}

} // namespace
