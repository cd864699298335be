// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "platform/TClipboardImpl.h"
#include "platform/TCursorImpl.h"
#include "platform/TFileDialogImpl.h"
#include "platform/TFontLookup.h"
#include "platform/TKeyboardImpl.h"
#include "platform/TScreens.h"
#include "platform/TWindowGlue.h"

/// What the system tells the toolkit as a whole. GUI thread, from inside TPlatform::ProcessEvents.
class TPlatformClient {
public:
	virtual void OnClipboardChanged() {}

	virtual void OnKeyboardLayoutChanged() {}

	/// Number, place, work area or DPI of the screens.
	virtual void OnScreensChanged() {}

	/// The keys come to a window of this platform object, or to the host's window around one, and come no more.
	virtual void OnApplicationActivated() {}

	virtual void OnApplicationDeactivated() {}

protected:
	~TPlatformClient() = default;
};

/// The system as one plug-in instance sees it: its windows, and what belongs to all of them. Who makes the instance
/// chooses one (plugin/, the tools, the tests): with TPlatform::Create, or one per storage.
///
/// GUI thread. Making one costs nothing: the display is reached with the first window and left with the last.
class TPlatform : public TSingleton<TPlatform> {
public:
	/// The beat of frames, timers and repeated keys.
	static constexpr int kTickMilliseconds = 10;

	~TPlatform() override = default;

	/// Null for none. Must outlive the platform or be taken out.
	virtual void SetClient(TPlatformClient* client) = 0;

	/// The client and the parent must outlive the glue or its Close. Throws TReadableException without a display.
	virtual TPtr<TWindowGlue> CreateWindow(TWindowGlueClient& client, int kind, TWindowGlue* parent) = 0;
	/// The client of the topmost shown window under the pointer; null when another program's window, or none, lies
	/// there.
	virtual TWindowGlueClient* WindowUnderPointer() const = 0;

	/// Delivers all that has come. Called in each tick; calling it more often does no harm. Once the connection has
	/// been lost, all windows are, and nothing comes any more.
	virtual void ProcessEvents() = 0;
	/// Becomes readable when something has come, for a host's run loop; -1 for none. Valid until the last window
	/// closes.
	virtual int EventDescriptor() const = 0;
	/// For a loop of one's own, as of a modal dialog: waits until the next tick is due or something has come. False
	/// when nothing can come any more, and the loop must end. Other threads may play the main role meanwhile, and close
	/// windows.
	virtual bool WaitForTick() = 0;

	virtual TCursorImpl& Cursor() = 0;
	virtual TKeyboardImpl& Keyboard() = 0;
	virtual TClipboardImpl& Clipboard() = 0;
	virtual const TScreens& Screens() const = 0;
	virtual TFontLookup& Fonts() = 0;

	/// A second one at a time is allowed. parent may be null.
	virtual TOwnerPtr<TFileDialogImpl> StartFileDialog(const TFileDialogSettings& settings, TWindowGlue* parent) = 0;
};
