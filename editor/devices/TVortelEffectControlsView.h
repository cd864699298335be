// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/support/TVortelActiveScene.h"
#include "framework/gui/views/TView.h"

#include <array>

class TVortelTabbedView;

/// A panel for each device under a tab of its own, in the order of the active program. The tab that is shown is the
/// document's selected device. Main thread.
class TVortelEffectControlsView final : public TView, private TVortelActiveScene::TClient {
public:
	explicit TVortelEffectControlsView(TVortelDocument& document);

	void OnResized() override;

private:
	static constexpr int kNumberOfTabs = TVortelDocument::kNumberOfDevices;

	void OnProgramChanged(TVortelProgram* previous) override;
	void OnDeviceOrderChanged(TObservable* observable, int32_t reason);
	void OnSelectedDevice(TObservable* observable, int32_t reason);
	void OnTabChanged();
	void SortTabs();

	TPtr<TVortelActiveScene> mpActive;
	TPtr<TVortelTabbedView> mpTabs;
	std::array<TPtr<TView>, kNumberOfTabs> mTabViews; // by device
	std::array<int, kNumberOfTabs> mOrder{};          // of the tabs: devices
	int mCurrentTab = 0;
	bool mIsSorting = false;
};
