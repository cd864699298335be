// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TPanelTexture.h"
#include "framework/graphics/surfaces/TDeviceAccess.h"
#include "tests/framework/graphics/skin/TSkinFixture.h"

#include <limits>

namespace {

using C = TSkinColors;

using TSkinTest = TSkinFixture;

TEST_F(TSkinTest, DarkensAlongTheContrastOfTheTheme) {
	TSkinColors& colors = Start();
	const TSkin& skin = *TSkin::Instance();
	colors.ContrastAdjustment().Set(1.0f);
	EXPECT_EQ(skin.Darken({200, 100, 50}, 0.5f), (TColor{200, 100, 50})) << "at 1 the factor cancels out";
	colors.ContrastAdjustment().Set(2.0f);
	EXPECT_EQ(skin.Darken({200, 100, 50}, 0.5f), (TColor{100, 50, 25})) << "at 2 it remains once";
	EXPECT_EQ(skin.Darken({200, 200, 200}, 4.0f), (TColor{255, 255, 255}));
	EXPECT_EQ(skin.StateColor({100, 100, 100}, TSkin::kHighlighted), (TColor{140, 140, 140}));
	EXPECT_EQ(skin.StateColor({140, 140, 140}, TSkin::kDimmed), (TColor{100, 100, 100}));
	EXPECT_EQ(skin.StateColor({140, 140, 140}, TSkin::kNormal), (TColor{140, 140, 140}));
	EXPECT_EQ(skin.Darken({0, 0, 0}, 4.0f), (TColor{0, 0, 0}));
	EXPECT_EQ(skin.Darken({100, 100, 100}, 0.0f), (TColor{0, 0, 0}));
	colors.ContrastAdjustment().Set(100.0f);
	EXPECT_EQ(skin.Darken({100, 100, 100}, 0.5f), (TColor{25, 25, 25})) << "3 is the most";
	const auto twice = MakeSurface(4, 4, {8, 4});
	EXPECT_EQ(skin.ScaledBevel(*twice, 2.0f), 3.0f);
}

TEST_F(TSkinTest, TexturesTakeTheirColoursByStateAndFollowTheTheme) {
	TSkinColors& colors = Start();
	TSkin& skin = *TSkin::Instance();
	colors.ContrastAdjustment().Set(2.0f);
	colors.Value(C::kMain, C::kBodyBack).Set({100, 100, 100});
	colors.Value(C::kMain, C::kButtonBack).Set({90, 90, 90});
	colors.Value(C::kMain, C::kScrollbar).Set({50, 50, 50});
	WriteTextures("Set");
	colors.TextureSet().Set("Set");
	skin.ReloadTextures();
	EXPECT_EQ(skin.Texture(TSkin::kPanelTexture, TSkin::kNormal).Color(), (TColor{100, 100, 100}));
	EXPECT_EQ(skin.Texture(TSkin::kPanelTexture, TSkin::kHighlighted).Color(), (TColor{140, 140, 140}));
	EXPECT_EQ(skin.Texture(TSkin::kInnerBodyTexture, TSkin::kNormal).Color(), (TColor{71, 71, 71}));
	EXPECT_EQ(skin.Texture(TSkin::kButtonTexture, TSkin::kHighlighted).Color(), (TColor{126, 126, 126}));
	EXPECT_EQ(skin.Texture(TSkin::kButtonTexture, TSkin::kDimmed).Color(), (TColor{60, 60, 60}));
	EXPECT_EQ(skin.Texture(TSkin::kScrollBarButtonTexture, TSkin::kNormal).Color(), (TColor{70, 70, 70}));
	const auto surface = MakeSurface(8, 8);
	// A tenth of the black image shines through at the usual bevel amount: 100 * 230 / 256.
	skin.Texture(TSkin::kPanelTexture, TSkin::kNormal).DrawRect(*surface, {0, 0, 8, 8});
	EXPECT_EQ(surface->Pixel({4, 4}), (TColor{89, 89, 89}));
	colors.TextureSet().Set("None");
	skin.ReloadTextures();
	skin.Texture(TSkin::kPanelTexture, TSkin::kNormal).DrawRect(*surface, {0, 0, 8, 8});
	EXPECT_EQ(surface->Pixel({4, 4}), (TColor{100, 100, 100}));
}

TEST_F(TSkinTest, PrefersTheOtherVariantOfATexture) {
	TSkinColors& colors = Start();
	WriteTextures("Set");
	const auto white = MakeSurface(4, 4);
	white->Clear({255, 255, 255});
	white->SaveToFile(mFolder.Path("Skin/Textures/Set/BodyTextureMac.bmp"), TSurface::kBmp);
	colors.TextureSet().Set("Set");
	TSkin::Instance()->ReloadTextures();
	const auto surface = MakeSurface(4, 4);
	TSkin::Instance()->DrawBackground(*surface, {0, 0, 4, 4}, TSkin::kBodyBackground);
	// White at amount one half is one and a half times the colour, black is half of it.
	EXPECT_EQ(surface->Pixel({1, 1}), (TColor{255, 255, 255}));
}

TEST_F(TSkinTest, GradientsAndFadesStepByTheSurfacesOwnPixels) {
	Start();
	TSkin& skin = *TSkin::Instance();
	const auto surface = MakeSurface(4, 10, {8, 4});
	surface->SetClipRect({0, 0, 4, 10});
	skin.FillGradient(*surface, {0, 0, 1, 2}, {100, 0, 0}, {0, 0, 100});
	skin.FillFade(*surface, {1, 0, 1, 2}, {255, 255, 255}, 0.0f, 1.0f, TSkin::kVertical);
	skin.FillGradient(*surface, {0, 3, 1, 0}, {100, 0, 0}, {0, 0, 100});
	std::string rows;
	{
		const TDeviceAccess access(*surface);
		for (int y = 0; y < 5; ++y)
			rows +=
			    std::to_string(surface->Pixel({1, y}).mRed) + "," + std::to_string(surface->Pixel({2, y}).mRed) + " ";
	}
	EXPECT_EQ(rows, "100,0 66,84 33,169 0,255 0,0 ");
}

TEST_F(TSkinTest, ARotarysRingEndsAtItsEnds) {
	Start();
	TSkin& skin = *TSkin::Instance();
	const auto ring = [&](float position, bool fromMiddle) {
		auto surface = MakeSurface(40, 40);
		skin.DrawRotary(*surface, {0, 0, 40, 40}, position, false, true, fromMiddle);
		return surface;
	};
	constexpr float kInfinity = std::numeric_limits<float>::infinity();
	for (const bool fromMiddle : {false, true}) {
		const auto full = ring(1.0f, fromMiddle);
		const auto none = ring(0.0f, fromMiddle);
		EXPECT_FALSE(AreEqual(*full, *none));
		for (const float above : {1.5f, 1.0e30f, kInfinity})
			EXPECT_TRUE(AreEqual(*ring(above, fromMiddle), *full)) << above;
		for (const float below : {-0.5f, -1.0e30f, -kInfinity})
			EXPECT_TRUE(AreEqual(*ring(below, fromMiddle), *none)) << below;
	}
	EXPECT_TRUE(AreEqual(*ring(std::numeric_limits<float>::quiet_NaN(), false), *ring(0.0f, false)));
}

} // namespace
