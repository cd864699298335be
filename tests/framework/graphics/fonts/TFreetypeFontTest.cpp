// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TAlphaMask.h"
#include "tests/framework/graphics/fonts/TTestFonts.h"
#include "tests/support/TFailingHeap.h"
#include "tests/support/TLogFolder.h"

namespace {

constexpr TColor kWhite{255, 255, 255};

class TFreetypeFontTest : public TTestFonts {
protected:
	/// A row of pixels of these coverages, drawn in the colour over the ground.
	std::vector<TColor>
	Drawn(const std::string& coverages, const TColor& color, const TColor& ground, float opacity = 1.0f) {
		const int width = static_cast<int>(coverages.size()) / 2;
		const auto font = Open(WriteFont("row.bdf", 8, {{'r', width, width, {coverages}}}));
		const auto surface = MakeSurface(width, 4);
		surface->Clear(ground);
		font->DrawText(*surface, {0, 0}, "r", color, TFont::kLeaveMask, opacity);
		std::vector<TColor> row;
		for (int x = 0; x < width; ++x)
			row.push_back(surface->Pixel({x, 3}));
		return row;
	}

	/// An L: two pixels high, its foot to the right. One bit a pixel.
	TPtr<TFreetypeFont> FontOfL(int baselineOffset = 0) {
		return Open(WriteFont("l.bdf", 1, {{'L', 3, 2, {"80", "C0"}}, {' ', 2, 0, {}}}), {4, 4}, baselineOffset);
	}
};

TEST_F(TFreetypeFontTest, CoverageGoesThroughTheTableOfLightOrDarkText) {
	// 128 is half: e^0.5 - 1 = 0.6487, of which 166 / 256 remain. 200 is 0.78, more than ln 2: solid. 1 is 0.0039.
	EXPECT_EQ(
	    Drawn("0080C8FF01", kWhite, {0, 0, 0}),
	    (std::vector<TColor>{{0, 0, 0}, {165, 165, 165}, kWhite, kWhite, {0, 0, 0}}));
	// 77 / 255 is just above 0.3, and 76 / 255 not: 0.5^1.25 = 0.4204, 107 / 256.
	EXPECT_EQ(Drawn("80", {77, 0, 0}, {0, 0, 0})[0], (TColor{77 * 166 / 256, 0, 0}));
	EXPECT_EQ(Drawn("80", {76, 0, 0}, {0, 0, 0})[0], (TColor{76 * 107 / 256, 0, 0}));
	EXPECT_EQ(Drawn("FF", {76, 0, 0}, kWhite)[0], (TColor{76, 0, 0}));
	// Half of 0.6487 is 0.3243, 83 / 256; nothing is drawn at 0.
	EXPECT_EQ(Drawn("80", kWhite, {0, 0, 0}, 0.5f)[0], (TColor{82, 82, 82}));
	EXPECT_EQ(Drawn("80", kWhite, {10, 20, 30}, 0.0f)[0], (TColor{10, 20, 30}));
	// Each part by itself: (30 * 90 + 200 * 166) / 256 and so on.
	EXPECT_EQ(Drawn("80", {200, 100, 0}, {30, 60, 255})[0], (TColor{140, 85, 89}));
}

TEST_F(TFreetypeFontTest, GlyphsStandOneBelowTheAscenderAndStopAtTheClip) {
	const auto font = FontOfL();
	const auto surface = MakeSurface(10, 8);
	EXPECT_EQ(font->DrawText(*surface, {1, 1}, "L\nL L", kWhite, 0, 1.0f), (TPointT<int>{8, 4}));
	EXPECT_EQ(PixelsOf(*surface), "1,3 1,4 2,4 1,7 6,7 ");
	surface->Clear({});
	surface->SetClipRect({2, 0, 8, 8});
	font->DrawText(*surface, {1, 1}, "L", kWhite, 0, 1.0f);
	EXPECT_EQ(PixelsOf(*surface), "2,4 ");
	font->DrawText(*surface, {4, 1}, "L", {100, 100, 100}, 0, 0.5f);
	EXPECT_EQ(surface->Pixel({4, 3}), (TColor{50, 50, 50}));
	surface->Clear({});
	FontOfL(-1)->DrawText(*surface, {2, 1}, "L", kWhite, 0, 1.0f);
	EXPECT_EQ(PixelsOf(*surface), "2,2 2,3 3,3 ");
	const TPointT<int> far{2000000000, -2000000000};
	EXPECT_EQ(font->DrawText(*surface, far, "L", kWhite, 0, 1.0f), (TPointT<int>{3, 0}));
}

// The glyph is 2 wide, 2 high, 3 apart; it lies 2 below the pen. Rotations turn about corners that lie a pixel outside.
TEST_F(TFreetypeFontTest, TurnedTextRunsDownMirroredAndUpwards) {
	const auto font = FontOfL();
	const auto drawn = [&](int rotation, const TString& text) {
		const auto surface = MakeSurface(12, 12);
		const TPointT<int> end = font->DrawRotatedText(*surface, {4, 1}, text, kWhite, rotation, 0, 1.0f);
		return PixelsOf(*surface) + "to " + TString::ToString(end).CString();
	};
	EXPECT_EQ(drawn(TFont::kNoRotation, "L"), "4,3 4,4 5,4 to 3,0");
	EXPECT_EQ(drawn(TFont::kClockwise, "L"), "5,1 6,1 5,2 to 0,3");
	EXPECT_EQ(drawn(TFont::kMirrored, "L"), "7,3 6,4 7,4 to 3,0");
	EXPECT_EQ(drawn(TFont::kCounterClockwise, "L"), "7,3 6,4 7,4 to 0,3");
	EXPECT_EQ(drawn(TFont::kClockwise, "L L"), "5,1 6,1 5,2 5,6 6,6 5,7 to 0,8");
	EXPECT_EQ(drawn(TFont::kClockwise, "L\nL"), "5,1 6,1 9,1 10,1 5,2 9,2 to 4,3");
}

TEST_F(TFreetypeFontTest, TextBringsItsCoverageIntoAMask) {
	const auto font = Open(WriteFont("row.bdf", 8, {{'r', 2, 2, {"80FF"}}}));
	const auto surface = MakeSurface(4, 4);
	font->DrawText(*surface, {0, 0}, "r", kWhite, TFont::kReplaceMask, 1.0f);
	EXPECT_EQ(surface->Pixel({0, 3}), (TColor{165, 165, 165})) << "without a mask the mode means nothing";
	surface->Clear({100, 0, 0});
	surface->CreateAlphaMask(0.0f);
	surface->AlphaMask()->SetValue({1, 3}, 0.5f);
	const auto drawn = [&](int x) { return std::pair(surface->Pixel({x, 3}), surface->AlphaMask()->Value({x, 3})); };
	font->DrawText(*surface, {0, 0}, "rr", {255, 0, 0}, TFont::kBlendIntoMask, 0.5f);
	EXPECT_EQ(drawn(0), std::pair(TColor{255, 0, 0}, 82 / 255.0f)) << "empty ground takes the colour itself";
	EXPECT_EQ(drawn(1).first, (TColor{177, 0, 0})) << "what is there shines through";
	EXPECT_NEAR(drawn(1).second, 1.0, 0.005);
	font->DrawText(*surface, {0, 0}, "r", {0, 0, 255}, TFont::kReplaceMask, 0.5f);
	EXPECT_EQ(drawn(1).first, (TColor{0, 0, 255}));
	EXPECT_NEAR(drawn(1).second, 0.5, 0.005);
}

TEST_F(TFreetypeFontTest, ThresholdTextHasTwoColoursAndNoBlending) {
	const auto font = Open(WriteFont("row.bdf", 8, {{'r', 4, 4, {"20408000"}}}));
	const auto surface = MakeSurface(4, 4);
	// 0x20 is 0.133, 0x40 is 0.284, 0x80 is 0.649.
	font->DrawThresholdText(*surface, {0, 0}, "r", kWhite, {9, 9, 9}, {0.2f, 0.6f}, 1.0f);
	EXPECT_EQ(PixelsOf(*surface), "1,3 2,3 ");
	EXPECT_EQ(surface->Pixel({1, 3}), (TColor{9, 9, 9}));
	EXPECT_EQ(surface->Pixel({2, 3}), kWhite);
}

TEST_F(TFreetypeFontTest, MeasuresInLogicalPixels) {
	const TString file = WriteFont("m.bdf", 1, {{'a', 3, 1, {"80"}}, {'b', 2, 1, {"80"}}});
	const auto font = Open(file);
	EXPECT_EQ(font->TextWidth("ab\naab\na"), 8);
	EXPECT_EQ(font->CharWidth(u'a'), 3);
	EXPECT_EQ(font->TextWidth(""), 0);
	EXPECT_EQ(font->LineHeight(), 4);
	EXPECT_EQ(font->TextHeight(""), 4);
	EXPECT_EQ(font->TextHeight("a\r\na\na"), 12);
	const auto large = MakeSurface(8, 8, {8, 4});
	EXPECT_EQ(font->TextWidth(*large, "ab"), 3) << "5 surface pixels are 2.5, rounded away from zero";
	EXPECT_EQ(font->LineHeight(*large), 2);
	EXPECT_EQ(font->DrawText(*large, {1, 0}, "ab", kWhite, 0, 1.0f), (TPointT<int>{2, 0}));
	EXPECT_EQ(PixelsOf(*large), "2,3 5,3 ");
	mSystemFonts["Spaced"] = file;
	const auto spaced = [&](float width) {
		const auto settings = MakePtr<TFontSettings>();
		settings->mFamilyName.Set("Spaced");
		settings->mWidth.Set(width);
		settings->mHeight.Set(-1.0f);
		settings->mExtraHorizontalSpacing.Set(0.25f);
		settings->mExtraVerticalSpacing.Set(1.5f);
		return MakePtr<TFreetypeFont>(*settings, false);
	};
	EXPECT_EQ(spaced(4.0f)->TextWidth("aaaa"), 12) << "a whole width has whole advances";
	EXPECT_EQ(spaced(4.5f)->TextWidth("aaaa"), 13);
	EXPECT_EQ(spaced(4.5f)->Height(), 4.5f) << "what is not given takes the other";
	EXPECT_EQ(spaced(4.0f)->LineHeight(), 6);
}

TEST_F(TFreetypeFontTest, PairsOfLettersMoveTogether) {
	const auto font = Open(VORTEL_TEST_KERNED_FONT, {40, 40});
	const int apart = font->CharWidth(u'A') + font->CharWidth(u'V');
	const int together = font->TextWidth("AV");
	EXPECT_NEAR(apart - together, 3, 1) << "131 / 2048 of 40 pixels";
	EXPECT_EQ(font->TextWidth("A\nV"), font->CharWidth(u'A')) << "but not across lines";
	const auto surface = MakeSurface(100, 100);
	EXPECT_EQ(font->DrawText(*surface, {0, 0}, "AV", kWhite, 0, 1.0f), (TPointT<int>{together, 0}));
	EXPECT_EQ(
	    font->DrawRotatedText(*surface, {0, 0}, "AV", kWhite, TFont::kCounterClockwise, 0, 1.0f),
	    (TPointT<int>{0, together}));
}

TEST_F(TFreetypeFontTest, OutlinesGrowByTheirWidthOnEachSide) {
	const auto font = Open(VORTEL_TEST_FONT, {11, 11});
	const auto bounds = [&](int outline) {
		const auto surface = MakeSurface(40, 40);
		const TPointT<int> end = font->DrawOutlinedText(*surface, {10, 10}, "H", kWhite, outline, 0, 1.0f);
		EXPECT_EQ(end, (TPointT<int>{font->CharWidth(u'H'), 0}));
		TRectT<int> found{40, 40, 0, 0};
		for (int y = 0; y < 40; ++y)
			for (int x = 0; x < 40; ++x)
				if (surface->Pixel({x, y}).mRed > 60) {
					found.mLeft = std::min(found.mLeft, x);
					found.mTop = std::min(found.mTop, y);
					found.mWidth = std::max(found.mWidth, x);
					found.mHeight = std::max(found.mHeight, y);
				}
		return found;
	};
	const TRectT<int> plain = bounds(0);
	const TRectT<int> outlined = bounds(2);
	EXPECT_EQ(plain.mHeight - plain.mTop, 7) << "a capital of Inter at 11 is 8 high";
	EXPECT_NEAR(plain.mLeft - outlined.mLeft, 2, 1);
	EXPECT_NEAR(outlined.mHeight - plain.mHeight, 2, 1);
}

TEST_F(TFreetypeFontTest, MissingCharactersComeFromFallbacksThatAreTriedAnew) {
	const TLogFolder log;
	const auto font = Open(WriteFont("latin.bdf", 1, {{'a', 3, 1, {"80"}}}));
	mSystemFonts["Unifont"] = WriteFont("other.bdf", 1, {{0x4E00, 4, 4, {"F0"}}});
	EXPECT_EQ(font->TextWidth(TString(std::u16string_view(u"\u0416"))), 3) << "the stand-in of the font itself";
	const std::string asked = std::exchange(mAsked, {});
	EXPECT_TRUE(asked.ends_with("Unifont/Unifont ")) << asked;
	EXPECT_EQ(font->TextWidth(TString(std::u16string_view(u"\u4E00a\u4E00"))), 11);
	EXPECT_EQ(std::exchange(mAsked, {}), asked) << "one that could not help is tried again";
	font->TextWidth(TString(std::u16string_view(u"\u4E00\u0416\u0417")));
	EXPECT_EQ(mAsked.find("Unifont"), std::string::npos) << "one that is open is not opened twice";
	EXPECT_NE(log.Logged().find("can not handle the requested character(s). Skipping..."), std::string::npos);
}

TEST_F(TFreetypeFontTest, SaysWhyAFontCannotBeOpened) {
	EXPECT_EQ(FailureOf([] { Open("/nowhere/a.ttf"); }), "The font file '/nowhere/a.ttf' does not exist.");
	mFolder.Write("broken.ttf", "no font at all");
	const std::string path = mFolder.PathOf("broken.ttf");
	EXPECT_EQ(
	    FailureOf([&] { Open(path.c_str()); }),
	    "Failed to initialize the font file: '" + path + "' (Error: unknown file format)!");
	for (const TPointT<int> size : {TPointT<int>{100000, 100000}, TPointT<int>{-5, 11}})
		EXPECT_EQ(
		    FailureOf([&] { Open(VORTEL_TEST_FONT, size); }),
		    "Failed to set the font size for font: '" VORTEL_TEST_FONT "'!");
	const auto settings = MakePtr<TFontSettings>();
	settings->mFamilyName.Set("Nobody");
	EXPECT_EQ(FailureOf([&] { TFreetypeFont(*settings, true); }), "Failed to resolve the font file for font 'Nobody'.");
	settings->mPostScriptName.Set("Nobody-Bold");
	EXPECT_EQ(
	    FailureOf([&] { TFreetypeFont(*settings, true); }), "Failed to resolve the font file for font 'Nobody-Bold'.");
}

TEST_F(TFreetypeFontTest, AFontFileMayBeDamagedAnywhere) {
	std::ifstream whole(VORTEL_TEST_FONT, std::ios::binary);
	const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
	const auto surface = MakeSurface(100, 20);
	int opened = 0;
	const auto use = [&](const std::string& damaged) {
		mFolder.Write("damaged.otf", damaged);
		const std::string failure = FailureOf([&] {
			const auto font = Open(mFolder.Path("damaged.otf"), {11, 11});
			++opened;
			font->DrawOutlinedText(*surface, {0, 0}, "Ag%1", kWhite, 1, 0, 1.0f);
		});
		EXPECT_TRUE(failure.empty() || failure.starts_with("Failed to ")) << failure;
	};
	for (std::size_t place = 4; place < bytes.size(); place += place / 5 + 7) {
		use(bytes.substr(0, place));
		std::string damaged = bytes;
		for (std::size_t i = place; i < std::min(place + 40, bytes.size()); ++i)
			damaged[i] = static_cast<char>(~damaged[i]);
		use(damaged);
	}
	EXPECT_GT(opened, 3);
}

TEST_F(TFreetypeFontTest, DrawingWhatWasDrawnBeforeAllocatesNothing) {
	const auto font = Open(VORTEL_TEST_FONT, {11, 11});
	const auto surface = MakeSurface(200, 20);
	const TString text = "Glass Staircase 0123";
	font->DrawText(*surface, {0, 0}, text, kWhite, 0, 1.0f);
	TFailingHeap heap;
	font->DrawText(*surface, {0, 2}, text, kWhite, 0, 0.5f);
	EXPECT_GT(font->TextWidth(text), 0);
	EXPECT_EQ(heap->mAllocations, 0);
}

} // namespace
