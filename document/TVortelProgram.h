// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelScene.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/observables/TSerializableList.h"

#include <array>

enum EVortelTriggerMode : int32_t { kTriggerHost = 0, kTriggerGate = 1, kTriggerLatch = 2 };

/// 128 scenes, the order of the devices and the master values. Scenes are made once and rewritten in place.
/// Main thread; the audio thread reads the plain values, and sets the active scene index.
class TVortelProgram final : public TDocumentNode {
public:
	static constexpr int32_t kNumberOfScenes = 128;
	static constexpr int32_t kNumberOfDevices = TVortelParameterTable::kNumberOfDevices;
	using TDeviceOrder = std::array<int32_t, kNumberOfDevices>;

	/// Parameter values are 0 until Init.
	TVortelProgram();

	void Init(bool fromDefaults);
	void CopyFrom(const TVortelProgram& source);
	/// Whether there is nothing to keep. The name does not count.
	bool IsInitialized() const;

	/// The index is taken into 0 to 127.
	TVortelScene* Scene(int32_t index) const noexcept;
	TVortelScene* ActiveScene() const noexcept;

	/// The seed of a fresh scene.
	static constexpr int32_t InitialSeed(int32_t sceneIndex) { return sceneIndex * 31337 + 31337; }

	TObservableBaseType<TString>& Name() noexcept { return mName; }

	/// Grid points per beat for scene changes by notes: 0 off.
	TObservableBaseType<int>& QuantizeFactor() noexcept { return mQuantizeFactor; }

	TObservableBaseType<int>& TriggerMode() noexcept { return mTriggerMode; }

	/// Normalised.
	TObservableBaseType<float>& MasterMix() noexcept { return mMasterMix; }

	TObservableBaseType<float>& MasterPanning() noexcept { return mMasterPanning; }

	TObservableBaseType<float>& MasterVolume() noexcept { return mMasterVolume; }

	TObservableBaseType<bool>& SoftClip() noexcept { return mSoftClip; }

	/// May hold anything that a file held; ActiveScene never leaves the table.
	TObservableBaseType<int>& ActiveSceneIndex() noexcept { return mActiveSceneIndex; }

	/// The order in which the effects process the sound: a permutation of the device indices with device 0 in front.
	/// Changes come in whole, between the two notifications of DeviceOrderChanged and of the list.
	TSerializableList<int>& DeviceOrder() noexcept { return mDeviceOrder; }

	TObservableBang& DeviceOrderChanged() noexcept { return mDeviceOrderChanged; }

	/// Device 0 for a position outside 0 to 10. Any thread.
	int32_t DeviceAtPosition(int32_t position) const noexcept;
	/// -1 when absent.
	int32_t PositionOfDevice(int32_t device) const noexcept;
	/// These two ignore positions outside 1 to 10: position 0 is not movable.
	void SwapDevices(int32_t position1, int32_t position2);
	void MoveDevice(int32_t from, int32_t to);
	/// False, and no change, unless it is a permutation with device 0 in front.
	bool SetDeviceOrder(const TDeviceOrder& order);
	void InitDeviceOrder();
	void RandomizeDeviceOrder();

	/// Brings what a file of the version before has left here to this version, all scenes with it.
	void UpgradeToVersion(int32_t version);

	void OnLoadBegin() override;
	void OnLoadEnd(bool success) override;

	bool IsSkippedOnSave() override { return IsInitialized(); }

private:
	static bool IsValidOrder(const TDeviceOrder& order);
	TDeviceOrder CurrentOrder() const;
	void StoreOrder(const TDeviceOrder& order);
	void NotifyOrder(int32_t reason);

	TObservableBaseType<TString> mName;
	TObservableBaseType<int> mQuantizeFactor{0};
	TObservableBaseType<int> mTriggerMode{kTriggerHost};
	TObservableBaseType<float> mMasterMix{1.0f};
	TObservableBaseType<float> mMasterPanning{0.5f};
	TObservableBaseType<float> mMasterVolume{0.5f};
	TSerializableList<int> mDeviceOrder;
	TObservableBaseType<int> mActiveSceneIndex{0};
	TObservableBaseType<bool> mSoftClip{false};
	TObservableBang mDeviceOrderChanged;
	std::array<TPtr<TVortelScene>, kNumberOfScenes> mpScenes;
};
