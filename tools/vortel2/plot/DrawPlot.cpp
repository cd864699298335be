// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/DrawPlot.h"

#include "document/TVortelParameterTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

using TRect = TRectT<int>;

constexpr TColor kBackground{20, 22, 27};
constexpr TColor kPanel{28, 31, 37};
constexpr TColor kText{214, 219, 226};
constexpr TColor kFaintText{139, 147, 158};
constexpr TColor kMark{255, 255, 255};
constexpr TColor kInput{108, 170, 222};
constexpr TColor kOutput{240, 166, 92};
constexpr double kBeatOpacity = 0.22;
constexpr double kStepOpacity = 0.07;

/// By device index; the randomizer has no lane.
constexpr std::array<TColor, TVortelAudioEngine::kNumberOfDevices> kLaneColors{
    {{150, 150, 150},
     {126, 166, 255},
     {240, 113, 120},
     {255, 158, 84},
     {226, 204, 92},
     {146, 206, 108},
     {78, 196, 164},
     {236, 92, 92},
     {92, 200, 232},
     {176, 138, 250},
     {238, 132, 206}}};

constexpr int kLeft = 96; // of the time axis
constexpr int kRight = kLeft + TRenderPlot::kColumns;
constexpr int kWidth = kRight + 64;
constexpr int kTitleBase = 26;
constexpr int kBeatBase = 54;
constexpr int kTop = 62;
constexpr int kCaptionHeight = 20;
constexpr int kWaveformHeight = 84;
constexpr int kGap = 6;
constexpr int kSpectrogramHeight = 170;
constexpr int kSoundHeight = kCaptionHeight + kWaveformHeight + kGap + kSpectrogramHeight;
constexpr int kLaneHeight = 15;
constexpr int kBottom = 44;

constexpr double kLoudest = 0.0; // decibels
constexpr double kQuietest = -90.0;
constexpr int kShades = 48;
constexpr double kLowest = 30.0; // hertz
constexpr double kHighest = 20000.0;

/// From dark to light, evenly to the eye.
constexpr std::array<TColor, 7> kHeat{
    {{18, 16, 30}, {52, 24, 86}, {112, 32, 116}, {178, 50, 100}, {230, 92, 66}, {250, 164, 64}, {252, 246, 190}}};

TColor Heat(double decibels) {
	const double level = std::clamp((decibels - kQuietest) / (kLoudest - kQuietest), 0.0, 1.0);
	const double place = std::round(level * kShades) / kShades * (kHeat.size() - 1);
	const auto below = std::min(static_cast<std::size_t>(place), kHeat.size() - 2);
	const double share = place - static_cast<double>(below);
	const auto part = [&](int TColor::*member) {
		return static_cast<int>(std::lround(std::lerp(kHeat[below].*member, kHeat[below + 1].*member, share)));
	};
	return {part(&TColor::mRed), part(&TColor::mGreen), part(&TColor::mBlue)};
}

std::string Number(const char* format, double value) {
	std::array<char, 64> text;
	std::snprintf(text.data(), text.size(), format, value);
	return text.data();
}

/// A round distance between labels, at least that many seconds.
double NiceInterval(double atLeast) {
	for (double decade = 0.001;; decade *= 10.0)
		for (const double step : {1.0, 2.0, 5.0})
			if (decade * step >= atLeast)
				return decade * step;
}

class TPlotDrawing {
public:
	explicit TPlotDrawing(const TPlotContents& contents)
	    : mContents(contents),
	      mFrames(std::max<double>(1.0, static_cast<double>(contents.mInput.mLevels.mFrames))),
	      mSampleRate(contents.mInput.mLevels.mSampleRate),
	      mDevices(PlayedDevices(contents.mBlocks)),
	      mLanesTop(kTop + kSoundHeight + (mDevices.empty() ? 0 : 2 * kGap)),
	      mOutputTop(mLanesTop + static_cast<int>(mDevices.size()) * kLaneHeight + kGap),
	      mPicture(kWidth, mOutputTop + kSoundHeight + kBottom, kBackground) {}

	TPicture Draw() && {
		DrawTitle();
		DrawSound("Input", mContents.mInput, kInput, kTop);
		DrawLanes();
		DrawSound("Output", mContents.mOutput, kOutput, mOutputTop);
		DrawBeats();
		DrawSeconds();
		return std::move(mPicture);
	}

private:
	static std::vector<int32_t> PlayedDevices(const std::vector<TPlayedBlocks::TBlock>& blocks) {
		std::vector<int32_t> devices;
		for (const auto& block : blocks)
			if (std::find(devices.begin(), devices.end(), block.mDevice) == devices.end())
				devices.push_back(block.mDevice);
		std::sort(devices.begin(), devices.end());
		return devices;
	}

	int Column(double sample) const {
		return kLeft + static_cast<int>(std::lround(sample * TRenderPlot::kColumns / mFrames));
	}

	void TextLeftOf(int right, int bottom, const std::string& text, TColor color = kFaintText) {
		mPicture.Text(right - TPicture::TextWidth(text, TPicture::kSmall), bottom, text, TPicture::kSmall, color);
	}

	void TextAround(int middle, int bottom, const std::string& text) {
		const int width = TPicture::TextWidth(text, TPicture::kSmall);
		mPicture.Text(middle - width / 2, bottom, text, TPicture::kSmall, kFaintText);
	}

	void DrawTitle() {
		mPicture.Text(
		    kLeft, kTitleBase, mContents.mTitle.mInput + "  >  " + mContents.mTitle.mOutput, TPicture::kTitle, kText);
		const double seconds = static_cast<double>(mContents.mInput.mLevels.mFrames) / mSampleRate;
		TextLeftOf(kRight, kTitleBase, Number("%.3f s at ", seconds) + std::to_string(mSampleRate) + " Hz");
	}

	void DrawSound(const std::string& name, const TSoundView& sound, TColor color, int top) {
		mPicture.Text(kLeft, top + 14, name, TPicture::kNormal, color);
		mPicture.Text(kLeft + 64, top + 14, sound.mLevels.LoudnessInWords(), TPicture::kSmall, kFaintText);
		const TRect waveform{kLeft, top + kCaptionHeight, TRenderPlot::kColumns, kWaveformHeight};
		const TRect spectrogram{kLeft, waveform.Bottom() + kGap, TRenderPlot::kColumns, kSpectrogramHeight};
		mPicture.Fill(waveform, kPanel);
		DrawMarks(waveform);
		DrawWaveform(sound.mWaveform, color, waveform);
		DrawSpectrogram(sound.mSpectrogram, spectrogram);
		DrawMarks(spectrogram);
		DrawFrequencies(spectrogram);
		DrawScale(spectrogram);
	}

	/// Left above right, the peaks dim and the mean level bright. Full scale fills half the height.
	void DrawWaveform(const TWaveform& waveform, TColor color, const TRect& area) {
		const int half = area.mHeight / 4;
		for (int32_t side = 0; side < 2; ++side) {
			const int middle = area.mTop + half * (2 * side + 1);
			TextLeftOf(kLeft - 8, middle + 4, side == 0 ? "L" : "R");
			mPicture.Fill({area.mLeft, middle, area.mWidth, 1}, color, 0.3);
			for (int32_t column = 0; column < TRenderPlot::kColumns; ++column) {
				const TWaveform::TPart part = waveform.Part(side, column);
				const auto bar = [&](float lowest, float highest, double opacity) {
					const int up = Height(highest, half);
					const int down = Height(-lowest, half);
					mPicture.Fill({kLeft + column, middle - up, 1, up + down + 1}, color, opacity);
				};
				if (part.mHighest > part.mLowest || part.mRms > 0.0f) {
					bar(part.mLowest, part.mHighest, 0.5);
					bar(-part.mRms, part.mRms, 1.0);
				}
			}
		}
	}

	static int Height(float level, int full) {
		return static_cast<int>(std::lround(std::clamp(level, -1.0f, 1.0f) * static_cast<float>(full - 1)));
	}

	double Highest() const { return std::min(kHighest, 0.5 * mSampleRate); }

	/// A logarithmic axis. row may lie between two rows.
	double Frequency(double row) const { return Highest() * std::pow(kLowest / Highest(), row / kSpectrogramHeight); }

	void DrawSpectrogram(const TSpectrogram& spectrogram, const TRect& area) {
		const int width = TRenderPlot::kColumns / spectrogram.Columns();
		for (int row = 0; row < area.mHeight; ++row) {
			const double from = Frequency(row + 1);
			const double to = Frequency(row);
			for (int32_t column = 0; column < spectrogram.Columns(); ++column) {
				const TColor color = Heat(spectrogram.Decibels(column, from, to));
				mPicture.Fill({area.mLeft + column * width, area.mTop + row, width, 1}, color);
			}
		}
	}

	void DrawFrequencies(const TRect& area) {
		for (const double hertz : {50.0, 100.0, 200.0, 500.0, 1000.0, 2000.0, 5000.0, 10000.0, 20000.0}) {
			if (hertz > Highest())
				break;
			const double place = std::log(Highest() / hertz) / std::log(Highest() / kLowest);
			const int row = area.mTop + static_cast<int>(place * (area.mHeight - 1));
			mPicture.Fill({kLeft - 5, row, 5, 1}, kFaintText);
			const std::string text = hertz < 1000.0 ? Number("%.0f Hz", hertz) : Number("%.0f kHz", hertz / 1000.0);
			TextLeftOf(kLeft - 8, std::max(row, area.mTop + 4) + 4, text);
		}
	}

	void DrawScale(const TRect& area) {
		constexpr int kScaleLeft = kRight + 8;
		for (int row = 0; row < area.mHeight; ++row)
			mPicture.Fill(
			    {kScaleLeft, area.mTop + row, 8, 1}, Heat(std::lerp(kLoudest, kQuietest, 1.0 * row / area.mHeight)));
		for (double decibels = kLoudest; decibels >= kQuietest; decibels -= 30.0) {
			const double place = (kLoudest - decibels) / (kLoudest - kQuietest);
			const int row = area.mTop + static_cast<int>(place * (area.mHeight - 1));
			const int base = std::clamp(row + 4, area.mTop + 9, area.Bottom());
			mPicture.Text(kScaleLeft + 12, base, Number("%.0f", decibels) + " dB", TPicture::kSmall, kFaintText);
		}
	}

	void DrawMarks(const TRect& area) {
		for (const auto& mark : mContents.mMarks) {
			const double opacity = mark.mKind == TTimeMarks::kBeat ? kBeatOpacity : kStepOpacity;
			if (mark.mKind != TTimeMarks::kHostBlock)
				mPicture.Fill({Column(mark.mSample), area.mTop, 1, area.mHeight}, kMark, opacity);
		}
	}

	void DrawLanes() {
		for (std::size_t lane = 0; lane < mDevices.size(); ++lane) {
			const int top = mLanesTop + static_cast<int>(lane) * kLaneHeight;
			const TRect area{kLeft, top, TRenderPlot::kColumns, kLaneHeight - 1};
			mPicture.Fill(area, kPanel);
			DrawMarks(area);
			TextLeftOf(kLeft - 8, top + 11, TVortelParameterTable::Device(mDevices[lane]).mName, kText);
			for (const auto& block : mContents.mBlocks)
				if (block.mDevice == mDevices[lane])
					DrawBlock(block, area);
		}
	}

	void DrawBlock(const TPlayedBlocks::TBlock& block, const TRect& area) {
		const TColor color = kLaneColors[static_cast<std::size_t>(block.mDevice)];
		const int left = Column(block.mStart);
		const int width = std::max(1, Column(block.mEnd) - left - 1);
		mPicture.Fill({left, area.mTop + 1, width, area.mHeight - 2}, color, block.mIsRandom ? 0.3 : 0.6);
		mPicture.Fill({left, area.mTop + 1, std::min(width, 3), area.mHeight - 2}, color);
	}

	void DrawBeats() {
		TextLeftOf(kLeft - 18, kBeatBase, "beats");
		int free = kLeft;
		for (const auto& mark : mContents.mMarks) {
			if (mark.mKind != TTimeMarks::kBeat)
				continue;
			const int column = Column(mark.mSample);
			mPicture.Fill({column, kTop - 4, 1, 4}, kFaintText);
			const std::string text = std::to_string(mark.mNumber);
			if (column - 16 < free && free > kLeft)
				continue;
			TextAround(column, kBeatBase, text);
			free = column + 16;
		}
	}

	void DrawSeconds() {
		const int top = mPicture.Height() - kBottom;
		for (const auto& mark : mContents.mMarks)
			if (mark.mKind == TTimeMarks::kHostBlock)
				mPicture.Fill({Column(mark.mSample), top + 2, 1, 3}, kInput);
		TextLeftOf(kLeft - 18, top + 23, "seconds");
		const double seconds = mFrames / mSampleRate;
		const double interval = NiceInterval(seconds / 16.0);
		const char* format = interval < 0.01 ? "%.3f" : interval < 0.1 ? "%.2f" : interval < 1.0 ? "%.1f" : "%.0f";
		for (double second = 0.0; second < seconds * (1.0 + 1e-9); second += interval) {
			const int column = Column(second * mSampleRate);
			mPicture.Fill({column, top + 5, 1, 5}, kFaintText);
			TextAround(column, top + 23, Number(format, second));
		}
	}

	const TPlotContents& mContents;
	double mFrames;
	int32_t mSampleRate;
	std::vector<int32_t> mDevices; // that have a lane
	int mLanesTop;
	int mOutputTop;
	TPicture mPicture;
};

} // namespace

TPicture DrawPlot(const TPlotContents& contents) {
	return TPlotDrawing(contents).Draw();
}
