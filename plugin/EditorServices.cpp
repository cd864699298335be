// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/EditorServices.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "framework/foundation/instance/ServiceGroup.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/dialogs/GuiServices.h"
#include "framework/gui/text/TTextField.h"
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

/// What the toolkit stands on, and how this program looks.
constexpr std::array<TService, 6> kServices{
    ServiceOf<TPlatform>(&CreatePlatform),
    ServiceOf<TGraphPortPrefs>(&TGraphPortPrefs::CreateInstance),
    ServiceOf<TGraphPort>(&TGraphPortImpl::CreateInstance),
    ServiceOf<TFontEngine>(&TFontEngine::CreateInstance),
    ServiceOf<TSkinColors>(&TVortelSkinColors::Create),
    ServiceOf<TSkin>(&TVortelSkin::Create),
};

} // namespace

namespace EditorServices {

void SetPlatformFactory(TPlatformFactory factory) {
	sPlatformFactory = factory;
}

void Start() {
	StartServices(kServices);
	TTextField::SetUseEditWindow(true);
	try {
		InitializeGui();
	} catch (...) {
		EndServices(kServices);
		throw;
	}
}

void End() {
	FinalizeGui();
	EndServices(kServices);
}

} // namespace EditorServices
