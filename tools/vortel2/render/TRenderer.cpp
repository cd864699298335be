// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TRenderer.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "tools/vortel2/plot/TRenderPlot.h"
#include "tools/vortel2/render/TProgressBar.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

std::vector<THostTransport::TChange>
InOrder(const std::vector<THostTransport::TChange>& ofSong, const std::vector<THostTransport::TChange>& byOptions) {
	std::vector<THostTransport::TChange> changes = ofSong;
	changes.insert(changes.end(), byOptions.begin(), byOptions.end());
	return changes;
}

} // namespace

TRenderer::TRenderer(
    TProgramPluginShell& shell, const TRenderOptions& options, const TTempoMap& tempi, TEventList& events,
    TSoundSource& source, TSoundFileWriter& writer, TRenderPlot* plot)
    : mShell(shell),
      mBlockSizes(options.mBlockSizes),
      mHasTransport(!options.mHasNoTransport),
      mTransport(
          source.SampleRate(), {tempi.mStart, options.mPosition, !options.mIsStopped},
          InOrder(tempi.mChanges, options.mTransportChanges)),
      mEvents(events),
      mSource(source),
      mWriter(writer),
      mpPlot(plot),
      mpRandomState(TRandom::StateOfThread()) {
	const int32_t largest = *std::max_element(mBlockSizes.begin(), mBlockSizes.end());
	mLeft.resize(static_cast<std::size_t>(largest));
	mRight.resize(mLeft.size());
	mDryLeft.resize(mLeft.size());
	mDryRight.resize(mLeft.size());
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
	for (int64_t shown = 0;;) {
		if (mCallGui.try_acquire_for(kTick)) {
			if (mIsFinished) {
				progress.Advance(mPosition - shown);
				return;
			}
			mShell.Tick();
			mGuiIsDone.release();
		}
		const int64_t position = mPosition.load(std::memory_order_relaxed);
		progress.Advance(position - shown);
		shown = position;
	}
}

void TRenderer::PlayAudioThread() {
	const TRandom::TScope random(mpRandomState);
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
	if (!mHasChanges) {
		std::copy_n(mLeft.begin(), samples, mDryLeft.begin());
		std::copy_n(mRight.begin(), samples, mDryRight.begin());
	}
	mShell.Process(block);
	LookForChanges(samples);
	if (mpPlot)
		mpPlot->AfterBlock({mLeft.data(), samples}, {mRight.data(), samples});
	mPosition.store(position + count, std::memory_order_relaxed);
}

void TRenderer::LookForChanges(std::size_t samples) {
	if (mHasChanges)
		return;
	mHasSound = mHasSound ||
	            std::any_of(mDryLeft.data(), mDryLeft.data() + samples, [](float sample) { return sample != 0.0f; }) ||
	            std::any_of(mDryRight.data(), mDryRight.data() + samples, [](float sample) { return sample != 0.0f; });
	mHasChanges = !std::equal(mLeft.data(), mLeft.data() + samples, mDryLeft.data()) ||
	              !std::equal(mRight.data(), mRight.data() + samples, mDryRight.data());
}

void TRenderer::LetGuiWork() {
	if (!TThreadCommunicator::Instance()->HasCommandsFor(kMainThread))
		return;
	mCallGui.release();
	mGuiIsDone.acquire();
}
