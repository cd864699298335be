// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/files/TReplacedFile.h"
#include "tools/vortel2/plot/TPlayedBlocks.h"
#include "tools/vortel2/plot/TSpectrogram.h"
#include "tools/vortel2/plot/TTimeMarks.h"
#include "tools/vortel2/plot/TWaveform.h"
#include "tools/vortel2/sound/TLevels.h"

#include <cstdint>
#include <span>
#include <string>

/// What a picture shows of one sound.
struct TSoundView {
	TSoundView(int32_t sampleRate, int64_t frames);

	void Add(std::span<const float> left, std::span<const float> right);

	TLevels mLevels;
	TWaveform mWaveform;
	TSpectrogram mSpectrogram;
};

/// The picture of a render: the sound that went in and the sound that came out over one time axis, between them the
/// blocks that the sequencer played. Looks on while the renderer works and draws at the end.
class TRenderPlot {
public:
	static constexpr int32_t kColumns = 1040; // of the time axis

	struct TTitle {
		std::string mInput;
		std::string mOutput;
	};

	/// The file is there from now on as one that is not finished. Throws TWorkError. The instance outlives the plot.
	TRenderPlot(
	    const std::string& path, TTitle title, TVortelDocument& document, const TVortelAudioEngine& engine,
	    int32_t sampleRate, int64_t frames);

	/// Audio thread, around each host block.
	void BeforeBlock(std::span<const float> left, std::span<const float> right, const TTransportInfo* transport);
	void AfterBlock(std::span<const float> left, std::span<const float> right);

	/// Draws the picture into the unfinished file.
	void Draw();

	void Commit() { mFile.Commit(); }

private:
	TReplacedFile mFile;
	TTitle mTitle;
	TVortelDocument& mDocument;
	int64_t mPosition = 0;
	TSoundView mInput;
	TSoundView mOutput;
	TTimeMarks mMarks;
	TPlayedBlocks mBlocks;
};
