// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TRenderPlot.h"

#include "tools/vortel2/plot/DrawPlot.h"

#include <utility>

namespace {

constexpr int32_t kColumnsPerSpectrum = 2;

} // namespace

TSoundView::TSoundView(int32_t sampleRate, int64_t frames)
    : mWaveform(frames, TRenderPlot::kColumns),
      mSpectrogram(sampleRate, frames, TRenderPlot::kColumns / kColumnsPerSpectrum) {
	mLevels.mSampleRate = sampleRate;
}

void TSoundView::Add(std::span<const float> left, std::span<const float> right) {
	mLevels.Add(left, right);
	mWaveform.Add(left, right);
	mSpectrogram.Add(left, right);
}

TRenderPlot::TRenderPlot(
    const std::string& path, TTitle title, TVortelDocument& document, const TVortelAudioEngine& engine,
    int32_t sampleRate, int64_t frames)
    : mFile(path),
      mTitle(std::move(title)),
      mDocument(document),
      mInput(sampleRate, frames),
      mOutput(sampleRate, frames),
      mMarks(frames, kColumns),
      mBlocks(engine, document) {}

void TRenderPlot::BeforeBlock(
    std::span<const float> left, std::span<const float> right, const TTransportInfo* transport) {
	mInput.Add(left, right);
	const TStepGrid grid = TStepGrid::Of(*mDocument.ActiveProgram()->ActiveScene()->Sequencer());
	mMarks.AddHostBlock(mPosition, static_cast<int32_t>(left.size()), transport, grid.mDivisions);
}

void TRenderPlot::AfterBlock(std::span<const float> left, std::span<const float> right) {
	mOutput.Add(left, right);
	mBlocks.AddHostBlock(mPosition, static_cast<int32_t>(left.size()));
	mPosition += static_cast<int64_t>(left.size());
}

void TRenderPlot::Draw() {
	mInput.mSpectrogram.Finish();
	mOutput.mSpectrogram.Finish();
	mBlocks.Finish(mPosition);
	DrawPlot({mTitle, mInput, mOutput, mMarks.Marks(), mBlocks.Blocks()}).WritePng(mFile);
}
