// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/plot/TPicture.h"
#include "tools/vortel2/plot/TRenderPlot.h"

/// All that has been seen of a render.
struct TPlotContents {
	const TRenderPlot::TTitle& mTitle;
	const TSoundView& mInput;
	const TSoundView& mOutput;
	const std::vector<TTimeMarks::TMark>& mMarks;
	const std::vector<TPlayedBlocks::TBlock>& mBlocks;
};

/// From top to bottom: title, beats, the input's waveform and spectrogram, a lane for each effect that played, the
/// output's waveform and spectrogram, seconds.
TPicture DrawPlot(const TPlotContents& contents);
