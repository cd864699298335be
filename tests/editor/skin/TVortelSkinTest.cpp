// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/surfaces/TDeviceAccess.h"
#include "tests/framework/graphics/skin/TSkinFixture.h"
#include "tests/support/StreamText.h"

namespace {

using C = TVortelSkinColors;

class TVortelSkinTest : public TSkinFixture {
protected:
	void SetUp() override {
		TSkinFixture::SetUp();
		TVortelSkinColors::Create();
		TVortelSkin::Create();
		mSurface = MakeSurface(80, 80);
	}

	void TearDown() override {
		mSurface = nullptr;
		TSkinFixture::TearDown();
	}

	static TVortelSkin& Skin() { return *TVortelSkin::Instance(); }

	TColor At(int x, int y) const { return mSurface->Pixel({x, y}); }

	TColor ButtonFill(TButtonLook::TState state, bool isEnabled = true) {
		TButtonLook look;
		look.mState = state;
		look.mIsEnabled = isEnabled;
		Skin().DrawButton(*mSurface, {10, 10, 40, 20}, look);
		return At(30, 20);
	}

	TPtr<TSurface> mSurface;
};

TEST_F(TVortelSkinTest, TheThemesOfTheProgramAreWhole) {
	const auto read = [](const std::string& name) {
		std::ifstream stream(VORTEL_SOURCE_DIR "/resources/Themes/" + name, std::ios::binary);
		return std::string(std::istreambuf_iterator<char>(stream), {});
	};
	TSkinColors& colors = *TSkinColors::Instance();
	TStream defaults;
	colors.SaveToStream(defaults, false);
	EXPECT_EQ(read("Default.xml"), TextOf(defaults)) << "the default theme is what the program is without one";
	for (const char* name : {"Light.xml", "High Contrast.xml"}) {
		colors.LoadFromStream(StreamOf(read(name)));
		TStream saved;
		colors.SaveToStream(saved, false);
		EXPECT_EQ(read(name), TextOf(saved));
	}
	EXPECT_EQ(TVortelSkinColors::Instance()->RowColor(10), (TColor{255, 94, 162}));
	EXPECT_EQ(C::VortelKeyOf(C::kKnobBackground), "mVortel[kKnobBackground]");
}

TEST_F(TVortelSkinTest, ButtonsAreFilledByTheirState) {
	// 52,55,58 times 1.25, which is 318 / 256.
	EXPECT_EQ(ButtonFill(TButtonLook::kUp), (TColor{64, 68, 72}));
	EXPECT_EQ(At(30, 11), (TColor{103, 109, 115})) << "the line, twice the body";
	EXPECT_EQ(At(11, 20), (TColor{103, 109, 115}));
	EXPECT_NEAR(At(30, 10).mRed, 18, 1) << "a frame of white at 0.07";
	EXPECT_EQ(At(10, 10), (TColor{0, 0, 0})) << "round corners";
	EXPECT_EQ(At(30, 9), (TColor{0, 0, 0}));
	EXPECT_EQ(ButtonFill(TButtonLook::kHoverOnUp), (TColor{79, 84, 89}));
	EXPECT_EQ(ButtonFill(TButtonLook::kPressed), (TColor{248, 250, 253}));
	EXPECT_EQ(ButtonFill(TButtonLook::kHoverOnPressed), (TColor{255, 255, 255}));
	EXPECT_EQ(ButtonFill(TButtonLook::kUp, false), (TColor{45, 47, 50})) << "0.35 over the panel's 35,37,39";
	TSkinColors::Instance()->ContrastAdjustment().Set(2.5f);
	mSurface->Clear({});
	ButtonFill(TButtonLook::kUp);
	EXPECT_NEAR(At(30, 10).mRed, 71, 2) << "four times as strong at twice the contrast";
}

TEST_F(TVortelSkinTest, ButtonsOfAGroupShareOnePixel) {
	const TColor line{103, 109, 115};
	TButtonLook look;
	look.mGroupPosition = TButtonLook::kTopPiece;
	Skin().DrawButton(*mSurface, {0, 0, 20, 20}, look);
	look.mGroupPosition = TButtonLook::kBottomPiece;
	Skin().DrawButton(*mSurface, {0, 20, 20, 20}, look);
	EXPECT_EQ(At(10, 19), line);
	EXPECT_NEAR(At(10, 20).mRed, 18, 1);
	EXPECT_EQ(At(10, 21), line);
	EXPECT_EQ(At(1, 19), line) << "inner corners are square";
	EXPECT_NE(At(1, 1), line) << "outer ones are not";
}

TEST_F(TVortelSkinTest, BoxesFadeInTheirTopThird) {
	Skin().DrawTextBoxFrame(*mSurface, {10, 10, 40, 21}, true, false);
	EXPECT_EQ(At(30, 11), (TColor{16, 17, 19})) << "0.66 of 25,27,29";
	EXPECT_EQ(At(30, 14).mRed, 20) << "half way";
	EXPECT_EQ(At(30, 17), (TColor{25, 27, 29}));
	EXPECT_EQ(At(30, 29), (TColor{25, 27, 29}));
	Skin().DrawTextBoxFrame(*mSurface, {10, 10, 40, 21}, true, true);
	EXPECT_EQ(At(30, 10), (TColor{0, 160, 220})) << "while it is being edited";
	Skin().DrawValueBox(*mSurface, {0, 0, 2, 2}, "1", 0, kAlignCenter, true);
	Skin().DrawValueBox(*mSurface, {0, 0, 0, 0}, "1", 0, kAlignCenter, true);
}

TEST_F(TVortelSkinTest, BlocksHaveTwoTonesAndABrightOutline) {
	Skin().DrawBlock(*mSurface, {2, 2, 10, 9}, {255, 0, 0}, 1.0f);
	EXPECT_EQ(At(6, 2), (TColor{255, 0, 0}));
	EXPECT_EQ(At(6, 5), (TColor{203, 0, 0})) << "3 of 7 rows at 0.8: 255 * 204 / 256";
	EXPECT_EQ(At(6, 6), (TColor{182, 0, 0})) << "0.9 of that: 229 * 204 / 256";
	EXPECT_EQ(At(6, 9), (TColor{182, 0, 0}));
	EXPECT_EQ(At(6, 10), (TColor{255, 0, 0}));
	EXPECT_EQ(At(2, 2).mRed < 100, true) << "round corners";
	Skin().DrawBlock(*mSurface, {40, 40, 1, 1}, {255, 0, 0}, 1.0f);
	const auto large = MakeSurface(40, 40, {8, 4});
	Skin().DrawBlock(*large, {2, 2, 10, 10}, {255, 0, 0}, 1.0f);
	const TDeviceAccess access(*large);
	EXPECT_EQ(large->Pixel({12, 5}), (TColor{255, 0, 0})) << "the outline is a logical pixel wide";
	EXPECT_EQ(large->Pixel({12, 6}), (TColor{203, 0, 0}));
}

TEST_F(TVortelSkinTest, RotariesFillFromTheirStartOrFromTheMiddle) {
	const TColor active{220, 222, 224};
	const TColor resting{59, 62, 65};
	const TRectT<int> rect{0, 0, 60, 60};
	Skin().DrawRotary(*mSurface, rect, 0.25f, false, true, false);
	EXPECT_EQ(At(30, 30), (TColor{19, 20, 21})) << "the middle";
	EXPECT_EQ(At(30, 52), (TColor{19, 20, 21})) << "the gap at the bottom";
	EXPECT_EQ(At(7, 30), active) << "a fifth of the way round, at the left";
	EXPECT_EQ(At(30, 7), resting);
	EXPECT_EQ(At(52, 30), resting);
	Skin().DrawRotary(*mSurface, rect, 0.9f, false, true, true);
	EXPECT_EQ(At(7, 30), resting);
	EXPECT_EQ(At(52, 30), active);
	Skin().DrawRotary(*mSurface, rect, 0.5f, false, true, true);
	EXPECT_EQ(At(29, 7), active) << "a mark where a value would begin";
	EXPECT_EQ(At(30, 7), active);
	EXPECT_EQ(At(32, 7), resting);
	Skin().DrawRotary(*mSurface, rect, 7.0f, true, true, false);
	EXPECT_EQ(At(52, 30), (TColor{255, 255, 255}));
}

TEST_F(TVortelSkinTest, PanelsCoverAllOfTheirRectangle) {
	mSurface->Clear({255, 0, 255});
	for (const auto kind :
	     {TSkin::kBodyBackground, TSkin::kPanelBackground, TSkin::kMainBackground, TSkin::kMenuBackground}) {
		ASSERT_TRUE(Skin().IsOpaque(kind));
		Skin().DrawBackground(*mSurface, {10, 10, 30, 20}, kind);
		for (int y = 10; y < 30; ++y)
			for (int x = 10; x < 40; ++x)
				ASSERT_LT(At(x, y).mRed, 150) << x << "," << y << " of " << kind;
	}
	EXPECT_EQ(At(9, 9), (TColor{255, 0, 255}));
	Skin().DrawPanel(*mSurface, {10, 10, 30, 20}, TSkin::kNormal);
	EXPECT_EQ(At(20, 20), (TColor{35, 37, 39}));
}

} // namespace
