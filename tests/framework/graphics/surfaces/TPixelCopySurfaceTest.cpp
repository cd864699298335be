// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopySurface.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TAggWorkspace.h"
#include "framework/graphics/surfaces/TClipGuard.h"
#include "framework/graphics/surfaces/TMemorySurface.h"
#include "tests/support/TGraphicsFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr TColor kWhite{255, 255, 255};

using TPixelCopySurfaceTest = TGraphicsFixture;

TEST_F(TPixelCopySurfaceTest, ScalesRectanglesByTheirEdges) {
	const TPtr<TSurface> surface = MakeSurface(10, 1, {5, 4});
	surface->FillRect({1, 0, 2, 1}, {100, 0, 0}, 1.0f); // 1.25 to 3.75
	surface->FillRect({3, 0, 2, 1}, {200, 0, 0}, 1.0f); // 3.75 to 6.25
	EXPECT_THAT(RowOf(*surface), ElementsAre(0, 100, 100, 200, 200, 200, 0, 0, 0, 0));
}

TEST_F(TPixelCopySurfaceTest, ClipsAreKeptInBothUnits) {
	const TPtr<TSurface> surface = MakeSurface(9, 4, {8, 4});
	auto& pixels = static_cast<TPixelCopySurface&>(*surface);
	surface->SetClipRect({-1, 1, 10, 10});
	EXPECT_EQ(surface->ClipRect(), (TRectT<int>{0, 1, 4, 1})); // half a logical pixel more does not count
	EXPECT_EQ(pixels.DeviceClip(), (TRectT<int>{0, 2, 9, 2}));
	{
		const TClipGuard guard(*surface, {1, 0, 1, 9}, TClipGuard::kIntersect);
		EXPECT_EQ(surface->ClipRect(), (TRectT<int>{1, 1, 1, 1}));
		EXPECT_EQ(pixels.DeviceClip(), (TRectT<int>{2, 2, 2, 2}));
	}
	EXPECT_EQ(surface->ClipRect(), (TRectT<int>{0, 1, 4, 1}));

	TRectT<int> rect{1, 1, 1, 1};
	const TRectT<int> clip = surface->ClipRect();
	surface->BeginDeviceAccess(&rect);
	EXPECT_EQ(rect, (TRectT<int>{2, 2, 2, 2}));
	EXPECT_EQ(surface->ClipRect(), (TRectT<int>{0, 2, 8, 2}));
	surface->EndDeviceAccess({8, 4}, clip);
	EXPECT_EQ(surface->ClipRect(), clip);
	EXPECT_EQ(surface->Scale(), (TUiScale{8, 4}));
}

TEST_F(TPixelCopySurfaceTest, BlendsByShiftingAndMixesSinglePixels) {
	const TPtr<TSurface> surface = MakeRow({100, 255, 100, 100, 100, 100});
	surface->FillRect({0, 0, 1, 1}, {200, 200, 200}, 0.5f); // (200 * 127 + 100 * 128) >> 8
	surface->FillRect({1, 0, 1, 1}, kWhite, 0.9999f);       // not exact at the top
	surface->SetPixel({2, 0}, {200, 200, 200}, 0.5f);       // (200 * 128 + 100 * 128) >> 8
	surface->FillRect({3, 0, 1, 1}, kWhite, 0.0f);
	surface->SetPixel({4, 0}, kWhite, -1.0f);
	surface->SetClipRect({0, 0, 5, 1});
	surface->SetPixel({5, 0}, kWhite, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(149, 254, 150, 100, 100, 100));
	EXPECT_EQ(surface->Pixels()[3], 0xFF); // no pixel has an alpha of its own
}

TEST_F(TPixelCopySurfaceTest, FramesBlendTheirCornersTwiceAndDrawOnlySidesThatSurviveTheClip) {
	const TPtr<TSurface> surface = MakeSurface(5, 4);
	surface->FrameRect({1, 0, 4, 3}, kWhite, 0.5f);
	EXPECT_THAT(RowOf(*surface, 0), ElementsAre(0, 189, 126, 126, 189));
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(0, 126, 0, 0, 126));
	EXPECT_THAT(RowOf(*surface, 3), ElementsAre(0, 0, 0, 0, 0));

	const TPtr<TSurface> cut = MakeSurface(5, 4);
	cut->SetClipRect({1, 1, 3, 3});
	cut->FrameRect({0, 0, 4, 4}, kWhite, 1.0f);
	EXPECT_EQ(
	    Picture(*cut), ".....\n"
	                   "...#.\n"
	                   "...#.\n"
	                   ".###.\n");
}

TEST_F(TPixelCopySurfaceTest, LinesHoldBothEndsAndAreOneSurfacePixelWide) {
	const TPtr<TSurface> surface = MakeSurface(8, 6, {8, 4});
	surface->DrawLine({3, 1}, {1, 1}, kWhite, 1.0f);
	surface->DrawLine({0, 0}, {0, 1}, kWhite, 1.0f);
	surface->DrawHorizontalLine({2, 2}, 1, kWhite, 1.0f);
	surface->DrawVerticalLine({3, 2}, 5, kWhite, 0.5f);
	EXPECT_EQ(
	    Picture(*surface), "#.......\n"
	                       "#.......\n"
	                       "#.######\n"
	                       "#.......\n"
	                       "....###.\n"
	                       "......#.\n");
}

TEST_F(TPixelCopySurfaceTest, CopiesAreCutOnBothSidesAlike) {
	const TPtr<TSurface> source = MakeRow({10, 20, 30, 40, 50, 60});
	const TPtr<TSurface> surface = MakeRow({1, 1, 1, 1});
	surface->SetClipRect({1, 0, 2, 1});
	surface->DrawBitmap({-1, 0}, *source, {1, 0, 5, 1}, false, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(1, 40, 50, 1));

	// Within itself, in either direction.
	source->DrawBitmap({1, 0}, *source, {0, 0, 5, 1}, false, 1.0f);
	EXPECT_THAT(RowOf(*source), ElementsAre(10, 10, 20, 30, 40, 50));

	// What is not there takes the source's edge.
	const TPtr<TSurface> wide = MakeRow({0, 0, 0, 0, 0});
	wide->DrawBitmap({0, 0}, *MakeRow({7, 9}), {-2, 0, 5, 1}, false, 1.0f);
	EXPECT_THAT(RowOf(*wide), ElementsAre(7, 7, 7, 9, 9));
}

TEST_F(TPixelCopySurfaceTest, KeyIsThatOfTheSource) {
	const TPtr<TSurface> source = MakeRow({50, 255, 50});
	source->SetKeyColor({50, 50, 50});
	const TPtr<TSurface> surface = MakeRow({1, 2, 3});
	surface->SetKeyColor({255, 255, 255});
	surface->DrawBitmap({0, 0}, *source, {0, 0, 3, 1}, true, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(1, 255, 3));

	// Scaled, an image with a key is never quite solid.
	const TPtr<TSurface> scaled = MakeSurface(6, 1, {2, 1});
	scaled->DrawBitmap({0, 0}, *source, {0, 0, 3, 1}, true, 1.0f);
	EXPECT_THAT(RowOf(*scaled), ElementsAre(0, 0, 254, 254, 0, 0));
	const TPtr<TSurface> faint = MakeSurface(3, 1);
	faint->DrawBitmap({0, 0}, *source, {0, 0, 3, 1}, true, 0.5f); // (255 * 127) >> 8
	EXPECT_THAT(RowOf(*faint), ElementsAre(0, 126, 0));
}

TEST_F(TPixelCopySurfaceTest, ScaledImagesTakeThePixelUnderEachMiddle) {
	const TPtr<TSurface> source = MakeRow({10, 20, 30, 40});
	const TPtr<TSurface> surface = MakeSurface(3, 1);
	surface->StretchBitmap({0, 0, 3, 1}, *source, {0, 0, 4, 1}, 1.0f); // 0.67, 2, 3.33
	EXPECT_THAT(RowOf(*surface), ElementsAre(10, 30, 40));
	surface->StretchBitmap({0, 0, 3, 1}, *source, {1, 0, 1, 1}, 0.5f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(15, 25, 30));

	// A source of four times the size on a surface of twice the size.
	source->SetScale({4, 1});
	const TPtr<TSurface> fine = MakeSurface(2, 2, {8, 4});
	fine->DrawBitmap({0, 0}, *source, {0, 0, 1, 1}, false, 1.0f);
	EXPECT_THAT(RowOf(*fine), ElementsAre(20, 40));
}

TEST_F(TPixelCopySurfaceTest, MasksAndStencilsMultiplyTheirAlpha) {
	const TPtr<TSurface> image = MakeRow({255, 255, 255, 128});
	image->CreateAlphaMask(1.0f);
	image->AlphaMask()->SetValue({1, 0}, 0.5f);
	image->AlphaMask()->SetValue({2, 0}, 0.0f);
	const TPtr<TSurface> surface = MakeSurface(4, 1);
	surface->DrawMaskedBitmap({0, 0}, *image, {0, 0, 4, 1}, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(253, 126, 0, 127)); // (255 * 255 * mask) >> 16

	surface->Clear({0, 0, 0});
	surface->DrawStencil({0, 0}, {200, 0, 0}, *image, {0, 0, 4, 1}, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(199, 199, 199, 100)); // 200 * ((255 * brightness) >> 8) / 255
	surface->Clear({0, 0, 0});
	surface->DrawMaskedStencil({0, 0}, {200, 0, 0}, *image, {0, 0, 4, 1}, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(198, 99, 0, 100));
}

TEST_F(TPixelCopySurfaceTest, MasksAreCopiedAndStretchedAlong) {
	const TPtr<TSurface> image = MakeRow({1, 2, 3});
	image->CreateAlphaMask(0.0f);
	image->AlphaMask()->SetValue({1, 0}, 1.0f);
	const TPtr<TSurface> surface = MakeSurface(6, 1);
	surface->CreateAlphaMask(0.2f);
	const auto masks = [&] {
		std::vector<int> bytes;
		for (int x = 0; x < 6; ++x)
			bytes.push_back(static_cast<int>(surface->AlphaMask()->Value({x, 0}) * 255.0f));
		return bytes;
	};
	surface->DrawBitmap({2, 0}, *image, {0, 0, 3, 1}, false, 1.0f);
	EXPECT_THAT(masks(), ElementsAre(51, 51, 0, 255, 0, 51));
	surface->StretchBitmap({0, 0, 6, 1}, *image, {0, 0, 3, 1}, 1.0f); // round(i * 2 / 5)
	EXPECT_THAT(masks(), ElementsAre(0, 0, 255, 255, 0, 0));
	surface->AlphaMask()->SetValue({6, 0}, 1.0f);
	surface->AlphaMask()->SetValue({0, 1}, 1.0f);
	surface->AlphaMask()->CopyRect({-1, 0}, *surface->AlphaMask(), {0, 0, 90, 90});
	EXPECT_THAT(masks(), ElementsAre(0, 255, 255, 0, 0, 0));
}

TEST_F(TPixelCopySurfaceTest, TilesKeepTheirPlaceWhateverTheRectangle) {
	const TPtr<TSurface> tile = MakeRow({10, 20, 30});
	const TPtr<TSurface> surface = MakeSurface(9, 2);
	surface->TileBitmap({1, 0, 7, 2}, {0, 0}, *tile, 1.0f);
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(0, 20, 30, 10, 20, 30, 10, 20, 0));
	surface->TileBitmap({0, 0, 9, 1}, {5, 0}, *tile, 1.0f);
	EXPECT_THAT(RowOf(*surface, 0), ElementsAre(20, 30, 10, 20, 30, 10, 20, 30, 10));
	EXPECT_THAT(RowOf(*surface, 1), ElementsAre(0, 20, 30, 10, 20, 30, 10, 20, 0));
}

TEST_F(TPixelCopySurfaceTest, RecoloursByBrightness) {
	const TPtr<TSurface> surface = MakeRow({0, 128, 255, 64, 0});
	surface->Recolor({0, 0, 4, 1}, {100, 40, 200}, {0, 0, 0}, 0.5f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(50, 100, 150, 75, 0));
	EXPECT_EQ(surface->Pixel({2, 0}), (TColor{150, 60, 255}));
	surface->RecolorExcept({0, 0, 5, 1}, kWhite, {9, 9, 9}, {0, 0, 0}, 1.0f);
	EXPECT_THAT(RowOf(*surface), ElementsAre(255, 255, 255, 255, 0));
}

TEST_F(TPixelCopySurfaceTest, HistogramWeighsTheChannels) {
	const TPtr<TSurface> surface = MakeSurface(2, 1);
	surface->SetPixel({0, 0}, {255, 0, 0}, 1.0f);
	surface->SetPixel({1, 0}, {0, 0, 255}, 1.0f);
	TArray<double> bins{5.0, 6.0};
	double mean = 0.0;
	surface->Histogram(bins, mean);
	ASSERT_EQ(bins.Size(), 256);
	EXPECT_EQ(bins[58], 1.0);
	EXPECT_EQ(bins[29], 1.0);
	EXPECT_EQ(bins[0], 0.0);
	EXPECT_NEAR(mean, (0.229 + 0.114) * 255 / 2, 1e-9);
}

TEST_F(TPixelCopySurfaceTest, SurfacesAreRefusedWhereTheyCannotBe) {
	for (const TPointT<int> size : {TPointT<int>{0, 1}, {1, -1}, {1 << 30, 1 << 30}}) {
		EXPECT_THROW(Port().CreateSurface(size, 0, {}), TReadableException);
		EXPECT_FALSE(Port().CreateUnmappedSurface(size));
	}
	const TPtr<TSurface> surface = Port().CreateUnmappedSurface({3, 2});
	EXPECT_FALSE(surface->IsMapped() || surface->IsLocked() || surface->Pixels());
	surface->MapPixels();
	surface->Clear(kWhite);
	surface->UnmapPixels();
	surface->MapPixels();
	EXPECT_EQ(surface->RowBytes(), 16);
	EXPECT_EQ(surface->Pixel({2, 1}), kWhite);
}

TEST_F(TPixelCopySurfaceTest, OtherPixelFormatsDrawAlike) {
	struct TCase {
		TPixelFormat::TKind mKind;
		TColor mFilled, mBlended;
	};
	// 255, 130, 7 as far as there are bits for it; and half of it over that, both times cut to the bits.
	for (const TCase& expected :
	     {TCase{TPixelFormat::kRgb555, {248, 128, 0}, {120, 56, 0}},
	      TCase{TPixelFormat::kRgb565, {248, 128, 0}, {120, 60, 0}},
	      TCase{TPixelFormat::kBgr24, {255, 130, 7}, {126, 64, 3}}}) {
		SCOPED_TRACE(expected.mKind);
		const auto make = [&](TPointT<int> size) {
			auto surface =
			    MakePtr<TMemorySurface>(size, TPixelFormat::OfKind(expected.mKind), MakePtr<TAggWorkspace>());
			surface->MapPixels();
			surface->Clear({0, 0, 0});
			return surface;
		};
		const auto surface = make({12, 8});
		surface->FillRect({0, 0, 2, 1}, {255, 130, 7}, 1.0f);
		EXPECT_EQ(surface->Pixel({1, 0}), expected.mFilled);
		surface->FillRect({3, 0, 1, 1}, {255, 130, 7}, 0.5f);
		EXPECT_EQ(surface->Pixel({3, 0}), expected.mBlended);
		surface->SetKeyColor({0, 0, 0});
		surface->DrawBitmap({3, 0}, *surface, {1, 0, 2, 1}, true, 1.0f);
		EXPECT_EQ(surface->Pixel({3, 0}), expected.mFilled);
		surface->FillRoundedRect({0, 1, 12, 7}, {255, 130, 7}, {}, 1.0f);
		EXPECT_EQ(surface->Pixel({1, 2}), expected.mFilled);
		EXPECT_EQ(surface->Pixel({0, 2}), TColor{});
		const auto stretched = make({24, 16});
		stretched->StretchBitmap({0, 0, 24, 16}, *surface, {0, 0, 12, 8}, 1.0f);
		EXPECT_EQ(stretched->Pixel({3, 5}), expected.mFilled);
		EXPECT_EQ(stretched->Pixel({1, 5}), TColor{});
	}
}

} // namespace
