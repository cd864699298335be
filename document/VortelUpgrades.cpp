// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/VortelUpgrades.h"

#include "document/TVortelDocument.h"
#include "document/TVortelProgram.h"
#include "document/TVortelScene.h"
#include "document/TVortelValueConverter.h"
#include "framework/document/xml/TDocumentTranslator.h"

namespace {

constexpr int32_t kShuffler = 10; // came with version 2, with the parameters 190 to 203
constexpr int32_t kFirstShufflerParameter = 190;
constexpr int32_t kLastShufflerParameter = 203;

template <class TNode, int32_t kVersion>
void Upgrade(TDocumentNode* node) {
	static_cast<TNode*>(node)->UpgradeToVersion(kVersion);
}

template <class TNode>
TPtr<TDocumentTranslator> MakeTranslator() {
	const auto translator = MakePtr<TDocumentTranslator>();
	for (const auto step : {&Upgrade<TNode, 1>, &Upgrade<TNode, 2>, &Upgrade<TNode, 3>}) {
		translator->BeginStep();
		translator->AddDocumentFunction(step);
		translator->EndStep();
	}
	return translator;
}

void ResetToDefault(TVortelScene& scene, int32_t id) {
	scene.SetParameterValue(id, TVortelParameterTable::Defaults()[static_cast<std::size_t>(id)]);
}

/// Keeps the real value of a parameter that has got another range or curve.
void Convert(TVortelScene& scene, int32_t id, const TVortelValueConverter& from, const TVortelValueConverter& to) {
	scene.SetParameterValue(id, to.NormalizedFromReal(from.RealFromNormalized(scene.ParameterValue(id))));
}

void ConvertRanges(TVortelScene& scene) {
	const TVortelValueConverter percent({1.0f, 5000.0f}, "%f", "%");
	const TVortelFrequencyValueConverter hertz({1.0f, 5000.0f}, "%f", "Hz");
	Convert(scene, 17, percent, hertz);
	const TVortelPowerOfTwoValueConverter upToOneBar({1.0f, 64.0f}, "%f");
	const TVortelPowerOfTwoValueConverter upToTwoBars({0.5f, 64.0f}, "%f");
	Convert(scene, 37, upToOneBar, upToTwoBars);
	Convert(scene, 38, upToOneBar, upToTwoBars);
	const TVortelPowerOfTwoValueConverter upToOneBeat({4.0f, 256.0f}, "%f");
	const TVortelPowerOfTwoValueConverter upToFourBeats({1.0f, 256.0f}, "%f");
	Convert(scene, 77, upToOneBeat, upToFourBeats);
}

} // namespace

void VortelUpgrades::Declare() {
	[[maybe_unused]] static const bool sIsDeclared = [] {
		TDocumentTranslator::Register("VortelProgram", MakeTranslator<TVortelProgram>());
		TDocumentTranslator::Register("VortelDocument", MakeTranslator<TVortelDocument>());
		return true;
	}();
}

void TVortelDocument::UpgradeToVersion(int32_t version) {
	for (const auto& program : mpPrograms)
		program->UpgradeToVersion(version);
}

void TVortelProgram::UpgradeToVersion(int32_t version) {
	for (const auto& scene : mpScenes)
		scene->UpgradeToVersion(version);
	if (version == 2)
		mDeviceOrder.Append(kShuffler);
}

void TVortelScene::UpgradeToVersion(int32_t version) {
	if (version == 1) {
		ResetToDefault(*this, 23);
		ResetToDefault(*this, 160);
	}
	if (version == 1 || version == 2) {
		for (int32_t id = kFirstShufflerParameter; id <= kLastShufflerParameter; ++id)
			ResetToDefault(*this, id);
	}
	if (version == 3) {
		ResetToDefault(*this, 103);
		ConvertRanges(*this);
	}
}
