// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/files/TReplacedFile.h"
#include "tools/vortel2/sound/TSoundSource.h"

#include <cstdint>
#include <memory>
#include <sndfile.h>
#include <span>
#include <string>
#include <vector>

struct TSoundFileCloser {
	void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};

using TSoundFileHandle = std::unique_ptr<SNDFILE, TSoundFileCloser>;

/// Any file that libsndfile knows, one or two channels, 8000 to 384000 Hz. Mono comes out on both sides.
/// Throws TWorkError.
class TSoundFileReader final : public TSoundSource {
public:
	explicit TSoundFileReader(const std::string& path);

	int32_t SampleRate() const override { return mInfo.samplerate; }

	int64_t Frames() const override { return mInfo.frames; }

	int32_t Channels() const { return mInfo.channels; }

	std::size_t Read(std::span<float> left, std::span<float> right) override;

private:
	bool Fill();

	std::string mPath;
	SF_INFO mInfo{};
	TSoundFileHandle mpFile;
	std::vector<float> mBuffer; // interleaved
	std::size_t mPosition = 0;  // in frames of the buffer
	std::size_t mFilled = 0;
};

enum class ESampleFormat : int32_t { kPcm16, kPcm24, kFloat };

/// A stereo WAV file that appears at its place when Commit has been called. Integer formats round to the nearest step
/// and stop at full scale; float keeps every sample as it is. Equal sound gives equal bytes. Throws TWorkError.
class TSoundFileWriter {
public:
	/// expectedFrames lets a file that could not be finished fail before the work.
	TSoundFileWriter(const std::string& path, int32_t sampleRate, ESampleFormat format, int64_t expectedFrames);

	/// Both of one length.
	void Write(std::span<const float> left, std::span<const float> right);
	void Commit();

private:
	void CheckLength(int64_t frames) const;
	void Flush();
	[[noreturn]] void Fail() const;

	TReplacedFile mTarget;
	ESampleFormat mFormat;
	TSoundFileHandle mpFile;
	std::vector<float> mBuffer;     // interleaved
	std::vector<int32_t> mIntegers; // left-aligned
	int64_t mFrames = 0;
};
