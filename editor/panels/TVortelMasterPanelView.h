// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/gui/views/TView.h"

class TDynamicRowLayoutView;

/// Mix, panning and volume of the whole. Main thread.
class TVortelMasterPanelView final : public TView {
public:
	explicit TVortelMasterPanelView(TVortelDocument& document);

	void OnResized() override;

private:
	TPtr<TDynamicRowLayoutView> mLayout;
};
