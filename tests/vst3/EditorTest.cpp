// SPDX-License-Identifier: GPL-3.0-or-later
// The editor in a host's window: opened, ticked, closed and left in every order that hosts are known to choose.

#include "tests/support/THostWindow.h"
#include "tests/support/TXvfb.h"
#include "tests/vst3/TTestHost.h"

#include <gtest/gtest.h>
#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/gui/iplugviewcontentscalesupport.h>
#include <poll.h>

#include <chrono>
#include <cstdlib>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <thread>
#include <vector>

using namespace Steinberg;

namespace {

constexpr uint16_t kWidth = THostWindow::kWidth;
constexpr uint16_t kHeight = THostWindow::kHeight;

const TUID kContentScaleId = INLINE_UID(0x65ED9690, 0x8AC44525, 0x8AADEF7A, 0x72EA703F);

/// The frame around a view, with the run loop that it lends.
class THostFrame final : public IPlugFrame, public Linux::IRunLoop {
public:
	tresult PLUGIN_API resizeView(IPlugView* view, ViewRect* size) override {
		return mGrantsSizes ? view->onSize(size) : tresult{kResultFalse};
	}

	tresult PLUGIN_API registerTimer(Linux::ITimerHandler* handler, Linux::TimerInterval) override {
		mTimers.insert(handler);
		return kResultOk;
	}

	tresult PLUGIN_API unregisterTimer(Linux::ITimerHandler* handler) override {
		return mTimers.erase(handler) ? kResultOk : kResultFalse;
	}

	tresult PLUGIN_API registerEventHandler(Linux::IEventHandler* handler, Linux::FileDescriptor descriptor) override {
		mDescriptors[handler] = descriptor;
		return kResultOk;
	}

	tresult PLUGIN_API unregisterEventHandler(Linux::IEventHandler* handler) override {
		return mDescriptors.erase(handler) ? kResultOk : kResultFalse;
	}

	tresult PLUGIN_API queryInterface(const TUID id, void** object) override {
		*object = nullptr;
		if (FUnknownPrivate::iidEqual(id, IPlugFrame_iid) || FUnknownPrivate::iidEqual(id, FUnknown_iid))
			*object = static_cast<IPlugFrame*>(this);
		else if (FUnknownPrivate::iidEqual(id, Linux::IRunLoop_iid))
			*object = static_cast<Linux::IRunLoop*>(this);
		return *object ? kResultOk : kNoInterface;
	}

	uint32 PLUGIN_API addRef() override { return 1; }

	uint32 PLUGIN_API release() override { return 1; }

	/// As often as asked, as far apart as a host's clock has it.
	void Tick(int count = 3) {
		for (; count > 0; --count) {
			std::this_thread::sleep_for(std::chrono::milliseconds(10));
			for (Linux::ITimerHandler* timer : std::set<Linux::ITimerHandler*>(mTimers))
				timer->onTimer();
		}
	}

	/// Calls the handlers at whose descriptors something is to be read within a while. False if there is nothing.
	bool ServeDescriptors() {
		bool isServed = false;
		for (const auto& [handler, descriptor] : std::map<Linux::IEventHandler*, int>(mDescriptors)) {
			pollfd poll{descriptor, POLLIN, 0};
			if (::poll(&poll, 1, 200) < 1)
				continue;
			handler->onFDIsSet(descriptor);
			isServed = true;
		}
		return isServed;
	}

	std::size_t NumberOfTimers() const { return mTimers.size(); }

	std::size_t NumberOfDescriptors() const { return mDescriptors.size(); }

	bool mGrantsSizes = false;

private:
	std::set<Linux::ITimerHandler*> mTimers;
	std::map<Linux::IEventHandler*, int> mDescriptors;
};

class Vst3EditorTest : public testing::Test {
protected:
	void SetUp() override {
		if (!mServer.IsRunning())
			GTEST_SKIP() << "Xvfb is not installed";
		mpPlugin = std::make_unique<TTestPlugin>(mModule);
	}

	IPtr<IPlugView> CreateView() { return owned(mpPlugin->mpController->createView(Vst::ViewType::kEditor)); }

	static tresult Attach(IPlugView& view, THostWindow& window) {
		return view.attached(window.Parent(), kPlatformTypeX11EmbedWindowID);
	}

	TXvfb mServer{"2000x700x24"}; // room for two editors
	TVst3Module mModule;
	std::unique_ptr<TTestPlugin> mpPlugin;
};

TEST_F(Vst3EditorTest, OpensDrawsAndLeavesNothingBehind) {
	const IPtr<IPlugView> view = CreateView();
	ASSERT_TRUE(view);
	EXPECT_EQ(view->isPlatformTypeSupported(kPlatformTypeX11EmbedWindowID), kResultTrue);
	EXPECT_EQ(view->isPlatformTypeSupported("HWND"), kResultFalse);
	ViewRect size{};
	EXPECT_EQ(view->getSize(&size), kResultOk);
	EXPECT_EQ(size.getWidth(), kWidth);
	EXPECT_EQ(size.getHeight(), kHeight);

	THostWindow window;
	THostFrame frame;
	for (int round = 0; round < 3; ++round) {
		view->setFrame(&frame);
		ASSERT_EQ(Attach(*view, window), kResultOk);
		frame.Tick();
		EXPECT_GT(window.NumberOfColors(), 100u);
		EXPECT_EQ(view->removed(), kResultOk);
		EXPECT_EQ(frame.NumberOfTimers(), 0u);
		EXPECT_EQ(frame.NumberOfDescriptors(), 0u);
		EXPECT_EQ(window.NumberOfChildren(), 0);
		view->setFrame(nullptr);
	}
	EXPECT_EQ(view->removed(), kResultFalse);
}

TEST_F(Vst3EditorTest, TakesTheOrdersOfHosts) {
	THostWindow window;
	THostFrame frame;
	const IPtr<IPlugView> view = CreateView();
	view->setFrame(&frame);
	EXPECT_EQ(view->attached(nullptr, kPlatformTypeX11EmbedWindowID), kResultOk) << "no parent: no editor, no error";
	EXPECT_EQ(view->attached(window.Parent(), nullptr), kResultFalse);

	// Attached again without having been removed, as on each map of a socket.
	EXPECT_EQ(Attach(*view, window), kResultOk);
	EXPECT_EQ(Attach(*view, window), kResultOk);
	frame.Tick();
	EXPECT_EQ(window.NumberOfChildren(), 1);
	EXPECT_EQ(frame.NumberOfTimers(), 1u);

	// The frame goes first.
	view->setFrame(nullptr);
	EXPECT_EQ(view->removed(), kResultOk);
	EXPECT_EQ(frame.NumberOfTimers(), 0u);

	// The parent goes first, with the editor in it.
	view->setFrame(&frame);
	EXPECT_EQ(Attach(*view, window), kResultOk);
	frame.Tick();
	window.Destroy();
	frame.Tick(5);
	EXPECT_EQ(view->removed(), kResultOk);
	EXPECT_EQ(Attach(*view, window), kResultFalse) << "there is no such window any more";
}

TEST_F(Vst3EditorTest, ShowsTheProgramThatAStateHasChosen) {
	std::string bank;
	for (const uint8 byte : MakeTestState(3))
		bank += static_cast<char>(byte);
	const auto stateWith = [&](int program) {
		const std::string element = "<ActiveProgramIndex>";
		std::string text = bank.substr(sizeof(int32));
		const std::size_t at = text.find(element) + element.size();
		text.replace(at, text.find('<', at) - at, std::to_string(program));
		const auto length = static_cast<int32>(text.size());
		text.insert(0, reinterpret_cast<const char*>(&length), sizeof(length));
		return TTestState(text.begin(), text.end());
	};
	ASSERT_NE(bank.find("<ActiveProgramIndex>"), std::string::npos);

	THostWindow window;
	THostFrame frame;
	const auto pictureOf = [&](IPlugView& view) {
		view.setFrame(&frame);
		EXPECT_EQ(Attach(view, window), kResultOk);
		frame.Tick(5);
		const std::vector<uint32_t> picture = window.Picture();
		EXPECT_EQ(view.removed(), kResultOk);
		return picture;
	};
	ASSERT_EQ(mpPlugin->Load(stateWith(1)), kResultOk);
	const std::vector<uint32_t> expected = pictureOf(*CreateView());
	ASSERT_EQ(mpPlugin->Load(stateWith(0)), kResultOk);
	ASSERT_NE(pictureOf(*CreateView()), expected);

	mpPlugin = std::make_unique<TTestPlugin>(mModule);
	{
		const IPtr<IPlugView> early = CreateView();
		ViewRect size{};
		EXPECT_EQ(early->getSize(&size), kResultOk);
		ASSERT_EQ(mpPlugin->Load(stateWith(1)), kResultOk);
		EXPECT_EQ(pictureOf(*early), expected) << "the view was asked for its size before";
	}
	{
		const IPtr<IPlugView> view = CreateView();
		ASSERT_EQ(mpPlugin->Load(stateWith(0)), kResultOk);
		view->setFrame(&frame);
		ASSERT_EQ(Attach(*view, window), kResultOk);
		frame.Tick();
		ASSERT_EQ(mpPlugin->Load(stateWith(1)), kResultOk);
		frame.Tick(5);
		EXPECT_EQ(window.Picture(), expected) << "the view was open";
		EXPECT_EQ(view->removed(), kResultOk);
	}
}

TEST_F(Vst3EditorTest, FollowsTheScaleOfTheHostAndNoOtherSizeOfIts) {
	THostWindow window;
	THostFrame frame;
	frame.mGrantsSizes = true;
	const IPtr<IPlugView> view = CreateView();
	const auto scale = AskFor<IPlugViewContentScaleSupport>(view, kContentScaleId);
	ASSERT_TRUE(scale);
	const auto widthNow = [&] {
		ViewRect size{};
		view->getSize(&size);
		return size.getWidth();
	};
	EXPECT_EQ(scale->setContentScaleFactor(0.0f), kInvalidArgument);
	EXPECT_EQ(scale->setContentScaleFactor(std::numeric_limits<float>::quiet_NaN()), kInvalidArgument);
	EXPECT_EQ(scale->setContentScaleFactor(1.7f), kResultOk);
	EXPECT_EQ(widthNow(), kWidth);
	EXPECT_EQ(scale->setContentScaleFactor(2.0f), kResultOk);
	EXPECT_EQ(widthNow(), 2 * kWidth);
	view->setFrame(&frame);
	ASSERT_EQ(Attach(*view, window), kResultOk);
	frame.Tick();
	EXPECT_EQ(widthNow(), 2 * kWidth);
	EXPECT_EQ(scale->setContentScaleFactor(1.0f), kResultOk);
	frame.Tick();
	EXPECT_EQ(widthNow(), kWidth);
	for (ViewRect size : {ViewRect(0, 0, 2000, 2000), ViewRect(0, 0, 10, 10), ViewRect(5, 5, -5, -5)}) {
		EXPECT_EQ(view->onSize(&size), kResultOk);
		EXPECT_EQ(widthNow(), kWidth);
	}
	EXPECT_GT(window.NumberOfColors(), 100u);
	EXPECT_EQ(view->removed(), kResultOk);
}

TEST_F(Vst3EditorTest, ComesEarlyWhenTheDisplayHasSentSomething) {
	THostWindow window;
	THostFrame frame;
	const IPtr<IPlugView> view = CreateView();
	view->setFrame(&frame);
	ASSERT_EQ(Attach(*view, window), kResultOk);
	EXPECT_EQ(frame.NumberOfDescriptors(), 1u);
	frame.Tick(5);
	window.LoseContents();
	std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until a frame is due
	ASSERT_LE(window.NumberOfColors(), 100u);
	EXPECT_TRUE(frame.ServeDescriptors());
	EXPECT_GT(window.NumberOfColors(), 100u) << "no timer has run since";
	view->setFrame(nullptr);
	EXPECT_EQ(view->removed(), kResultOk);
	EXPECT_EQ(frame.NumberOfDescriptors(), 0u);
}

TEST_F(Vst3EditorTest, OutlivesItsInstanceAndSharesTheProcess) {
	THostWindow window;
	THostFrame frame;
	const IPtr<IPlugView> view = CreateView();
	view->setFrame(&frame);
	ASSERT_EQ(Attach(*view, window), kResultOk);

	auto other = std::make_unique<TTestPlugin>(mModule);
	THostWindow otherWindow(kWidth);
	THostFrame otherFrame;
	const IPtr<IPlugView> otherView = owned(other->mpController->createView(Vst::ViewType::kEditor));
	otherView->setFrame(&otherFrame);
	ASSERT_EQ(Attach(*otherView, otherWindow), kResultOk);
	frame.Tick();
	otherFrame.Tick();
	EXPECT_GT(window.NumberOfColors(), 100u);
	EXPECT_GT(otherWindow.NumberOfColors(), 100u);

	// Terminated while the view is open: that closes it.
	other.reset();
	EXPECT_EQ(otherWindow.NumberOfChildren(), 0);
	EXPECT_EQ(otherView->removed(), kResultFalse);
	frame.Tick();
	EXPECT_EQ(view->removed(), kResultOk);
}

TEST_F(Vst3EditorTest, WithoutADisplayTheEditorStaysClosed) {
	THostWindow window;
	const IPtr<IPlugView> view = CreateView();
	setenv("DISPLAY", ":4711", 1);
	EXPECT_EQ(Attach(*view, window), kResultFalse);
	EXPECT_EQ(view->removed(), kResultFalse);
}

} // namespace
