// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TPublishedParameters.h"

#include "framework/document/observables/TObservable.h"

#include <algorithm>
#include <functional>

TPublishedParameters::TPublishedParameters(TAudioPluginShell::TDocument* document, THost* host)
    : TObserver(kMainThread),
      mpDocument(document),
      mpHost(host) {}

void TPublishedParameters::Rebuild() {
	if (IsUpToDate())
		return;
	Clear();
	const int32_t count = mpDocument->NumberOfParameters();
	mInfos.reserve(static_cast<std::size_t>(count));
	for (int32_t i = 0; i < count; ++i)
		mInfos.push_back({mpDocument->ParameterObservable(i), i});
	std::ranges::sort(mInfos, std::less<>(), &TParameterInfo::mpObservable);
	for (const TParameterInfo& info : mInfos)
		info.mpObservable->AddObserver({this, &TPublishedParameters::OnParameter}, kDeliverDirectly);
}

void TPublishedParameters::Clear() {
	for (const TParameterInfo& info : mInfos)
		info.mpObservable->RemoveObserver({this, &TPublishedParameters::OnParameter});
	mInfos.clear();
}

void TPublishedParameters::EndHostEdits() {
	if (!mHostEditsOpen.exchange(false, std::memory_order_relaxed))
		return;
	for (TParameterInfo& info : mInfos) {
		if (info.mEditOpen) {
			info.mEditOpen = false;
			mpHost->EndEdit(info.mIndex);
		}
	}
}

void TPublishedParameters::SetFromHost(int32_t parameter, float value) {
	if (parameter < 0 || parameter >= mpDocument->NumberOfParameters())
		return;
	TParameterInfo* info = Find(mpDocument->ParameterObservable(parameter));
	if (info)
		std::atomic_ref(info->mUpdateFromHost).store(true, std::memory_order_relaxed);
	mpDocument->SetParameterValue(parameter, value);
	if (info)
		std::atomic_ref(info->mUpdateFromHost).store(false, std::memory_order_relaxed);
}

bool TPublishedParameters::IsUpToDate() const {
	const auto isCurrent = [this](const TParameterInfo& info) {
		return mpDocument->ParameterObservable(info.mIndex) == info.mpObservable;
	};
	return mInfos.size() == static_cast<std::size_t>(mpDocument->NumberOfParameters()) &&
	       std::ranges::all_of(mInfos, isCurrent);
}

TPublishedParameters::TParameterInfo* TPublishedParameters::Find(const TObservable* observable) {
	const auto found = std::ranges::lower_bound(mInfos, observable, std::less<>(), &TParameterInfo::mpObservable);
	return found != mInfos.end() && found->mpObservable == observable ? &*found : nullptr;
}

// Also called on the audio thread, which must get no further than the first line.
void TPublishedParameters::OnParameter(TObservable* observable, int32_t reason) {
	if (reason != kDidChange || NotificationSourceThread() != kMainThread)
		return;
	TParameterInfo* info = Find(observable);
	if (!info || std::atomic_ref(info->mUpdateFromHost).load(std::memory_order_relaxed) || IsInStateChange() ||
	    !mHostEditsOpen.load(std::memory_order_relaxed))
		return;
	if (!info->mEditOpen) {
		info->mEditOpen = true;
		mpHost->BeginEdit(info->mIndex);
	}
	mpHost->PerformEdit(info->mIndex, mpDocument->ParameterValue(info->mIndex));
}
