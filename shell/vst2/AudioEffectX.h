// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst2/AEffEditor.h"
#include "shell/vst2/Vst2Interfaces.h"

#include <memory>

namespace AVstSdk {

/// An effect of VST 2: what every plug-in of that format needs and nothing of ours. Holds the record that the host
/// gets, turns its opcodes into virtual operations with the format's neutral answers, and wraps the calls to the host.
/// What does not exist is answered with 0. A host may leave out any pointer: operations that need one are not called
/// then.
class AudioEffectX {
public:
	AudioEffectX(audioMasterCallback host, VstInt32 programs, VstInt32 parameters);
	virtual ~AudioEffectX();

	AudioEffectX(const AudioEffectX&) = delete;
	AudioEffectX& operator=(const AudioEffectX&) = delete;

	AEffect* getAeffect() { return &cEffect; }

	virtual VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

	virtual void open() {}

	virtual void close() {}

	virtual void resume() {}

	virtual void suspend() {}

	/// Adds to the outputs; for hosts of old.
	virtual void process(float** inputs, float** outputs, VstInt32 samples) = 0;
	virtual void processReplacing(float** inputs, float** outputs, VstInt32 samples) = 0;

	virtual VstInt32 processEvents(VstEvents* /*events*/) { return 0; }

	virtual void setParameter(VstInt32 /*index*/, float /*value*/) {}

	virtual float getParameter(VstInt32 /*index*/) { return 0.0f; }

	virtual void getParameterName(VstInt32 /*index*/, char* /*text*/) {}

	virtual void getParameterLabel(VstInt32 /*index*/, char* /*text*/) {}

	virtual void getParameterDisplay(VstInt32 /*index*/, char* /*text*/) {}

	virtual VstInt32 getProgram() { return 0; }

	virtual void setProgram(VstInt32 /*index*/) {}

	virtual void setProgramName(char* /*text*/) {}

	virtual void getProgramName(char* /*text*/) {}

	virtual bool getProgramNameIndexed(VstInt32 /*category*/, VstInt32 /*index*/, char* /*text*/) { return false; }

	/// The data stays the effect's.
	virtual VstInt32 getChunk(void** /*data*/, bool /*isPreset*/) { return 0; }

	virtual VstInt32 setChunk(void* /*data*/, VstInt32 /*size*/, bool /*isPreset*/) { return 0; }

	virtual bool getInputProperties(VstInt32 /*index*/, VstPinProperties* /*pin*/) { return false; }

	virtual bool getOutputProperties(VstInt32 /*index*/, VstPinProperties* /*pin*/) { return false; }

	virtual bool getSpeakerArrangement(VstSpeakerArrangement** /*input*/, VstSpeakerArrangement** /*output*/) {
		return false;
	}

	virtual bool setSpeakerArrangement(VstSpeakerArrangement* /*input*/, VstSpeakerArrangement* /*output*/) {
		return false;
	}

	virtual bool getEffectName(char* /*text*/) { return false; }

	virtual bool getVendorString(char* /*text*/) { return false; }

	virtual bool getProductString(char* /*text*/) { return false; }

	virtual VstInt32 getVendorVersion() { return 0; }

	virtual VstInt32 canDo(char* /*text*/) { return 0; }

	virtual VstIntPtr vendorSpecific(VstInt32 /*index*/, VstIntPtr /*value*/, void* /*ptr*/, float /*opt*/) {
		return 0;
	}

	virtual bool keysRequired() { return false; }

	virtual VstInt32 fxIdle() { return 0; }

protected:
	// The host. What it does not know it answers with 0.

	VstIntPtr CallHost(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr, float opt = 0.0f);

	bool needIdle() { return CallHost(kHostNeedIdle) != 0; }

	bool ioChanged() { return CallHost(kHostIoChanged) != 0; }

	bool updateDisplay() { return CallHost(kHostUpdateDisplay) != 0; }

	bool sizeWindow(VstInt32 width, VstInt32 height) { return CallHost(audioMasterSizeWindow, width, height) != 0; }

	void beginEdit(VstInt32 index) { CallHost(audioMasterBeginEdit, index); }

	void endEdit(VstInt32 index) { CallHost(audioMasterEndEdit, index); }

	/// Tells the host of a value that the effect has already.
	void setParameterAutomated(VstInt32 index, float value) { CallHost(audioMasterAutomate, index, 0, nullptr, value); }

	bool sendVstEventsToHost(VstEvents* events) { return CallHost(audioMasterProcessEvents, 0, 0, events) != 0; }

	/// Null if the host tells nothing. filter: flags of what is wanted.
	const VstTimeInfo* getTimeInfo(VstIntPtr filter) {
		return reinterpret_cast<const VstTimeInfo*>(CallHost(audioMasterGetTime, 0, filter));
	}

	VstInt32 getCurrentProcessLevel() { return static_cast<VstInt32>(CallHost(audioMasterGetCurrentProcessLevel)); }

	/// What the host says now, or has said last.
	float updateSampleRate();
	VstInt32 updateBlockSize();

	AEffEditor* Editor() const { return mpEditor.get(); }

	void SetEditor(std::unique_ptr<AEffEditor> editor);
	void SetFlag(VstInt32 flag, bool isSet);

	AEffect cEffect{};

private:
	VstIntPtr DispatchText(VstInt32 opcode, VstInt32 index, char* text);
	VstIntPtr DispatchEditor(VstInt32 opcode, void* ptr);
	VstIntPtr DispatchConnections(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr);

	const audioMasterCallback mHost;
	std::unique_ptr<AEffEditor> mpEditor;
	float mSampleRate = 44100.0f;
	VstInt32 mBlockSize = 1024;
};

} // namespace AVstSdk
