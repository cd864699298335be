// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TSpectrogram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace {

constexpr int32_t kWindowsPerSecond = 32; // at least; a window is some 40 ms long

/// In place; the size is a power of two. twiddles has half as many turns of the unit circle.
void Transform(std::span<std::complex<float>> x, std::span<const std::complex<float>> twiddles) {
	const std::size_t size = x.size();
	for (std::size_t i = 1, j = 0; i < size; ++i) {
		std::size_t bit = size / 2;
		for (; (j & bit) != 0; bit /= 2)
			j ^= bit;
		j ^= bit;
		if (i < j)
			std::swap(x[i], x[j]);
	}
	for (std::size_t half = 1; half < size; half *= 2) {
		const std::size_t stride = size / (2 * half);
		for (std::size_t start = 0; start < size; start += 2 * half) {
			for (std::size_t k = 0; k < half; ++k) {
				const std::complex<float> a = x[start + k];
				const std::complex<float> b = x[start + k + half] * twiddles[k * stride];
				x[start + k] = a + b;
				x[start + k + half] = a - b;
			}
		}
	}
}

float Finite(float sample) {
	return std::isfinite(sample) ? sample : 0.0f;
}

} // namespace

TSpectrogram::TSpectrogram(int32_t sampleRate, int64_t frames, int32_t columns)
    : mSampleRate(sampleRate),
      mColumns(columns),
      mSize(std::bit_ceil(static_cast<std::size_t>(sampleRate / kWindowsPerSecond))),
      mBufferStart(-static_cast<int64_t>(mSize / 2)),
      mTwiddles(mSize / 2) {
	const double framesPerColumn = static_cast<double>(frames) / columns;
	const double windows = std::ceil(framesPerColumn / static_cast<double>(mSize / 2));
	mWindowsPerColumn = std::max<int64_t>(1, static_cast<int64_t>(windows));
	mHop = framesPerColumn / static_cast<double>(mWindowsPerColumn);
	mBuffer.resize(mSize / 2);
	mWork.resize(mSize);
	mPowers.resize(static_cast<std::size_t>(columns) * (mSize / 2 + 1));

	const double turn = 2.0 * std::numbers::pi / static_cast<double>(mSize);
	for (std::size_t i = 0; i < mSize; ++i)
		mWeights.push_back(static_cast<float>(0.5 - 0.5 * std::cos(turn * static_cast<double>(i))));
	for (std::size_t i = 0; i < mTwiddles.size(); ++i)
		mTwiddles[i] = std::polar(1.0f, static_cast<float>(-turn * static_cast<double>(i)));
}

void TSpectrogram::Add(std::span<const float> left, std::span<const float> right) {
	for (std::size_t i = 0; i < left.size(); ++i)
		mBuffer.emplace_back(Finite(left[i]), Finite(right[i]));
	ProcessWindows();
}

void TSpectrogram::Finish() {
	mBuffer.resize(mBuffer.size() + mSize);
	ProcessWindows();
}

/// Windows stand around evenly spaced points, the first ones begin before the sound.
int64_t TSpectrogram::WindowStart() const {
	return std::llround((static_cast<double>(mNextWindow) + 0.5) * mHop) - static_cast<int64_t>(mSize / 2);
}

void TSpectrogram::ProcessWindows() {
	const int64_t windows = mColumns * mWindowsPerColumn;
	std::size_t start = 0;
	for (; mNextWindow < windows; ++mNextWindow) {
		start = static_cast<std::size_t>(WindowStart() - mBufferStart);
		if (start + mSize > mBuffer.size())
			break;
		for (std::size_t i = 0; i < mSize; ++i)
			mWork[i] = mBuffer[start + i] * mWeights[i];
		Transform(mWork, mTwiddles);
		AddSpectrum();
	}
	start = std::min(start, mBuffer.size());
	mBuffer.erase(mBuffer.begin(), mBuffer.begin() + static_cast<std::ptrdiff_t>(start));
	mBufferStart += static_cast<int64_t>(start);
}

/// The spectra of left and right are the even and the odd part of that of their sum as a complex number, so the sum of
/// their powers is half the sum of the powers at both ends.
void TSpectrogram::AddSpectrum() {
	const auto column = static_cast<int32_t>(mNextWindow / mWindowsPerColumn);
	const float fullScale = static_cast<float>(mSize) / 4.0f; // of a sine under the window
	const float scale = 1.0f / (4.0f * fullScale * fullScale * static_cast<float>(mWindowsPerColumn));
	for (std::size_t bin = 0; bin <= mSize / 2; ++bin)
		Power(column, bin) += scale * (std::norm(mWork[bin]) + std::norm(mWork[(mSize - bin) % mSize]));
}

float& TSpectrogram::Power(int32_t column, std::size_t bin) {
	return mPowers[static_cast<std::size_t>(column) * (mSize / 2 + 1) + bin];
}

double TSpectrogram::BinDecibels(int32_t column, std::size_t bin) const {
	const float power = mPowers[static_cast<std::size_t>(column) * (mSize / 2 + 1) + std::min(bin, mSize / 2)];
	return power > 0.0f ? std::max(kQuietest, 10.0 * std::log10(static_cast<double>(power))) : kQuietest;
}

double TSpectrogram::Decibels(int32_t column, double fromHertz, double toHertz) const {
	const double binsPerHertz = static_cast<double>(mSize) / mSampleRate;
	const double from = fromHertz * binsPerHertz;
	const double to = toHertz * binsPerHertz;
	const double middle = 0.5 * (from + to);
	const auto below = static_cast<std::size_t>(middle);
	double loudest = std::lerp(BinDecibels(column, below), BinDecibels(column, below + 1), middle - std::floor(middle));
	for (auto bin = static_cast<std::size_t>(std::ceil(from)); static_cast<double>(bin) < to; ++bin)
		loudest = std::max(loudest, BinDecibels(column, bin));
	return loudest;
}
