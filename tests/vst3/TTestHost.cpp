// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/vst3/TTestHost.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "tests/plugin/TInstanceDriver.h"
#include "tests/support/TTemporaryFolder.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// The bundle looks for the user's files: here it finds a home of its own.
class THome final : public testing::Environment {
public:
	THome() {
		TLog::SetEchoToConsole(false);
		setenv("HOME", mFolder.PathOf("").c_str(), 1);
		for (const char* variable : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
			unsetenv(variable);
	}

private:
	TTemporaryFolder mFolder;
};

testing::Environment* const kHome = testing::AddGlobalTestEnvironment(new THome);

Event ToVst3(const TMidiEvent& midi) {
	const auto value = [](uint8_t data) { return static_cast<float>(data) / 127.0f; };
	Event event{};
	event.sampleOffset = midi.mSampleOffset;
	switch (midi.mStatus) {
	case 0x90:
		event.type = Event::kNoteOnEvent;
		event.noteOn = {0, midi.mData1, 0.0f, value(midi.mData2), 0, -1};
		break;
	case 0x80:
		event.type = Event::kNoteOffEvent;
		event.noteOff = {0, midi.mData1, value(midi.mData2), -1, 0.0f};
		break;
	default:
		const bool isProgram = midi.mStatus == 0xC0;
		event.type = Event::kLegacyMIDICCOutEvent;
		event.midiCCOut.controlNumber = isProgram ? static_cast<uint8>(kCtrlProgramChange) : midi.mData1;
		event.midiCCOut.value = static_cast<int8>(isProgram ? midi.mData1 : midi.mData2);
	}
	return event;
}

TFakeChanges ToVst3(std::span<const TProgramPluginShell::TParameterChange> changes) {
	TFakeChanges result;
	for (const auto& change : changes) {
		const auto id = static_cast<ParamID>(change.mParameter);
		auto queue = std::ranges::find(result.mQueues, id, &TFakeQueue::mId);
		if (queue == result.mQueues.end())
			queue = result.mQueues.insert(queue, {id, {}});
		queue->mPoints.emplace_back(change.mSampleOffset, change.mValue);
	}
	return result;
}

} // namespace

std::string Narrow(const String128 text) {
	std::string narrow;
	for (int i = 0; i < 128 && text[i] != 0; ++i)
		narrow += static_cast<char>(text[i]);
	return narrow;
}

TTestPlugin::TTestPlugin(const TVst3Module& module) : mpComponent(module.Make<IComponent>(IComponent_iid)) {
	mpProcessor = As<IAudioProcessor>(IAudioProcessor_iid);
	mpController = As<IEditController>(IEditController_iid);
	const auto context = static_cast<IHostApplication*>(&mHost);
	EXPECT_EQ(mpComponent->initialize(context), kResultOk);
	EXPECT_EQ(mpController->initialize(context), kResultFalse);
	EXPECT_EQ(mpController->setComponentHandler(&mHost), kResultOk);
}

TTestPlugin::~TTestPlugin() {
	EXPECT_EQ(mpController->setComponentHandler(nullptr), kResultOk);
	EXPECT_EQ(mpComponent->terminate(), kResultOk);
	EXPECT_EQ(mpController->terminate(), kResultFalse);
}

tresult TTestPlugin::Setup(double rate, int32 block) {
	ProcessSetup setup{kRealtime, kSample32, block, rate};
	return mpProcessor->setupProcessing(setup);
}

void TTestPlugin::Activate(double rate, int32 block) {
	EXPECT_EQ(Setup(rate, block), kResultOk);
	EXPECT_EQ(mpComponent->setActive(1), kResultOk);
	mpProcessor->setProcessing(1);
}

void TTestPlugin::Deactivate() {
	mpProcessor->setProcessing(0);
	EXPECT_EQ(mpComponent->setActive(0), kResultOk);
}

TTestState TTestPlugin::State() {
	TFakeHostStream stream;
	EXPECT_EQ(mpComponent->getState(&stream), kResultOk);
	return stream.mBytes;
}

tresult TTestPlugin::Load(const TTestState& state) {
	TFakeHostStream stream(state);
	const tresult result = mpComponent->setState(&stream);
	EXPECT_EQ(mpController->setComponentState(&stream), kResultOk); // read to its end, as some hosts hand it over
	return result;
}

std::vector<double> TTestPlugin::Values() const {
	std::vector<double> values;
	for (ParamID id = 0; id < 210; ++id)
		values.push_back(mpController->getParamNormalized(id));
	return values;
}

TTestSession TTestSession::Busy(unsigned int seed, int blocks) {
	TParkMillerPRNG random;
	random.SetSeed(seed);
	const auto draw = [&random](int32_t below) { return static_cast<int32_t>(random.NextDouble() * below); };
	TTestSession session;
	for (int number = 0; number < blocks; ++number) {
		TBlock block;
		block.mSamples = number % 11 == 0 ? draw(3) : draw(513);
		const auto key = static_cast<uint8_t>(draw(4));
		for (int32_t offset = draw(300); offset < block.mSamples; offset += 1 + draw(150)) {
			const int32_t parameter = draw(210);
			if (parameter != kJitter)
				block.mChanges.push_back({offset, parameter, static_cast<float>(random.NextDouble())});
		}
		if (number % 5 == 0)
			block.mEvents.push_back({0x90, key, 100, block.mSamples / 3});
		if (number % 7 == 0)
			block.mEvents.push_back({0x80, key, 0, block.mSamples / 2});
		if (number % 23 == 0)
			block.mEvents.push_back({0xC0, static_cast<uint8_t>(draw(2)), 0, block.mSamples / 2});
		if (number % 61 == 0)
			block.mEvents.push_back({0xB0, 120, 0, block.mSamples / 2});
		session.mBlocks.push_back(std::move(block));
	}
	return session;
}

TTestSession::TSound TTestSession::Play(TTestPlugin& plugin, EBuffers buffers, ETicks ticks) const {
	ProcessContext context{};
	context.state = ProcessContext::kPlaying | ProcessContext::kTempoValid | ProcessContext::kProjectTimeMusicValid;
	context.tempo = kTempo;
	const auto process = [&](const TBlock& block, double beat, float* left, float* right) {
		const auto samples = static_cast<std::size_t>(block.mSamples);
		const std::vector<float> copies[2] = {{left, left + samples + 1}, {right, right + samples + 1}};
		std::vector<float> inputs[2] = {copies[0], copies[1]};
		float* apart[2] = {inputs[0].data(), inputs[1].data()};
		float* inPlace[2] = {left, right};
		float* channels[2] = {
		    buffers == EBuffers::kLeftOnRight || buffers == EBuffers::kCrossed ? apart[1] : left,
		    buffers == EBuffers::kRightOnLeft || buffers == EBuffers::kCrossed ? apart[0] : right};
		AudioBusBuffers in;
		AudioBusBuffers out;
		in.numChannels = buffers == EBuffers::kMono ? 1 : 2;
		in.channelBuffers32 = buffers == EBuffers::kInPlace ? inPlace : apart;
		out.numChannels = 2;
		out.channelBuffers32 = channels;
		TFakeChanges changes = ToVst3(block.mChanges);
		TFakeEvents events;
		for (const TMidiEvent& midi : block.mEvents)
			events.mEvents.push_back(ToVst3(midi));
		context.projectTimeMusic = beat;
		ProcessData data;
		data.numSamples = block.mSamples;
		data.numInputs = data.numOutputs = 1;
		data.inputs = &in;
		data.outputs = &out;
		data.inputParameterChanges = &changes;
		data.inputEvents = &events;
		data.processContext = &context;
		EXPECT_EQ(plugin.mpProcessor->process(data), kResultOk);
		EXPECT_TRUE(inputs[0] == copies[0] || channels[1] == apart[0]);
		EXPECT_TRUE(inputs[1] == copies[1] || channels[0] == apart[1]);
		const std::vector<float> sound[2] = {
		    {channels[0], channels[0] + samples}, {channels[1], channels[1] + samples}};
		std::ranges::copy(sound[0], left);
		std::ranges::copy(sound[1], right);
	};
	return PlayBlocks(buffers == EBuffers::kMono, process, [&] {
		if (ticks == ETicks::kWith)
			plugin.Tick();
	});
}

TTestSession::TSound TTestSession::Play(TProgramInstance& instance, EBuffers buffers) const {
	TTransportInfo transport;
	transport.mFlags =
	    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
	transport.mTempo = static_cast<float>(kTempo);
	transport.mIsPlaying = true;
	const auto process = [&](const TBlock& block, double beat, float* left, float* right) {
		transport.mBeatPosition = beat;
		instance.Shell().Process({left, right, left, right, block.mSamples, &transport, block.mChanges, block.mEvents});
	};
	return PlayBlocks(buffers == EBuffers::kMono, process, [&] { instance.Shell().Tick(); });
}

TTestState MakeTestState(unsigned int seed) {
	const auto instance = TProgramInstance::Create();
	TInstanceDriver(*instance).FillScenes();
	TParkMillerPRNG random;
	random.SetSeed(seed);
	for (int32_t id = 0; id < 210; ++id)
		if (id != TTestSession::kJitter)
			instance->Shell().SetParameterFromHost(id, static_cast<float>(random.NextDouble()));
	TStream chunk;
	instance->Shell().AsGui([&] { instance->Document().SaveBankChunk(chunk); });
	const auto length = static_cast<int32_t>(chunk.Bytes().size());
	TTestState state(sizeof(length) + chunk.Bytes().size());
	std::memcpy(state.data(), &length, sizeof(length));
	std::ranges::copy(chunk.Bytes(), state.begin() + sizeof(length));
	return state;
}

void LoadTestState(TProgramInstance& instance, const TTestState& state) {
	const TStream chunk(std::span<const uint8_t>(state).subspan(sizeof(int32_t)));
	instance.Shell().AsGui([&] { instance.Document().LoadBankChunk(chunk); });
}
