// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivsteditcontroller.h>
#include <pluginterfaces/vst/ivstmessage.h>
#include <pluginterfaces/vst/ivstunits.h>
#include <public.sdk/source/vst/vstparameters.h>

#include <string>
#include <vector>

/// Both halves have operations called setState and getState. Here they get names of their own, so that one class can
/// be both.
class TVst3ComponentHalf : public Steinberg::Vst::IComponent {
public:
	Steinberg::tresult PLUGIN_API setState(Steinberg::IBStream* stream) final { return LoadComponent(stream); }

	Steinberg::tresult PLUGIN_API getState(Steinberg::IBStream* stream) final { return SaveComponent(stream); }

protected:
	virtual Steinberg::tresult LoadComponent(Steinberg::IBStream* stream) = 0;
	virtual Steinberg::tresult SaveComponent(Steinberg::IBStream* stream) = 0;
};

class TVst3ControllerHalf : public Steinberg::Vst::IEditController {
public:
	Steinberg::tresult PLUGIN_API setState(Steinberg::IBStream* stream) final { return LoadController(stream); }

	Steinberg::tresult PLUGIN_API getState(Steinberg::IBStream* stream) final { return SaveController(stream); }

protected:
	virtual Steinberg::tresult LoadController(Steinberg::IBStream* stream) = 0;
	virtual Steinberg::tresult SaveController(Steinberg::IBStream* stream) = 0;
};

namespace Steinberg::Vst {

/// Processor and edit controller in one object: what every plug-in of that kind needs and nothing of ours. Holds the
/// host's objects, the lists of busses and the parameter objects. Main thread, but for what only looks a parameter up.
/// A host may ask for anything at any time: what does not exist gets the interface's error code.
class SingleComponentEffect : public TVst3ComponentHalf,
                              public IAudioProcessor,
                              public TVst3ControllerHalf,
                              public IEditController2,
                              public IConnectionPoint,
                              public IUnitInfo {
public:
	tresult PLUGIN_API queryInterface(const TUID interfaceId, void** object) override;

	// IPluginBase. A host that takes the halves for two objects calls both twice: the second time is refused.
	tresult PLUGIN_API initialize(FUnknown* context) override;
	tresult PLUGIN_API terminate() override;

	// IComponent
	tresult PLUGIN_API getControllerClassId(TUID classId) override;
	tresult PLUGIN_API setIoMode(IoMode mode) override;
	int32 PLUGIN_API getBusCount(MediaType type, BusDirection direction) override;
	tresult PLUGIN_API getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& info) override;
	tresult PLUGIN_API getRoutingInfo(RoutingInfo& in, RoutingInfo& out) override;
	tresult PLUGIN_API activateBus(MediaType type, BusDirection direction, int32 index, TBool state) override;
	tresult PLUGIN_API setActive(TBool state) override;

	// IAudioProcessor
	tresult PLUGIN_API getBusArrangement(BusDirection direction, int32 index, SpeakerArrangement& arrangement) override;
	tresult PLUGIN_API setProcessing(TBool state) override;

	// IEditController
	int32 PLUGIN_API getParameterCount() override;
	tresult PLUGIN_API getParameterInfo(int32 index, ParameterInfo& info) override;
	tresult PLUGIN_API getParamStringByValue(ParamID id, ParamValue value, String128 text) override;
	tresult PLUGIN_API getParamValueByString(ParamID id, TChar* text, ParamValue& value) override;
	ParamValue PLUGIN_API normalizedParamToPlain(ParamID id, ParamValue value) override;
	ParamValue PLUGIN_API plainParamToNormalized(ParamID id, ParamValue plain) override;
	ParamValue PLUGIN_API getParamNormalized(ParamID id) override;
	tresult PLUGIN_API setParamNormalized(ParamID id, ParamValue value) override;
	tresult PLUGIN_API setComponentHandler(IComponentHandler* handler) override;

	// IEditController2
	tresult PLUGIN_API setKnobMode(KnobMode mode) override;
	tresult PLUGIN_API openHelp(TBool onlyCheck) override;
	tresult PLUGIN_API openAboutBox(TBool onlyCheck) override;

	// IConnectionPoint
	tresult PLUGIN_API connect(IConnectionPoint* other) override;
	tresult PLUGIN_API disconnect(IConnectionPoint* other) override;
	tresult PLUGIN_API notify(IMessage* message) override;

	// IUnitInfo, as far as nobody needs it
	tresult PLUGIN_API getProgramInfo(ProgramListID list, int32 program, CString attribute, String128 value) override;
	tresult PLUGIN_API hasProgramPitchNames(ProgramListID list, int32 program) override;
	tresult PLUGIN_API getProgramPitchName(ProgramListID list, int32 program, int16 pitch, String128 name) override;
	UnitID PLUGIN_API getSelectedUnit() override;
	tresult PLUGIN_API selectUnit(UnitID unit) override;
	tresult PLUGIN_API
	getUnitByBus(MediaType type, BusDirection direction, int32 bus, int32 channel, UnitID& unit) override;
	tresult PLUGIN_API setUnitProgramData(int32 listOrUnit, int32 program, IBStream* data) override;

protected:
	struct TBus {
		std::u16string mName;
		SpeakerArrangement mArrangement = SpeakerArr::kEmpty; // audio
		int32 mChannels = 0;
	};

	using TBusses = std::vector<TBus>;

	virtual ~SingleComponentEffect() = default;

	bool IsInitialized() const { return mIsInitialized; }

	/// Null for a kind of bus that does not exist.
	TBusses* Busses(MediaType type, BusDirection direction);
	void AddStereoBus(BusDirection direction, std::u16string name);
	void AddEventBus(BusDirection direction, std::u16string name);

	/// Null outside initialize and terminate.
	FUnknown* HostContext() const { return mpHostContext; }

	IComponentHandler* ComponentHandler() const { return mpComponentHandler; }

	/// Takes the object over.
	void AddParameter(Parameter* parameter) { mParameters.addParameter(parameter); }

	/// Null if there is none of that id. Any thread; allocates nothing.
	Parameter* FindParameter(ParamID id) const { return mParameters.getParameter(id); }

private:
	TBus* FindBus(MediaType type, BusDirection direction, int32 index);

	bool mIsInitialized = false;
	IPtr<FUnknown> mpHostContext;
	IPtr<IComponentHandler> mpComponentHandler;
	IPtr<IConnectionPoint> mpPeer;
	TBusses mAudioInputs;
	TBusses mAudioOutputs;
	TBusses mEventInputs;
	TBusses mEventOutputs;
	ParameterContainer mParameters;
};

} // namespace Steinberg::Vst
