// SPDX-License-Identifier: GPL-3.0-or-later
// What holds on every platform, said once and tried on each.

#include "tests/platform/TTestSystem.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr TPointT<int> kCorner{100, 80};
constexpr TPointT<int> kSize{60, 40};
constexpr TPointT<int> kInside{110, 95}; // 10,15 in the window

class TPlatformTest : public testing::TestWithParam<TMakeSystem> {
protected:
	void SetUp() override {
		mpSystem = GetParam()();
		if (!mpSystem)
			GTEST_SKIP() << "Xvfb is not installed";
	}

	TTestSystem& System() { return *mpSystem; }

	TPlatform& Platform() { return mpSystem->Platform(); }

	/// With the keys, where its kind has any; the journal begins behind its opening.
	TPtr<TWindowGlue>
	Open(TWindowJournal& journal, int kind, TPointT<int> corner = kCorner, TWindowGlue* parent = nullptr) {
		const TPtr<TWindowGlue> window = Platform().CreateWindow(journal, kind, parent);
		window->SetClientRect(corner, kSize);
		window->Show(true, true);
		mpSystem->Settle();
		journal.Take();
		return window;
	}

	TPtr<TWindowGlue> OpenEditor(TWindowJournal& journal, bool wantsKeys) {
		const TPtr<TWindowGlue> window = Platform().CreateWindow(journal, kEmbeddedWindow, nullptr);
		window->SetClientRect({}, kSize);
		window->Show(true, true);
		window->Embed(mpSystem->OpenHost(kCorner), wantsKeys);
		mpSystem->Settle();
		journal.Take();
		return window;
	}

	static void Fill(TWindowGlue& window, uint32_t color, std::span<const TRectT<int>> rects) {
		const TPointT<int> size = window.ClientSize();
		const std::vector<uint32_t> pixels(static_cast<std::size_t>(size.mX * size.mY), color);
		window.Present({reinterpret_cast<const std::byte*>(pixels.data()), size.mX * 4, size}, rects);
	}

	static void Fill(TWindowGlue& window, uint32_t color, const TRectT<int>& rect) { Fill(window, color, {&rect, 1}); }

	std::unique_ptr<TTestSystem> mpSystem;
};

TEST_P(TPlatformTest, ShowsThePixelsPresentedAndNoOthers) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	Fill(*window, 0x102030, {0, 0, 60, 40});
	const TRectT<int> parts[]{{5, 5, 10, 10}, {50, 30, 100, 100}};
	Fill(*window, 0xFFC0A080, parts);
	System().Settle();
	for (const auto& [point, color] : std::map<TPointT<int>, uint32_t>{
	         {{0, 0}, 0x102030}, {{5, 5}, 0xC0A080}, {{14, 14}, 0xC0A080}, {{15, 15}, 0x102030}, {{59, 39}, 0xC0A080}})
		EXPECT_EQ(System().PixelAt(*window, point), color) << point.mX << "," << point.mY;
}

TEST_P(TPlatformTest, PicturesLargerThanOnePieceArriveWhole) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow, {0, 0});
	constexpr TPointT<int> kLarge{1200, 1000};
	window->SetClientSize(kLarge);
	std::vector<uint32_t> pixels;
	for (int y = 0; y < kLarge.mY; ++y)
		for (int x = 0; x < kLarge.mX; ++x)
			pixels.push_back(static_cast<uint32_t>(x * 1000 + y));
	for (int round = 0; round < 2; ++round) {
		const TRectT<int> all{0, 0, kLarge.mX, kLarge.mY};
		window->Present({reinterpret_cast<const std::byte*>(pixels.data()), kLarge.mX * 4, kLarge}, {&all, 1});
	}
	System().Settle();
	for (const TPointT<int> point : {TPointT<int>{0, 0}, {1199, 999}, {600, 436}, {600, 437}, {3, 874}})
		EXPECT_EQ(System().PixelAt(*window, point), static_cast<uint32_t>(point.mX * 1000 + point.mY));
}

TEST_P(TPlatformTest, TellsOfSizeAndPlaceFromInsideTheCallAndAsksForNewParts) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	window->SetClientRect({30, 20}, {80, 50});
	EXPECT_EQ(window->Position(), (TPointT<int>{30, 20}));
	EXPECT_EQ(window->ClientSize(), (TPointT<int>{80, 50}));
	EXPECT_EQ(window->ClientToScreen({5, 6}), (TPointT<int>{35, 26}));
	const auto lines = journal.Take();
	EXPECT_THAT(lines, testing::Contains("size 80,50"));
	EXPECT_THAT(lines, testing::Contains("place 30,20"));
	System().Settle();
	EXPECT_EQ(journal.mExposed.Right(), 80);
	window->SetClientRect({30, 20}, {80, 50});
	System().Settle();
	EXPECT_THAT(journal.Take("size"), IsEmpty());
}

TEST_P(TPlatformTest, PointerEventsGoToTheWindowUnderIt) {
	TWindowJournal below;
	TWindowJournal above;
	const auto first = Open(below, kTopLevelWindow);
	const auto second = Open(above, kTopLevelWindow, {140, 80});
	System().MovePointer(kInside);
	System().Settle();
	EXPECT_THAT(below.Take("move"), ElementsAre("move 10,15"));
	EXPECT_EQ(Platform().WindowUnderPointer(), &below);
	EXPECT_EQ(Platform().Cursor().MousePosition(), kInside);
	System().MovePointer({150, 90});
	System().Settle();
	EXPECT_THAT(above.Take("move"), ElementsAre("move 10,10"));
	EXPECT_THAT(below.Take("move"), IsEmpty());
	System().MovePointer({500, 500});
	System().Settle();
	EXPECT_THAT(above.Take("move"), ElementsAre("move -1,-1"));
	EXPECT_EQ(Platform().WindowUnderPointer(), nullptr);
}

TEST_P(TPlatformTest, APressHoldsThePointerUntilItsRelease) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	System().MovePointer(kInside);
	System().Button(TMouseButton::kRight, true);
	System().Settle();
	EXPECT_TRUE(Platform().Cursor().IsButtonDown(TMouseButton::kRight));
	System().MovePointer({600, 10});
	System().Button(TMouseButton::kRight, false);
	System().Settle();
	EXPECT_FALSE(Platform().Cursor().IsButtonDown(TMouseButton::kRight));
	auto lines = journal.Take();
	std::erase_if(lines, [](const std::string& line) { return line.find("key") != line.npos; });
	EXPECT_EQ(lines[0], "move 10,15");
	EXPECT_EQ(lines[1], "press 1 at 10,15 count 1");
	EXPECT_EQ(lines[2], "move 500,-70");
	EXPECT_EQ(lines[3], "release 1 at 500,-70 count 1");
}

TEST_P(TPlatformTest, CountsClicksAndWheelNotches) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	System().MovePointer(kInside);
	for (int i = 0; i < 3; ++i)
		System().Click(TMouseButton::kLeft);
	System().Settle();
	EXPECT_THAT(
	    journal.Take("press"),
	    ElementsAre("press 0 at 10,15 count 1", "press 0 at 10,15 count 2", "press 0 at 10,15 count 3"));
	System().Wheel({0, 1});
	System().Wheel({0, -1});
	System().Wheel({1, 0});
	System().Wheel({-1, 0});
	System().Settle();
	EXPECT_THAT(journal.Take("wheel"), ElementsAre("wheel 0,1", "wheel 0,-1", "wheel 1,0", "wheel -1,0"));
}

TEST_P(TPlatformTest, KeysCarryCodeModifiersAndCharacter) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	ASSERT_TRUE(window->IsKey());
	System().Key(kKeyLeftShift, true);
	System().Key(kKeyA, true);
	System().Settle();
	EXPECT_THAT(journal.Take(), ElementsAre("down 105 modifiers 1 character 0", "down 11 modifiers 1 character 65"));
	TKeyFlags held;
	held.set(kKeyLeftShift).set(kKeyA);
	EXPECT_EQ(Platform().Keyboard().HeldKeys(), held);
	EXPECT_EQ(Platform().Keyboard().Modifiers(), kShiftModifier);
	System().Key(kKeyA, false);
	System().Key(kKeyLeftShift, false);
	System().Settle();
	EXPECT_THAT(journal.Take(), ElementsAre("up 11 modifiers 1 character 0", "up 105 modifiers 0 character 0"));
	EXPECT_TRUE(Platform().Keyboard().HeldKeys().none());
	System().Key(kKeyLeftCommand, true);
	System().Type(kKeyA);
	System().Key(kKeyLeftCommand, false);
	System().Type(kKeyReturn);
	System().Settle();
	EXPECT_THAT(
	    journal.Take("down"),
	    ElementsAre(
	        "down 106 modifiers 2 character 0", "down 11 modifiers 2 character 0", "down 104 modifiers 0 character 0"));
	EXPECT_EQ(Platform().Keyboard().CharacterOf(kKeyA + 16, true), u'q');
	EXPECT_EQ(Platform().Keyboard().TextCharacterOf(kKey0 + 2, kShiftModifier), u'@');
	EXPECT_EQ(Platform().Keyboard().TextCharacterOf(kKeyA, kCommandModifier), 0);
}

TEST_P(TPlatformTest, APopupHasKeysAndOutsidePressesAndGivesThemBack) {
	TWindowJournal owner;
	TWindowJournal popup;
	const auto window = Open(owner, kTopLevelWindow);
	const auto menu = Open(popup, kPopupWindow, {140, 100}, window.Get());
	EXPECT_TRUE(menu->IsKey());
	EXPECT_FALSE(window->IsKey());
	System().Type(kKeyA);
	System().MovePointer({145, 105});
	System().Click(TMouseButton::kLeft);
	System().Settle();
	EXPECT_EQ(popup.Take("down").size(), 1u);
	owner.Take();
	System().MovePointer({600, 500});
	System().Click(TMouseButton::kLeft);
	System().Settle();
	EXPECT_THAT(owner.Take("press"), ElementsAre("press 0 at 500,420 count 1"));
	menu->Close();
	System().Settle();
	EXPECT_TRUE(window->IsKey());
	owner.Take();
	System().Type(kKeyA);
	System().Click(TMouseButton::kLeft);
	System().Settle();
	EXPECT_EQ(owner.Take("down").size(), 1u);
	EXPECT_THAT(popup.Take("press"), IsEmpty());
}

TEST_P(TPlatformTest, AToolTipTakesNothing) {
	TWindowJournal owner;
	TWindowJournal tip;
	const auto window = Open(owner, kTopLevelWindow);
	const auto toolTip = Open(tip, kToolTipWindow, kCorner, window.Get());
	System().MovePointer(kInside);
	System().Click(TMouseButton::kLeft);
	System().Type(kKeyA);
	System().Settle();
	EXPECT_TRUE(window->IsKey());
	EXPECT_THAT(tip.Take(), IsEmpty());
	EXPECT_EQ(owner.Take("press").size(), 1u);
}

TEST_P(TPlatformTest, AnEditorFollowsItsHost) {
	TWindowJournal journal;
	const auto window = OpenEditor(journal, false);
	EXPECT_TRUE(window->IsVisible());
	EXPECT_EQ(window->Position(), kCorner);
	Fill(*window, 0x203040, {0, 0, 60, 40});
	EXPECT_EQ(System().PixelAt(*window, {20, 20}), 0x203040u);
	System().MoveHost({300, 200});
	System().Settle();
	EXPECT_THAT(journal.Take("place"), ElementsAre("place 300,200"));
	System().ShowHost(false);
	System().Settle();
	EXPECT_THAT(journal.Take("hidden"), ElementsAre("hidden"));
	EXPECT_FALSE(window->IsVisible());
	System().ShowHost(true);
	System().Settle();
	EXPECT_THAT(journal.Take("visible"), ElementsAre("visible"));
	window->Resize({90, 70});
	EXPECT_THAT(journal.Take("size"), ElementsAre("size 90,70"));
}

TEST_P(TPlatformTest, AFieldInAnEditorTakesTheKeysAndGivesThemBack) {
	TWindowJournal editor;
	TWindowJournal field;
	const auto window = OpenEditor(editor, true);
	const auto inner = Open(field, kEmbeddedWindow, {120, 90}, window.Get());
	EXPECT_EQ(inner->Position(), (TPointT<int>{120, 90}));
	EXPECT_TRUE(inner->IsKey());
	System().Type(kKeyA);
	System().MovePointer({125, 95});
	System().Click(TMouseButton::kLeft);
	System().Settle();
	EXPECT_EQ(field.Take("down").size(), 1u);
	EXPECT_THAT(editor.Take("press"), IsEmpty());
	System().MoveHost({200, 200});
	System().Settle();
	EXPECT_EQ(inner->Position(), (TPointT<int>{220, 210}));
	inner->Close();
	System().Settle();
	EXPECT_FALSE(inner->IsOpen());
	System().Type(kKeyA);
	System().Settle();
	EXPECT_THAT(field.Take("down"), IsEmpty());
}

TEST_P(TPlatformTest, AHostThatGoesFirstIsReportedOnce) {
	TWindowJournal editor;
	TWindowJournal popup;
	const auto window = OpenEditor(editor, false);
	const auto menu = Open(popup, kPopupWindow, {140, 100}, window.Get());
	System().DestroyHost();
	System().Settle();
	EXPECT_THAT(editor.Take("lost:"), ElementsAre("lost: The window was destroyed from outside."));
	EXPECT_FALSE(window->IsOpen());
	Fill(*window, 0, {0, 0, 10, 10});
	window->SetClientSize({10, 10});
	window->Close();
	menu->Close();
	System().Settle();
	EXPECT_THAT(editor.Take(), IsEmpty());
	const auto again = Open(editor, kTopLevelWindow);
	EXPECT_TRUE(again->IsVisible());
}

TEST_P(TPlatformTest, WindowsMayCloseInsideTheirOwnEvents) {
	TWindowJournal journal;
	auto window = Open(journal, kTopLevelWindow);
	journal.mOnMouse = [&] { window->Close(); };
	System().MovePointer(kInside);
	System().Click(TMouseButton::kLeft);
	System().Settle();
	EXPECT_FALSE(window->IsOpen());
	window = nullptr;
	System().Settle();
	EXPECT_EQ(Platform().EventDescriptor(), -1) << "nothing is left open";
	EXPECT_EQ(journal.Take("move").size(), 1u);
}

TEST_P(TPlatformTest, TheClipboardKeepsEveryCharacter) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	EXPECT_FALSE(Platform().Clipboard().HasText());
	EXPECT_EQ(Platform().Clipboard().Text(), TString());
	const TString text(std::u16string_view(u"Zeile\n\u00e9\u20ac\U0001F3B5"));
	Platform().Clipboard().SetText(text);
	Platform().Clipboard().SetPrimaryText("selected");
	System().Settle();
	EXPECT_TRUE(Platform().Clipboard().HasText());
	EXPECT_EQ(Platform().Clipboard().Text(), text);
	EXPECT_EQ(Platform().Clipboard().PrimaryText(), "selected");
}

TEST_P(TPlatformTest, TheCursorIsRememberedAndThePointerWarps) {
	TWindowJournal journal;
	const auto window = Open(journal, kTopLevelWindow);
	TCursorImpl& cursor = Platform().Cursor();
	const std::vector<uint32_t> pixels(16 * 16, 0x80FF8040);
	EXPECT_FALSE(cursor.IsDefined(3));
	cursor.Define(3, {{16, 16}, {4, 4}, pixels});
	cursor.SetCurrent(3);
	EXPECT_TRUE(cursor.IsDefined(3));
	EXPECT_EQ(cursor.Current(), 3);
	System().MovePointer(kInside);
	System().Button(TMouseButton::kLeft, true);
	System().Settle();
	journal.Take();
	cursor.SetMousePosition({120, 100});
	EXPECT_EQ(cursor.MousePosition(), (TPointT<int>{120, 100}));
	System().Settle();
	EXPECT_THAT(journal.Take("move"), ElementsAre("move 20,20"));
	System().Button(TMouseButton::kLeft, false);
	cursor.ForgetAll();
	EXPECT_FALSE(cursor.IsDefined(3));
}

TEST_P(TPlatformTest, CentersOverTheParentInsideTheScreen) {
	TWindowJournal owner;
	TWindowJournal dialog;
	const auto window = Open(owner, kTopLevelWindow, {10, 10});
	const auto inner = Platform().CreateWindow(dialog, kModalDialogWindow, window.Get());
	inner->SetClientSize({200, 30});
	inner->CenterInParent();
	EXPECT_EQ(inner->Position(), (TPointT<int>{0, 15}));
	inner->CenterOnScreen();
	const TRectT<int> area = Platform().Screens().At({10, 10}).mWorkArea;
	EXPECT_EQ(inner->Position(), (TPointT<int>{(area.mWidth - 200) / 2, (area.mHeight - 30) / 2}));
	EXPECT_EQ(Platform().Screens().At({-50, 99999}), Platform().Screens().All()[0]);
}

INSTANTIATE_TEST_SUITE_P(Headless, TPlatformTest, testing::Values(&MakeHeadlessSystem));
INSTANTIATE_TEST_SUITE_P(X11, TPlatformTest, testing::Values(&MakeX11System));

} // namespace
