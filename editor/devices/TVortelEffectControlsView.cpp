// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/TVortelEffectControlsView.h"

#include "editor/devices/MakeVortelDevicePanel.h"
#include "editor/devices/TVortelTabbedView.h"

TVortelEffectControlsView::TVortelEffectControlsView(TVortelDocument& document)
    : mpActive(TVortelActiveScene::Create(document, *this)),
      mpTabs(MakePtr<TVortelTabbedView>()) {
	for (int device = 0; device < kNumberOfTabs; ++device)
		mTabViews[static_cast<std::size_t>(device)] = MakeVortelDevicePanel(document, device);
	mpTabs->SetChangedAction([this] { OnTabChanged(); });
	AddChild(mpTabs);
	mpActive->Start();
	document.SelectedDevice().AddObserver({this, &TVortelEffectControlsView::OnSelectedDevice});
}

void TVortelEffectControlsView::OnResized() {
	mpTabs->SetSize(Width(), Height());
}

void TVortelEffectControlsView::OnProgramChanged(TVortelProgram* previous) {
	const TObserverCallback callback{this, &TVortelEffectControlsView::OnDeviceOrderChanged};
	if (previous)
		previous->DeviceOrderChanged().RemoveObserver(callback);
	mpActive->Program()->DeviceOrderChanged().AddObserver(callback);
}

void TVortelEffectControlsView::OnDeviceOrderChanged(TObservable*, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		SortTabs();
}

void TVortelEffectControlsView::SortTabs() {
	std::array<int, kNumberOfTabs> order{};
	for (int position = 0; position < kNumberOfTabs; ++position)
		order[static_cast<std::size_t>(position)] = mpActive->Program()->DeviceAtPosition(position);
	if (order == mOrder && !mpTabs->TabNames().empty())
		return;
	mOrder = order;
	mIsSorting = true;
	for (const TPtr<TView>& view : mTabViews)
		mpTabs->RemoveTab(view.Get());
	for (const int device : order)
		mpTabs->AddTab(mTabViews[static_cast<std::size_t>(device)], mpActive->Document()->Device(device)->Name());
	mpTabs->SelectTab(mCurrentTab);
	mIsSorting = false;
	mpTabs->Invalidate();
}

void TVortelEffectControlsView::OnSelectedDevice(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mCurrentTab = mpActive->Document()->SelectedDevice().Get();
	mpTabs->SelectTab(mCurrentTab);
}

void TVortelEffectControlsView::OnTabChanged() {
	mCurrentTab = mpTabs->SelectedTab();
	if (!mIsSorting && mpActive->Document())
		mpActive->Document()->SelectedDevice().Set(mCurrentTab);
}
