// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TRenderer.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "tools/vortel2/plot/TRenderPlot.h"
#include "tools/vortel2/render/TProgressBar.h"

#include <algorithm>
#include <chrono>
#include <thread>

TRenderer::TRenderer(
    TProgramPluginShell& shell, const TRenderOptions& options, TEventList& events, TSoundSource& source,
    TSoundFileWriter& writer, TRenderPlot* plot)
    : mShell(shell),
      mBlockSizes(options.mBlockSizes),
      mHasTransport(!options.mHasNoTransport),
      mTransport(
          source.SampleRate(), {options.mTempo, options.mPosition, !options.mIsStopped}, options.mTransportChanges),
      mEvents(events),
      mSource(source),
      mWriter(writer),
      mpPlot(plot) {
	const int32_t largest = *std::max_element(mBlockSizes.begin(), mBlockSizes.end());
	mLeft.resize(static_cast<std::size_t>(largest));
	mRight.resize(static_cast<std::size_t>(largest));
	mShell.Setup(source.SampleRate(), largest);
}

void TRenderer::Run(TProgressBar& progress) {
	std::thread audio([this] { PlayAudioThread(); });
	PlayGui(progress);
	audio.join();
	if (mpFailure)
		std::rethrow_exception(mpFailure);
}

void TRenderer::PlayGui(TProgressBar& progress) {
	static constexpr std::chrono::milliseconds kTick{10};
	for (;;) {
		if (mCallGui.try_acquire_for(kTick)) {
			if (mIsFinished)
				return;
			mShell.Tick();
			mGuiIsDone.release();
		}
		progress.Show(mPosition.load(std::memory_order_relaxed));
	}
}

void TRenderer::PlayAudioThread() {
	try {
		RenderBlocks();
	} catch (...) {
		mpFailure = std::current_exception();
	}
	mIsFinished = true;
	mCallGui.release();
}

void TRenderer::RenderBlocks() {
	// Held over all blocks only to make the scopes inside cheap.
	const TGlobalStorageScope storage(mShell.StorageId());
	for (std::size_t block = 0;; ++block) {
		const auto size = static_cast<std::size_t>(mBlockSizes[block % mBlockSizes.size()]);
		const std::size_t samples = mSource.Read({mLeft.data(), size}, {mRight.data(), size});
		if (samples == 0)
			return;
		ProcessBlock(samples);
		mWriter.Write({mLeft.data(), samples}, {mRight.data(), samples});
		LetGuiWork();
	}
}

void TRenderer::ProcessBlock(std::size_t samples) {
	const auto count = static_cast<int32_t>(samples);
	const int64_t position = mPosition.load(std::memory_order_relaxed);
	const TEventList::TBlock events = mEvents.NextBlock(count);
	TProgramPluginShell::TBlock block;
	block.mpLeftIn = mLeft.data();
	block.mpLeftOut = mLeft.data();
	block.mpRightIn = mRight.data();
	block.mpRightOut = mRight.data();
	block.mSamples = count;
	block.mpTransport = mHasTransport ? &mTransport.AtBlock(position, count) : nullptr;
	block.mParameterChanges = events.mParameterChanges;
	block.mMidiEvents = events.mMidiEvents;
	if (mpPlot)
		mpPlot->BeforeBlock({mLeft.data(), samples}, {mRight.data(), samples}, block.mpTransport);
	mShell.Process(block);
	if (mpPlot)
		mpPlot->AfterBlock({mLeft.data(), samples}, {mRight.data(), samples});
	mPosition.store(position + count, std::memory_order_relaxed);
}

void TRenderer::LetGuiWork() {
	if (!TThreadCommunicator::Instance()->HasCommandsFor(kMainThread))
		return;
	mCallGui.release();
	mGuiIsDone.acquire();
}
