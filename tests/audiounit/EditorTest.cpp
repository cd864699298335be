// SPDX-License-Identifier: GPL-3.0-or-later
// The view, as hosts find, place, close and lose it, on a system in memory.
#include "framework/foundation/files/Folders.h"
#include "platform/audiounit/AUView.h"
#include "platform/headless/THeadlessPlatform.h"
#include "plugin/EditorServices.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"
#include "tests/audiounit/TTestSession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <thread>

namespace {

constexpr uint64_t kHostWindow = 1; // any will do
constexpr AUViewSize kSize{962, 595};

class AudioUnitEditorTest : public testing::Test {
protected:
	static void SetUpTestSuite() {
		EditorServices::SetPlatformFactory([]() -> TPlatform* { return new THeadlessPlatform; });
	}

	void SetUp() override { Folders::UseResources(TDirectory(VORTEL_TEST_RESOURCES)); }

	AUCocoaUIBase* NewCreator() {
		AudioUnitCocoaViewInfo info{};
		EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_CocoaUI, info), noErr);
		const auto bundle = AURef<const AUString>::Adopt(info.mCocoaAUViewBundleLocation);
		const auto name = AURef<const AUString>::Adopt(info.mCocoaAUViewClass);
		EXPECT_EQ(bundle->Units().substr(0, 8), u"file:///");
		return AUCocoaUIBase::TClass::MakeNamed(name->Units());
	}

	/// The factory is gone when the view is there.
	AURef<AUView> NewView() {
		const auto creator = AURef<AUCocoaUIBase>::Adopt(NewCreator());
		return AURef<AUView>::Adopt(creator->uiViewForAudioUnit(mpUnit->Unit(), {}));
	}

	TAudioUnitPluginShell& Shell() { return *TAudioUnitPluginShell::Find(mpUnit->Unit()); }

	template <class TFunction>
	void InStorage(TFunction function) {
		const TGlobalStorageScope storage(Shell().StorageId());
		const TThreadManager::THostScope role(kMainThread);
		function();
	}

	/// How often parts of the instance's one window were shown; -1 without one.
	int Presented() {
		int presented = -1;
		InStorage([&] {
			const auto& windows = static_cast<THeadlessPlatform&>(*TPlatform::Instance()).Windows();
			EXPECT_LE(windows.size(), 1u);
			if (!windows.empty())
				presented = windows[0]->PresentedRects();
		});
		return presented;
	}

	std::size_t Timers() { return TTestUnit::System().Timers().size(); }

	std::unique_ptr<TTestUnit> mpUnit = std::make_unique<TTestUnit>();
};

TEST_F(AudioUnitEditorTest, OpensInAWindowAndClosesWithoutOne) {
	const auto creator = AURef<AUCocoaUIBase>::Adopt(NewCreator());
	ASSERT_TRUE(creator);
	EXPECT_EQ(creator->interfaceVersion(), 0u);
	EXPECT_EQ(creator->uiViewForAudioUnit(nullptr, {}), nullptr);
	EXPECT_EQ(AUCocoaUIBase::TClass::MakeNamed(u"another"), nullptr);
	const auto view = AURef<AUView>::Adopt(creator->uiViewForAudioUnit(mpUnit->Unit(), {10, 10}));
	ASSERT_TRUE(view);
	EXPECT_EQ(view->Size(), kSize);
	EXPECT_EQ(view->FixedSize(), kSize);
	for (int round = 0; round < 3; ++round) {
		view->MoveToWindow(kHostWindow);
		view->MoveToWindow(kHostWindow + 1);
		EXPECT_EQ(Timers(), 2u);
		for (int tick = 0; tick < 1000 && Presented() == 0; ++tick) {
			TTestUnit::System().Tick();
			std::this_thread::sleep_for(std::chrono::milliseconds(1)); // until a frame is due
		}
		EXPECT_GT(Presented(), 0);
		view->MoveToWindow(0);
		EXPECT_EQ(Timers(), 1u);
		EXPECT_EQ(Presented(), -1);
		view->MoveToWindow(0);
	}
}

TEST_F(AudioUnitEditorTest, OneViewShowsTheEditorAndEachMayGoWhenItLikes) {
	auto first = NewView();
	first->MoveToWindow(kHostWindow);
	auto second = NewView();
	EXPECT_EQ(Presented(), -1) << "a new view closes the one before";
	second->MoveToWindow(kHostWindow);
	first->MoveToWindow(kHostWindow);
	EXPECT_GE(Presented(), 0);
	EXPECT_EQ(Timers(), 2u);
	second = {}; // the one that shows nothing
	EXPECT_GE(Presented(), 0);
	first = {};
	EXPECT_EQ(Presented(), -1);
	EXPECT_EQ(Timers(), 1u);

	// The component goes first, with views that are open, closed, and held on to.
	first = NewView();
	second = NewView();
	second->MoveToWindow(kHostWindow);
	mpUnit = nullptr;
	EXPECT_EQ(Timers(), 0u);
	for (const auto& view : {first, second}) {
		view->MoveToWindow(0);
		view->MoveToWindow(kHostWindow);
	}
	EXPECT_EQ(Timers(), 0u);
}

TEST_F(AudioUnitEditorTest, SizesThatTheEditorAsksForAreTheViews) {
	const auto view = NewView();
	const auto request = [this] {
		bool isAccepted = false;
		InStorage([&] { isAccepted = Shell().Gui()->RequestWindowResize({962, 595}, {1000, 700}); });
		return isAccepted;
	};
	EXPECT_FALSE(request()) << "it is in no window";
	std::optional<AUViewSize> told;
	view->SetOnSizeChanged([&](AUViewSize size) { told = size; });
	view->MoveToWindow(kHostWindow);
	EXPECT_TRUE(request());
	EXPECT_EQ(told, (AUViewSize{1000, 700}));
	EXPECT_EQ(view->FixedSize(), (AUViewSize{1000, 700}));
	InStorage([] {
		const auto& windows = static_cast<THeadlessPlatform&>(*TPlatform::Instance()).Windows();
		EXPECT_EQ(windows[0]->ClientSize(), (TPointT<int>{1000, 700}));
	});
}

} // namespace
