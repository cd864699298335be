// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/commands/TCommandScheduler.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "shell/TAudioPluginShell.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// The smallest program that an adapter can stand in front of: three parameters, four programs.
class TFakeDocument final : public TAudioPluginShell::TDocument {
public:
	TFakeDocument() { FinishDeclaration(); }

	int32_t ProductVersion() override { return 1; }

	int32_t UniqueId() override { return 2; }

	bool IsInstrument() override { return mIsInstrument; }

	int32_t NumberOfPrograms() override { return 4; }

	int32_t CurrentProgramIndex() override { return mProgramIndex.Get(); }

	void SetCurrentProgramIndex(int32_t index) override { mProgramIndex.Set(index); }

	TObservable* CurrentProgramIndexValue() override { return &mProgramIndex; }

	TString ProgramName(int32_t index) override { return TString("Name") + TString::ToString(index); }

	void SetProgramName(int32_t, const TString&) override { mNameBang.Bang(); }

	TObservableBang* ProgramNameChangedBang() override { return &mNameBang; }

	int32_t NumberOfParameters() override { return static_cast<int32_t>(mParameters.size()); }

	float ParameterValue(int32_t index) override { return mParameters[static_cast<std::size_t>(index)].Get(); }

	void SetParameterValue(int32_t index, float value) override {
		mParameters[static_cast<std::size_t>(index)].Set(value);
	}

	TObservable* ParameterObservable(int32_t index) override { return &mParameters[static_cast<std::size_t>(index)]; }

	TObservable* ParameterListAboutToChangeValue() override { return nullptr; }

	TObservable* ParameterListChangedValue() override { return nullptr; }

	TString ParameterValueText(int32_t, float value) override { return TString::ToString(value); }

	bool ParameterValueFromText(int32_t, const TString& text, float& value) override {
		value = 0.25f;
		return text == TString("a quarter");
	}

	TParameterTitle ParameterName(int32_t index) override { return {mTitle + TString::ToString(index), "Hz"}; }

	/// The state is one byte.
	void SaveBankChunk(TStream& stream) override { stream.Assign(std::array<uint8_t, 1>{mState}); }

	/// An edit of every parameter and a program change, as a real bank brings them.
	void LoadBankChunk(const TStream& stream) override {
		mLoadedSizes.push_back(stream.Size());
		if (stream.IsEmpty())
			return;
		mState = stream.Bytes()[0];
		UndoTransactionBegun();
		mParameters[0].Set(mState / 256.0f);
		UndoTransactionEnded();
		mProgramIndex.Set(mState % 4);
	}

	uint8_t mState = 7;
	std::vector<int64_t> mLoadedSizes;
	bool mIsInstrument = false;
	TString mTitle = "Parameter";

private:
	TObservableBaseType<int> mProgramIndex{0};
	TObservableBang mNameBang;
	std::array<TObservableBaseType<float>, 3> mParameters;
};

/// Halves the samples, adds an offset of its own, and writes down what it is called with.
class TFakeEngine final : public TAudioPluginShell::TEngine {
public:
	explicit TFakeEngine(TFakeDocument* document) : TEngine(document) {}

	void Process(
	    std::span<float* const> leftIn, std::span<float* const> rightIn, std::span<float* const> leftOut,
	    std::span<float* const> rightOut, int32_t samples, const TTransportInfo* transport) override {
		mRole = TThreadManager::Instance()->CurrentThread();
		mFirstInput = samples > 0 ? leftIn[0][0] : 0.0f;
		mHadTransport = transport != nullptr;
		if (transport)
			mTransport = *transport;
		mCalls += "process ";
		for (int32_t done = 0; done < samples; done += mpScheduler->Advance(samples - done)) {
			mCalls += std::to_string(done) + ":" + std::to_string(Document()->ParameterValue(0)).substr(0, 4) + " ";
		}
		for (int32_t i = 0; i < samples; ++i) {
			leftOut[0][i] = leftIn[0][i] * 0.5f + mOffset;
			if (rightOut[0] != leftOut[0])
				rightOut[0][i] = rightIn[0][i] * 0.5f + mOffset;
		}
	}

	void ScheduleCommand(TCommand* command, int32_t offset) override { mpScheduler->Schedule(command, offset); }

	void ScheduleFirst(TCommand* command, int32_t offset) override { mpScheduler->ScheduleFirst(command, offset); }

	void ScheduleAgain(TCommand* command, int32_t samples) override { mpScheduler->ScheduleAgain(command, samples); }

	int32_t LatencyInSamples() override { return mLatency; }

	int32_t MaxOutputChannels() override { return mOutputs; }

	bool WantsSilentOutput() override { return mIsSilent; }

	bool WantsMidiInput() override { return true; }

	bool WantsMidiOutput() override { return true; }

	void ProcessMidiEvents(std::span<const TMidiEvent> events) override {
		mCalls += "midi" + std::to_string(events.size()) + " ";
		mEvents.insert(mEvents.end(), events.begin(), events.end());
	}

	int32_t mRole = kNoThread;
	float mFirstInput = 0.0f;
	bool mHadTransport = false;
	TTransportInfo mTransport;
	std::string mCalls;
	int32_t mLatency = 0;
	int32_t mOutputs = 1; // pairs
	bool mIsSilent = false;
	float mOffset = 0.0f;
	std::vector<TMidiEvent> mEvents;
	std::vector<int32_t> mRates;
	std::vector<int32_t> mSizes;

private:
	void InputChannelsChanged(int32_t) override {}

	void OutputChannelsChanged(int32_t) override {}

	void SampleRateChanged(int32_t rate) override { mRates.push_back(rate); }

	void BlockSizeChanged(int32_t samples) override { mSizes.push_back(samples); }

	TPtr<TCommandScheduler> mpScheduler = MakePtr<TCommandScheduler>();
};
