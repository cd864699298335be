// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TReadableException.h"
#include "platform/headless/THeadlessFolders.h"
#include "tests/framework/graphics/skin/TSkinFixture.h"
#include "tests/support/StreamText.h"

namespace {

using C = TSkinColors;

class TSkinColorsTest : public TSkinFixture {
protected:
	static std::vector<TColor> All(const TSkinColors& colors) {
		std::vector<TColor> all;
		for (int32_t group = 0; group < C::kNumberOfGroups; ++group)
			for (int32_t i = 0; i < C::kGroupSizes[static_cast<std::size_t>(group)]; ++i)
				all.push_back(colors.Color(static_cast<C::TGroup>(group), i));
		return all;
	}

	/// The colours of a theme with this content, of this version.
	static TPtr<TSkinColors> Loaded(const std::string& version, const std::string& content) {
		const auto colors = MakePtr<TSkinColors>();
		colors->LoadFromStream(StreamOf("<SkinColors" + version + ">" + content + "</SkinColors>"));
		return colors;
	}
};

TEST_F(TSkinColorsTest, KeysStandInTheFileInTheOrderOfTheirGroups) {
	const auto colors = MakePtr<TSkinColors>();
	EXPECT_EQ(All(*colors).size(), 86u);
	EXPECT_EQ(C::KeyOf(C::kMain, C::kFolder), "Folder");
	EXPECT_EQ(C::KeyOf(C::kAutomation, C::kAutomationMarkerDiamond), "Automation_Marker_Diamond");
	EXPECT_EQ(
	    C::KeyOf(C::kPattern, C::PatternFontOf(C::kPatternHighlightedFont, C::kPatternFontUnused)),
	    "Pattern_Highlighted_Font_Unused");
	EXPECT_EQ(C::LabelOf(C::kPattern, C::kPatternMuteState), "Mute State");
	EXPECT_EQ(C::KeyOf(C::kVuMeter, C::kVuMeterBackClipped), "VuMeter_Back_Clipped");
	EXPECT_EQ(C::LabelOf(C::kDefault, 15), "Default Color 16");
	colors->Value(C::kMain, C::kMainBack).Set({1, 2, 3});
	TStream stream;
	colors->SaveToStream(stream, false);
	const std::string text = TextOf(stream);
	EXPECT_NE(
	    text.find("<SkinColors doc_version=\"12\">\n  <Main_Back>1,2,3</Main_Back>\n  <Main_Font>"), std::string::npos);
	EXPECT_NE(
	    text.find("<ButtonBevalAmount>1.25</ButtonBevalAmount>\n  <BodyBevalAmount>1.25</BodyBevalAmount>\n  "
	              "<ContrastAdjustment>1.25</ContrastAdjustment>\n  <TextureSet>None</TextureSet>\n</SkinColors>"),
	    std::string::npos);
}

TEST_F(TSkinColorsTest, ColoursTurnIntoHueAndBackWithoutLoss) {
	for (int red = 0; red < 256; red += 5)
		for (int green = 0; green < 256; green += 3)
			for (int blue = 0; blue < 256; blue += 17)
				ASSERT_EQ(THsvColor::From({red, green, blue}).ToColor(), (TColor{red, green, blue}));
	EXPECT_EQ((THsvColor{1.0f + 1.0f / 3.0f, 1.0f, 0.5f}).ToColor(), (TColor{0, 128, 0}));
}

TEST_F(TSkinColorsTest, AdjustsAllColoursFromTheSnapshot) {
	const auto colors = MakePtr<TSkinColors>();
	const std::vector<TColor> before = All(*colors);
	colors->mHueShift = 360.0f;
	colors->ApplyAdjustments();
	EXPECT_EQ(All(*colors), before);
	colors->Value(C::kMain, C::kMainBack).Set({200, 100, 100});
	colors->TakeSnapshot();
	const auto adjusted = [&](float hue, float saturation, float brightness, float contrast, bool inverts) {
		colors->mHueShift = hue;
		colors->mSaturationShift = saturation;
		colors->mBrightnessShift = brightness;
		colors->mContrastShift = contrast;
		colors->mInvertColors = inverts;
		colors->ApplyAdjustments();
		return colors->MainColor(C::kMainBack);
	};
	EXPECT_EQ(adjusted(0, 0, 0, 0, false), (TColor{200, 100, 100}));
	EXPECT_EQ(adjusted(480.0f, 0, 0, 0, false), (TColor{100, 200, 100}));
	EXPECT_EQ(adjusted(-120.0f, 0, 0, 0, false), (TColor{100, 100, 200}));
	EXPECT_EQ(adjusted(0, 0.5f, 0, 0, false), (TColor{200, 0, 0}));
	EXPECT_EQ(adjusted(0, -2.0f, 1.0f, 0, false), (TColor{255, 255, 255}));
	EXPECT_EQ(adjusted(0, -1.0f, 0, -1.0f, false), (TColor{128, 128, 128})) << "flat middle grey";
	EXPECT_EQ(adjusted(0, -1.0f, 0, 0.5f, false), (TColor{255, 255, 255})) << "0.284 * 2.414 + 0.5";
	EXPECT_EQ(adjusted(0, 0, 0, 0, true), (TColor{55, 155, 155}));
}

TEST_F(TSkinColorsTest, BringsTheFirstThemesUpToDate) {
	const auto colors = Loaded(
	    "", "<Property name='mpSkinColors'><Property name='mTextureSet'>None</Property>"
	        "<Property name='mButtonBevalAmount'>1.2</Property><Property name='mBodyBevalAmount'>7</Property>"
	        "<Property name='mMain'><Property name='MainBack'>100,100,100</Property>"
	        "<Property name='SelectionBar'>200,0,0</Property><Property name='Body'>40,40,40</Property>"
	        "<Property name='BodyFont'>80,80,80</Property><Property name='Button'>100,200,240</Property>"
	        "<Property name='selected ButtonFont'>1,2,3</Property><Property name='Slider'>4,5,6</Property>"
	        "<Property name='ValueFont'>0,80,160</Property><Property name='ValueBack'>0,0,0</Property>"
	        "<Property name='MainText'>200,100,50</Property></Property>"
	        "<Property name='mEnvelope'><Property name='LoopMarker'>7,8,9</Property></Property>"
	        "<Property name='mPatternSmall'><Property name='default'>100,100,100</Property>"
	        "<Property name='highlighted'>50,50,50</Property></Property>"
	        "<Property name='mVuMeter'><Property name='Back clipped'>9,9,9</Property></Property></Property>");
	const auto main = [&](int32_t index) { return colors->MainColor(index); };
	const auto pattern = [&](int32_t index) { return colors->PatternColor(index); };
	EXPECT_EQ(main(C::kMainBack), (TColor{100, 100, 100}));
	EXPECT_EQ(main(C::kSelectedButtonFont), (TColor{1, 2, 3}));
	EXPECT_EQ(main(C::kSlider), (TColor{4, 5, 6})) << "it was called fader in between";
	EXPECT_EQ(colors->AutomationColor(C::kAutomationMarkerPair), (TColor{7, 8, 9}));
	EXPECT_EQ(colors->VuMeterColor(C::kVuMeterBackClipped), (TColor{9, 9, 9}));
	EXPECT_EQ(main(C::kScrollbar), (TColor{114, 228, 255})) << "100 * 293 / 256, and so on";
	EXPECT_EQ(main(C::kStandBySelectionBack), (TColor{150, 50, 50}));
	EXPECT_EQ(pattern(C::PatternFontOf(C::kPatternDefaultFont, C::kPatternFontPitch)), (TColor{255, 190, 135}));
	EXPECT_EQ(pattern(C::PatternFontOf(C::kPatternHighlightedFont, C::kPatternFontPitch)), (TColor{126, 94, 66}))
	    << "half as bright";
	EXPECT_NEAR(colors->ButtonBevalAmount().Get(), 1.5849, 0.0001);
	EXPECT_EQ(colors->BodyBevalAmount().Get(), 2.0f);
	EXPECT_EQ(main(C::kBodyFont), (TColor{70, 70, 70}));
	EXPECT_EQ(main(C::kStrongBodyFont), (TColor{63, 63, 63})) << "80 / 1.25: 80 * 204 / 256";
	EXPECT_EQ(main(C::kValueBoxFontIcons), (TColor{0, 60, 120}));
	EXPECT_EQ(main(C::kButtonHighlightFont), (TColor{0, 39, 79})) << "dark, because the button is bright";
	EXPECT_EQ(pattern(C::kPatternMuteState), (TColor{0, 80, 160}));
	EXPECT_EQ(pattern(C::PatternFontOf(C::kPatternHighlightedFont, C::kPatternFontDspFx)), (TColor{50, 50, 50}));
	EXPECT_EQ(pattern(C::kPatternCenterBarFontStandBy), (TColor{100, 100, 100}));
	EXPECT_EQ(main(C::kAlternateMainBack), (TColor{153, 153, 153})) << "100 / 0.65: 100 * 392 / 256";
	EXPECT_EQ(main(C::kAlternateMainFont), (TColor{200, 100, 50}));
}

TEST_F(TSkinColorsTest, RunsOnlyTheStepsThatAFileLacks) {
	const std::string content = "<Main_Back>100,100,100</Main_Back><ButtonBevalAmount>5</ButtonBevalAmount>"
	                            "<Fader>1,2,3</Fader><Nonsense>1</Nonsense><Body_Font>1,2</Body_Font>";
	const auto current = Loaded(" doc_version='12'", content);
	EXPECT_EQ(current->ButtonBevalAmount().Get(), 5.0f);
	EXPECT_EQ(current->MainColor(C::kAlternateMainBack), (TColor{150, 150, 150}));
	EXPECT_EQ(current->MainColor(C::kSlider), (TColor{120, 235, 254}));
	EXPECT_EQ(current->MainColor(C::kBodyFont), (TColor{27, 31, 30})) << "what is no colour changes nothing";
	const auto ofStep4 = Loaded(" doc_version='4'", content);
	EXPECT_EQ(ofStep4->ButtonBevalAmount().Get(), 5.0f);
	EXPECT_EQ(ofStep4->MainColor(C::kAlternateMainBack), (TColor{153, 153, 153}));
	EXPECT_EQ(ofStep4->MainColor(C::kSlider), (TColor{1, 2, 3}));
	EXPECT_THROW(Loaded(" doc_version='13'", content), TReadableException);
}

TEST_F(TSkinColorsTest, ReadsTheUsersThemeElseTheOneThatCameAlong) {
	const THeadlessFolders folders(mFolder.Directory());
	mFolder.Write("Themes/Default.xml", "<SkinColors doc_version='12'><Main_Back>1,1,1</Main_Back></SkinColors>");
	EXPECT_EQ(Start().MainColor(C::kMainBack), (TColor{1, 1, 1}));
	mFolder.Write("broken.xml", "<SkinColors><Main_Font>");
	TSkinColors& colors = *TSkinColors::Instance();
	colors.Value(C::kMain, C::kMainBack).Set({9, 9, 9});
	EXPECT_THROW(colors.Load(mFolder.Path("broken.xml")), TReadableException);
	EXPECT_EQ(colors.MainColor(C::kMainBack), (TColor{1, 1, 1})) << "a theme that cannot be read gives the default one";
	mFolder.Write("Themes/Default.xml", "<SkinColors doc_version='12'><Main_Back>7,7,7</Main_Back>");
	EXPECT_THROW(colors.Load(mFolder.Path("broken.xml")), TReadableException);
	EXPECT_EQ(colors.MainColor(C::kMainBack), (TColor{162, 162, 162}));
	EXPECT_NE(mFolder.Logged().find("Skin: Failed to load the default theme: "), std::string::npos);
	Folders::UseSystem(&folders);
	Folders::UseResources(mFolder.Directory());
	const TDirectory own = folders.PreferencesDirectory().Descend("Skin");
	own.Create(true);
	std::filesystem::copy(mFolder.PathOf("broken.xml"), own.FilePath("DefaultTheme.xml").CString());
	mFolder.Write("Themes/Default.xml", "<SkinColors doc_version='12'><Main_Back>7,7,7</Main_Back></SkinColors>");
	colors.LoadDefaultTheme();
	EXPECT_EQ(colors.MainColor(C::kMainBack), (TColor{162, 162, 162})) << "the user's own comes first";
	own.Delete();
	colors.LoadDefaultTheme();
	EXPECT_EQ(colors.MainColor(C::kMainBack), (TColor{7, 7, 7}));
	Folders::UseSystem(nullptr);
}

TEST_F(TSkinColorsTest, ASetOfTexturesThatIsNoUseBecomesAnotherOne) {
	WriteTextures("Half", "VSliderBlending.bmp");
	WriteTextures("Bad", {}, "BodyTexture.bmp");
	EXPECT_TRUE(TSkin::HasTextureSet("None"));
	EXPECT_TRUE(TSkin::HasTextureSet("Bad"));
	for (const char* name : {"Half", "Nowhere", "", ".", "../Textures/Bad"})
		EXPECT_FALSE(TSkin::HasTextureSet(name)) << name;
	TSkinColors& colors = Start();
	EXPECT_EQ(colors.TextureSet().Get(), "None");
	const auto load = [&](const char* set) {
		mFolder.Write(
		    "theme.xml", std::string("<SkinColors doc_version='12'><TextureSet>") + set + "</TextureSet></SkinColors>");
		colors.Load(mFolder.Path("theme.xml"));
		return colors.TextureSet().Get();
	};
	EXPECT_EQ(load("Half"), "None");
	EXPECT_EQ(sShown, "");
	WriteTextures("Default");
	EXPECT_EQ(load("Half"), "Default");
	EXPECT_EQ(load("Bad"), "None");
	EXPECT_TRUE(sShown.starts_with("1: The texture set 'Bad' seems incomplete or broken. Switching back to the default "
	                               "set. (Error: 'Failed to load the resource file: '"))
	    << sShown;
	colors.SetDefaults();
	EXPECT_EQ(colors.TextureSet().Get(), "Default");
}

} // namespace
