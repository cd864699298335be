// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/open/TSoundOutput.h"

#include "tools/vortel2/open/TLoopPlayer.h"

#include <rtaudio/RtAudio.h>

#include <array>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

/// Plays to nobody, as fast as a device would.
class TSilence final : public TSoundOutput {
public:
	explicit TSilence(TLoopPlayer& player) : mThread([this, &player] { Play(player); }) {}

	~TSilence() override {
		mIsEnding = true;
		mThread.join();
	}

	std::string Description() const override { return "no sound output"; }

private:
	void Play(TLoopPlayer& player) {
		std::array<float, TLoopPlayer::kBlockSize> left{};
		std::array<float, TLoopPlayer::kBlockSize> right{};
		const auto block =
		    std::chrono::nanoseconds(int64_t{1000000000} * TLoopPlayer::kBlockSize / player.SampleRate());
		auto next = std::chrono::steady_clock::now();
		while (!mIsEnding) {
			player.Play(left, right);
			std::this_thread::sleep_until(next += block);
		}
	}

	std::atomic<bool> mIsEnding{false};
	std::thread mThread;
};

class TDevice final : public TSoundOutput {
public:
	/// Throws std::runtime_error if the device cannot be had.
	TDevice(TLoopPlayer& player, RtAudio::Api api) : mAudio(api) {
		mAudio.showWarnings(false);
		if (mAudio.getCurrentApi() != api || mAudio.getDeviceCount() == 0)
			throw std::runtime_error("no device");
		RtAudio::StreamParameters output;
		output.deviceId = mAudio.getDefaultOutputDevice();
		output.nChannels = 2;
		RtAudio::StreamOptions options;
		options.flags = RTAUDIO_NONINTERLEAVED;
		options.streamName = "Vortel2";
		unsigned frames = TLoopPlayer::kBlockSize;
		mName = api == RtAudio::UNIX_JACK ? "JACK" : mAudio.getDeviceInfo(output.deviceId).name;
		const auto rate = static_cast<unsigned>(player.SampleRate());
		mAudio.openStream(&output, nullptr, RTAUDIO_FLOAT32, rate, &frames, &Fill, &player, &options, &Ignore);
		mAudio.startStream();
	}

	~TDevice() override {
		if (mAudio.isStreamOpen())
			mAudio.closeStream();
	}

	std::string Description() const override { return mName; }

private:
	static int Fill(void* output, void*, unsigned frames, double, RtAudioStreamStatus, void* player) {
		auto* samples = static_cast<float*>(output);
		static_cast<TLoopPlayer*>(player)->Play({samples, frames}, {samples + frames, frames});
		return 0;
	}

	/// Instead of a line on standard error.
	static void Ignore(RtAudioError::Type, const std::string&) {}

	RtAudio mAudio;
	std::string mName;
};

} // namespace

std::unique_ptr<TSoundOutput> TSoundOutput::Open(TLoopPlayer& player, bool silent) {
	std::vector<RtAudio::Api> apis;
	if (!silent)
		RtAudio::getCompiledApi(apis); // JACK comes first, then Pulse, then ALSA
	for (const RtAudio::Api api : apis)
		try {
			return std::make_unique<TDevice>(player, api);
		} catch (const std::runtime_error&) {
			continue;
		}
	return std::make_unique<TSilence>(player);
}
