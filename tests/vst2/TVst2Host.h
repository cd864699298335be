// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst2/Vst2Interfaces.h"

#include <array>
#include <cstdint>
#include <dlfcn.h>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// A host that answers what it is told to, and writes down what it is asked. One at a time: the format's callback knows
/// no object.
class TVst2Host {
public:
	TVst2Host() {
		sHost = this;
		mTime.sampleRate = 44100.0;
	}

	~TVst2Host() { sHost = nullptr; }

	TVst2Host(const TVst2Host&) = delete;
	TVst2Host& operator=(const TVst2Host&) = delete;

	static VstIntPtr Callback(AEffect* effect, int opcode, int index, VstIntPtr value, void* ptr, float opt) {
		return sHost->Answer(effect, opcode, index, value, ptr, opt);
	}

	std::string TakeCalls() { return std::exchange(mCalls, {}); }

	VstIntPtr mVersion = 2400;
	VstIntPtr mRate = 44100;
	VstIntPtr mBlock = 512;
	VstIntPtr mProcessLevel = kVstProcessLevelRealtime;
	bool mGrantsSizes = true;
	bool mTellsTime = true;
	VstTimeInfo mTime{};
	std::vector<std::vector<VstMidiEvent>> mBatches;

private:
	VstIntPtr Answer(AEffect*, int opcode, int index, VstIntPtr value, void* ptr, float opt) {
		const auto note = [this](const std::string& text) {
			mCalls += text + " ";
			return 0;
		};
		switch (opcode) {
		case audioMasterVersion:
			return mVersion;
		case audioMasterGetSampleRate:
			return mRate;
		case audioMasterGetBlockSize:
			return mBlock;
		case audioMasterGetCurrentProcessLevel:
			return mProcessLevel;
		case audioMasterGetTime:
			return mTellsTime ? reinterpret_cast<VstIntPtr>(&mTime) : 0;
		case audioMasterAutomate:
			return note("automate" + std::to_string(index) + "=" + std::to_string(opt).substr(0, 4));
		case audioMasterBeginEdit:
			return note("begin" + std::to_string(index));
		case audioMasterEndEdit:
			return note("end" + std::to_string(index));
		case audioMasterSizeWindow:
			note("size" + std::to_string(index) + "x" + std::to_string(value));
			return mGrantsSizes;
		case kHostIoChanged:
			return note("io");
		case kHostNeedIdle:
			return note("idle");
		case kHostUpdateDisplay:
			return note("display");
		case audioMasterProcessEvents:
			Keep(*static_cast<VstEvents*>(ptr));
			return 1;
		default:
			return 0;
		}
	}

	void Keep(const VstEvents& events) {
		mBatches.emplace_back();
		for (int i = 0; i < events.numEvents; ++i)
			mBatches.back().push_back(*reinterpret_cast<const VstMidiEvent*>(events.events[i]));
	}

	static inline TVst2Host* sHost = nullptr;
	std::string mCalls;
};

/// An effect as a host holds it: the record and nothing else. Closed at the end, unless it has been.
class TVst2Effect {
public:
	explicit TVst2Effect(AEffect* effect) : mpEffect(effect) {
		if (!effect)
			throw std::runtime_error("there is no effect");
	}

	~TVst2Effect() { Close(); }

	TVst2Effect(const TVst2Effect&) = delete;
	TVst2Effect& operator=(const TVst2Effect&) = delete;

	AEffect* operator->() const { return mpEffect; }

	VstIntPtr Do(int opcode, int index = 0, VstIntPtr value = 0, void* ptr = nullptr, float opt = 0.0f) const {
		return mpEffect->dispatcher(mpEffect, opcode, index, value, ptr, opt);
	}

	void Close() {
		if (AEffect* effect = std::exchange(mpEffect, nullptr))
			effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0f);
	}

	std::string Text(int opcode, int index = 0) const {
		std::array<char, 256> text{};
		Do(opcode, index, 0, text.data());
		return text.data();
	}

	VstIntPtr CanDo(std::string text) const { return Do(effCanDo, 0, 0, text.data()); }

	std::vector<uint8_t> Chunk(bool isPreset = false) const {
		void* data = nullptr;
		const VstIntPtr size = Do(effGetChunk, isPreset, 0, &data);
		const auto* bytes = static_cast<const uint8_t*>(data);
		return {bytes, bytes + size};
	}

	void Load(std::span<const uint8_t> chunk, bool isPreset = false) const {
		Do(effSetChunk, isPreset, static_cast<VstIntPtr>(chunk.size()), const_cast<uint8_t*>(chunk.data()));
	}

	void Process(float* leftIn, float* rightIn, float* leftOut, float* rightOut, int samples) const {
		float* inputs[] = {leftIn, rightIn};
		float* outputs[] = {leftOut, rightOut};
		mpEffect->processReplacing(mpEffect, inputs, outputs, samples);
	}

	void SetParameter(int index, float value) const { mpEffect->setParameter(mpEffect, index, value); }

	float Parameter(int index) const { return mpEffect->getParameter(mpEffect, index); }

private:
	AEffect* mpEffect;
};

/// Events as a host hands them over.
class TVst2Events {
public:
	void Add(uint8_t status, uint8_t data1, uint8_t data2, int offset) {
		VstMidiEvent event{};
		event.type = kVstMidiType;
		event.byteSize = sizeof(event);
		event.deltaFrames = offset;
		event.midiData[0] = status;
		event.midiData[1] = data1;
		event.midiData[2] = data2;
		mEvents.push_back(event);
	}

	std::vector<VstMidiEvent> mEvents;

	VstEvents* Record() {
		mRecord.assign(2, 0);
		*reinterpret_cast<int*>(mRecord.data()) = static_cast<int>(mEvents.size());
		for (VstMidiEvent& event : mEvents)
			mRecord.push_back(reinterpret_cast<VstIntPtr>(&event));
		return reinterpret_cast<VstEvents*>(mRecord.data());
	}

private:
	std::vector<VstIntPtr> mRecord;
};

/// The library, loaded as Linux hosts load it.
class TVst2Module {
public:
	TVst2Module() : mpHandle(dlopen(VORTEL_VST2_BINARY, RTLD_NOW | RTLD_LOCAL)) {
		if (!mpHandle)
			throw std::runtime_error(dlerror());
	}

	~TVst2Module() { dlclose(mpHandle); }

	TVst2Module(const TVst2Module&) = delete;
	TVst2Module& operator=(const TVst2Module&) = delete;

	/// Null if the entry gives none.
	AEffect* Make(audioMasterCallback host = &TVst2Host::Callback, const char* entry = "VSTPluginMain") const {
		return reinterpret_cast<AEffect* (*)(audioMasterCallback)>(dlsym(mpHandle, entry))(host);
	}

private:
	void* mpHandle;
};
