// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/ibstream.h>
#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/vst/ivsteditcontroller.h>
#include <pluginterfaces/vst/ivstevents.h>
#include <pluginterfaces/vst/ivsthostapplication.h>
#include <pluginterfaces/vst/ivstparameterchanges.h>
#include <pluginterfaces/vst/ivstunits.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// Objects of the tests live on the stack: nobody counts.
template <class TInterface>
class TUncounted : public TInterface {
public:
	Steinberg::uint32 PLUGIN_API addRef() override { return 1; }

	Steinberg::uint32 PLUGIN_API release() override { return 1; }

	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID, void**) override {
		return Steinberg::kNoInterface;
	}
};

/// Host application, handler and run loop; writes down what it is told.
class TFakeVst3Host final : public Steinberg::Vst::IHostApplication,
                            public Steinberg::Vst::IComponentHandler,
                            public Steinberg::Vst::IUnitHandler,
                            public Steinberg::Linux::IRunLoop {
public:
	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID interfaceId, void** object) override {
		using namespace Steinberg;
		*object = nullptr;
		if (mHasRunLoop && Offer<Linux::IRunLoop>(this, Linux::IRunLoop_iid, interfaceId, object))
			return kResultOk;
		if (Offer<Vst::IHostApplication>(this, Vst::IHostApplication_iid, interfaceId, object))
			return kResultOk;
		// Some hosts answer success and give nothing.
		Offer<Vst::IUnitHandler>(this, Vst::IUnitHandler_iid, interfaceId, object);
		return kResultOk;
	}

	Steinberg::uint32 PLUGIN_API addRef() override { return 1; }

	Steinberg::uint32 PLUGIN_API release() override { return 1; }

	Steinberg::tresult PLUGIN_API getName(Steinberg::Vst::String128 name) override {
		for (std::size_t i = 0; i < 128; ++i)
			name[i] = u'x'; // no zero anywhere
		return Steinberg::kResultOk;
	}

	Steinberg::tresult PLUGIN_API createInstance(Steinberg::TUID, Steinberg::TUID, void**) override {
		return Steinberg::kNotImplemented;
	}

	Steinberg::tresult PLUGIN_API beginEdit(Steinberg::Vst::ParamID id) override {
		return Say("begin" + std::to_string(id));
	}

	Steinberg::tresult PLUGIN_API performEdit(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue value) override {
		return Say("edit" + std::to_string(id) + "=" + std::to_string(value).substr(0, 4));
	}

	Steinberg::tresult PLUGIN_API endEdit(Steinberg::Vst::ParamID id) override {
		return Say("end" + std::to_string(id));
	}

	Steinberg::tresult PLUGIN_API restartComponent(Steinberg::int32 flags) override {
		return Say("restart" + std::to_string(flags));
	}

	Steinberg::tresult PLUGIN_API notifyUnitSelection(Steinberg::Vst::UnitID) override { return Say("unit"); }

	Steinberg::tresult PLUGIN_API
	notifyProgramListChange(Steinberg::Vst::ProgramListID, Steinberg::int32 program) override {
		return Say("program" + std::to_string(program));
	}

	Steinberg::tresult PLUGIN_API
	registerEventHandler(Steinberg::Linux::IEventHandler*, Steinberg::Linux::FileDescriptor) override {
		return Steinberg::kNotImplemented;
	}

	Steinberg::tresult PLUGIN_API unregisterEventHandler(Steinberg::Linux::IEventHandler*) override {
		return Steinberg::kNotImplemented;
	}

	Steinberg::tresult PLUGIN_API
	registerTimer(Steinberg::Linux::ITimerHandler* handler, Steinberg::Linux::TimerInterval milliseconds) override {
		mInterval = milliseconds;
		if (mTimerResult == Steinberg::kResultOk)
			mpTimer = handler;
		return mTimerResult;
	}

	Steinberg::tresult PLUGIN_API unregisterTimer(Steinberg::Linux::ITimerHandler*) override {
		return Say("timer off");
	}

	std::string Take() { return std::exchange(mText, {}); }

	bool mHasRunLoop = true;
	Steinberg::tresult mTimerResult = Steinberg::kResultOk;
	Steinberg::Linux::TimerInterval mInterval = 0;
	Steinberg::IPtr<Steinberg::Linux::ITimerHandler> mpTimer; // kept after the end, as some hosts do

private:
	Steinberg::tresult Say(const std::string& text) {
		mText += text + " ";
		return Steinberg::kResultOk;
	}

	std::string mText;
};

class TFakeQueue final : public TUncounted<Steinberg::Vst::IParamValueQueue> {
public:
	using TPoint = std::pair<Steinberg::int32, double>;

	TFakeQueue(Steinberg::Vst::ParamID id, std::vector<TPoint> points) : mId(id), mPoints(std::move(points)) {}

	Steinberg::Vst::ParamID PLUGIN_API getParameterId() override { return mId; }

	Steinberg::int32 PLUGIN_API getPointCount() override { return static_cast<Steinberg::int32>(mPoints.size()); }

	Steinberg::tresult PLUGIN_API
	getPoint(Steinberg::int32 index, Steinberg::int32& offset, Steinberg::Vst::ParamValue& value) override {
		std::tie(offset, value) = mPoints[static_cast<std::size_t>(index)];
		return Steinberg::kResultTrue;
	}

	Steinberg::tresult PLUGIN_API
	addPoint(Steinberg::int32 offset, Steinberg::Vst::ParamValue value, Steinberg::int32& index) override {
		index = getPointCount();
		mPoints.emplace_back(offset, value);
		return Steinberg::kResultTrue;
	}

	Steinberg::Vst::ParamID mId;
	std::vector<TPoint> mPoints;
};

class TFakeChanges final : public TUncounted<Steinberg::Vst::IParameterChanges> {
public:
	TFakeChanges() = default;

	explicit TFakeChanges(std::vector<TFakeQueue> queues) : mQueues(std::move(queues)) {}

	Steinberg::int32 PLUGIN_API getParameterCount() override { return static_cast<Steinberg::int32>(mQueues.size()); }

	Steinberg::Vst::IParamValueQueue* PLUGIN_API getParameterData(Steinberg::int32 index) override {
		return &mQueues[static_cast<std::size_t>(index)];
	}

	Steinberg::Vst::IParamValueQueue* PLUGIN_API
	addParameterData(const Steinberg::Vst::ParamID& id, Steinberg::int32& index) override {
		index = getParameterCount();
		return &mQueues.emplace_back(id, std::vector<TFakeQueue::TPoint>{});
	}

	std::vector<TFakeQueue> mQueues;
};

class TFakeEvents final : public TUncounted<Steinberg::Vst::IEventList> {
public:
	Steinberg::int32 PLUGIN_API getEventCount() override { return static_cast<Steinberg::int32>(mEvents.size()); }

	Steinberg::tresult PLUGIN_API getEvent(Steinberg::int32 index, Steinberg::Vst::Event& event) override {
		event = mEvents[static_cast<std::size_t>(index)];
		return Steinberg::kResultOk;
	}

	Steinberg::tresult PLUGIN_API addEvent(Steinberg::Vst::Event& event) override {
		mEvents.push_back(event);
		return Steinberg::kResultOk;
	}

	std::vector<Steinberg::Vst::Event> mEvents;
};

/// A stream as hosts may hand it over: in portions, with an end, or refusing.
class TFakeHostStream final : public TUncounted<Steinberg::IBStream> {
public:
	explicit TFakeHostStream(std::vector<Steinberg::uint8> bytes = {}, Steinberg::int32 portion = 1 << 30)
	    : mBytes(std::move(bytes)),
	      mPortion(portion) {}

	Steinberg::tresult PLUGIN_API read(void* target, Steinberg::int32 count, Steinberg::int32* got) override {
		*got = std::min({count, mPortion, static_cast<Steinberg::int32>(mBytes.size() - mPosition)});
		std::copy_n(mBytes.data() + mPosition, *got, static_cast<Steinberg::uint8*>(target));
		mPosition += static_cast<std::size_t>(*got);
		return mResult;
	}

	Steinberg::tresult PLUGIN_API write(void* source, Steinberg::int32 count, Steinberg::int32* written) override {
		*written = std::min(count, mPortion);
		const auto* bytes = static_cast<const Steinberg::uint8*>(source);
		mBytes.insert(mBytes.end(), bytes, bytes + *written);
		return mResult;
	}

	Steinberg::tresult PLUGIN_API seek(Steinberg::int64, Steinberg::int32, Steinberg::int64*) override {
		return Steinberg::kNotImplemented;
	}

	Steinberg::tresult PLUGIN_API tell(Steinberg::int64*) override { return Steinberg::kNotImplemented; }

	std::vector<Steinberg::uint8> mBytes;
	Steinberg::int32 mPortion;
	Steinberg::tresult mResult = Steinberg::kResultOk;

private:
	std::size_t mPosition = 0;
};
