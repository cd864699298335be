// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TAudioPluginShell.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/ipluginbase.h>

#include <atomic>

class TVst3PluginShell;

/// What a host asks first: who made this, which classes are there, make me one. One for the process, never destroyed;
/// any thread.
class TVst3PluginFactory final : public Steinberg::IPluginFactory3 {
public:
	/// Makes an instance with one reference for the host; null if it cannot be made. May throw.
	using TCreator = TVst3PluginShell* (*)();

	explicit TVst3PluginFactory(TCreator creator);

	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID interfaceId, void** object) override;
	Steinberg::uint32 PLUGIN_API addRef() override;
	Steinberg::uint32 PLUGIN_API release() override;

	Steinberg::tresult PLUGIN_API getFactoryInfo(Steinberg::PFactoryInfo* info) override;
	Steinberg::int32 PLUGIN_API countClasses() override;
	Steinberg::tresult PLUGIN_API getClassInfo(Steinberg::int32 index, Steinberg::PClassInfo* info) override;
	Steinberg::tresult PLUGIN_API
	createInstance(Steinberg::FIDString classId, Steinberg::FIDString interfaceId, void** object) override;
	Steinberg::tresult PLUGIN_API getClassInfo2(Steinberg::int32 index, Steinberg::PClassInfo2* info) override;
	Steinberg::tresult PLUGIN_API getClassInfoUnicode(Steinberg::int32 index, Steinberg::PClassInfoW* info) override;
	Steinberg::tresult PLUGIN_API setHostContext(Steinberg::FUnknown* context) override;

private:
	const TCreator mCreator;
	const Steinberg::PClassInfo2 mClassInfo;
	std::atomic<Steinberg::int32> mReferenceCount{1};
};
