// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "tests/framework/graphics/fonts/TTestFonts.h"
#include "tests/support/TLogFolder.h"

#include <filesystem>

namespace {

class TFontEngineTest : public TTestFonts {
protected:
	void SetUp() override {
		TTestFonts::SetUp();
		Folders::UseResources(mFolder.Directory());
		std::filesystem::create_directories(mFolder.PathOf("Skin/Fonts"));
		sShown.clear();
		TSystemGlobals::Instance()->SetMessageDialogFunction(
		    [](const TString&, const TString& text, TMessageKind kind) {
			    sShown += std::to_string(kind) + ": " + text.CString();
		    });
	}

	void TearDown() override {
		TFontEngine::Destroy();
		TTestFonts::TearDown();
	}

	/// Starts the engine with such a configuration.
	static TFontEngine& Start() {
		TFontEngine::CreateInstance();
		return *TFontEngine::Instance();
	}

	static inline std::string sShown;
	TLogFolder mLog;
};

TEST_F(TFontEngineTest, BuildsTheFontsOfTheConfigurationAnewForEachScale) {
	WriteFont("Skin/Fonts/a.bdf", 1, {{'a', 3, 1, {"80"}}});
	std::filesystem::copy(VORTEL_TEST_FONT, mFolder.PathOf("Skin/Fonts/b.otf"));
	std::string config = "<FontEngine>";
	for (const char* key : {"Standard", "StandardBig", "Bold", "Italic"})
		config += std::string("<") + key + "><FileName>Fonts\\b.otf</FileName><Size>11,11</Size></" + key + ">";
	mFolder.Write(
	    "Skin/Fonts/Config.xml", config + "<Monospaced><FileName>Fonts/a.bdf</FileName><Size>4,4</Size>"
	                                      "</Monospaced></FontEngine>");
	TFontEngine& engine = Start();
	EXPECT_TRUE(engine.IsConfigLoaded());
	EXPECT_EQ(Port().Font(TFontEngine::kMonospaced)->CharWidth(u'a'), 3);
	const TPtr<TFont> kept = engine.Font(TFontEngine::kStandard);
	EXPECT_EQ(kept->LineSpacing(), 13.0f);
	Preferences().mUIScaleFactor.Set(TGraphPort::kScale200);
	EXPECT_EQ(engine.Font(TFontEngine::kStandard)->LineSpacing(), 27.0f);
	EXPECT_EQ(kept->LineSpacing(), 13.0f);
	EXPECT_EQ(Port().Font(5), nullptr);
	EXPECT_EQ(engine.CreateFontFromFile("Fonts/b.otf", {20, 20}, true, false)->LineSpacing(), 24.0f);
}

TEST_F(TFontEngineTest, FallsBackOnTheFontsOfTheSystem) {
	mSystemFonts["DejaVu Sans"] = VORTEL_TEST_FONT;
	Start();
	EXPECT_NE(mLog.Logged().find("does not exist. Using system default fonts..."), std::string::npos);
	EXPECT_EQ(Port().Font(TFontEngine::kStandard)->Height(), 11.0f);
	EXPECT_EQ(Port().Font(TFontEngine::kStandardBig)->Height(), 12.0f);
	EXPECT_FALSE(Port().Font(TFontEngine::kBold)->IsBold());
	EXPECT_EQ(sShown, "");
}

TEST_F(TFontEngineTest, ShowsThatTheConfigurationIsBrokenAndGoesOn) {
	mFolder.Write("Skin/Fonts/Config.xml", "<FontEngine><Standard>");
	EXPECT_FALSE(Start().IsConfigLoaded());
	EXPECT_NE(
	    sShown.find(
	        "2: Failed to load the font preferences file. Maybe the config file '" +
	        mFolder.PathOf("Skin/Fonts/Config.xml") + "' is broken.\n\nPlease reinstall the application..."),
	    std::string::npos)
	    << sShown;
	EXPECT_NE(
	    mLog.Logged().find("Failed to resolve system default fonts: 'Failed to resolve the font file"),
	    std::string::npos);
	EXPECT_EQ(Port().Font(TFontEngine::kStandard), nullptr);
	const auto surface = MakeSurface(8, 8);
	EXPECT_EQ(surface->TextWidth("text", 0), 0) << "without fonts there is no text, and no harm";
	surface->DrawText({0, 0}, "text", {255, 255, 255}, 0);
}

} // namespace
