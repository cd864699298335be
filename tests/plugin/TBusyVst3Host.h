// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/TVst3PluginShell.h"
#include "tests/shell/vst3/FakeVst3Host.h"

#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstprocesscontext.h>

#include <vector>

/// A stereo block of a playing host, in place.
class TVst3TestBlock {
public:
	explicit TVst3TestBlock(Steinberg::int32 samples)
	    : mLeft(static_cast<std::size_t>(samples), 0.1f),
	      mRight(static_cast<std::size_t>(samples), -0.1f) {
		mBus.numChannels = 2;
		mBus.channelBuffers32 = mChannels;
		mContext.state = Steinberg::Vst::ProcessContext::kPlaying | Steinberg::Vst::ProcessContext::kTempoValid |
		                 Steinberg::Vst::ProcessContext::kProjectTimeMusicValid;
		mContext.tempo = 140.0;
		mData.numSamples = samples;
		mData.numInputs = mData.numOutputs = 1;
		mData.inputs = mData.outputs = &mBus;
		mData.processContext = &mContext;
	}

	TVst3TestBlock(const TVst3TestBlock&) = delete;
	TVst3TestBlock& operator=(const TVst3TestBlock&) = delete;

	Steinberg::tresult Process(TVst3PluginShell& shell) {
		const Steinberg::tresult result = shell.process(mData);
		mContext.projectTimeMusic += mData.numSamples * 140.0 / 60.0 / 44100.0;
		return result;
	}

	Steinberg::Vst::ProcessData mData;

private:
	std::vector<float> mLeft;
	std::vector<float> mRight;
	float* mChannels[2] = {mLeft.data(), mRight.data()};
	Steinberg::Vst::AudioBusBuffers mBus;
	Steinberg::Vst::ProcessContext mContext{};
};

/// Automation, notes, bypass and presets, and what hosts ask the controller on their audio thread.
class TBusyVst3Host {
public:
	static constexpr Steinberg::int32 kBlock = 128;

	TBusyVst3Host() {
		for (Steinberg::Vst::ParamID i = 0; i < 4; ++i)
			mChanges.mQueues.emplace_back(i, std::vector<TFakeQueue::TPoint>{{0, 0.5}, {64, 0.5}});
		Steinberg::Vst::Event note{};
		note.type = Steinberg::Vst::Event::kNoteOnEvent;
		note.noteOn = {0, 36, 0.0f, 1.0f, 0, -1};
		mEvents.mEvents.assign(300, note);
		mBlock.mData.inputParameterChanges = &mChanges;
		mBlock.mData.inputEvents = &mEvents;
	}

	void RunBlock(TVst3PluginShell& shell, Steinberg::int32 number) {
		mChanges.mQueues[0].mId = static_cast<Steinberg::Vst::ParamID>(number % 210);
		mChanges.mQueues[1].mId = static_cast<Steinberg::Vst::ParamID>(209 - number % 210);
		mChanges.mQueues[2].mId = number % 10 == 0 ? kVst3Preset : kVst3GuiIdle;
		mChanges.mQueues[3].mId = number % 30 == 0 ? kVst3Bypass : kVst3Sustain;
		for (TFakeQueue& queue : mChanges.mQueues)
			for (auto& point : queue.mPoints)
				point.second = number % 7 / 7.0;
		mBlock.Process(shell);
		Steinberg::Vst::ParamID id = 0;
		shell.getMidiControllerAssignment(0, 0, 1, id);
		shell.plainParamToNormalized(5, 0.5);
		shell.getParamNormalized(kVst3Preset);
	}

private:
	TFakeChanges mChanges;
	TFakeEvents mEvents;
	TVst3TestBlock mBlock{kBlock};
};
