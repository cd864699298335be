// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/program/TProgramPluginShell.h"
#include "tools/vortel2/render/TRenderOptions.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <semaphore>
#include <vector>

class TProgressBar;
class TRenderPlot;

/// Runs sound through an instance as a host does: a thread of its own is the host's audio thread, the calling thread
/// is the GUI. When a block has left work for the GUI, the audio thread waits until it is done, so that every run
/// gives the same samples; without such work the two do not meet.
class TRenderer {
public:
	/// All must outlive the renderer; plot may be null.
	TRenderer(
	    TProgramPluginShell& shell, const TRenderOptions& options, TEventList& events, TSoundSource& source,
	    TSoundFileWriter& writer, TRenderPlot* plot);

	/// GUI thread. What the audio thread throws comes out here.
	void Run(TProgressBar& progress);

private:
	void PlayAudioThread();
	void PlayGui(TProgressBar& progress);
	void RenderBlocks();
	void ProcessBlock(std::size_t samples);
	void LetGuiWork();

	TProgramPluginShell& mShell;
	const std::vector<int32_t>& mBlockSizes;
	bool mHasTransport;
	THostTransport mTransport;
	TEventList& mEvents;
	TSoundSource& mSource;
	TSoundFileWriter& mWriter;
	TRenderPlot* mpPlot;

	std::vector<float> mLeft;
	std::vector<float> mRight;
	std::atomic<int64_t> mPosition{0}; // the audio thread writes
	std::binary_semaphore mCallGui{0};
	std::binary_semaphore mGuiIsDone{0};
	std::atomic<bool> mIsFinished{false};
	std::exception_ptr mpFailure; // written before mIsFinished
};
