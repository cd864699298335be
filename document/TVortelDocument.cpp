// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"

#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "document/TVortelIndexedNames.h"
#include "document/TVortelMasterDevice.h"
#include "document/VortelUpgrades.h"
#include "framework/document/nodes/TNameRules.h"
#include "framework/foundation/files/TFile.h"

#include <algorithm>

namespace {

bool HasNewValue(int32_t reason) {
	return reason == kObserverAdded || reason == kDidChange;
}

} // namespace

TVortelDocument::TLoadGuard::TLoadGuard(TVortelDocument& document) : mDocument(document) {
	mDocument.mLoadDepth.fetch_add(1);
	// Waits for the block that may be running; the next one sees that the document is loading.
	const TCriticalSection::TGuard barrier(mDocument.mAudioLock);
}

TVortelDocument::TLoadGuard::~TLoadGuard() {
	mDocument.mLoadDepth.fetch_sub(1);
}

TVortelDocument::TVortelDocument() : TVortelDocument(TOptions()) {}

TVortelDocument::TVortelDocument(const TOptions& options)
    : mpTempProgram(MakePtr<TVortelProgram>()),
      mpTempScene(MakePtr<TVortelScene>()),
      mpProgramClipboard(MakePtr<TVortelProgram>()),
      mpSceneClipboard(MakePtr<TVortelScene>()),
      mpParameterClipboard(MakePtr<TVortelScene>()),
      mpSequencerClipboard(MakePtr<TVortelSequencer>()),
      mpNameGenerator(MakePtr<TVortelProgramNameGenerator>()) {
	VortelUpgrades::Declare();
	for (auto& program : mpPrograms) {
		program = MakePtr<TVortelProgram>();
		program->Name().AddObserver({this, &TVortelDocument::OnProgramName});
	}
	DeclareMembers();
	CreateDevices();

	for (auto& program : mpPrograms)
		program->Init(true);
	FireAllBangs();

	mRandom.SetSeed(31337);
	FillClipboards();
	mActiveProgramIndex.AddObserver({this, &TVortelDocument::OnActiveProgramIndex});
	FillPrograms(options);
}

TVortelDocument::~TVortelDocument() = default;

void TVortelDocument::FillPrograms(const TOptions& options) {
	if (TFile(options.mDefaultBank).Exists())
		LoadBank(options.mDefaultBank);
	else if (options.mRandomizeOnLoad)
		RandomizeAllPrograms();
}

void TVortelDocument::DeclareMembers() {
	using TNameRules::MemberNameToElementName;
	static const auto kProgramNames = MakeIndexedNames<kNumberOfPrograms>("Program");

	ReserveMembers(1, 2 + kNumberOfPrograms);
	AddChild(mpTempProgram.Get(), MemberNameToElementName("mpTempProgram"), 0);
	AddChild(mpTempScene.Get(), MemberNameToElementName("mpTempScene"), 0);
	AddProperty(&mActiveProgramIndex, MemberNameToElementName("mActiveProgramIndex"), kWrite);
	for (std::size_t i = 0; i < mpPrograms.size(); ++i)
		AddChild(mpPrograms[i].Get(), kProgramNames[i], kWrite);
	FinishDeclaration();
}

template <class TDevice>
void TVortelDocument::CreateDevice(TDevice*& device) {
	device = new TDevice(this);
	mpDevices[static_cast<std::size_t>(device->DeviceIndex())] = device;
}

void TVortelDocument::CreateDevices() {
	CreateDevice(mpMasterDevice);
	CreateDevice(mpModulatorDevice);
	CreateDevice(mpTapeStopDevice);
	CreateDevice(mpRetriggerDevice);
	CreateDevice(mpReverserDevice);
	CreateDevice(mpStretcherDevice);
	CreateDevice(mpLofiDevice);
	CreateDevice(mpDistortionDevice);
	CreateDevice(mpGaterDevice);
	CreateDevice(mpDelayDevice);
	CreateDevice(mpShufflerDevice);
}

void TVortelDocument::RegisterParameter(const TPtr<TVortelDeviceParameter>& parameter) {
	mpParameters[static_cast<std::size_t>(parameter->Id())] = parameter;
}

void TVortelDocument::FillClipboards() {
	const TVortelProgram& program = *mpPrograms[0];
	const TVortelScene& scene = *program.ActiveScene();
	mpProgramClipboard->CopyFrom(program);
	mpSceneClipboard->CopyFrom(scene);
	mpParameterClipboard->CopyFrom(scene);
	mpSequencerClipboard->CopyFrom(*scene.Sequencer(), false);
}

TVortelSequencer* TVortelDocument::ActiveSequencer() const noexcept {
	return ActiveScene()->Sequencer();
}

TVortelProgram* TVortelDocument::Program(int32_t index) const noexcept {
	return mpPrograms[static_cast<std::size_t>(std::clamp(index, 0, kNumberOfPrograms - 1))].Get();
}

TVortelDevice* TVortelDocument::Device(int32_t index) const noexcept {
	return mpDevices[static_cast<std::size_t>(std::clamp(index, 0, kNumberOfDevices - 1))].Get();
}

TVortelDeviceParameter* TVortelDocument::Parameter(int32_t id) const noexcept {
	const bool known = id >= 0 && id < kNumberOfParameters;
	return known ? mpParameters[static_cast<std::size_t>(id)].Get() : nullptr;
}

void TVortelDocument::FireAllBangs() {
	mProgramChangedBang.Bang();
	FireSceneBangs();
}

void TVortelDocument::FireSceneBangs() {
	mSceneChangedBang.Bang();
	mSequenceChangedBang.Bang();
}

void TVortelDocument::OnActiveProgramIndex(TObservable* /*observable*/, int32_t reason) {
	if (!HasNewValue(reason))
		return;
	TVortelProgram* program = Program(mActiveProgramIndex.Get());
	TVortelProgram* previous = ActiveProgram();
	if (program == previous)
		return;
	if (previous)
		previous->ActiveSceneIndex().RemoveObserver({this, &TVortelDocument::OnActiveSceneIndex});
	mpProgram.store(program, std::memory_order_relaxed);
	program->ActiveSceneIndex().AddObserver({this, &TVortelDocument::OnActiveSceneIndex});
	mProgramChangedBang.Bang();
}

void TVortelDocument::OnActiveSceneIndex(TObservable* /*observable*/, int32_t reason) {
	if (!HasNewValue(reason))
		return;
	TVortelScene* scene = ActiveProgram()->ActiveScene();
	if (scene == ActiveScene())
		return;
	mpScene.store(scene, std::memory_order_relaxed);
	FireSceneBangs();
}

void TVortelDocument::OnProgramName(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange && !mHoldsNames)
		mProgramNameChangedBang.Bang();
}

void TVortelDocument::OnLoadEnd(bool /*success*/) {
	ClearModified();
	FireAllBangs();
}
