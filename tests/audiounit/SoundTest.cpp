// SPDX-License-Identifier: GPL-3.0-or-later
// What comes out of an Audio Unit, sample by sample, against the program's own format and the renderer.
#include "tests/audiounit/TTestSession.h"
#include "tests/tools/vortel2/RunVortel2.h"
#include "tools/vortel2/sound/TSoundSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace {

using TSound = TTestSession::TSound;

/// The first place where two sounds differ, or -1: short enough to be printed.
long long FirstDifference(const TSound& a, const TSound& b) {
	if (a.size() != b.size())
		return static_cast<long long>(std::min(a.size(), b.size()));
	const auto difference = std::ranges::mismatch(a, b);
	return difference.in1 == a.end() ? -1 : difference.in1 - a.begin();
}

TEST(AudioUnitSoundTest, UnitAndProgramGiveTheSameSamplesAtEveryRateAndInEveryKindOfBuffer) {
	const TTestState state = MakeTestState(1);
	TTestUnit unit(state);
	const auto reference = MakeReference(state);
	// One instance, started again and again.
	for (const double rate : {22050.0, 44100.0, 48000.0, 96000.0, 12345.678})
		for (const EBuffers buffers :
		     {EBuffers::kHosts, EBuffers::kUnits, EBuffers::kLent, EBuffers::kInPlace, EBuffers::kMono}) {
			TTestSession session = TTestSession::Busy(static_cast<unsigned int>(rate), 40);
			session.mSampleRate = static_cast<int32_t>(rate);
			unit.Start(rate, 512, buffers == EBuffers::kMono ? 1 : 2);
			reference->Shell().Setup(session.mSampleRate, 512);
			TSound sound;
			std::thread([&] { sound = session.Play(unit, buffers); }).join();
			ASSERT_EQ(FirstDifference(sound, session.Play(*reference, buffers)), -1)
			    << rate << " " << static_cast<int>(buffers);
		}
}

TEST(AudioUnitSoundTest, StateOfAnotherInstanceBringsItsSoundAndIsKeptByteForByte) {
	TTestState state;
	{
		TTestUnit first(MakeTestState(4));
		first.Start();
		TTestSession::Busy(4, 60).Play(first);
		state = first.Bank();
	}
	TTestUnit second(state);
	EXPECT_EQ(second.Bank(), state);
	second.Start();
	const TTestSession session = TTestSession::Busy(5, 100);
	const TSound sound = session.Play(second);
	EXPECT_EQ(FirstDifference(sound, session.Play(*MakeReference(state))), -1);
	EXPECT_EQ(second.LoadBank(state), noErr);
	EXPECT_EQ(second.Bank(), state);
}

TEST(AudioUnitSoundTest, InstancesPlayAtOnceEachAsIfItWereAlone) {
	const TTestSession session = TTestSession::Busy(9, 100);
	const TTestState states[] = {MakeTestState(1), MakeTestState(2)};
	const TSound expected[] = {session.Play(*MakeReference(states[0])), session.Play(*MakeReference(states[1]))};
	std::vector<std::unique_ptr<TTestUnit>> units;
	for (std::size_t i = 0; i < 8; ++i) {
		units.push_back(std::make_unique<TTestUnit>(states[i % 2]));
		units.back()->Start();
	}
	std::vector<long long> differences(units.size());
	std::vector<std::thread> threads;
	for (std::size_t i = 0; i < units.size(); ++i)
		threads.emplace_back([&, i] { differences[i] = FirstDifference(session.Play(*units[i]), expected[i % 2]); });
	for (std::thread& thread : threads)
		thread.join();
	EXPECT_EQ(differences, std::vector<long long>(units.size(), -1));
}

class AudioUnitRenderTest : public TVortel2Test {};

TEST_F(AudioUnitRenderTest, SoundsAsTheRendererDoes) {
	constexpr UInt32 kBlock = 256;
	const TStereoSound noise = Noise();
	WriteWav("in.wav", noise);
	const TTestState state = MakeTestState(6);
	WriteBytes("bank.v2bnk", std::string(state.begin(), state.end()));
	Render("out.wav", {"--bank", "bank.v2bnk", "--block", "256", "--tempo", "140"});
	const TStereoSound expected = ReadSound("out.wav");

	TTestUnit unit(state);
	unit.Start(44100.0, kBlock);
	TStereoSound sound;
	for (std::size_t start = 0; start < noise.mLeft.size(); start += kBlock) {
		const auto frames = static_cast<UInt32>(std::min<std::size_t>(kBlock, noise.mLeft.size() - start));
		const auto part = [&](const std::vector<float>& side) {
			const auto from = side.begin() + static_cast<std::ptrdiff_t>(start);
			return std::vector<float>(from, from + frames);
		};
		unit.mInput[0] = part(noise.mLeft);
		unit.mInput[1] = part(noise.mRight);
		unit.mBeat = static_cast<double>(start) * 140.0 / (60.0 * 44100);
		TFakeBuffers out(2, frames);
		ASSERT_EQ(unit.Render(out, frames), noErr);
		sound.mLeft.insert(sound.mLeft.end(), out.Samples(0), out.Samples(0) + frames);
		sound.mRight.insert(sound.mRight.end(), out.Samples(1), out.Samples(1) + frames);
	}
	EXPECT_NE(sound.mLeft, noise.mLeft);
	EXPECT_EQ(FirstDifference(sound.mLeft, expected.mLeft), -1);
	EXPECT_EQ(FirstDifference(sound.mRight, expected.mRight), -1);
}

} // namespace
