// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TGraphPort.h"

#include "framework/foundation/text/TReadableException.h"

TGraphPort::~TGraphPort() = default;

TFontSource& TGraphPort::FontSource() const {
	if (!mpFontSource)
		throw TReadableException("Failed to init the font library.");
	return *mpFontSource;
}
