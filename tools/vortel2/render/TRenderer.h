// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TRandom.h"
#include "shell/program/TProgramPluginShell.h"
#include "tools/vortel2/render/TRenderOptions.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <semaphore>
#include <vector>

class TProgressBar;
class TRenderPlot;

/// The tempo at the first sample, in beats per minute, and the song's own changes of it.
struct TTempoMap {
	float mStart = 120.0f;
	std::vector<THostTransport::TChange> mChanges;
};

/// Runs sound through an instance as a host does: a thread of its own is the host's audio thread, the calling thread
/// is the GUI. When a block has left work for the GUI, the audio thread waits until it is done, so that every run
/// gives the same samples; without such work the two do not meet.
class TRenderer {
public:
	/// All must outlive the renderer; plot may be null.
	TRenderer(
	    TProgramPluginShell& shell, const TRenderOptions& options, const TTempoMap& tempi, TEventList& events,
	    TSoundSource& source, TSoundFileWriter& writer, TRenderPlot* plot);

	/// GUI thread. What the audio thread throws comes out here.
	void Run(TProgressBar& progress);

	/// After the run: there was sound, and all of it came out as it went in.
	bool HasChangedNothing() const noexcept { return mHasSound && !mHasChanges; }

private:
	void PlayAudioThread();
	void PlayGui(TProgressBar& progress);
	void RenderBlocks();
	void ProcessBlock(std::size_t samples);
	void LookForChanges(std::size_t samples);
	void LetGuiWork();

	TProgramPluginShell& mShell;
	const std::vector<int32_t>& mBlockSizes;
	bool mHasTransport;
	THostTransport mTransport;
	TEventList& mEvents;
	TSoundSource& mSource;
	TSoundFileWriter& mWriter;
	TRenderPlot* mpPlot;

	TRandom::TState* mpRandomState; // of the run
	std::vector<float> mLeft;
	std::vector<float> mRight;
	std::vector<float> mDryLeft; // as the block came in, until a change has been found
	std::vector<float> mDryRight;
	bool mHasSound = false;
	bool mHasChanges = false;
	std::atomic<int64_t> mPosition{0}; // the audio thread writes
	std::binary_semaphore mCallGui{0};
	std::binary_semaphore mGuiIsDone{0};
	std::atomic<bool> mIsFinished{false};
	std::exception_ptr mpFailure; // written before mIsFinished
};
