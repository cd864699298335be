// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/TVortelMasterPanelView.h"

#include "document/TVortelMasterDevice.h"
#include "editor/devices/TVortelDeviceParameterView.h"
#include "editor/support/EditorControls.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/layout/TDynamicLayoutView.h"

using namespace EditorControls;

namespace {

constexpr int kCellWidth = 50;
constexpr int kCellHeight = 60;
constexpr int kMargins = 10;

} // namespace

TVortelMasterPanelView::TVortelMasterPanelView(TVortelDocument& document) : mLayout(MakeRow(0, kMargins)) {
	mLayout->SetHorizontalAlignment(kLayoutCenter);
	mLayout->SetVerticalAlignment(kLayoutCenter);
	mLayout->SetBackground(TSkin::kPanelBackground);
	const auto add = [&](const TPtr<TVortelDeviceParameter>& parameter, const char* toolTip) {
		mLayout->AddChild(MakePtr<TVortelDeviceParameterViewRotary>(parameter, toolTip, kCellWidth, kCellHeight));
	};
	const TVortelDevice& master = *document.MasterDevice();
	add(master.mpMixerMix, "Master dry/wet mix.");
	add(master.mpMixerPanning, "Master panning.");
	add(master.mpMixerVolume, "Master volume level.");
	AddChild(mLayout);
}

void TVortelMasterPanelView::OnResized() {
	mLayout->SetSize(Width(), Height());
}
