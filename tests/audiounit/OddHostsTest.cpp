// SPDX-License-Identifier: GPL-3.0-or-later
// Hosts that call in odd orders, from odd threads and with odd arguments; and hosts that do everything at once.
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "tests/audiounit/TTestSession.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <functional>
#include <limits>
#include <malloc.h>
#include <thread>

namespace {

constexpr AudioUnitPropertyID kProperties[] = {0,  1,  2,  3,  4,  8,  11, 12, 13, 14, 19,   20,
                                               22, 23, 24, 27, 29, 31, 32, 33, 36, 38, 1000, 4711};

/// Calls anything with anything. What is right is decided by the sanitizers and by what comes after.
class TErraticHost {
public:
	explicit TErraticHost(unsigned int seed) { mRandom.SetSeed(seed); }

	void CallSomething() {
		float value = OddValue();
		UInt32 size = OddNumber();
		Boolean writable = 0;
		const AudioUnitPropertyID id = kProperties[Pick(std::size(kProperties))];
		const AudioUnitScope scope = Odd() ? OddNumber() : Pick(3);
		const AudioUnitElement element = Odd() ? OddNumber() : 0;
		AudioUnitParameterEvent events[2]{{scope, element, OddNumber(), Pick(4), {}}, {}};
		events[0].eventValues.immediate = {OddNumber(), value};
		const auto* const someEvents = Odd() ? nullptr : events;
		void* const none = nullptr;
		const AURenderCallback notify = Odd() ? nullptr : &Notified;
		const std::function<void()> calls[] = {
		    [&] { mUnit.Initialize(); },
		    [&] { mUnit.Uninitialize(); },
		    [&] { AudioUnitGetPropertyInfo(mUnit.Unit(), id, scope, element, Odd() ? nullptr : &size, &writable); },
		    [&] { GetProperty(id, scope, element); },
		    [&] { SetProperty(id, scope, element); },
		    [&] { mUnit.Call(kAudioUnitSetParameterSelect, OddNumber(), scope, element, value, OddNumber()); },
		    [&] { mUnit.Call(kAudioUnitGetParameterSelect, OddNumber(), scope, element, Odd() ? nullptr : &value); },
		    [&] { mUnit.Call(kAudioUnitScheduleParametersSelect, someEvents, Pick(3)); },
		    [&] { mUnit.Call(kAudioUnitResetSelect, scope, element); },
		    [&] { mUnit.Midi(OddNumber(), OddNumber(), OddNumber(), OddNumber()); },
		    [&] { mUnit.Call(kMusicDeviceSysExSelect, static_cast<const UInt8*>(nullptr), size); },
		    [&] { mUnit.Call(kAudioUnitAddRenderNotifySelect, notify, none); },
		    [&] { mUnit.Call(kAudioUnitRemoveRenderNotifySelect, notify, none); },
		    [&] { mUnit.Call(static_cast<SInt16>(0x4000 + OddNumber() % 100)); },
		    [&] { mUnit.SetFrames(OddNumber() % 2048); },
		    [&] { mUnit.SetFormat(1 + Pick(2), Odd() ? OddNumber() % 70000 : 2, 1e5 * static_cast<double>(value)); },
		    [&] { TTestUnit::System().Tick(); },
		    [&] { Render(); },
		};
		const UInt32 call = Pick(30);
		calls[std::min<std::size_t>(call, std::size(calls) - 1)]();
	}

private:
	static OSStatus
	Notified(void*, AudioUnitRenderActionFlags*, const AudioTimeStamp*, UInt32, UInt32, AudioBufferList*) {
		return -1;
	}

	UInt32 Pick(std::size_t below) { return static_cast<UInt32>(mRandom.NextDouble() * static_cast<double>(below)); }

	bool Odd() { return Pick(3) == 0; }

	UInt32 OddNumber() {
		constexpr UInt32 kNumbers[] = {0, 1, 2, 15, 16, 64, 144, 209, 210, 512, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
		return kNumbers[Pick(std::size(kNumbers))];
	}

	float OddValue() {
		using TLimits = std::numeric_limits<float>;
		constexpr float kValues[] = {0.0f,
		                             0.5f,
		                             1.0f,
		                             -0.1f,
		                             1.1f,
		                             TLimits::max(),
		                             TLimits::lowest(),
		                             1e-40f,
		                             TLimits::infinity(),
		                             TLimits::quiet_NaN()};
		return kValues[Pick(std::size(kValues))];
	}

	void GetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element) {
		alignas(16) UInt8 room[1024] = {};
		UInt32 size = Odd() ? Pick(200) : sizeof(room);
		UInt8* const data = Odd() ? nullptr : room + Pick(2);
		if (AudioUnitGetProperty(mUnit.Unit(), id, scope, element, data, &size) == noErr && data)
			ReleaseWhatCame(id, data);
		AudioUnitGetProperty(mUnit.Unit(), id, scope, element, room, nullptr);
	}

	template <class TObject>
	static void ReleaseAt(const UInt8* data, std::size_t offset = 0) {
		const TObject* object = nullptr;
		std::memcpy(&object, data + offset, sizeof(object));
		if (object)
			object->Release();
	}

	/// Objects in a property belong to who asked.
	static void ReleaseWhatCame(AudioUnitPropertyID id, const UInt8* data) {
		switch (id) {
		case kAudioUnitProperty_ClassInfo:
			return ReleaseAt<AUDictionary>(data);
		case kAudioUnitProperty_FactoryPresets:
			return ReleaseAt<AUArray>(data);
		case kAudioUnitProperty_PresentPreset:
			return ReleaseAt<AUString>(data, offsetof(AUPreset, presetName));
		case kAudioUnitProperty_ParameterStringFromValue:
			return ReleaseAt<AUString>(data, offsetof(AudioUnitParameterStringFromValue, outString));
		case kAudioUnitProperty_ParameterInfo:
			ReleaseAt<AUString>(data, offsetof(AudioUnitParameterInfo, unitName));
			return ReleaseAt<AUString>(data, offsetof(AudioUnitParameterInfo, cfNameString));
		case kAudioUnitProperty_CocoaUI:
			ReleaseAt<AUString>(data, offsetof(AudioUnitCocoaViewInfo, mCocoaAUViewBundleLocation));
			return ReleaseAt<AUString>(data, offsetof(AudioUnitCocoaViewInfo, mCocoaAUViewClass));
		default:
			break;
		}
	}

	/// Bytes that are no pointers for those who take them for one.
	void SetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element) {
		alignas(16) UInt8 bytes[64] = {};
		if (id == kAudioUnitProperty_StreamFormat || id == kAudioUnitProperty_AudioChannelLayout)
			std::ranges::generate(bytes, [this] { return static_cast<UInt8>(Pick(256)); });
		AudioUnitSetProperty(mUnit.Unit(), id, scope, element, Odd() ? nullptr : bytes, Odd() ? OddNumber() % 64 : 64);
	}

	void Render() {
		const UInt32 frames = Pick(600);
		for (auto& side : mUnit.mInput)
			side.assign(600, OddValue());
		mUnit.mTempo = static_cast<double>(OddValue()) * 300.0;
		mUnit.mBeat = static_cast<double>(OddValue());
		mUnit.mLendsBuffers = Odd();
		TFakeBuffers buffers(Odd() ? Pick(4) : 2, 600, 0.0f, !Odd());
		mUnit.Render(buffers, Odd() ? OddNumber() % 600 : frames, Odd() ? OddNumber() : 0);
	}

	TParkMillerPRNG mRandom;
	TTestUnit mUnit;
};

} // namespace

TEST(AudioUnitOddHostsTest, AnyCallsInAnyOrderWithAnythingLeaveItsNeighbourUnharmed) {
	TTestUnit neighbour(MakeTestState(4));
	const TTestState kept = neighbour.Bank();
	for (unsigned int seed = 1; seed <= 4; ++seed) {
		TErraticHost host(seed);
		for (int call = 0; call < 3000; ++call)
			host.CallSomething();
	}
	EXPECT_EQ(neighbour.Bank(), kept);
	neighbour.Start();
	TTestSession::Busy(5, 10).Play(neighbour);
}

TEST(AudioUnitOddHostsTest, WhatWasNeverOpenedIsNoUnit) {
	AudioComponentInstanceRecord record;
	TFakeBuffers buffers(2, 8);
	AudioTimeStamp time{};
	EXPECT_EQ(AudioUnitRender(nullptr, nullptr, &time, 0, 8, buffers.Get()), kAudio_ParamError);
	EXPECT_EQ(AudioUnitRender(&record, nullptr, &time, 0, 8, buffers.Get()), kAudio_ParamError);
	record.mpPlugIn = AUPluginFactory(nullptr);
	EXPECT_EQ(AudioUnitRender(&record, nullptr, &time, 0, 8, buffers.Get()), kAudio_ParamError);
	EXPECT_EQ(AudioUnitCall(&record, kAudioUnitInitializeSelect), kAudio_ParamError);
	EXPECT_EQ(AudioUnitCall(&record, SInt16{0x1234}), kAudio_UnimplementedError);
	EXPECT_EQ(record.mpPlugIn->Close(record.mpPlugIn), noErr);
	record.mpPlugIn = AUPluginFactory(nullptr);
	EXPECT_EQ(record.mpPlugIn->Open(record.mpPlugIn, &record), noErr);
	EXPECT_EQ(record.mpPlugIn->Open(record.mpPlugIn, &record), kAudioUnitErr_CannotDoInCurrentContext);
	EXPECT_EQ(record.mpPlugIn->Close(record.mpPlugIn), noErr); // with what is initialised or not
}

TEST(AudioUnitOddHostsTest, EverythingAtOnceOnThreadsOfTheirOwn) {
	const TTestState states[] = {MakeTestState(1), MakeTestState(2)};
	TTestUnit unit(states[0]);
	unit.mInput[0].assign(512, 0.1f);
	unit.mInput[1].assign(512, 0.1f);
	unit.Start();
	std::atomic<bool> isOver{false};
	std::atomic<int> wrong{0};
	const auto render = [&](bool mayBeRefused) {
		TFakeBuffers buffers(2, 512);
		while (!isOver) {
			const OSStatus status = unit.Render(buffers, 512);
			const bool isRefused =
			    status == kAudioUnitErr_CannotDoInCurrentContext || status == kAudioUnitErr_Uninitialized;
			wrong += status != noErr && !(mayBeRefused && isRefused);
		}
	};
	std::thread audio([&] { render(true); });
	std::thread secondAudio([&] { render(true); });
	std::thread others([&] {
		while (!isOver) {
			TTestUnit other(states[1]);
			other.Start();
		}
	});
	for (int round = 0; round < 24; ++round) {
		for (AudioUnitParameterID id = 0; id < 210; id += 7)
			EXPECT_EQ(unit.SetParameter(id, static_cast<float>(round) / 24.0f), noErr);
		EXPECT_EQ(unit.Set(kAudioUnitProperty_PresentPreset, AUPreset{round % 3, nullptr}), noErr);
		if (round % 4 == 0) {
			EXPECT_EQ(unit.LoadBank(states[round / 4 % 2]), noErr);
		}
		EXPECT_FALSE(unit.Bank().empty());
		EXPECT_EQ(unit.Set(kAudioUnitProperty_HostCallbacks, HostCallbackInfo{}), noErr);
		EXPECT_EQ(unit.SetInput(nullptr, nullptr), noErr);
		if (round % 8 == 0) {
			EXPECT_EQ(unit.Uninitialize(), noErr);
			EXPECT_EQ(unit.Initialize(), noErr);
		}
	}
	isOver = true;
	audio.join();
	secondAudio.join();
	others.join();
	EXPECT_EQ(wrong, 0);
	TTestUnit::System().Tick();
	EXPECT_EQ(TTestUnit::System().Take().find("begin"), std::string::npos); // the host's own changes are no edits
	EXPECT_EQ(unit.LoadBank(states[1]), noErr);
	EXPECT_EQ(unit.Bank(), states[1]);
}

TEST(AudioUnitOddHostsTest, LivesLeaveNoMemory) {
	const TTestState state = MakeTestState(1);
	const auto live = [&] {
		TTestUnit unit(state);
		unit.LoadBank(unit.Bank());
		unit.Start();
		TTestSession::Busy(3, 20).Play(unit);
	};
	live();
	const auto used = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
	const auto before = used();
	for (int round = 0; round < 4; ++round)
		live();
	EXPECT_LT(used(), before + 32768);
}
