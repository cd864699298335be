// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/FakeDevices.h"

#include "document/TVortelDocument.h"
#include "effects/CreateVortelDspDevices.h"

#include <algorithm>

namespace {

class TFakeDevice final : public TVortelDspDevice {
public:
	TFakeDevice(TVortelDevice* device, THost* host, int32_t index)
	    : TVortelDspDevice(device, host, index),
	      mIndex(index) {
		FinishConstruction();
	}

	void Process(float* left, float* right, int count) override {
		if (mIndex == 0)
			return;
		FakeDevices::Log().mProcessed.push_back(mIndex);
		FakeDevices::Log().mSlices.push_back(count);
		TVortelDspDevice::Process(left, right, count);
	}

	void OnReseed(uint32_t seed) override {
		if (mIndex == 10)
			FakeDevices::Log().mSeeds.push_back(seed);
	}

protected:
	void ProcessEffect(float* left, float* right, int count) override {
		std::fill_n(left, count, 0.0f);
		std::fill_n(right, count, 0.0f);
	}

	void OnStart() override { Note('s'); }

	void OnRetrigger() override { Note('r'); }

	void OnSampleRateChanged(int32_t rate) override { FakeDevices::Log().mSampleRate = rate; }

	void OnBlockSizeChanged(int32_t size) override { FakeDevices::Log().mBlockSize = size; }

	void OnTempoChanged(float tempo) override {
		if (mIndex == 10)
			FakeDevices::Log().mTempos.push_back(tempo);
	}

private:
	void Note(char what) { FakeDevices::Log().mEvents.push_back({mIndex, what, FakeDevices::Log().mNow}); }

	int32_t mIndex;
};

} // namespace

std::vector<int64_t> FakeDevices::TLog::Samples(int32_t device, char what) const {
	std::vector<int64_t> samples;
	for (const TEvent& event : mEvents)
		if (event.mDevice == device && event.mWhat == what)
			samples.push_back(event.mSample);
	return samples;
}

std::vector<int32_t> FakeDevices::TLog::Started() const {
	std::vector<int32_t> devices;
	for (const TEvent& event : mEvents)
		if (event.mWhat == 's')
			devices.push_back(event.mDevice);
	return devices;
}

FakeDevices::TLog& FakeDevices::Log() {
	static TLog log;
	return log;
}

void CreateVortelDspDevices(TVortelDocument& document, TVortelDspDevice::THost& host) {
	for (int32_t index = 0; index < TVortelDocument::kNumberOfDevices; ++index)
		MakePtr<TFakeDevice>(document.Device(index), &host, index);
}
