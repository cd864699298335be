// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TView.h"

/// A groove between groups of controls that fades out at both ends, along the longer side.
class TVortelSeparatorView final : public TView {
public:
	void OnResized() override { Invalidate(); }

	void Draw(TSurface& port) override;
};
