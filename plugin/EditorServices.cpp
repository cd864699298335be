// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/EditorServices.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/TTimerDispatcher.h"
#include "framework/gui/keyboard/TKeyboardTranslator.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/tooltips/TToolTipWindow.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TDesktop.h"
#include "platform/linux/x11/TX11Platform.h"

#include <array>
#include <atomic>

namespace {

TPlatform* CreateX11Platform() {
	return new TX11Platform;
}

std::atomic<EditorServices::TPlatformFactory> sPlatformFactory{&CreateX11Platform};

void CreatePlatform() {
	TPlatform::Create(sPlatformFactory.load(), [](TPlatform* platform) { delete platform; });
}

struct TService {
	void (*mSetCreateInEveryStorage)(bool);
	void (*mCreate)();
	void (*mDestroy)();
	bool (*mExists)();
};

/// Of a class with its own creating function.
template <class T, class TBase = T>
constexpr TService Service(void (*create)()) {
	return {&TBase::SetCreateInEveryStorage, create, &TBase::Destroy, [] { return TBase::Instance() != nullptr; }};
}

/// Each stands on those above it.
constexpr std::array<TService, 11> kServices{
    Service<TPlatform>(&CreatePlatform),
    Service<TGraphPortPrefs>(&TGraphPortPrefs::CreateInstance),
    Service<TGraphPort>(&TGraphPortImpl::CreateInstance),
    Service<TFontEngine>(&TFontEngine::CreateInstance),
    Service<TSkinColors>(&TVortelSkinColors::Create),
    Service<TSkin>(&TVortelSkin::Create),
    Service<TApplicationEventQueue>(&TApplicationEventQueue::CreateService),
    Service<TTimerDispatcher>(&TTimerDispatcher::CreateService),
    Service<TKeyboardTranslator>(&TKeyboardTranslator::CreateService),
    Service<TCursor>(&TCursor::CreateService),
    Service<TDesktop>(&TDesktop::CreateService),
};

} // namespace

namespace EditorServices {

void SetPlatformFactory(TPlatformFactory factory) {
	sPlatformFactory = factory;
}

void Start() {
	if (TDesktop::Instance())
		return;
	TToolTipWindow::InstallPresenter();
	TTextField::SetUseEditWindow(true);
	try {
		for (const TService& service : kServices) {
			service.mSetCreateInEveryStorage(false);
			service.mCreate();
		}
	} catch (...) {
		End();
		throw;
	}
}

void End() {
	for (auto service = kServices.rbegin(); service != kServices.rend(); ++service)
		if (service->mExists())
			service->mDestroy();
}

} // namespace EditorServices
