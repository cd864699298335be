// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst2/AudioEffectX.h"

#include <utility>

namespace AVstSdk {

namespace {

AudioEffectX* Of(AEffect* effect) {
	return effect ? static_cast<AudioEffectX*>(effect->object) : nullptr;
}

VstIntPtr Dispatch(AEffect* effect, int opcode, int index, VstIntPtr value, void* ptr, float opt) {
	AudioEffectX* self = Of(effect);
	return self ? self->dispatcher(opcode, index, value, ptr, opt) : 0;
}

void Process(AEffect* effect, float** inputs, float** outputs, int samples) {
	if (AudioEffectX* self = Of(effect))
		self->process(inputs, outputs, samples);
}

void ProcessReplacing(AEffect* effect, float** inputs, float** outputs, int samples) {
	if (AudioEffectX* self = Of(effect))
		self->processReplacing(inputs, outputs, samples);
}

void SetParameter(AEffect* effect, int index, float value) {
	if (AudioEffectX* self = Of(effect))
		self->setParameter(index, value);
}

float GetParameter(AEffect* effect, int index) {
	AudioEffectX* self = Of(effect);
	return self ? self->getParameter(index) : 0.0f;
}

} // namespace

AudioEffectX::AudioEffectX(audioMasterCallback host, VstInt32 programs, VstInt32 parameters) : mHost(host) {
	cEffect.magic = kEffectMagic;
	cEffect.dispatcher = &Dispatch;
	cEffect.process = &Process;
	cEffect.setParameter = &SetParameter;
	cEffect.getParameter = &GetParameter;
	cEffect.numPrograms = programs;
	cEffect.numParams = parameters;
	cEffect.float1 = 1.0f;
	cEffect.object = this;
	cEffect.version = 1;
	cEffect.processReplacing = &ProcessReplacing;
}

AudioEffectX::~AudioEffectX() = default;

void AudioEffectX::SetEditor(std::unique_ptr<AEffEditor> editor) {
	mpEditor = std::move(editor);
	SetFlag(effFlagsHasEditor, mpEditor != nullptr);
}

void AudioEffectX::SetFlag(VstInt32 flag, bool isSet) {
	cEffect.flags = isSet ? cEffect.flags | flag : cEffect.flags & ~VstIntPtr{flag};
}

VstIntPtr AudioEffectX::CallHost(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
	return mHost ? mHost(&cEffect, opcode, index, value, ptr, opt) : 0;
}

float AudioEffectX::updateSampleRate() {
	if (const VstIntPtr rate = CallHost(audioMasterGetSampleRate); rate > 0)
		mSampleRate = static_cast<float>(rate);
	return mSampleRate;
}

VstInt32 AudioEffectX::updateBlockSize() {
	if (const VstIntPtr size = CallHost(audioMasterGetBlockSize); size > 0)
		mBlockSize = static_cast<VstInt32>(size);
	return mBlockSize;
}

VstIntPtr AudioEffectX::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
	switch (opcode) {
	case effOpen:
		open();
		return 0;
	case effClose:
		close();
		return 0;
	case effSetProgram:
		if (value >= 0 && value < cEffect.numPrograms)
			setProgram(static_cast<VstInt32>(value));
		return 0;
	case effGetProgram:
		return getProgram();
	case effSetSampleRate:
		mSampleRate = opt;
		return 0;
	case effSetBlockSize:
		mBlockSize = static_cast<VstInt32>(value);
		return 0;
	case effMainsChanged:
		value ? resume() : suspend();
		return 0;
	case effIdentify:
		return CCONST('N', 'v', 'E', 'f');
	case effGetChunk:
		return ptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
	case effSetChunk:
		return setChunk(ptr, static_cast<VstInt32>(value), index != 0);
	case effProcessEvents:
		return processEvents(static_cast<VstEvents*>(ptr));
	case effCanBeAutomated:
		return 1;
	case effGetPlugCategory:
		return (cEffect.flags & effFlagsIsSynth) != 0 ? kPlugCategSynth : kPlugCategUnknown;
	case effGetVendorVersion:
		return getVendorVersion();
	case effVendorSpecific:
		return vendorSpecific(index, value, ptr, opt);
	case effCanDo:
		return canDo(static_cast<char*>(ptr));
	case kEffectIdle:
		return fxIdle();
	case kEffectKeysRequired: // the oldest hosts need them when they hear nothing else
		return keysRequired() ? 0 : 1;
	case effGetVstVersion:
		return kVstVersion;
	case effGetCurrentMidiProgram:
		return ptr ? -1 : 0;
	case effSetTotalSampleToProcess:
		return value;
	case effEditGetRect:
	case effEditOpen:
	case effEditClose:
	case effEditIdle:
		return DispatchEditor(opcode, ptr);
	case effGetInputProperties:
	case effGetOutputProperties:
	case effSetSpeakerArrangement:
	case effGetSpeakerArrangement:
		return DispatchConnections(opcode, index, value, ptr);
	default:
		return ptr ? DispatchText(opcode, index, static_cast<char*>(ptr)) : 0;
	}
}

VstIntPtr AudioEffectX::DispatchText(VstInt32 opcode, VstInt32 index, char* text) {
	switch (opcode) {
	case effSetProgramName:
		setProgramName(text);
		return 0;
	case effGetProgramName:
		getProgramName(text);
		return 0;
	case effGetParamLabel:
		getParameterLabel(index, text);
		return 0;
	case effGetParamDisplay:
		getParameterDisplay(index, text);
		return 0;
	case effGetParamName:
		getParameterName(index, text);
		return 0;
	case effGetProgramNameIndexed:
		return getProgramNameIndexed(0, index, text);
	case effGetEffectName:
		return getEffectName(text);
	case effGetVendorString:
		return getVendorString(text);
	case effGetProductString:
		return getProductString(text);
	default:
		return 0;
	}
}

VstIntPtr AudioEffectX::DispatchEditor(VstInt32 opcode, void* ptr) {
	if (!mpEditor)
		return 0;
	switch (opcode) {
	case effEditGetRect:
		return ptr && mpEditor->getRect(static_cast<ERect**>(ptr));
	case effEditOpen:
		return mpEditor->open(ptr);
	case effEditClose:
		mpEditor->close();
		return 0;
	default:
		mpEditor->idle();
		return 0;
	}
}

VstIntPtr AudioEffectX::DispatchConnections(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr) {
	if (!ptr)
		return 0;
	switch (opcode) {
	case effGetInputProperties:
		return getInputProperties(index, static_cast<VstPinProperties*>(ptr));
	case effGetOutputProperties:
		return getOutputProperties(index, static_cast<VstPinProperties*>(ptr));
	case effSetSpeakerArrangement:
		return value && setSpeakerArrangement(
		                    reinterpret_cast<VstSpeakerArrangement*>(value), static_cast<VstSpeakerArrangement*>(ptr));
	default:
		return value &&
		       getSpeakerArrangement(
		           reinterpret_cast<VstSpeakerArrangement**>(value), static_cast<VstSpeakerArrangement**>(ptr));
	}
}

} // namespace AVstSdk
