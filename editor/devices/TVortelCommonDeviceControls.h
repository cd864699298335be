// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDevice.h"
#include "framework/gui/views/TView.h"

class TDynamicRowLayoutView;

/// What all devices have at the right edge of their panels: filter and mixer, and the five commands for all parameters.
/// The master's panel has the commands alone. Main thread.
class TVortelCommonDeviceControls final : public TView {
public:
	explicit TVortelCommonDeviceControls(TVortelDevice& device);

	void OnResized() override;

private:
	TPtr<TView> MakeFilterSection();
	TPtr<TView> MakeFilterTypes();
	TPtr<TView> MakeMixerSection();
	TPtr<TView> MakeCommands();

	void CopyParameters();
	void PasteParameters();
	int FilterType() const;
	void SetFilterType(int type);

	TWeakPtr<TVortelDevice> mpDevice;
	TPtr<TDynamicRowLayoutView> mLayout;
};
