// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TGraphPort.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TStream.h"
#include "framework/graphics/surfaces/TReloadable.h"
#include "platform/headless/THeadlessFolders.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TLogFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class TGraphPortTest : public TGraphicsFixture {
protected:
	static void UseScreen(int dpi, const TString& device = "") {
		Platform().SetScreens({TScreen{{0, 0, 2000, 1000}, {0, 0, 1900, 1000}, dpi, device}});
	}

	/// Preferences and port made anew, as at a program's start.
	static void Restart() {
		TGraphPort::Destroy();
		TGraphPortPrefs::Destroy();
		TGraphPortPrefs::CreateInstance();
		TGraphPortImpl::CreateInstance();
	}
};

class TClient final : public TWindowGlueClient {};

class TPixels final : public TReloadable {
public:
	void DropPixels() override { ++mDropped; }

	int mDropped = 0;
};

TEST_F(TGraphPortTest, ScaleFollowsThePreferenceOrTheDisplay) {
	EXPECT_EQ(CurrentScale(), kScaleOf100);
	UseScreen(168);
	EXPECT_EQ(CurrentScale(), kScaleOf100); // as it was read first
	int bangs = 0;
	const auto observer = TPtr(new TForwardingStdObserver(kMainThread, [&](TObservable*, int32_t reason) {
		bangs += reason == kDidChange ? 1 : 0;
		EXPECT_EQ(CurrentScale(), reason == kDidChange ? kScaleOf200 : kScaleOf100);
	}));
	observer->Observe(&Preferences().mDisplayChanged);
	TPixels pixels;
	Port().OnDisplayChanged();
	Port().OnDisplayChanged();
	EXPECT_EQ(bangs, 1);
	EXPECT_EQ(pixels.mDropped, 2);
	Preferences().mEnableHiDPIDisplay.Set(false);
	EXPECT_EQ(CurrentScale(), kScaleOf100);
	Preferences().mUIScaleFactor.SetValue(TGraphPort::kScale200);
	EXPECT_EQ(CurrentScale(), kScaleOf200);
	EXPECT_EQ(pixels.mDropped, 4);
	UseScreen(167);
	Port().OnDisplayChanged();
	EXPECT_EQ(bangs, 1);
	Preferences().mEnableHiDPIDisplay.Set(true);
	Preferences().mUIScaleFactor.SetValue(TGraphPort::kAutomaticScale);
	EXPECT_EQ(CurrentScale(), kScaleOf100);
}

TEST_F(TGraphPortTest, ScaleIsReadFromThePreferencesFileBeforeThereAreOthers) {
	const TLogFolder folder;
	const THeadlessFolders folders(folder.Directory());
	Folders::UseSystem(&folders);
	const std::string start = "<VortelPrefs><GraphPortPrefs><UIScaleFactor>";
	const std::string end = "</UIScaleFactor></GraphPortPrefs></VortelPrefs>";
	std::string deep;
	for (int i = 0; i < 200000; ++i)
		deep += "<a>";
	const std::pair<std::string, TUiScale> files[] = {
	    {start + "200%" + end, kScaleOf200},
	    {start + "100%" + end, kScaleOf100},
	    {start + "300%" + end, kScaleOf100},
	    {"<GraphPortPrefs><UIScaleFactor>200%</UIScaleFactor></GraphPortPrefs>", kScaleOf200},
	    {"<VortelPrefs/>", kScaleOf100},
	    {start + "200%", kScaleOf100},
	    {deep, kScaleOf100}};
	Folders::Preferences();
	for (const auto& [text, scale] : files) {
		folder.Write("Preferences/V2.1.5/Config.xml", text);
		Restart();
		EXPECT_EQ(CurrentScale(), scale) << text.substr(0, 100);
	}
	EXPECT_THAT(folder.Logged(), HasSubstr("GraphPort: Failed to parse preferences file: "));

	folder.Write("Preferences/V2.1.5/Config.xml", files[0].first);
	Restart();
	Port().SetMode(TGraphPort::kWindowed);
	EXPECT_EQ(CurrentScale(), kScaleOf100); // an initialised port has its preferences
	Folders::UseSystem(nullptr);
}

TEST_F(TGraphPortTest, PreferencesKnowTheScreenAndTheirFile) {
	UseScreen(192, "Fast Graphics");
	Restart();
	EXPECT_EQ(Preferences().mWindowedModeSize.Get(), (TPointT<int>{902, 450})); // of 1900 by 1000, at 200 %
	EXPECT_TRUE(Preferences().mEnableLayeredDrawing.Get());
	UseScreen(192, "intel iris Plus");
	Restart();
	EXPECT_FALSE(Preferences().mEnableLayeredDrawing.Get());
	TStream stream;
	Preferences().SaveToStream(stream, true);
	const std::string xml(stream.Bytes().begin(), stream.Bytes().end());
	EXPECT_THAT(xml, HasSubstr("<!--DPI scaling-->"));
	EXPECT_THAT(xml, HasSubstr("<UIScaleFactor>Auto</UIScaleFactor>"));
	EXPECT_LT(xml.find("<MaxFrameRate>60<"), xml.find("<RecentFiles"));
	EXPECT_LT(xml.find("<RecentFiles"), xml.find("<WarnAboutUnsavedDocumentChanges>"));
}

int sAsked = 0;
int sTold = 0;

TEST_F(TGraphPortTest, ModeChangesAreAskedForAndTold) {
	const TLogFolder folder;
	EXPECT_FALSE(Port().IsInitialized());
	sAsked = sTold = 0;
	Port().SetModeCallbacks(
	    +[](int) { return ++sAsked != 1; }, +[](int) { ++sTold; });
	Port().SetMode(TGraphPort::kWindowed);
	EXPECT_FALSE(Port().IsInitialized());
	Port().SetMode(TGraphPort::kFullscreen); // without a window
	Port().SetMode(TGraphPort::kWindowed);
	EXPECT_TRUE(Port().IsInitialized());
	EXPECT_EQ(Port().Mode(), TGraphPort::kWindowed);
	EXPECT_EQ(sAsked, 2);
	EXPECT_EQ(sTold, 1);
	EXPECT_THAT(folder.Logged(), HasSubstr("Enforce running windowed"));

	TClient client;
	const TPtr<TWindowGlue> window = Platform().CreateWindow(client, kTopLevelWindow, nullptr);
	window->SetResizable(true);
	window->SetMinimumSize({3000, 0});
	Port().SetWindow(window);
	Port().SetMode(TGraphPort::kFullscreen);
	EXPECT_EQ(window->ClientSize(), (TPointT<int>{2400, 1500}));
	EXPECT_FALSE(window->HasNativeDecorations());
	Port().SetMode(TGraphPort::kWindowed);
	EXPECT_EQ(window->ClientSize(), (TPointT<int>{3000, 1350}));
	EXPECT_TRUE(window->HasNativeDecorations());
	Port().SetWindow(nullptr);
}

TEST_F(TGraphPortTest, PresentsWhatWasInvalidated) {
	TClient client;
	const TPtr<TWindowGlue> glue = Platform().CreateWindow(client, kTopLevelWindow, nullptr);
	auto& window = static_cast<THeadlessWindow&>(*glue);
	window.SetClientRect({0, 0}, {4, 2});
	window.Show(true, true);
	const auto row = [&](std::size_t y) {
		std::vector<uint32_t> reds;
		for (std::size_t x = 0; x < 4; ++x)
			reds.push_back(window.Pixels()[y * 4 + x] >> 16);
		return reds;
	};
	const TPtr<TSurface> surface = MakeRow({1, 2, 3, 4});
	const TRectT<int> rects[] = {{0, 0, 1, 1}, {3, 0, 9, 9}, {20, 0, 1, 1}};
	Port().InvalidateRects(window, rects);
	Port().Present(window, {0, 0}, *surface, {0, 0, 4, 1});
	EXPECT_THAT(row(0), testing::ElementsAre(1, 0, 0, 4));
	Port().Present(window, {1, 1}, *surface, {2, 0, 9, 9});
	EXPECT_THAT(row(1), testing::ElementsAre(0, 3, 4, 0));
	EXPECT_EQ(window.PresentedRects(), 3);
}

} // namespace
