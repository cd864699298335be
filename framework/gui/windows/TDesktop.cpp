// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TDesktop.h"

#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/events/ApplicationEvents.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TWindow.h"

namespace {

template <class T>
void Post() {
	if (TApplicationEventQueue* queue = TApplicationEventQueue::Instance())
		queue->PostEvent(MakePtr<T>().Get());
}

} // namespace

void TDesktop::CreateService() {
	Create([]() { return new TDesktop; }, [](TDesktop* desktop) { delete desktop; });
}

void TDesktop::OnCreated() {
	if (TPlatform* platform = TPlatform::Instance())
		platform->SetClient(this);
}

void TDesktop::OnBeforeDestruction() {
	if (TPlatform* platform = TPlatform::Instance())
		platform->SetClient(nullptr);
}

TWindow* TDesktop::WindowWithId(int32_t id) const {
	for (TWindow* window : mOpenWindows)
		if (window->Id() == id)
			return window;
	return nullptr;
}

TWindow* TDesktop::MainWindow() const {
	for (TWindow* window : mOpenWindows)
		if (!window->Parent() && window->Kind() != kPopupWindow && window->Kind() != kToolTipWindow &&
		    window->Kind() != kModalDialogWindow)
			return window;
	return nullptr;
}

TWindow* TDesktop::WindowUnderPointer() const {
	const TPlatform* platform = TPlatform::Instance();
	// Every window of an instance's platform is one of the toolkit's.
	return platform ? static_cast<TWindow*>(platform->WindowUnderPointer()) : nullptr;
}

void TDesktop::SetLastMouseWindow(TWindow* window) {
	mLastMouseWindow = window;
}

TRectT<int> TDesktop::WorkAreaAt(TPointT<int> screenPoint) const {
	const TPlatform* platform = TPlatform::Instance();
	return platform ? const_cast<TPlatform*>(platform)->Screens().At(screenPoint).mWorkArea : TRectT<int>{};
}

void TDesktop::OnWindowClosed(TWindow& window) {
	const int32_t index = mOpenWindows.IndexOf(&window);
	if (index >= 0)
		mOpenWindows.RemoveAt(index);
}

void TDesktop::OnClipboardChanged() {
	Post<TClipboardContentChangedEvent>();
}

void TDesktop::OnKeyboardLayoutChanged() {
	Post<TKeyboardLanguageChangedEvent>();
}

void TDesktop::OnScreensChanged() {
	if (TGraphPort* port = TGraphPort::Instance())
		port->OnDisplayChanged();
	Post<TScreenResolutionChangedEvent>();
}

void TDesktop::OnApplicationActivated() {
	mIsActive = true;
	Post<TAppActivatedEvent>();
}

void TDesktop::OnApplicationDeactivated() {
	mIsActive = false;
	Post<TAppDeactivatedEvent>();
}
