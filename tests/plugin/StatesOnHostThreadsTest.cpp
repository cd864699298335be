// SPDX-License-Identifier: GPL-3.0-or-later
// Hosts save and load states on threads of their own, while the editor's ticks come and the engine plays. One thread at
// a time works on the document; the thread sanitizer sees whether that holds.
#include "plugin/Vst3Instances.h"
#include "tests/plugin/TBusyVst3Host.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <string_view>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// A state with sixteen programs of this name, each with a pattern, since empty ones are not saved.
std::vector<uint8> StateWithName(const std::string& name) {
	std::string bank = "<VortelDocument doc_version=\"3\">";
	for (int i = 0; i < 16; ++i)
		bank += "<Program" + std::to_string(i) + "><Name>" + name +
		        "</Name><Scene0><Sequencer><Sequence3>*++</Sequence3></Sequencer></Scene0></Program" +
		        std::to_string(i) + ">";
	bank += "</VortelDocument>";
	const auto length = static_cast<int32>(bank.size());
	const std::string state = std::string(reinterpret_cast<const char*>(&length), sizeof(length)) + bank;
	return {state.begin(), state.end()};
}

int CountOf(std::string_view text, const std::string& part) {
	int count = 0;
	for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
		++count;
	return count;
}

bool IsOfOnePiece(const std::vector<uint8>& state) {
	const std::string_view text(reinterpret_cast<const char*>(state.data()), state.size());
	return CountOf(text, "<Name>Ann</Name>") == 16 || CountOf(text, "<Name>Bob</Name>") == 16;
}

/// What one of the host's threads does. False: something was refused, or a state was a mixture of two.
bool SaveAndLoad(IComponent& component, const std::string& name, const std::atomic<bool>& isPlaying) {
	const std::vector<uint8> own = StateWithName(name);
	bool isGood = true;
	while (isPlaying) {
		TFakeHostStream saved;
		isGood = component.getState(&saved) == kResultOk && IsOfOnePiece(saved.mBytes) && isGood;
		TFakeHostStream stream(own);
		isGood = component.setState(&stream) == kResultOk && isGood;
		TFakeHostStream again(saved.mBytes);
		isGood = component.setState(&again) == kResultOk && isGood;
	}
	return isGood;
}

} // namespace

TEST(StatesOnHostThreadsTest, EachIsSavedAndLoadedWhole) {
	TVst3PluginShell* shell = Vst3Instances::Create();
	TFakeVst3Host host;
	ASSERT_EQ(shell->initialize(static_cast<IHostApplication*>(&host)), kResultOk);
	shell->setComponentHandler(&host);
	ProcessSetup setup{kRealtime, kSample32, TBusyVst3Host::kBlock, 44100.0};
	ASSERT_EQ(shell->setupProcessing(setup), kResultOk);
	IComponent& component = *shell;
	TFakeHostStream first(StateWithName("Ann"));
	ASSERT_EQ(component.setState(&first), kResultOk);
	shell->setActive(1);
	std::atomic<bool> isPlaying{true};
	bool isGood[2] = {};
	std::thread one([&] { isGood[0] = SaveAndLoad(component, "Ann", isPlaying); });
	std::thread other([&] { isGood[1] = SaveAndLoad(component, "Bob", isPlaying); });
	std::thread audio([&] {
		TBusyVst3Host busy;
		for (int32 block = 0; block < 1000; ++block) {
			busy.RunBlock(*shell, block);
			std::this_thread::yield();
		}
		isPlaying = false;
	});
	while (isPlaying) {
		host.mpTimer->onTimer();
		std::this_thread::yield();
	}
	audio.join();
	one.join();
	other.join();
	EXPECT_TRUE(isGood[0] && isGood[1]);
	host.mpTimer->onTimer();
	EXPECT_NE(host.Take(), "");
	shell->setActive(0);
	shell->setComponentHandler(nullptr);
	shell->release();
}
