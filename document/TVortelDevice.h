// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDeviceParameter.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"

#include <atomic>

class TVortelDocument;
class TVortelProgram;
class TVortelScene;

/// One of the eleven devices of a document, as far as a user edits it: its parameters and what is done to all of them
/// at once. The sound is made elsewhere. Made by the document, which keeps it for its whole life. Main thread.
class TVortelDevice : public TDocumentNode {
public:
	int32_t DeviceIndex() const noexcept { return mDeviceIndex; }

	const TString& Name() const noexcept { return mName; }

	int32_t FirstParameterId() const noexcept { return mFirstParameterId; }

	/// Null once the document is gone.
	TVortelDocument* Document() const noexcept { return mpDocument.Get(); }

	/// The list: the weight, the common controls, from 7 on the device's own parameters.
	int32_t NumberOfParameters() const noexcept;
	/// Null outside the list.
	TVortelDeviceParameter* Parameter(int32_t listIndex) const noexcept;

	/// The active program and scene; null until the document is complete. Any thread.
	TVortelProgram* Program() const noexcept { return mpProgram.load(std::memory_order_relaxed); }

	TVortelScene* Scene() const noexcept { return mpScene.load(std::memory_order_relaxed); }

	/// One undo step: every parameter back to its default.
	virtual void Init();
	virtual void Randomize();
	virtual void Mutate();
	virtual void PasteParameters(TVortelScene* source);
	virtual void CopyParameters(TVortelScene* target);

	virtual void OnInit() {}

	/// The device's own parameters get values in 0 to 1.
	virtual void OnRandomize();
	/// The device's own parameters move within 0.1.
	virtual void OnMutate();

	virtual void OnPaste(TVortelScene* /*source*/) {}

	virtual void OnCopy(TVortelScene* /*target*/) {}

	virtual void OnSceneChanged() {}

	/// Tells the observers of every parameter that it may have changed.
	virtual void NotifySceneChanged();

	TPtr<TVortelDeviceParameter> mpRandomWeight;
	TPtr<TVortelDeviceParameter> mpMixerMix;
	TPtr<TVortelDeviceParameter> mpMixerPanning;
	TPtr<TVortelDeviceParameter> mpMixerVolume;
	TPtr<TVortelDeviceParameter> mpFilterType;
	TPtr<TVortelDeviceParameter> mpFilterFrequency;
	TPtr<TVortelDeviceParameter> mpFilterQ;

protected:
	/// Makes the weight.
	TVortelDevice(TVortelDocument* document, int32_t deviceIndex);

	void AddCommonParameters();
	/// Makes the parameter with this id, registers it with the document and appends it to the list.
	template <class TParameter = TVortelDeviceParameter>
	TPtr<TVortelDeviceParameter> Add(int32_t id);
	/// Fills the id at which nothing stands yet; such a parameter is in no list.
	TPtr<TVortelDeviceParameter> AddUnused(int32_t id);
	/// Fills the rest of the device's ids.
	void AddUnusedParameters();

private:
	TPtr<TVortelValueConverter> ConverterFor(const TVortelParameterDeclaration& declaration) const;
	void Register(const TPtr<TVortelDeviceParameter>& parameter);
	void AppendToList(const TPtr<TVortelDeviceParameter>& parameter);
	void FollowDocument();
	void OnDocumentSceneChanged(TObservable* observable, int32_t reason);
	void OnDocumentProgramChanged(TObservable* observable, int32_t reason);

	TWeakPtr<TVortelDocument> mpDocument;
	int32_t mDeviceIndex;
	TString mName;
	int32_t mFirstParameterId;
	TList<TPtr<TVortelDeviceParameter>> mParameters;
	// Written by the main thread, read by the host's automation too. Programs and scenes live as long as the document.
	std::atomic<TVortelProgram*> mpProgram{nullptr};
	std::atomic<TVortelScene*> mpScene{nullptr};
};

template <class TParameter>
TPtr<TVortelDeviceParameter> TVortelDevice::Add(int32_t id) {
	const TVortelParameterDeclaration& declaration = TVortelParameterTable::Declaration(id);
	TPtr<TVortelDeviceParameter> parameter = MakePtr<TParameter>(this, declaration, ConverterFor(declaration));
	Register(parameter);
	AppendToList(parameter);
	return parameter;
}
