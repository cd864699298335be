// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/files/TReplacedFile.h"
#include "tools/vortel2/sound/TSoundSource.h"

#include <cstdint>
#include <memory>
#include <optional>
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

	int64_t Frames() const override;

	int32_t Channels() const { return mInfo.channels; }

	std::size_t Read(std::span<float> left, std::span<float> right) override;

	/// Behind the end: in words if there was less sound than the file promises, else empty.
	std::string Shortfall() const;

private:
	bool Fill();
	bool PromisesMoreInHeader() const;

	std::string mPath;
	SF_INFO mInfo{};
	TSoundFileHandle mpFile;
	std::vector<float> mBuffer; // interleaved
	std::size_t mPosition = 0;  // in frames of the buffer
	std::size_t mFilled = 0;
	int64_t mFrames = 0; // read from the file so far
};

enum class ESampleFormat : int32_t { kPcm16, kPcm24, kFloat };
enum class EContainer : int32_t { kWav, kFlac, kOgg, kAiff };

struct TSoundFormat {
	TSoundFormat(ESampleFormat samples, EContainer container = EContainer::kWav)
	    : mSamples(samples),
	      mContainer(container) {}

	ESampleFormat mSamples; // of no meaning in an Ogg file
	EContainer mContainer;
};

/// Told by the extension, wav, flac, ogg, aiff or aif in either case. None for any other.
std::optional<EContainer> ContainerOf(const std::string& path);
/// Float where the container takes it, else the finest that it takes. None where it does not take what is asked for.
std::optional<TSoundFormat> FormatIn(EContainer container, std::optional<ESampleFormat> samples);

/// A stereo sound file that appears at its place when Commit has been called. Integer formats round to the nearest
/// step and stop at full scale; float keeps every sample as it is. Equal sound gives equal bytes. Throws TWorkError.
class TSoundFileWriter {
public:
	/// expectedFrames lets a file that could not be finished fail before the work.
	TSoundFileWriter(const std::string& path, int32_t sampleRate, TSoundFormat format, int64_t expectedFrames);

	/// Both of one length.
	void Write(std::span<const float> left, std::span<const float> right);
	/// Writes out what is still held; after that the counts hold.
	void Finish();
	/// Finishes if need be.
	void Commit();

	/// Samples beyond full scale that an integer format could not hold.
	int64_t Clipped() const noexcept { return mClipped; }

private:
	void CheckLength(int64_t frames) const;
	int32_t Quantised(float sample);
	void Flush();
	[[noreturn]] void Fail() const;

	TReplacedFile mTarget;
	TSoundFormat mFormat;
	TSoundFileHandle mpFile;
	int64_t mClipped = 0;
	std::vector<float> mBuffer;     // interleaved
	std::vector<int32_t> mIntegers; // left-aligned
	int64_t mFrames = 0;
};
