// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/TSoundFile.h"

#include "tools/vortel2/files/InputFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t kBufferFrames = 8192;
constexpr int32_t kMinimumRate = 8000;
constexpr int32_t kMaximumRate = 384000;
/// A WAV file's lengths are unsigned 32 bit numbers; its headers take well under a kilobyte.
constexpr int64_t kMaximumWavData = 0xffffffffLL - 1024;

int SubFormat(ESampleFormat format) {
	switch (format) {
	case ESampleFormat::kPcm16:
		return SF_FORMAT_PCM_16;
	case ESampleFormat::kPcm24:
		return SF_FORMAT_PCM_24;
	default:
		return SF_FORMAT_FLOAT;
	}
}

int64_t BytesPerFrame(ESampleFormat format) {
	return format == ESampleFormat::kPcm16 ? 4 : format == ESampleFormat::kPcm24 ? 6 : 8;
}

/// Rounded to a number of so many bits, which lies in the upper end of the result.
int32_t Quantised(float sample, int bits) {
	const double fullScale = std::ldexp(1.0, bits - 1);
	const double value = std::isnan(sample) ? 0.0 : std::round(static_cast<double>(sample) * fullScale);
	const double limited = std::clamp(value, -fullScale, fullScale - 1.0);
	return static_cast<int32_t>(limited * std::ldexp(1.0, 32 - bits));
}

} // namespace

TSoundFileReader::TSoundFileReader(const std::string& path) : mPath(path), mBuffer(kBufferFrames * 2) {
	mpFile.reset(sf_open_fd(OpenForReading(path), SFM_READ, &mInfo, SF_TRUE));
	if (!mpFile)
		throw TWorkError(path + ": is not a sound file");
	if (mInfo.channels < 1 || mInfo.channels > 2)
		throw TWorkError(path + ": has " + std::to_string(mInfo.channels) + " channels, not one or two");
	if (mInfo.samplerate < kMinimumRate || mInfo.samplerate > kMaximumRate)
		throw TWorkError(
		    path + ": has a sample rate of " + std::to_string(mInfo.samplerate) + " Hz, not 8000 to 384000");
}

std::size_t TSoundFileReader::Read(std::span<float> left, std::span<float> right) {
	const auto channels = static_cast<std::size_t>(mInfo.channels);
	std::size_t frames = 0;
	while (frames < left.size() && (mPosition < mFilled || Fill())) {
		const std::size_t count = std::min(left.size() - frames, mFilled - mPosition);
		for (std::size_t i = 0; i < count; ++i) {
			const float* frame = mBuffer.data() + (mPosition + i) * channels;
			left[frames + i] = frame[0];
			right[frames + i] = frame[channels - 1];
		}
		frames += count;
		mPosition += count;
	}
	return frames;
}

bool TSoundFileReader::Fill() {
	mPosition = 0;
	mFilled = static_cast<std::size_t>(sf_readf_float(mpFile.get(), mBuffer.data(), kBufferFrames));
	if (mFilled < kBufferFrames && sf_error(mpFile.get()) != SF_ERR_NO_ERROR)
		throw TWorkError(mPath + ": " + sf_strerror(mpFile.get()));
	return mFilled > 0;
}

TSoundFileWriter::TSoundFileWriter(
    const std::string& path, int32_t sampleRate, ESampleFormat format, int64_t expectedFrames)
    : mTarget(path),
      mFormat(format) {
	CheckLength(expectedFrames);
	SF_INFO info{};
	info.samplerate = sampleRate;
	info.channels = 2;
	info.format = SF_FORMAT_WAV | SubFormat(format);
	mpFile.reset(sf_open_fd(mTarget.Descriptor(), SFM_WRITE, &info, SF_FALSE));
	if (!mpFile)
		Fail();
	// That chunk holds the time of day.
	sf_command(mpFile.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
	mBuffer.reserve(kBufferFrames * 2);
}

void TSoundFileWriter::Write(std::span<const float> left, std::span<const float> right) {
	for (std::size_t i = 0; i < left.size(); ++i) {
		mBuffer.push_back(left[i]);
		mBuffer.push_back(right[i]);
		if (mBuffer.size() == kBufferFrames * 2)
			Flush();
	}
}

void TSoundFileWriter::Commit() {
	Flush();
	errno = 0;
	if (sf_close(mpFile.release()) != SF_ERR_NO_ERROR)
		Fail();
	mTarget.Commit();
}

void TSoundFileWriter::CheckLength(int64_t frames) const {
	if (frames > kMaximumWavData / BytesPerFrame(mFormat))
		throw TWorkError(mTarget.Target() + ": would be longer than a WAV file can be");
}

void TSoundFileWriter::Flush() {
	const auto frames = static_cast<sf_count_t>(mBuffer.size() / 2);
	CheckLength(mFrames += frames);
	errno = 0;
	sf_count_t written = 0;
	if (mFormat == ESampleFormat::kFloat) {
		written = sf_writef_float(mpFile.get(), mBuffer.data(), frames);
	} else {
		const int bits = mFormat == ESampleFormat::kPcm16 ? 16 : 24;
		mIntegers.resize(mBuffer.size());
		std::transform(mBuffer.begin(), mBuffer.end(), mIntegers.begin(), [bits](float sample) {
			return Quantised(sample, bits);
		});
		written = sf_writef_int(mpFile.get(), mIntegers.data(), frames);
	}
	if (written != frames)
		Fail();
	mBuffer.clear();
}

void TSoundFileWriter::Fail() const {
	throw TWorkError(mTarget.Target() + ": " + (errno != 0 ? std::strerror(errno) : sf_strerror(mpFile.get())));
}
