// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <complex>
#include <cstdint>
#include <span>
#include <vector>

/// How loud each frequency is in each of so many equal parts of a sound, measured while the sound goes by. Both sides
/// count; what is no finite number counts as silence. The memory does not depend on the length of the sound.
class TSpectrogram {
public:
	/// What silence reads as.
	static constexpr double kQuietest = -150.0;

	/// frames of sound will be added; it is cut into columns.
	TSpectrogram(int32_t sampleRate, int64_t frames, int32_t columns);

	/// Both of one length.
	void Add(std::span<const float> left, std::span<const float> right);
	/// To be called behind the last sample.
	void Finish();

	int32_t Columns() const noexcept { return mColumns; }

	/// The loudest frequency of a range, in decibels; a sine at full scale on both sides has 0.
	double Decibels(int32_t column, double fromHertz, double toHertz) const;

private:
	using TSamples = std::vector<std::complex<float>>;

	int64_t WindowStart() const;
	void ProcessWindows();
	void AddSpectrum();
	float& Power(int32_t column, std::size_t bin);
	double BinDecibels(int32_t column, std::size_t bin) const;

	int32_t mSampleRate;
	int32_t mColumns;
	std::size_t mSize;         // of a window; a power of two
	int64_t mWindowsPerColumn; // so many that no sample lies between two windows
	int64_t mNextWindow = 0;
	double mHop;          // samples from one window to the next
	TSamples mBuffer;     // left is the real part, right the imaginary
	int64_t mBufferStart; // sample
	std::vector<float> mWeights;
	TSamples mTwiddles;
	TSamples mWork;
	std::vector<float> mPowers; // by column, then by frequency
};
