// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/TSoundFile.h"

#include "tools/vortel2/files/InputFile.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/Nearest.h"
#include "tools/vortel2/sound/OggPages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr std::size_t kBufferFrames = 8192;
constexpr int32_t kMinimumRate = 8000;
constexpr int32_t kMaximumRate = 384000;
/// Lengths of WAV and AIFF files are unsigned 32 bit numbers; the headers take well under a kilobyte.
constexpr int64_t kMaximumData = 0xffffffffLL - 1024;
/// More than any file holds: the library's way to say that it does not know.
constexpr int64_t kUnknownFrames = int64_t{1} << 48;

struct TContainer {
	std::string_view mExtension;
	EContainer mContainer;
	int mFormat; // of the library
};

constexpr std::array<TContainer, 5> kContainers{{
    {".wav", EContainer::kWav, SF_FORMAT_WAV},
    {".flac", EContainer::kFlac, SF_FORMAT_FLAC},
    {".ogg", EContainer::kOgg, SF_FORMAT_OGG},
    {".aiff", EContainer::kAiff, SF_FORMAT_AIFF},
    {".aif", EContainer::kAiff, SF_FORMAT_AIFF},
}};

int MajorFormat(EContainer container) {
	return std::find_if(
	           kContainers.begin(), kContainers.end(),
	           [container](const TContainer& entry) { return entry.mContainer == container; })
	    ->mFormat;
}

int SubFormat(TSoundFormat format) {
	if (format.mContainer == EContainer::kOgg)
		return SF_FORMAT_VORBIS;
	switch (format.mSamples) {
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

/// "data : 80000 (should be 76999)", a line of the library's log: a chunk of sound is cut off. Lengths that only say
/// "unknown", as programs write them that could not go back, promise nothing.
bool IsCutChunk(std::string_view line) {
	static constexpr std::string_view kChunks[] = {"data", "SSND", "Data Size", "riff", "Riff size"};
	static constexpr long long kLongestPromise = 0x7ffff000;
	const std::size_t colon = line.find(':');
	const std::size_t should = line.find(" (should be ");
	if (colon == std::string_view::npos || should == std::string_view::npos || should < colon)
		return false;
	std::string_view label = line.substr(0, colon);
	label.remove_prefix(std::min(label.find_first_not_of(' '), label.size()));
	label.remove_suffix(label.size() - std::min(label.find_last_not_of(' ') + 1, label.size()));
	const long long promised = std::atoll(std::string(line.substr(colon + 1)).c_str());
	const long long present = std::atoll(std::string(line.substr(should + 12)).c_str());
	return std::find(std::begin(kChunks), std::end(kChunks), label) != std::end(kChunks) && present < promised &&
	       promised < kLongestPromise;
}

} // namespace

std::optional<EContainer> ContainerOf(const std::string& path) {
	const std::string lower = LowerCase(path);
	for (const TContainer& container : kContainers)
		if (lower.ends_with(container.mExtension))
			return container.mContainer;
	return std::nullopt;
}

std::optional<TSoundFormat> FormatIn(EContainer container, std::optional<ESampleFormat> samples) {
	if (container == EContainer::kOgg && samples)
		return std::nullopt;
	if (container == EContainer::kFlac && samples == ESampleFormat::kFloat)
		return std::nullopt;
	const ESampleFormat finest = container == EContainer::kFlac ? ESampleFormat::kPcm24 : ESampleFormat::kFloat;
	return TSoundFormat(samples.value_or(finest), container);
}

TSoundFileReader::TSoundFileReader(const std::string& path)
    : mPath(path == "-" ? "standard input" : path),
      mBuffer(kBufferFrames * 2) {
	mpFile.reset(sf_open_fd(OpenForSeeking(path), SFM_READ, &mInfo, SF_TRUE));
	if (!mpFile)
		throw TWorkError(mPath + ": is not a sound file");
	if (mInfo.channels < 1 || mInfo.channels > 2)
		throw TWorkError(mPath + ": has " + std::to_string(mInfo.channels) + " channels, not one or two");
	if (mInfo.samplerate < kMinimumRate || mInfo.samplerate > kMaximumRate)
		throw TWorkError(
		    mPath + ": has a sample rate of " + std::to_string(mInfo.samplerate) + " Hz, not 8000 to 384000");
}

int64_t TSoundFileReader::Frames() const {
	return mInfo.frames > kUnknownFrames ? 0 : mInfo.frames;
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
	mFrames += static_cast<int64_t>(mFilled);
	// A decoder that has lost its way is at the end of what can be had; Shortfall tells.
	const int error = mFilled < kBufferFrames ? sf_error(mpFile.get()) : SF_ERR_NO_ERROR;
	if (error == SF_ERR_SYSTEM || (error != SF_ERR_NO_ERROR && mFrames >= mInfo.frames))
		throw TWorkError(mPath + ": " + sf_strerror(mpFile.get()));
	return mFilled > 0;
}

std::string TSoundFileReader::Shortfall() const {
	const std::string there = std::to_string(mFrames);
	if (mInfo.frames > kUnknownFrames)
		return mPath + ": ends early or is damaged, after " + there + " frames";
	if (mFrames < mInfo.frames)
		return mPath + ": ends early or is damaged, after " + there + " of " + std::to_string(mInfo.frames) + " frames";
	if (PromisesMoreInHeader())
		return mPath + ": ends early, after " + there + " frames; its header promises more";
	return {};
}

bool TSoundFileReader::PromisesMoreInHeader() const {
	std::string log(16384, '\0');
	sf_command(mpFile.get(), SFC_GET_LOG_INFO, log.data(), static_cast<int>(log.size()));
	std::string_view rest = log.c_str();
	while (!rest.empty()) {
		const std::size_t end = std::min(rest.find('\n'), rest.size());
		if (IsCutChunk(rest.substr(0, end)))
			return true;
		rest.remove_prefix(std::min(end + 1, rest.size()));
	}
	return false;
}

TSoundFileWriter::TSoundFileWriter(
    const std::string& path, int32_t sampleRate, TSoundFormat format, int64_t expectedFrames)
    : mTarget(path),
      mFormat(format) {
	CheckLength(expectedFrames);
	SF_INFO info{};
	info.samplerate = sampleRate;
	info.channels = 2;
	info.format = MajorFormat(format.mContainer) | SubFormat(format);
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

void TSoundFileWriter::Finish() {
	Flush();
	errno = 0;
	if (sf_close(mpFile.release()) != SF_ERR_NO_ERROR)
		Fail();
	if (mFormat.mContainer == EContainer::kOgg && !NumberOggPages(mTarget.Descriptor()))
		Fail();
}

void TSoundFileWriter::Commit() {
	if (mpFile)
		Finish();
	mTarget.Commit();
}

void TSoundFileWriter::CheckLength(int64_t frames) const {
	const bool isLimited = mFormat.mContainer == EContainer::kWav || mFormat.mContainer == EContainer::kAiff;
	if (isLimited && frames > kMaximumData / BytesPerFrame(mFormat.mSamples))
		throw TWorkError(
		    mTarget.Target() + ": would be longer than " +
		    (mFormat.mContainer == EContainer::kWav ? "a WAV" : "an AIFF") + " file can be");
}

/// Rounded to a number of the format's bits, which lies in the upper end of the result.
int32_t TSoundFileWriter::Quantised(float sample) {
	const int bits = mFormat.mSamples == ESampleFormat::kPcm16 ? 16 : 24;
	const double fullScale = std::ldexp(1.0, bits - 1);
	const double value = std::isnan(sample) ? 0.0 : std::round(static_cast<double>(sample) * fullScale);
	mClipped += std::abs(value) > fullScale ? 1 : 0;
	const double limited = std::clamp(value, -fullScale, fullScale - 1.0);
	return static_cast<int32_t>(limited * std::ldexp(1.0, 32 - bits));
}

void TSoundFileWriter::Flush() {
	const auto frames = static_cast<sf_count_t>(mBuffer.size() / 2);
	CheckLength(mFrames += frames);
	errno = 0;
	sf_count_t written = 0;
	if (mFormat.mContainer == EContainer::kOgg || mFormat.mSamples == ESampleFormat::kFloat) {
		written = sf_writef_float(mpFile.get(), mBuffer.data(), frames);
	} else {
		mIntegers.resize(mBuffer.size());
		std::transform(
		    mBuffer.begin(), mBuffer.end(), mIntegers.begin(), [this](float sample) { return Quantised(sample); });
		written = sf_writef_int(mpFile.get(), mIntegers.data(), frames);
	}
	if (written != frames)
		Fail();
	mBuffer.clear();
}

void TSoundFileWriter::Fail() const {
	throw TWorkError(mTarget.Target() + ": " + (errno != 0 ? std::strerror(errno) : sf_strerror(mpFile.get())));
}
