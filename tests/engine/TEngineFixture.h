// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TVortelAudioEngine.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "tests/engine/FakeDevices.h"
#include "tests/support/TDocumentFixture.h"

#include <algorithm>
#include <vector>

/// An engine on a fresh document, played one sample at a time unless a test says otherwise, so that what the devices
/// write down is exact. At 8192 Hz and 120 beats per minute a beat has 4096 samples, a step of the initial grid 1024.
class TEngineFixture : public TDocumentFixture {
protected:
	static constexpr int32_t kRate = 8192;
	static constexpr int64_t kBeat = 4096;
	static constexpr int64_t kStep = 1024;

	void SetUp() override {
		TDocumentFixture::SetUp();
		FakeDevices::Log() = {};
		mpEngine = MakePtr<TVortelAudioEngine>(mpDocument.Get());
		mpEngine->SetInputChannels(1);
		mpEngine->SetOutputChannels(1);
		mpEngine->SetSampleRate(kRate);
		mTransport.mFlags =
		    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
		mTransport.mTempo = 120.0f;
	}

	void TearDown() override {
		mpEngine = nullptr;
		mpDocument = nullptr;
		TThreadCommunicator::Instance()->FlushAllCommands();
		TDocumentFixture::TearDown();
	}

	/// The audio role, with what was posted to it run.
	class TAudioScope {
	public:
		TAudioScope() { TThreadCommunicator::Instance()->ProcessCommands(); }

	private:
		TThreadManager::TScope mRole{kAudioThread};
	};

	void Send(std::vector<TMidiEvent> events) {
		FakeDevices::Log().mNow = mSample;
		TAudioScope audio;
		mpEngine->ProcessMidiEvents(events);
	}

	void NoteOn(int32_t note, int32_t offset = 0, uint8_t velocity = 100) {
		Send({{0x90, static_cast<uint8_t>(note), velocity, offset}});
	}

	void NoteOff(int32_t note, int32_t offset = 0) { Send({{0x80, static_cast<uint8_t>(note), 0, offset}}); }

	/// One block of constant input; the output is appended to mOutput. The host's position moves on while it plays.
	void Block(int32_t samples) {
		FakeDevices::Log().mNow = mSample;
		std::vector<float> left(static_cast<std::size_t>(samples), 1000.0f);
		std::vector<float> right = left;
		float* leftData = left.data();
		float* rightData = right.data();
		{
			TAudioScope audio;
			mpEngine->Process(
			    {&leftData, 1}, {&rightData, 1}, {&leftData, 1}, {&rightData, 1}, samples,
			    mGivesTransport ? &mTransport : nullptr);
		}
		TThreadCommunicator::Instance()->ProcessCommands();
		mOutput.insert(mOutput.end(), left.begin(), left.end());
		mSample += samples;
		if (mTransport.mIsPlaying)
			mTransport.mBeatPosition += samples * static_cast<double>(mTransport.mTempo) / 60.0 / kRate;
	}

	void Play(int64_t samples, int32_t blockSize = 1) {
		for (const int64_t end = mSample + samples; mSample < end;)
			Block(static_cast<int32_t>(std::min<int64_t>(blockSize, end - mSample)));
	}

	void PlayFrom(double position) {
		mTransport.mIsPlaying = true;
		mTransport.mBeatPosition = position;
	}

	TVortelProgram& Program() { return *mpDocument->ActiveProgram(); }

	TVortelScene& Scene(int32_t index = 0) { return *Program().Scene(index); }

	void SetRow(int32_t device, const char* steps, int32_t scene = 0) {
		Scene(scene).Sequencer()->Sequence(device).FromString(steps);
	}

	void SetWeight(int32_t device, float weight, int32_t scene = 0) {
		Scene(scene).SetParameterValue(TVortelParameterTable::Device(device).mFirstId, weight);
	}

	std::vector<int64_t> Starts(int32_t device) const { return FakeDevices::Log().Samples(device, 's'); }

	std::vector<int64_t> Retriggers(int32_t device) const { return FakeDevices::Log().Samples(device, 'r'); }

	TPtr<TVortelAudioEngine> mpEngine;
	TTransportInfo mTransport;
	bool mGivesTransport = true;
	int64_t mSample = 0;
	std::vector<float> mOutput;
};
