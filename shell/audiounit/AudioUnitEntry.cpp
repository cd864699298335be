// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/audiounit/AudioUnitEntry.h"

#include "shell/audiounit/AudioUnitCall.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"

#include <new>
#include <utility>

namespace {

struct TPlugIn {
	AudioComponentPlugInInterface mInterface; // what the host knows
	AudioUnitEntry::TMaker mConstruct;
	AudioUnitEntry::TReleaser mDestruct;
	TAudioUnitPluginShell* mpShell;
};

OSStatus Open(void* self, AudioComponentInstance instance) noexcept {
	auto* plugIn = static_cast<TPlugIn*>(self);
	return StatusOf([&]() -> OSStatus {
		if (plugIn->mpShell)
			return kAudioUnitErr_CannotDoInCurrentContext;
		plugIn->mpShell = plugIn->mConstruct(instance);
		return plugIn->mpShell ? noErr : kAudioUnitCannotOpen;
	});
}

OSStatus Close(void* self) noexcept {
	auto* plugIn = static_cast<TPlugIn*>(self);
	const OSStatus status = StatusOf([&] {
		if (TAudioUnitPluginShell* shell = std::exchange(plugIn->mpShell, nullptr)) {
			AudioUnitHostCall(shell->StorageId(), [shell] {
				shell->DoCleanup();
				const TThreadManager::THostScope role(kMainThread);
				shell->CloseDown();
				return noErr;
			});
			plugIn->mDestruct(shell);
		}
		return noErr;
	});
	delete plugIn;
	return status;
}

/// Each method of a component: finds the instance and calls it. A component that was not opened is none.
template <class TFunction>
OSStatus Call(void* self, TFunction&& function) noexcept {
	TAudioUnitPluginShell* const shell = self ? static_cast<TPlugIn*>(self)->mpShell : nullptr;
	if (!shell)
		return kAudio_ParamError;
	return AudioUnitHostCall(shell->StorageId(), [&] { return std::forward<TFunction>(function)(*shell); });
}

OSStatus Initialize(void* self) noexcept {
	return Call(self, [](auto& unit) { return unit.DoInitialize(); });
}

OSStatus Uninitialize(void* self) noexcept {
	return Call(self, [](auto& unit) { return unit.DoCleanup(); });
}

OSStatus GetPropertyInfo(
    void* self, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32* size,
    Boolean* writable) noexcept {
	return Call(self, [&](auto& unit) { return unit.DispatchGetPropertyInfo(id, scope, element, size, writable); });
}

OSStatus GetProperty(
    void* self, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data,
    UInt32* size) noexcept {
	return Call(self, [&](auto& unit) { return unit.DispatchGetProperty(id, scope, element, data, size); });
}

OSStatus SetProperty(
    void* self, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data,
    UInt32 size) noexcept {
	return Call(self, [&](auto& unit) { return unit.DispatchSetProperty(id, scope, element, data, size); });
}

OSStatus
AddPropertyListener(void* self, AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc, void* user) noexcept {
	return Call(self, [&](auto& unit) { return unit.AddPropertyListener(id, proc, user); });
}

OSStatus RemovePropertyListener(void* self, AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc) noexcept {
	return Call(self, [&](auto& unit) { return unit.RemovePropertyListener(id, proc, nullptr); });
}

OSStatus RemovePropertyListenerOfUser(
    void* self, AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc, void* user) noexcept {
	return Call(self, [&](auto& unit) { return unit.RemovePropertyListener(id, proc, &user); });
}

OSStatus AddRenderNotify(void* self, AURenderCallback proc, void* refCon) noexcept {
	return Call(self, [&](auto& unit) { return unit.AddRenderNotify(proc, refCon); });
}

OSStatus RemoveRenderNotify(void* self, AURenderCallback proc, void* refCon) noexcept {
	return Call(self, [&](auto& unit) { return unit.RemoveRenderNotify(proc, refCon); });
}

OSStatus GetParameter(
    void* self, AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element,
    AudioUnitParameterValue* value) noexcept {
	return Call(self, [&](auto& unit) { return unit.DispatchGetParameter(id, scope, element, value); });
}

OSStatus SetParameter(
    void* self, AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue value,
    UInt32 offset) noexcept {
	return Call(self, [&](auto& unit) { return unit.SetParameter(id, scope, element, value, offset); });
}

OSStatus ScheduleParameters(void* self, const AudioUnitParameterEvent* events, UInt32 count) noexcept {
	return Call(self, [&](auto& unit) { return unit.ScheduleParameters(events, count); });
}

OSStatus Reset(void* self, AudioUnitScope scope, AudioUnitElement element) noexcept {
	return Call(self, [&](auto& unit) { return unit.Reset(scope, element); });
}

OSStatus Render(
    void* self, AudioUnitRenderActionFlags* flags, const AudioTimeStamp* timeStamp, UInt32 bus, UInt32 frames,
    AudioBufferList* data) noexcept {
	return Call(self, [&](auto& unit) { return unit.DoRender(flags, timeStamp, bus, frames, data); });
}

OSStatus MidiEvent(void* self, UInt32 status, UInt32 data1, UInt32 data2, UInt32 offset) noexcept {
	return Call(self, [&](auto& unit) { return unit.MIDIEvent(status, data1, data2, offset); });
}

OSStatus SysEx(void* self, const UInt8* data, UInt32 length) noexcept {
	return Call(self, [&](auto& unit) { return unit.SysEx(data, length); });
}

AudioComponentMethod Lookup(SInt16 selector) noexcept {
	const auto method = [](auto* function) { return reinterpret_cast<AudioComponentMethod>(function); };
	switch (selector) {
	case kAudioUnitInitializeSelect:
		return method(&Initialize);
	case kAudioUnitUninitializeSelect:
		return method(&Uninitialize);
	case kAudioUnitGetPropertyInfoSelect:
		return method(&GetPropertyInfo);
	case kAudioUnitGetPropertySelect:
		return method(&GetProperty);
	case kAudioUnitSetPropertySelect:
		return method(&SetProperty);
	case kAudioUnitAddPropertyListenerSelect:
		return method(&AddPropertyListener);
	case kAudioUnitRemovePropertyListenerSelect:
		return method(&RemovePropertyListener);
	case kAudioUnitRemovePropertyListenerWithUserDataSelect:
		return method(&RemovePropertyListenerOfUser);
	case kAudioUnitAddRenderNotifySelect:
		return method(&AddRenderNotify);
	case kAudioUnitRemoveRenderNotifySelect:
		return method(&RemoveRenderNotify);
	case kAudioUnitGetParameterSelect:
		return method(&GetParameter);
	case kAudioUnitSetParameterSelect:
		return method(&SetParameter);
	case kAudioUnitScheduleParametersSelect:
		return method(&ScheduleParameters);
	case kAudioUnitResetSelect:
		return method(&Reset);
	case kAudioUnitRenderSelect:
		return method(&Render);
	case kMusicDeviceMIDIEventSelect:
		return method(&MidiEvent);
	case kMusicDeviceSysExSelect:
		return method(&SysEx);
	default:
		return nullptr;
	}
}

} // namespace

AudioComponentPlugInInterface* AudioUnitEntry::NewPlugIn(TMaker make, TReleaser release) noexcept {
	auto* plugIn = new (std::nothrow) TPlugIn{};
	if (!plugIn)
		return nullptr;
	plugIn->mInterface = {&Open, &Close, &Lookup, nullptr};
	plugIn->mConstruct = make;
	plugIn->mDestruct = release;
	return &plugIn->mInterface;
}
