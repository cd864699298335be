// SPDX-License-Identifier: GPL-3.0-or-later
// What comes out of the bundle, sample by sample, against the same session played through the program's own format.
#include "tests/vst3/TTestHost.h"

#include <gtest/gtest.h>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

using TSound = TTestSession::TSound;

/// The first place where two sounds differ, or -1: short enough to be printed.
long long FirstDifference(const TSound& a, const TSound& b) {
	if (a.size() != b.size())
		return static_cast<long long>(std::min(a.size(), b.size()));
	const auto difference = std::ranges::mismatch(a, b, [](float x, float y) { return x == y || (x != x && y != y); });
	return difference.in1 == a.end() ? -1 : difference.in1 - a.begin();
}

bool IsFinite(const TSound& sound) {
	return std::ranges::all_of(sound, [](float x) { return x - x == 0.0f; });
}

TOwnerPtr<TProgramInstance> MakeReference(const TTestState& state, int32_t rate = 44100) {
	auto instance = TProgramInstance::Create();
	LoadTestState(*instance, state);
	instance->Shell().Setup(rate, 512);
	return instance;
}

TSound Reference(unsigned int seed, const TTestSession& session, EBuffers buffers = EBuffers::kInPlace) {
	return session.Play(*MakeReference(MakeTestState(seed), session.mSampleRate), buffers);
}

/// Parameters from the first on rise over the block, with a point in each interval.
void AddRamps(TTestSession::TBlock& block, int32_t first, int32_t parameters, int32_t interval) {
	for (int32_t i = 0; i < block.mSamples; i += interval)
		for (int32_t id = first; id < first + parameters; ++id)
			if (id != TTestSession::kJitter)
				block.mChanges.push_back({i, id, static_cast<float>(i) / static_cast<float>(block.mSamples)});
}

} // namespace

TEST(SoundTest, BundleAndProgramGiveTheSameSamplesAtEveryRateAndInEveryKindOfBuffer) {
	const TVst3Module module;
	TTestPlugin plugin(module);
	const TTestState state = MakeTestState(1);
	const auto reference = MakeReference(state);
	ASSERT_EQ(plugin.Load(state), kResultOk);
	// One instance, activated again and again.
	for (const double rate :
	     {22050.0, 32000.0, 44100.0, 48000.0, 88200.0, 96000.0, 192000.0, 384000.0, 1234.5678, 12345.678, 123456.78,
	      1234567.8}) {
		TTestSession session = TTestSession::Busy(static_cast<unsigned int>(rate), 30);
		session.mSampleRate = static_cast<int32_t>(rate);
		for (const EBuffers buffers :
		     {EBuffers::kInPlace, EBuffers::kApart, EBuffers::kMono, EBuffers::kLeftOnRight, EBuffers::kRightOnLeft,
		      EBuffers::kCrossed}) {
			plugin.Activate(rate);
			reference->Shell().Setup(session.mSampleRate, 512);
			TSound sound;
			std::thread([&] { sound = session.Play(plugin, buffers); }).join();
			EXPECT_TRUE(IsFinite(sound));
			ASSERT_EQ(FirstDifference(sound, session.Play(*reference, buffers)), -1)
			    << rate << " " << static_cast<int>(buffers);
			plugin.Deactivate();
		}
	}
}

TEST(SoundTest, ChangeInTheMiddleOfABlockIsAsGoodAsABlockThatBeginsThere) {
	constexpr int32_t kSamples = 64;
	constexpr int32_t kLofiFrequency = 117; // heard at once
	TTestSession inside;
	TTestSession early;
	TTestSession cut;
	for (TTestSession* session : {&inside, &early, &cut})
		session->mBlocks.assign(160, {512, {}, {}});         // at rest, and in the second bar, where the Lofi runs
	for (int32_t offset = 0; offset <= kSamples; ++offset) { // hosts also send the one behind the last
		const float value = static_cast<float>(offset % 7) / 8.0f;
		const int32_t first = std::min(offset, kSamples - 1);
		inside.mBlocks.push_back({kSamples, {{offset, kLofiFrequency, value}}, {}});
		early.mBlocks.push_back({kSamples, {{std::max(offset - 1, 0), kLofiFrequency, value}}, {}});
		cut.mBlocks.push_back({first, {}, {}});
		cut.mBlocks.push_back({kSamples - first, {{0, kLofiFrequency, value}}, {}});
	}
	const TVst3Module module;
	const TTestState state = MakeTestState(2);
	const auto play = [&](const TTestSession& session) {
		TTestPlugin plugin(module);
		plugin.Load(state);
		plugin.Activate();
		return session.Play(plugin);
	};
	const TSound sound = play(inside);
	EXPECT_EQ(FirstDifference(sound, play(cut)), -1);
	EXPECT_NE(FirstDifference(sound, play(early)), -1);
}

TEST(SoundTest, RampsOfOneAndOfAllParametersWithPointsUpToOneASample) {
	const TVst3Module module;
	TTestPlugin plugin(module);
	const TTestState state = MakeTestState(3);
	const auto reference = MakeReference(state);
	plugin.Load(state);
	plugin.Activate();
	for (const int32_t parameters : {1, 2, 10, 210})
		for (const int32_t interval : {1, 2, 100}) {
			TTestSession session;
			session.mBlocks.assign(parameters == 210 ? 2 : 20, {parameters == 210 ? 101 : 333, {}, {}});
			int32_t first = 0;
			for (TTestSession::TBlock& block : session.mBlocks) {
				AddRamps(block, first, parameters, interval);
				first = (first + 5) % 100 % (211 - parameters);
			}
			EXPECT_EQ(FirstDifference(session.Play(plugin), session.Play(*reference)), -1)
			    << parameters << " parameters, a point every " << interval;
		}
}

TEST(SoundTest, TwentyInstancesPlayAtOnceEachAsIfItWereAlone) {
	constexpr std::size_t kInstances = 20;
	const TTestSession session = TTestSession::Busy(9, 150);
	const std::vector<TSound> expected{Reference(1, session), Reference(2, session), Reference(3, session)};
	const std::vector<TTestState> states{MakeTestState(1), MakeTestState(2), MakeTestState(3)};
	const TVst3Module module;
	std::vector<long long> differences(kInstances, 0);
	std::vector<std::thread> threads;
	for (std::size_t i = 0; i < kInstances; ++i)
		threads.emplace_back([&, i] {
			TTestPlugin plugin(module);
			plugin.Load(states[i % 3]);
			plugin.Activate();
			differences[i] = FirstDifference(session.Play(plugin), expected[i % 3]);
		});
	for (std::thread& thread : threads)
		thread.join();
	EXPECT_EQ(differences, std::vector<long long>(kInstances, -1));
}

TEST(SoundTest, StateOfAnotherInstanceBringsItsSoundAndIsKeptByteForByte) {
	const TTestSession before = TTestSession::Busy(4, 60);
	const TTestSession after = TTestSession::Busy(5, 100);
	const TVst3Module module;
	TTestState state;
	{
		TTestPlugin first(module);
		first.Load(MakeTestState(4));
		first.Activate();
		before.Play(first);
		state = first.State();
	}
	TTestPlugin second(module);
	ASSERT_EQ(second.Load(state), kResultOk);
	EXPECT_EQ(second.State(), state);
	second.Activate();
	const TSound sound = after.Play(second);
	EXPECT_EQ(FirstDifference(sound, after.Play(*MakeReference(state))), -1);
	// Loaded again into an instance that has played on, active as it is.
	ASSERT_EQ(second.Load(state), kResultOk);
	EXPECT_EQ(second.State(), state);
	// Written and read in single bytes.
	TFakeHostStream slow(state, 1);
	EXPECT_EQ(second.mpComponent->setState(&slow), kResultOk);
	EXPECT_EQ(second.State(), state);
}
