// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/gui/events/TGuiObject.h"

class TApplicationEvent;

/// Sees every event of its instance from construction to destruction, in the order of registration. Main thread.
class TApplicationEventListener : public TGuiObject, public TGlobalStorageAware {
public:
	~TApplicationEventListener() override;

	/// True lets the next listener see the event, too.
	virtual bool HandleEvent(TApplicationEvent* event) = 0;

protected:
	TApplicationEventListener();
};
