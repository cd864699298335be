// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelProgram.h"

#include "document/TVortelIndexedNames.h"
#include "framework/document/nodes/TNameRules.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr const char* kInitialName = "Init";
constexpr float kInitialMasterMix = 1.0f;
constexpr float kInitialMasterPanning = 0.5f;
constexpr float kInitialMasterVolume = 0.5f;

bool IsMovable(int32_t position) {
	return position >= 1 && position < TVortelProgram::kNumberOfDevices;
}

TVortelProgram::TDeviceOrder IdentityOrder() {
	TVortelProgram::TDeviceOrder order;
	std::iota(order.begin(), order.end(), 0);
	return order;
}

} // namespace

TVortelProgram::TVortelProgram() : mName(TString(kInitialName)), mDeviceOrder(kNumberOfDevices) {
	using TNameRules::MemberNameToElementName;
	static const auto kSceneNames = MakeIndexedNames<kNumberOfScenes>("Scene");

	ReserveMembers(9, kNumberOfScenes);
	AddProperty(&mName, MemberNameToElementName("mName"), kWrite);
	AddProperty(&mQuantizeFactor, MemberNameToElementName("mQuantizeFactor"), kWrite);
	AddProperty(&mTriggerMode, MemberNameToElementName("mTriggerMode"), kWrite);
	AddProperty(&mMasterMix, MemberNameToElementName("mMasterMix"), kWrite);
	AddProperty(&mMasterPanning, MemberNameToElementName("mMasterPanning"), kWrite);
	AddProperty(&mMasterVolume, MemberNameToElementName("mMasterVolume"), kWrite);
	AddProperty(&mDeviceOrder, MemberNameToElementName("mDeviceOrder"), kWrite);
	AddProperty(&mActiveSceneIndex, MemberNameToElementName("mActiveSceneIndex"), kWrite);
	AddProperty(&mSoftClip, MemberNameToElementName("mSoftClip"), kWrite);
	for (std::size_t i = 0; i < mpScenes.size(); ++i) {
		mpScenes[i] = MakePtr<TVortelScene>();
		AddChild(mpScenes[i].Get(), kSceneNames[i], kWrite);
	}
	FinishDeclaration();
	InitDeviceOrder();
}

void TVortelProgram::Init(bool fromDefaults) {
	for (int32_t i = 0; i < kNumberOfScenes; ++i) {
		Scene(i)->Init(fromDefaults);
		Scene(i)->Seed().Set(InitialSeed(i));
	}
	mName.Set(kInitialName);
	mQuantizeFactor.Set(0);
	mTriggerMode.Set(kTriggerHost);
	mMasterMix.Set(kInitialMasterMix);
	mMasterPanning.Set(kInitialMasterPanning);
	mMasterVolume.Set(kInitialMasterVolume);
	mSoftClip.Set(false);
	mActiveSceneIndex.Set(0);
	InitDeviceOrder();
}

void TVortelProgram::CopyFrom(const TVortelProgram& source) {
	mName.Set(source.mName.Get());
	for (std::size_t i = 0; i < mpScenes.size(); ++i)
		mpScenes[i]->CopyFrom(*source.mpScenes[i]);
	mMasterMix.Set(source.mMasterMix.Get());
	mMasterPanning.Set(source.mMasterPanning.Get());
	mMasterVolume.Set(source.mMasterVolume.Get());
	mQuantizeFactor.Set(source.mQuantizeFactor.Get());
	mTriggerMode.Set(source.mTriggerMode.Get());
	mSoftClip.Set(source.mSoftClip.Get());
	StoreOrder(source.CurrentOrder());
	mActiveSceneIndex.Set(source.mActiveSceneIndex.Get());
}

bool TVortelProgram::IsInitialized() const {
	return CurrentOrder() == IdentityOrder() && mQuantizeFactor.Get() == 0 && mTriggerMode.Get() == kTriggerHost &&
	       mMasterMix.Get() == kInitialMasterMix && mMasterPanning.Get() == kInitialMasterPanning &&
	       mMasterVolume.Get() == kInitialMasterVolume && !mSoftClip.Get() &&
	       std::none_of(mpScenes.begin(), mpScenes.end(), [](const auto& scene) { return scene->HasContent(); });
}

TVortelScene* TVortelProgram::Scene(int32_t index) const noexcept {
	return mpScenes[static_cast<std::size_t>(std::clamp(index, 0, kNumberOfScenes - 1))].Get();
}

TVortelScene* TVortelProgram::ActiveScene() const noexcept {
	return Scene(mActiveSceneIndex.Get());
}

int32_t TVortelProgram::DeviceAtPosition(int32_t position) const noexcept {
	const bool known = position >= 0 && position < mDeviceOrder.Count();
	const int32_t device = known ? mDeviceOrder[position] : 0;
	return device >= 0 && device < kNumberOfDevices ? device : 0;
}

int32_t TVortelProgram::PositionOfDevice(int32_t device) const noexcept {
	for (int32_t position = 0; position < mDeviceOrder.Count(); ++position)
		if (mDeviceOrder[position] == device)
			return position;
	return -1;
}

void TVortelProgram::SwapDevices(int32_t position1, int32_t position2) {
	if (!IsMovable(position1) || !IsMovable(position2))
		return;
	TDeviceOrder order = CurrentOrder();
	std::swap(order[static_cast<std::size_t>(position1)], order[static_cast<std::size_t>(position2)]);
	StoreOrder(order);
}

void TVortelProgram::MoveDevice(int32_t from, int32_t to) {
	if (!IsMovable(from) || !IsMovable(to))
		return;
	TDeviceOrder order = CurrentOrder();
	const auto source = order.begin() + from;
	const auto target = order.begin() + to;
	if (from < to)
		std::rotate(source, source + 1, target + 1);
	else
		std::rotate(target, source, source + 1);
	StoreOrder(order);
}

bool TVortelProgram::SetDeviceOrder(const TDeviceOrder& order) {
	if (!IsValidOrder(order))
		return false;
	StoreOrder(order);
	return true;
}

void TVortelProgram::InitDeviceOrder() {
	StoreOrder(IdentityOrder());
}

void TVortelProgram::RandomizeDeviceOrder() {
	TDeviceOrder order = CurrentOrder();
	for (int position = 1; position < kNumberOfDevices; ++position) {
		int other = position;
		while (other == position)
			other = RoundHalfAway(TRandom::Next() * 9.0) + 1;
		std::swap(order[static_cast<std::size_t>(position)], order[static_cast<std::size_t>(other)]);
	}
	StoreOrder(order);
}

void TVortelProgram::OnLoadBegin() {
	Init(true);
}

void TVortelProgram::OnLoadEnd(bool /*success*/) {
	mTriggerMode.Set(std::clamp<int>(mTriggerMode.Get(), kTriggerHost, kTriggerLatch));
	if (mDeviceOrder.Count() != kNumberOfDevices || !IsValidOrder(CurrentOrder())) {
		mDeviceOrder.Resize(kNumberOfDevices);
		const TDeviceOrder order = IdentityOrder();
		for (int32_t i = 0; i < kNumberOfDevices; ++i)
			mDeviceOrder.Store(i, order[static_cast<std::size_t>(i)]);
	}
	NotifyOrder(kDidChange);
}

bool TVortelProgram::IsValidOrder(const TDeviceOrder& order) {
	const TDeviceOrder identity = IdentityOrder();
	return order[0] == 0 && std::is_permutation(order.begin(), order.end(), identity.begin());
}

TVortelProgram::TDeviceOrder TVortelProgram::CurrentOrder() const {
	TDeviceOrder order{};
	for (int32_t i = 0; i < std::min(kNumberOfDevices, mDeviceOrder.Count()); ++i)
		order[static_cast<std::size_t>(i)] = mDeviceOrder[i];
	return order;
}

void TVortelProgram::StoreOrder(const TDeviceOrder& order) {
	NotifyOrder(kWillChange);
	for (int32_t i = 0; i < std::min(kNumberOfDevices, mDeviceOrder.Count()); ++i)
		mDeviceOrder.Store(i, order[static_cast<std::size_t>(i)]);
	NotifyOrder(kDidChange);
}

void TVortelProgram::NotifyOrder(int32_t reason) {
	mDeviceOrder.NotifyObservers(reason);
	mDeviceOrderChanged.NotifyObservers(reason);
}
