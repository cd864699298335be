// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "effects/TVortelDspDevice.h"
#include "tests/effects/TestSignals.h"
#include "tests/support/TDocumentFixture.h"

#include <algorithm>
#include <vector>

using TestSignals::TSignal;

struct TStereo {
	TSignal mLeft, mRight;

	std::size_t Size() const { return mLeft.size(); }

	friend bool operator==(const TStereo&, const TStereo&) = default;
};

/// What a device takes from an engine.
class TTestHost final : public TVortelDspDevice::THost {
public:
	explicit TTestHost(int32_t sampleRate = 44100, float tempo = 120.0f) : mSampleRate(sampleRate), mTempo(tempo) {}

	int32_t SampleRate() const override { return mSampleRate; }

	int32_t BlockSize() const override { return 512; }

	float Tempo() const override { return mTempo; }

	void RegisterDevice(int32_t index, TVortelDspDevice* device) override {
		mIndex = index;
		mpDevice = device;
	}

	int32_t mIndex = -1;
	TPtr<TVortelDspDevice> mpDevice;

private:
	int32_t mSampleRate;
	float mTempo;
};

/// A document, and devices that read its active scene.
class TDspDeviceFixture : public TDocumentFixture {
protected:
	TVortelScene& Scene() { return *mpDocument->ActiveScene(); }

	template <class TDevice>
	TPtr<TDevice> Attach(TPtr<TDevice> device) {
		device->SetProgram(mpDocument->ActiveProgram());
		device->SetScene(mpDocument->ActiveScene());
		return device;
	}

	/// As the engine does for each slice. A device that is not running is not called.
	static void ProcessSlice(TVortelDspDevice& device, TStereo& sound, std::size_t from, std::size_t count) {
		if (!device.IsRunning())
			return;
		device.CaptureDry(&sound.mLeft[from], &sound.mRight[from], static_cast<int>(count));
		device.Process(&sound.mLeft[from], &sound.mRight[from], static_cast<int>(count));
	}

	/// Slices of the given lengths in turn, over and over. The end may be cut.
	static void
	Run(TVortelDspDevice& device, TStereo& sound, const std::vector<std::size_t>& slices, std::size_t from = 0,
	    std::size_t to = static_cast<std::size_t>(-1)) {
		to = std::min(to, sound.Size());
		for (std::size_t at = from, slice = 0; at < to; ++slice) {
			const std::size_t count = std::min(slices[slice % slices.size()], to - at);
			ProcessSlice(device, sound, at, count);
			at += count;
		}
	}
};
