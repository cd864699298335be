// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>

#include <dlfcn.h>
#include <stdexcept>
#include <string>

/// The shared object of the bundle, opened and entered as Linux hosts do it.
class TVst3Module {
public:
	explicit TVst3Module(const std::string& path = VORTEL_BUNDLE_BINARY)
	    : mpHandle(dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL)) {
		if (!mpHandle)
			throw std::runtime_error(dlerror());
		if (!Symbol<bool (*)(void*)>("ModuleEntry")(mpHandle))
			throw std::runtime_error("the module refuses to be entered");
		const Steinberg::IPtr<Steinberg::IPluginFactory> factory =
		    Steinberg::owned(Symbol<Steinberg::IPluginFactory* (*)()>("GetPluginFactory")());
		void* found = nullptr;
		factory->queryInterface(Steinberg::IPluginFactory3_iid, &found);
		mpFactory = Steinberg::owned(static_cast<Steinberg::IPluginFactory3*>(found));
	}

	~TVst3Module() {
		mpFactory = nullptr;
		Symbol<bool (*)()>("ModuleExit")();
		dlclose(mpHandle);
	}

	TVst3Module(const TVst3Module&) = delete;
	TVst3Module& operator=(const TVst3Module&) = delete;

	Steinberg::IPluginFactory3& Factory() const { return *mpFactory; }

	/// The plug-in as one of its interfaces; null if it cannot be made.
	template <class TInterface>
	Steinberg::IPtr<TInterface> Make(const Steinberg::TUID interfaceId) const {
		Steinberg::PClassInfo info;
		void* made = nullptr;
		mpFactory->getClassInfo(0, &info);
		mpFactory->createInstance(info.cid, interfaceId, &made);
		return Steinberg::owned(static_cast<TInterface*>(made));
	}

private:
	template <class TFunction>
	TFunction Symbol(const char* name) const {
		return reinterpret_cast<TFunction>(dlsym(mpHandle, name));
	}

	void* mpHandle;
	Steinberg::IPtr<Steinberg::IPluginFactory3> mpFactory;
};
