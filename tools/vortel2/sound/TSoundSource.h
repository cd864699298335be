// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

/// Stereo sound, read once from front to back. Full scale at ±1.
class TSoundSource {
public:
	virtual ~TSoundSource() = default;

	/// Hertz.
	virtual int32_t SampleRate() const = 0;
	/// As far as known beforehand; only Read's answer counts.
	virtual int64_t Frames() const = 0;
	/// Both of one length. Fewer frames than asked for only at the end.
	virtual std::size_t Read(std::span<float> left, std::span<float> right) = 0;
};

/// Sound in memory.
struct TStereoSound {
	int32_t mSampleRate = 44100;
	std::vector<float> mLeft;
	std::vector<float> mRight;
};

class TMemorySource final : public TSoundSource {
public:
	explicit TMemorySource(TStereoSound sound) : mSound(std::move(sound)) {}

	int32_t SampleRate() const override { return mSound.mSampleRate; }

	int64_t Frames() const override { return static_cast<int64_t>(mSound.mLeft.size()); }

	std::size_t Read(std::span<float> left, std::span<float> right) override;

private:
	TStereoSound mSound;
	std::size_t mPosition = 0;
};

/// Another source with silence behind it.
class TTailSource final : public TSoundSource {
public:
	/// The source must outlive this one. seconds is taken to the nearest frame.
	TTailSource(TSoundSource& source, double seconds);

	int32_t SampleRate() const override { return mSource.SampleRate(); }

	int64_t Frames() const override { return mFrames; }

	std::size_t Read(std::span<float> left, std::span<float> right) override;

private:
	TSoundSource& mSource;
	int64_t mTailFrames;
	int64_t mFrames;
};
