// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/GuiServices.h"

#include "framework/foundation/instance/ServiceGroup.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/dialogs/TMessageDialog.h"
#include "framework/gui/tooltips/TToolTipWindow.h"

#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/events/ApplicationEvents.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/TTimerDispatcher.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/keyboard/TKeyboardTranslator.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TDesktop.h"

#include <array>
#include <cstdio>

namespace {

bool MayChangeMode(int /*mode*/) {
	const auto event = MakePtr<TBeforeSwitchingWindowedModeEvent>();
	TApplicationEventQueue::Instance()->SendEvent(event);
	return !event->IsVetoed();
}

/// Messages from below become dialogs while the editor is seen. Without it nobody expects one, least of all a host that
/// would have to wait for the answer.
void ShowMessage(const TString& title, const TString& text, TMessageKind kind) {
	try {
		const TWindow* main = TWindow::MainWindow();
		if (main && main->IsVisible()) {
			ShowMessageDialog(kind != kInformationMessage, nullptr, title, text, {"OK"});
			return;
		}
	} catch (const TReadableException&) {
		// Said below.
	}
	std::fprintf(stderr, "%s: %s\n", title.CString(kPlatformEncoding), text.CString(kPlatformEncoding));
}

void ModeHasChanged(int /*mode*/) {
	TApplicationEventQueue::Instance()->SendEvent(MakePtr<TAfterSwitchingWindowedModeEvent>());
}

constexpr std::array<TService, 5> kServices{
    ServiceOf<TApplicationEventQueue>(&TApplicationEventQueue::CreateService),
    ServiceOf<TTimerDispatcher>(&TTimerDispatcher::CreateService),
    ServiceOf<TKeyboardTranslator>(&TKeyboardTranslator::CreateService),
    ServiceOf<TCursor>(&TCursor::CreateService),
    ServiceOf<TDesktop>(&TDesktop::CreateService),
};

bool IsInitialized() {
	return TDesktop::Instance() != nullptr;
}

void InstallHooks() {
	TSystemGlobals::Instance()->SetMessageDialogFunction(&ShowMessage);
	if (TGraphPort* port = TGraphPort::Instance())
		port->SetModeCallbacks(&MayChangeMode, &ModeHasChanged);
}

void RemoveHooks() {
	TSystemGlobals::Instance()->SetMessageDialogFunction(nullptr);
	if (TGraphPort* port = TGraphPort::Instance())
		port->SetModeCallbacks({}, {});
}

} // namespace

void InitializeGui() {
	if (IsInitialized())
		return;
	TDocumentClassRegistry::RegisterClass<TKeyBinding>("TKeyBinding");
	TDocumentClassRegistry::RegisterClass<TKeyboardCategory>("TKeyboardCategory");
	TToolTipWindow::InstallPresenter();
	StartServices(kServices);
	InstallHooks();
}

void FinalizeGui() {
	if (!IsInitialized())
		return;
	RemoveHooks();
	EndServices(kServices);
}
