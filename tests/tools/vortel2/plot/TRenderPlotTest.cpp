// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TRenderPlot.h"

#include "tests/tools/vortel2/RunVortel2.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/render/THostTransport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr int32_t kRate = 44100;
constexpr double kOnABin = 46.0 * kRate / 2048.0;

/// Silence for the first half, then a sine at half of full scale.
std::vector<float> HalfASine(std::size_t frames) {
	std::vector<float> sound(frames);
	for (std::size_t i = frames / 2; i < frames; ++i)
		sound[i] =
		    static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * kOnABin * static_cast<double>(i) / kRate));
	return sound;
}

TEST(TSpectrogramTest, SineStandsAtItsTimeFrequencyAndLevelWhateverThePieces) {
	const std::vector<float> sound = HalfASine(kRate);
	const std::vector<float> silence(sound.size());
	TSpectrogram whole(kRate, kRate, 100);
	whole.Add(sound, sound);
	whole.Finish();
	EXPECT_NEAR(whole.Decibels(75, 950.0, 1050.0), -6.02, 0.01);
	EXPECT_LT(whole.Decibels(75, 3950.0, 4050.0), -90.0);
	EXPECT_LT(whole.Decibels(25, 950.0, 1050.0), -90.0);

	TSpectrogram pieces(kRate, kRate, 100);
	for (std::size_t i = 0; i < sound.size(); i += 441)
		pieces.Add({silence.data() + i, 441}, {sound.data() + i, 441});
	pieces.Finish();
	EXPECT_NEAR(pieces.Decibels(75, 950.0, 1050.0), -6.02 - 3.01, 0.01) << "one side is half of the power";
}

TEST(TSpectrogramTest, NoClickFallsBetweenTwoWindowsOfALongSound) {
	constexpr int64_t kFrames = 10 * kRate;
	constexpr std::size_t kDistance = 4999;
	std::vector<float> sound(kFrames);
	for (std::size_t i = kDistance / 2; i < sound.size(); i += kDistance)
		sound[i] = 1.0f;
	TSpectrogram spectrogram(kRate, kFrames, kFrames / 4999);
	spectrogram.Add(sound, sound);
	spectrogram.Finish();
	for (int32_t column = 0; column < spectrogram.Columns(); ++column)
		EXPECT_GT(spectrogram.Decibels(column, 1000.0, 2000.0), -75.0) << column;
}

TEST(TTimeMarksTest, BeatsFollowTheTempoWhateverTheBlocks) {
	for (const int32_t size : {1, 100, 22050}) {
		TTimeMarks marks(88200, 1000);
		THostTransport transport(kRate, {120.0f, -0.25, true}, {{THostTransport::EChange::kTempo, 1.0, 60.0f}});
		for (int64_t sample = 0; sample < 88200; sample += std::min<int64_t>(size, 22050 - sample % 22050)) {
			const auto count = static_cast<int32_t>(std::min<int64_t>(size, 22050 - sample % 22050));
			marks.AddHostBlock(sample, count, &transport.AtBlock(sample, count), 2);
		}
		std::vector<std::pair<int64_t, int64_t>> beats;
		for (const auto& mark : marks.Marks())
			if (mark.mKind == TTimeMarks::kBeat)
				beats.emplace_back(mark.mNumber, std::llround(mark.mSample));
		// 22050 samples a beat, from sample 44100 on 44100.
		EXPECT_EQ(beats, (std::vector<std::pair<int64_t, int64_t>>{{0, 5513}, {1, 27563}, {2, 55125}})) << size;
	}
}

/// Runs four beats of a pattern and says what was played: device, start and end in sixteenths.
std::vector<std::array<double, 3>> Played(int32_t hostBlock, int32_t solo) {
	constexpr double kSixteenth = 5512.5;
	const TInstance instance;
	TVortelDocument& document = instance.WithDocument([&](TVortelDocument& made) -> TVortelDocument& {
		TVortelSequencer& sequencer = *made.ActiveProgram()->ActiveScene()->Sequencer();
		sequencer.Sequence(3).FromString("--*+*+----------");
		sequencer.Sequence(9).FromString("+---------------");
		made.SoloRow().Set(solo);
		return made;
	});
	instance.Shell().Setup(kRate, hostBlock);
	THostTransport transport(kRate, {}, {});
	TPlayedBlocks played(instance.Engine(), document);
	std::vector<float> sound(static_cast<std::size_t>(hostBlock));
	for (int64_t sample = 0; sample < 88200; sample += hostBlock) {
		TProgramPluginShell::TBlock block;
		block.mpLeftIn = block.mpRightIn = block.mpLeftOut = block.mpRightOut = sound.data();
		block.mSamples = static_cast<int32_t>(std::min<int64_t>(hostBlock, 88200 - sample));
		block.mpTransport = &transport.AtBlock(sample, block.mSamples);
		instance.Shell().Process(block);
		const TGlobalStorageScope storage(instance.Shell().StorageId());
		played.AddHostBlock(sample, block.mSamples);
	}
	played.Finish(88200);
	std::vector<std::array<double, 3>> blocks;
	for (const auto& block : played.Blocks())
		blocks.push_back(
		    {1.0 * block.mDevice, std::round(block.mStart / kSixteenth), std::round(block.mEnd / kSixteenth)});
	return blocks;
}

TEST(TPlayedBlocksTest, BlocksStandWhereTheyWerePlayedWhateverTheHostBlocks) {
	const std::vector<std::array<double, 3>> expected{{9, 0, 1}, {3, 2, 4}, {3, 4, 6}};
	for (const int32_t hostBlock : {64, 4096, 65536})
		EXPECT_EQ(Played(hostBlock, -1), expected) << hostBlock;
	EXPECT_EQ(Played(256, 9), (std::vector<std::array<double, 3>>{{9, 0, 1}}));
}

class TRenderPlotTest : public TVortel2Test {
protected:
	TRenderPlotTest() { WriteWav("in.wav", Noise(8000, 8000)); }
};

TEST_F(TRenderPlotTest, PictureIsTheSameEachTimeAndDoesNotChangeTheSound) {
	const TArguments pattern{"--steps", "RET=*+++*+++", "--block", "100,7"};
	TArguments withPlot = pattern;
	withPlot.insert(withPlot.end(), {"--plot", "plot.png"});
	const std::string sound = Render("a.wav", pattern);
	EXPECT_EQ(Render("a.wav", withPlot), sound);
	const std::string picture = Bytes("plot.png");
	EXPECT_EQ(picture.substr(0, 4), "\x89PNG");
	EXPECT_LT(picture.size(), 200000u);
	Render("a.wav", withPlot);
	EXPECT_TRUE(Bytes("plot.png") == picture);
	Render("a.wav", {"--plot", "plot.png"});
	EXPECT_FALSE(Bytes("plot.png") == picture);
	for (const std::size_t frames : {0u, 1u}) {
		WriteWav("in.wav", Noise(frames, 8000));
		Render("a.wav", withPlot);
	}
}

TEST_F(TRenderPlotTest, FailureLeavesNeitherFile) {
	const auto files = Files();
	const auto expect = [&](const TArguments& more, int status, const std::string& culprit) {
		TArguments words{"render", "in.wav", "out.wav"};
		words.insert(words.end(), more.begin(), more.end());
		const TRunResult result = Run(words);
		EXPECT_EQ(result.mStatus, status) << culprit;
		EXPECT_TRUE(result.HasOneErrorLine() && result.mErrors.find(culprit) != std::string::npos) << result.mErrors;
		EXPECT_EQ(Files(), files) << culprit;
	};
	expect({"--plot", ""}, 2, "--plot");
	expect({"--plot", "out.wav"}, 2, "--plot");
	expect({"--plot", "./in.wav"}, 2, "--plot");
	expect({"--plot", "missing/plot.png"}, 1, "missing/plot.png");
	expect({"--plot", "."}, 1, ".");
	EXPECT_EQ(Run({"render", "--demo-dry", "out.wav", "--plot", "plot.png"}).mStatus, 2);
	// Some room for the sound, none for the picture.
	WriteWav("in.wav", Noise(1000, 8000));
	const TRunResult full = RunInShell("ulimit -f 18; exec \"$0\" render in.wav out.wav --plot plot.png");
	EXPECT_EQ(full.mStatus, 1) << full.mErrors;
	EXPECT_NE(full.mErrors.find("plot.png"), std::string::npos) << full.mErrors;
	EXPECT_EQ(Files(), files);
}

} // namespace
