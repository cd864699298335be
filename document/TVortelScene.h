// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelParameterTable.h"
#include "document/TVortelSequencer.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/observables/TSerializableList.h"

/// One complete setting of the effect: all parameter values, a pattern, a seed and the Gater's step levels.
/// Written by the main thread (host automation: also by the host's); the audio thread reads values without a lock.
/// Writing a value does not notify; the parameter objects do that.
class TVortelScene final : public TDocumentNode {
public:
	static constexpr int32_t kNumberOfGaterSteps = 16;
	static constexpr int32_t kInitialSeed = 31337;

	/// Always one value per parameter.
	class TParameterList final : public TSerializableList<float> {
	public:
		TParameterList();
		/// Missing values become 0, further ones are dropped; so does what is no finite number.
		void FromString(const TString& text) override;
	};

	/// All values are 0 until Init.
	TVortelScene();

	/// Parameters at their defaults, or all 0; an empty pattern, the initial seed, alternating step levels.
	void Init(bool fromDefaults);
	void CopyFrom(const TVortelScene& source);

	/// Whether the pattern differs from an empty one; nothing else counts.
	bool HasContent() const { return mpSequencer->HasContent(); }

	/// No check of the index; audio thread too.
	float ParameterValue(int32_t id) const noexcept { return mParameterValues[id]; }

	void SetParameterValue(int32_t id, float value) noexcept { mParameterValues.Store(id, value); }

	float GaterStep(int32_t index) const noexcept { return mGaterVolumeSteps[index]; }

	void SetGaterStep(int32_t index, float value) noexcept { mGaterVolumeSteps.Store(index, value); }

	/// Moves on with every change of a parameter's value or a Gater step; audio thread too. See
	/// TSerializableList::Changes.
	uint32_t Changes() const noexcept { return mParameterValues.Changes() + mGaterVolumeSteps.Changes(); }

	static constexpr float DefaultGaterStep(int32_t index) { return index % 2 == 0 ? 1.0f : 0.0f; }

	TObservableBaseType<int>& Seed() noexcept { return mSeed; }

	TVortelSequencer* Sequencer() const noexcept { return mpSequencer.Get(); }

	/// Brings what a file of the version before has left here to this version.
	void UpgradeToVersion(int32_t version);

	void OnLoadBegin() override;
	void OnLoadEnd(bool success) override;

	bool IsSkippedOnSave() override { return !HasContent(); }

private:
	void InitGaterSteps(int32_t first);

	TParameterList mParameterValues;
	TPtr<TVortelSequencer> mpSequencer;
	TObservableBaseType<int> mSeed{kInitialSeed};
	TSerializableList<float> mGaterVolumeSteps;
};
