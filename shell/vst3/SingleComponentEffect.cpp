// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/SingleComponentEffect.h"

#include "shell/vst3/Vst3Text.h"

#include <cstddef>
#include <utility>

namespace Steinberg::Vst {

tresult PLUGIN_API SingleComponentEffect::queryInterface(const TUID interfaceId, void** object) {
	if (!object)
		return kInvalidArgument;
	*object = nullptr;
	// Of the bases that several interfaces share, a host always gets the same one.
	const bool isOffered = Offer<TVst3ComponentHalf>(this, FUnknown_iid, interfaceId, object) ||
	                       Offer<TVst3ComponentHalf>(this, IPluginBase_iid, interfaceId, object) ||
	                       Offer<IComponent>(this, IComponent_iid, interfaceId, object) ||
	                       Offer<IAudioProcessor>(this, IAudioProcessor_iid, interfaceId, object) ||
	                       Offer<IEditController>(this, IEditController_iid, interfaceId, object) ||
	                       Offer<IEditController2>(this, IEditController2_iid, interfaceId, object) ||
	                       Offer<IConnectionPoint>(this, IConnectionPoint_iid, interfaceId, object) ||
	                       Offer<IUnitInfo>(this, IUnitInfo_iid, interfaceId, object);
	return isOffered ? kResultOk : kNoInterface;
}

tresult PLUGIN_API SingleComponentEffect::initialize(FUnknown* context) {
	if (mIsInitialized)
		return kResultFalse;
	mIsInitialized = true;
	mpHostContext = context;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::terminate() {
	mpComponentHandler = nullptr;
	if (const IPtr<IConnectionPoint> peer = std::exchange(mpPeer, nullptr))
		peer->disconnect(this);
	if (!mIsInitialized)
		return kResultFalse;
	mIsInitialized = false;
	mParameters.removeAll();
	for (TBusses* busses : {&mAudioInputs, &mAudioOutputs, &mEventInputs, &mEventOutputs})
		busses->clear();
	mpHostContext = nullptr;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::getControllerClassId(TUID /*classId*/) {
	return kResultFalse;
}

tresult PLUGIN_API SingleComponentEffect::setIoMode(IoMode /*mode*/) {
	return kNotImplemented;
}

SingleComponentEffect::TBusses* SingleComponentEffect::Busses(MediaType type, BusDirection direction) {
	if (direction != kInput && direction != kOutput)
		return nullptr;
	if (type == kAudio)
		return direction == kInput ? &mAudioInputs : &mAudioOutputs;
	if (type == kEvent)
		return direction == kInput ? &mEventInputs : &mEventOutputs;
	return nullptr;
}

void SingleComponentEffect::AddStereoBus(BusDirection direction, std::u16string name) {
	Busses(kAudio, direction)->push_back({std::move(name), SpeakerArr::kStereo, 2});
}

void SingleComponentEffect::AddEventBus(BusDirection direction, std::u16string name) {
	Busses(kEvent, direction)->push_back({std::move(name), SpeakerArr::kEmpty, 1});
}

SingleComponentEffect::TBus* SingleComponentEffect::FindBus(MediaType type, BusDirection direction, int32 index) {
	TBusses* busses = Busses(type, direction);
	if (!busses || index < 0 || static_cast<std::size_t>(index) >= busses->size())
		return nullptr;
	return &(*busses)[static_cast<std::size_t>(index)];
}

int32 PLUGIN_API SingleComponentEffect::getBusCount(MediaType type, BusDirection direction) {
	const TBusses* busses = Busses(type, direction);
	return busses ? static_cast<int32>(busses->size()) : 0;
}

tresult PLUGIN_API
SingleComponentEffect::getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& info) {
	const TBus* bus = FindBus(type, direction, index);
	if (!bus)
		return kInvalidArgument;
	info.mediaType = type;
	info.direction = direction;
	info.channelCount = bus->mChannels;
	CopyText(bus->mName, info.name);
	info.busType = kMain;
	info.flags = BusInfo::kDefaultActive;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::getRoutingInfo(RoutingInfo& /*in*/, RoutingInfo& /*out*/) {
	return kNotImplemented;
}

tresult PLUGIN_API
SingleComponentEffect::activateBus(MediaType type, BusDirection direction, int32 index, TBool /*state*/) {
	return FindBus(type, direction, index) ? kResultOk : kInvalidArgument;
}

tresult PLUGIN_API SingleComponentEffect::setActive(TBool /*state*/) {
	return kResultOk;
}

tresult PLUGIN_API
SingleComponentEffect::getBusArrangement(BusDirection direction, int32 index, SpeakerArrangement& arrangement) {
	const TBus* bus = FindBus(kAudio, direction, index);
	if (!bus)
		return kInvalidArgument;
	arrangement = bus->mArrangement;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::setProcessing(TBool /*state*/) {
	return kResultOk;
}

int32 PLUGIN_API SingleComponentEffect::getParameterCount() {
	return mParameters.getParameterCount();
}

tresult PLUGIN_API SingleComponentEffect::getParameterInfo(int32 index, ParameterInfo& info) {
	if (index < 0 || index >= mParameters.getParameterCount())
		return kInvalidArgument;
	info = mParameters.getParameterByIndex(index)->getInfo();
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::getParamStringByValue(ParamID id, ParamValue value, String128 text) {
	const Parameter* parameter = FindParameter(id);
	if (!parameter)
		return kResultFalse;
	parameter->toString(value, text);
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::getParamValueByString(ParamID id, TChar* text, ParamValue& value) {
	const Parameter* parameter = FindParameter(id);
	return parameter && parameter->fromString(text, value) ? kResultOk : kResultFalse;
}

ParamValue PLUGIN_API SingleComponentEffect::normalizedParamToPlain(ParamID id, ParamValue value) {
	const Parameter* parameter = FindParameter(id);
	return parameter ? parameter->toPlain(value) : value;
}

ParamValue PLUGIN_API SingleComponentEffect::plainParamToNormalized(ParamID id, ParamValue plain) {
	const Parameter* parameter = FindParameter(id);
	return parameter ? parameter->toNormalized(plain) : plain;
}

ParamValue PLUGIN_API SingleComponentEffect::getParamNormalized(ParamID id) {
	const Parameter* parameter = FindParameter(id);
	return parameter ? parameter->getNormalized() : 0.0;
}

tresult PLUGIN_API SingleComponentEffect::setParamNormalized(ParamID id, ParamValue value) {
	Parameter* parameter = FindParameter(id);
	if (!parameter)
		return kResultFalse;
	parameter->setNormalized(value);
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::setComponentHandler(IComponentHandler* handler) {
	mpComponentHandler = handler;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::setKnobMode(KnobMode /*mode*/) {
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::openHelp(TBool /*onlyCheck*/) {
	return kResultFalse;
}

tresult PLUGIN_API SingleComponentEffect::openAboutBox(TBool /*onlyCheck*/) {
	return kResultFalse;
}

tresult PLUGIN_API SingleComponentEffect::connect(IConnectionPoint* other) {
	if (!other)
		return kInvalidArgument;
	if (mpPeer)
		return kResultFalse;
	mpPeer = other;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::disconnect(IConnectionPoint* other) {
	if (!mpPeer || other != mpPeer)
		return kResultFalse;
	mpPeer = nullptr;
	return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::notify(IMessage* message) {
	return message ? kResultFalse : kInvalidArgument;
}

tresult PLUGIN_API
SingleComponentEffect::getProgramInfo(ProgramListID, int32, CString /*attribute*/, String128 /*value*/) {
	return kNotImplemented;
}

tresult PLUGIN_API SingleComponentEffect::hasProgramPitchNames(ProgramListID, int32 /*program*/) {
	return kNotImplemented;
}

tresult PLUGIN_API
SingleComponentEffect::getProgramPitchName(ProgramListID, int32, int16 /*pitch*/, String128 /*name*/) {
	return kNotImplemented;
}

UnitID PLUGIN_API SingleComponentEffect::getSelectedUnit() {
	return kRootUnitId;
}

tresult PLUGIN_API SingleComponentEffect::selectUnit(UnitID /*unit*/) {
	return kNotImplemented;
}

tresult PLUGIN_API SingleComponentEffect::getUnitByBus(MediaType, BusDirection, int32, int32, UnitID& /*unit*/) {
	return kNotImplemented;
}

tresult PLUGIN_API SingleComponentEffect::setUnitProgramData(int32, int32, IBStream* /*data*/) {
	return kNotImplemented;
}

} // namespace Steinberg::Vst
