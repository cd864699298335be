// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/audiounit/TTestSession.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "tests/plugin/TInstanceDriver.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

TFakeAudioUnitSystem* sSystem = nullptr;

/// The process that the units are in.
class TProcess final : public testing::Environment {
public:
	TProcess() {
		TLog::SetEchoToConsole(false);
		sSystem = &mSystem;
	}

private:
	TFakeAudioUnitSystem mSystem;
};

testing::Environment* const kProcess = testing::AddGlobalTestEnvironment(new TProcess);

} // namespace

TFakeAudioUnitSystem& TTestUnit::System() {
	return *sSystem;
}

TTestUnit::TTestUnit(const TTestState& state)
    : TFakeAudioUnit([] { return AUPluginFactory(nullptr); }),
      mpTimer(System().Timers().back()) {
	EXPECT_EQ(mOpened, noErr);
	EXPECT_EQ(SetInput(&GiveSound, this), noErr);
	HostCallbackInfo host;
	host.hostUserData = this;
	host.beatAndTempoProc = [](void* unit, Float64* beat, Float64* tempo) {
		*beat = static_cast<TTestUnit*>(unit)->mBeat;
		*tempo = static_cast<TTestUnit*>(unit)->mTempo;
		return OSStatus{noErr};
	};
	host.transportStateProc = [](void*, Boolean* isPlaying, Boolean*, Float64*, Boolean*, Float64*, Float64*) {
		*isPlaying = 1;
		return OSStatus{noErr};
	};
	EXPECT_EQ(Set(kAudioUnitProperty_HostCallbacks, host), noErr);
	if (!state.empty()) {
		EXPECT_EQ(LoadBank(state), noErr);
	}
}

void TTestUnit::Start(double rate, UInt32 frames, UInt32 inputChannels) {
	Uninitialize();
	EXPECT_EQ(SetFormat(kAudioUnitScope_Input, inputChannels, rate), noErr);
	EXPECT_EQ(SetFormat(kAudioUnitScope_Output, 2, rate), noErr);
	EXPECT_EQ(SetFrames(frames), noErr);
	EXPECT_EQ(Initialize(), noErr);
}

TTestState TTestUnit::Bank() {
	const auto state = State();
	const AUData* bank = state ? state->Find<AUData>("BankChunk") : nullptr;
	return bank ? TTestState(bank->Bytes().begin(), bank->Bytes().end()) : TTestState();
}

OSStatus TTestUnit::LoadBank(const TTestState& state) {
	const auto dictionary = State();
	dictionary->Set("BankChunk", DataOf(state));
	return Load(*dictionary);
}

OSStatus TTestUnit::GiveSound(
    void* unit, AudioUnitRenderActionFlags*, const AudioTimeStamp*, UInt32, UInt32 frames, AudioBufferList* data) {
	auto& self = *static_cast<TTestUnit*>(unit);
	for (UInt32 i = 0; i < data->mNumberBuffers; ++i) {
		AudioBuffer& buffer = *(data->mBuffers + i);
		if (self.mLendsBuffers)
			buffer.mData = self.mInput[i].data();
		else
			std::copy_n(self.mInput[i].begin(), frames, static_cast<float*>(buffer.mData));
	}
	return noErr;
}

TTestSession TTestSession::Busy(unsigned int seed, int blocks) {
	TParkMillerPRNG random;
	random.SetSeed(seed);
	const auto draw = [&random](int32_t below) { return static_cast<int32_t>(random.NextDouble() * below); };
	TTestSession session;
	for (int number = 0; number < blocks; ++number) {
		TBlock block;
		block.mFrames = static_cast<UInt32>(1 + draw(number % 11 == 0 ? 3 : 512));
		const auto frames = static_cast<int32_t>(block.mFrames);
		const auto key = static_cast<uint8_t>(draw(4));
		for (int32_t change = draw(4); change > 0; --change) {
			const int32_t parameter = draw(210);
			if (parameter != kJitter)
				block.mChanges.emplace_back(parameter, static_cast<float>(random.NextDouble()));
		}
		if (number % 5 == 0)
			block.mEvents.push_back({0x90, key, 100, frames / 3});
		if (number % 7 == 0)
			block.mEvents.push_back({0x80, key, 0, frames / 2});
		if (number % 23 == 0)
			block.mEvents.push_back({0xC0, static_cast<uint8_t>(draw(2)), 0, frames / 2});
		if (number % 61 == 0)
			block.mEvents.push_back({0xB0, 120, 0, frames / 2});
		session.mBlocks.push_back(std::move(block));
	}
	return session;
}

template <class TProcess, class TTick>
TTestSession::TSound TTestSession::PlayBlocks(bool isMono, const TProcess& process, const TTick& tick) const {
	TParkMillerPRNG noise;
	noise.SetSeed(77);
	TSound sound;
	double beat = 0.0;
	int number = 0;
	for (const TBlock& block : mBlocks) {
		std::vector<float> channels[2];
		for (UInt32 i = 0; i < block.mFrames; ++i)
			for (auto& channel : channels)
				channel.push_back(static_cast<float>(noise.NextDouble() - 0.5));
		if (isMono)
			channels[1] = channels[0];
		process(block, beat, channels[0], channels[1]);
		for (std::size_t i = 0; i < block.mFrames; ++i)
			sound.insert(sound.end(), {channels[0][i], channels[1][i]});
		beat += block.mFrames * 140.0 / 60.0 / mSampleRate;
		if (++number % 10 == 0)
			tick();
	}
	return sound;
}

TTestSession::TSound TTestSession::Play(TTestUnit& unit, EBuffers buffers) const {
	unit.mLendsBuffers = buffers == EBuffers::kLent;
	EXPECT_EQ(unit.Set(kAudioUnitProperty_InPlaceProcessing, UInt32{buffers == EBuffers::kInPlace}), noErr);
	const auto process = [&](const TBlock& block, double beat, std::vector<float>& left, std::vector<float>& right) {
		unit.mBeat = beat;
		unit.mInput[0] = left;
		unit.mInput[1] = right;
		for (const auto& [parameter, value] : block.mChanges)
			EXPECT_EQ(unit.SetParameter(static_cast<AudioUnitParameterID>(parameter), value), noErr);
		for (const TMidiEvent& midi : block.mEvents)
			unit.Midi(midi.mStatus, midi.mData1, midi.mData2, static_cast<UInt32>(midi.mSampleOffset));
		TFakeBuffers out(2, block.mFrames, 0.0f, buffers != EBuffers::kUnits);
		EXPECT_EQ(unit.Render(out, block.mFrames), noErr);
		EXPECT_TRUE(unit.mInput[0] == left && unit.mInput[1] == right) << "the host's own buffers are changed";
		std::copy_n(out.Samples(0), block.mFrames, left.begin());
		std::copy_n(out.Samples(1), block.mFrames, right.begin());
	};
	return PlayBlocks(buffers == EBuffers::kMono, process, [&] { unit.Tick(); });
}

TTestSession::TSound TTestSession::Play(TProgramInstance& instance, EBuffers buffers) const {
	TTransportInfo transport;
	transport.mFlags =
	    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
	transport.mTempo = 140.0f;
	transport.mIsPlaying = true;
	const auto process = [&](const TBlock& block, double beat, std::vector<float>& left, std::vector<float>& right) {
		transport.mBeatPosition = beat;
		std::vector<TProgramPluginShell::TParameterChange> changes;
		for (const auto& [parameter, value] : block.mChanges)
			changes.push_back({0, parameter, value});
		instance.Shell().Process(
		    {left.data(), right.data(), left.data(), right.data(), static_cast<int32_t>(block.mFrames), &transport,
		     changes, block.mEvents});
	};
	return PlayBlocks(buffers == EBuffers::kMono, process, [&] { instance.Shell().Tick(); });
}

TTestState MakeTestState(unsigned int seed) {
	const auto instance = TProgramInstance::Create();
	TInstanceDriver(*instance).FillScenes();
	TParkMillerPRNG random;
	random.SetSeed(seed);
	for (int32_t id = 0; id < 210; ++id)
		if (id != TTestSession::kJitter)
			instance->Shell().SetParameterFromHost(id, static_cast<float>(random.NextDouble()));
	TStream chunk;
	instance->Shell().AsGui([&] { instance->Document().SaveBankChunk(chunk); });
	return TTestState(chunk.Bytes().begin(), chunk.Bytes().end());
}

TOwnerPtr<TProgramInstance> MakeReference(const TTestState& state, int32_t rate) {
	auto instance = TProgramInstance::Create();
	const TStream chunk{std::span<const uint8_t>(state)};
	instance->Shell().AsGui([&] { instance->Document().LoadBankChunk(chunk); });
	instance->Shell().Setup(rate, 512);
	return instance;
}
