// SPDX-License-Identifier: GPL-3.0-or-later
// One render: where sound comes from and goes to, what is handed to the engine, what is refused. The fake engine
// halves.
#include "tests/shell/audiounit/TAudioUnitPluginShellFixture.h"

#include <stdexcept>
#include <thread>

namespace {

class TAudioUnitPluginShellRenderTest : public TAudioUnitPluginShellFixture {
protected:
	static constexpr UInt32 kFrames = 64;

	/// What comes out, left and right, the first and the last sample being equal to the others.
	std::pair<float, float> RenderPair(TFakeBuffers& buffers) {
		EXPECT_EQ(mpUnit->Render(buffers, kFrames), noErr);
		for (const UInt32 channel : {0u, 1u})
			EXPECT_EQ(buffers.Samples(channel)[0], buffers.Samples(channel)[kFrames - 1]);
		return {buffers.Samples(0)[0], buffers.Samples(1)[0]};
	}

	std::pair<float, float> RenderPair() {
		TFakeBuffers buffers(2, kFrames);
		return RenderPair(buffers);
	}
};

using TPair = std::pair<float, float>;

TEST_F(TAudioUnitPluginShellRenderTest, HalvesWhatItPullsInEveryKindOfBuffer) {
	OpenAndInitialize();
	EXPECT_EQ(RenderPair(), TPair(0.25f, -0.125f));
	EXPECT_EQ(sEngine->mRole, kAudioThread);
	TFakeBuffers nowhere(2, kFrames, 0.0f, false);
	EXPECT_EQ(RenderPair(nowhere), TPair(0.25f, -0.125f));
	EXPECT_NE(nowhere.Samples(0), nowhere.Samples(1));

	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_InPlaceProcessing, 1u), noErr);
	EXPECT_EQ(RenderPair(), TPair(0.25f, -0.125f));
	EXPECT_EQ(sEngine->mFirstInput, 0.5f * 32768.0f);
	TFakeBuffers lent(2, kFrames, 0.0f, false);
	EXPECT_EQ(RenderPair(lent), TPair(0.25f, -0.125f));
	EXPECT_EQ(mpUnit->SetInput(nullptr, nullptr), noErr);
	EXPECT_EQ(RenderPair(), TPair(0.0f, 0.0f)) << "no connection is silence";
}

TEST_F(TAudioUnitPluginShellRenderTest, OneInputChannelServesBothSides) {
	Open();
	mpUnit->SetFormat(kAudioUnitScope_Input, 1, 44100.0);
	mpUnit->SetInput(&GiveSound, nullptr);
	EXPECT_EQ(mpUnit->Initialize(), noErr);
	EXPECT_EQ(RenderPair(), TPair(0.25f, 0.25f));
	mpUnit->Set(kAudioUnitProperty_InPlaceProcessing, 1u); // which one channel cannot serve
	EXPECT_EQ(RenderPair(), TPair(0.25f, 0.25f));
}

TEST_F(TAudioUnitPluginShellRenderTest, BuffersThatTheSourceLendsComeBackAsTheyWere) {
	static TFakeBuffers sOwn(2, kFrames, 0.1f);
	OpenAndInitialize();
	mpUnit->SetInput(
	    [](void*, AudioUnitRenderActionFlags*, const AudioTimeStamp*, UInt32, UInt32, AudioBufferList* data) {
		    for (const UInt32 channel : {0u, 1u})
			    *(data->mBuffers + channel) = sOwn.Buffer(channel);
		    return OSStatus{noErr};
	    },
	    nullptr);
	EXPECT_EQ(RenderPair(), TPair(0.05f, 0.05f));
	EXPECT_EQ(RenderPair(sOwn), TPair(0.05f, 0.05f)) << "the host renders into the source's own memory";
	sOwn.Buffer(1).mDataByteSize = 4;
	TFakeBuffers buffers(2, kFrames);
	EXPECT_EQ(mpUnit->Render(buffers, kFrames), kAudio_ParamError);
	sOwn.Buffer(1) = {1, kFrames * 4, nullptr};
	EXPECT_EQ(mpUnit->Render(buffers, kFrames), kAudioUnitErr_FormatNotSupported);
}

TEST_F(TAudioUnitPluginShellRenderTest, UnitsPullUnits) {
	OpenAndInitialize();
	const auto first = std::move(mpUnit);
	const auto firstShell = std::exchange(sShell, nullptr);
	Open();
	mpUnit->SetFrames(kFrames);
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_MakeConnection, AudioUnitConnection{first->Unit(), 0, 0}, 1), noErr);
	EXPECT_EQ(
	    mpUnit->Set(kAudioUnitProperty_MakeConnection, AudioUnitConnection{first->Unit(), 1, 0}, 1),
	    kAudioUnitErr_InvalidElement);
	EXPECT_EQ(
	    mpUnit->Set(kAudioUnitProperty_MakeConnection, AudioUnitConnection{first->Unit(), 0, 1}, 1),
	    kAudioUnitErr_InvalidElement);
	EXPECT_EQ(mpUnit->Initialize(), noErr);
	EXPECT_EQ(RenderPair(), TPair(0.125f, -0.0625f));
	EXPECT_EQ(first->Uninitialize(), noErr);
	TFakeBuffers buffers(2, kFrames);
	EXPECT_EQ(mpUnit->Render(buffers, kFrames), kAudioUnitErr_Uninitialized) << "the source's error is the result";
	SInt32 last = 0;
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_LastRenderError, last), noErr);
	EXPECT_EQ(last, kAudioUnitErr_Uninitialized);
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_MakeConnection, AudioUnitConnection{nullptr, 0, 0}, 1), noErr);
	EXPECT_EQ(RenderPair(), TPair(0.0f, 0.0f));
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_MakeConnection, AudioUnitConnection{mpUnit->Unit(), 0, 0}, 1), noErr);
	EXPECT_EQ(mpUnit->Render(buffers, kFrames), kAudioUnitErr_CannotDoInCurrentContext) << "its own source";
	mpUnit = nullptr; // before the one that it was connected to
	sShell = firstShell;
}

TEST_F(TAudioUnitPluginShellRenderTest, SecondOutputIsFetchedFromTheSameRender) {
	sEngine->mOutputs = 2;
	Open();
	mpUnit->SetInput(&GiveSound, nullptr);
	EXPECT_EQ(mpUnit->Initialize(), noErr);
	AudioTimeStamp time{};
	time.mFlags = kAudioTimeStampSampleTimeValid;
	TFakeBuffers buffers(2, kFrames);
	const auto render = [&](UInt32 bus) {
		return AudioUnitRender(mpUnit->Unit(), nullptr, &time, bus, kFrames, buffers.Get());
	};
	EXPECT_EQ(render(1), noErr);
	EXPECT_EQ(render(0), noErr);
	EXPECT_EQ(TakeCalls().substr(0, 8), "process ");
	EXPECT_EQ(TakeCalls(), "") << "one render for both";
	EXPECT_EQ(buffers.Samples(1)[0], -0.125f);
	EXPECT_EQ(render(0), noErr);
	EXPECT_NE(TakeCalls(), "") << "asked for again, it is rendered again";
	EXPECT_EQ(render(2), kAudioUnitErr_InvalidElement);
}

TEST_F(TAudioUnitPluginShellRenderTest, WrongRequestsAreRefusedAndSilenceIsClear) {
	OpenAndInitialize();
	TFakeBuffers buffers(2, kFrames);
	TFakeBuffers mono(1, kFrames);
	EXPECT_EQ(mpUnit->Render(mono, kFrames), kAudio_ParamError);
	EXPECT_EQ(mpUnit->Render(buffers, kFrames + 1), kAudioUnitErr_TooManyFramesToProcess);
	EXPECT_EQ(mpUnit->Render(buffers, 0), noErr);
	EXPECT_EQ(AudioUnitRender(mpUnit->Unit(), nullptr, nullptr, 0, 1, buffers.Get()), kAudio_ParamError);
	AudioTimeStamp time{};
	EXPECT_EQ(AudioUnitRender(mpUnit->Unit(), nullptr, &time, 0, 1, nullptr), kAudio_ParamError);
	buffers.Buffer(1).mDataByteSize = 4 * kFrames - 1;
	EXPECT_EQ(mpUnit->Render(buffers, kFrames), kAudio_ParamError);
	EXPECT_EQ(TakeCalls(), "");
	sEngine->mIsSilent = true;
	EXPECT_EQ(RenderPair(), TPair(0.0f, 0.0f));
	sEngine->mIsSilent = false;
	for (const OSStatus thrown : {-1, -108, 17}) {
		static OSStatus sThrown;
		sThrown = thrown;
		mpUnit->SetInput(
		    [](void*, AudioUnitRenderActionFlags*, const AudioTimeStamp*, UInt32, UInt32,
		       AudioBufferList*) -> OSStatus {
			    if (sThrown == -108)
				    throw std::bad_alloc();
			    if (sThrown == -1)
				    throw std::runtime_error("odd");
			    throw sThrown;
		    },
		    nullptr);
		TFakeBuffers whole(2, kFrames);
		EXPECT_EQ(mpUnit->Render(whole, kFrames), thrown);
	}
	EXPECT_EQ(mpUnit->Uninitialize(), noErr);
	EXPECT_EQ(mpUnit->Render(buffers, kFrames), kAudioUnitErr_Uninitialized);
	EXPECT_EQ(mpUnit->Midi(0x90, 1, 2, 3), kAudioUnitErr_Uninitialized);
}

TEST_F(TAudioUnitPluginShellRenderTest, MidiReachesTheBlockThatFollows) {
	OpenAndInitialize();
	EXPECT_EQ(mpUnit->Midi(0x91, 60, 100, 5), noErr);
	EXPECT_EQ(mpUnit->Midi(0xC0, 3, 0, 7), noErr);
	EXPECT_EQ(mpUnit->Midi(0x60, 3, 0, 7), kAudio_ParamError);
	RenderPair();
	EXPECT_EQ(TakeCalls().substr(0, 13), "midi2 process");
	ASSERT_EQ(sEngine->mEvents.size(), 2u);
	EXPECT_EQ(sEngine->mEvents[0].mStatus, 0x91);
	EXPECT_EQ(sEngine->mEvents[0].mSampleOffset, 5);
	for (int i = 0; i < 600; ++i)
		EXPECT_EQ(mpUnit->Midi(0x90, 60, 100, 0), noErr);
	RenderPair();
	EXPECT_EQ(TakeCalls().substr(0, 8), "midi512 ");
	const UInt8 message[] = {0xF0, 1, 0xF7};
	EXPECT_EQ(mpUnit->Call(kMusicDeviceSysExSelect, static_cast<const UInt8*>(message), 3u), noErr);
	RenderPair();
	EXPECT_EQ(TakeCalls().substr(0, 8), "process ");
}

TEST_F(TAudioUnitPluginShellRenderTest, TransportIsWhatTheHostAnswers) {
	OpenAndInitialize();
	RenderPair();
	EXPECT_EQ(sEngine->mTransport.mFlags, 0x3u);
	EXPECT_EQ(sEngine->mTransport.mTempo, 120.0f);
	EXPECT_EQ(sEngine->mTransport.mBlockSize, kFrames);
	static double sTempo;
	static float sNumerator;
	HostCallbackInfo host;
	host.beatAndTempoProc = [](void*, Float64* beat, Float64* tempo) {
		*beat = 2.5;
		*tempo = sTempo;
		return OSStatus{noErr};
	};
	host.musicalTimeLocationProc = [](void*, UInt32*, Float32* numerator, UInt32* denominator, Float64*) {
		*numerator = sNumerator;
		*denominator = 8;
		return OSStatus{noErr};
	};
	// A host that knows no third function.
	EXPECT_EQ(
	    AudioUnitSetProperty(mpUnit->Unit(), kAudioUnitProperty_HostCallbacks, 0, 0, &host, 3 * sizeof(void*)), noErr);
	for (const auto& [tempo, numerator, flags] :
	     {std::tuple(140.0, 6.0f, 0x50Bu), {0.0, 0.0f, 0xBu}, {9999.0, 999.0f, 0xBu}}) {
		sTempo = tempo;
		sNumerator = numerator;
		RenderPair();
		EXPECT_EQ(sEngine->mTransport.mFlags, flags);
		EXPECT_EQ(sEngine->mTransport.mBeatPosition, 2.5);
		EXPECT_EQ(sEngine->mTransport.mTempo, tempo == 140.0 ? 140.0f : 120.0f);
		EXPECT_EQ(sEngine->mTransport.mTimeSigNumerator, numerator == 6.0f ? 6 : 4);
	}
	host = {};
	host.transportStateProc = [](void*, Boolean* isPlaying, Boolean* changed, Float64* position, Boolean* isCycling,
	                             Float64* start, Float64* end) {
		*isPlaying = *changed = *isCycling = 1;
		*position = 4410.0;
		*start = 1.0;
		*end = 5.0;
		return OSStatus{noErr};
	};
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_HostCallbacks, host), noErr);
	RenderPair();
	EXPECT_EQ(sEngine->mTransport.mFlags, 0x873u);
	EXPECT_TRUE(sEngine->mTransport.mIsPlaying && sEngine->mTransport.mTransportChanged);
	EXPECT_EQ(sEngine->mTransport.mSamplePosition, 4410.0);
	EXPECT_EQ(sEngine->mTransport.mCycleEnd, 5.0);
}

TEST_F(TAudioUnitPluginShellRenderTest, NotifiesStandAroundARenderAndMayLeave) {
	OpenAndInitialize();
	static std::string sNotified;
	static TFakeAudioUnit* sUnit;
	sUnit = mpUnit.get();
	const AURenderCallback notify = [](void*, AudioUnitRenderActionFlags* flags, const AudioTimeStamp*, UInt32, UInt32,
	                                   AudioBufferList*) {
		sNotified += (*flags & kAudioUnitRenderAction_PreRender) != 0 ? "before " : "after ";
		if ((*flags & kAudioUnitRenderAction_OutputIsSilence) != 0)
			sNotified += "silent ";
		sUnit->Uninitialize(); // must not deadlock, and comes to nothing
		return OSStatus{noErr};
	};
	void* const none = nullptr;
	EXPECT_EQ(mpUnit->Call(kAudioUnitAddRenderNotifySelect, notify, none), noErr);
	RenderPair();
	EXPECT_EQ(std::exchange(sNotified, {}), "before after ");
	EXPECT_EQ(mpUnit->Call(kAudioUnitRemoveRenderNotifySelect, notify, none), noErr);
	RenderPair();
	EXPECT_EQ(sNotified, "");
}

TEST_F(TAudioUnitPluginShellRenderTest, HostsProgramChangeOnTheAudioThreadIsToldOnTheMainOne) {
	OpenAndInitialize();
	static TFakeDocument* sChanged;
	sChanged = sDocument.Get();
	mpUnit->SetInput(
	    [](void*, AudioUnitRenderActionFlags*, const AudioTimeStamp*, UInt32, UInt32, AudioBufferList*) {
		    sChanged->SetCurrentProgramIndex(2);
		    return OSStatus{noErr};
	    },
	    nullptr);
	std::thread([this] { RenderPair(); }).join();
	EXPECT_EQ(mSystem.Take(), "");
	mSystem.Tick();
	EXPECT_EQ(mSystem.Take(), "value-1 ");
	EXPECT_EQ(mpUnit->PresentPreset().first, 2);
}

} // namespace
