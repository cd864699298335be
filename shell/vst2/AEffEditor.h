// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst2/Vst2Interfaces.h"

namespace AVstSdk {

/// The editor of an effect, as a host asks for it.
class AEffEditor {
public:
	virtual ~AEffEditor() = default;

	/// Hands out a rectangle that stays the editor's. In pixels.
	virtual bool getRect(ERect** rect) = 0;
	/// parent is the id of the host's window.
	virtual bool open(void* parent) = 0;
	virtual void close() = 0;
	virtual void idle() = 0;
};

} // namespace AVstSdk
