// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/TInstanceSettings.h"

#include "document/TVortelGaterDevice.h"
#include "framework/foundation/values/TRandom.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/ProgramNames.h"
#include "tools/vortel2/files/TNotices.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/AddOption.h"

#include <array>
#include <limits>
#include <random>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 3> kTriggerModes{"host", "gate", "latch"};
constexpr std::array<std::string_view, 4> kQuantizeFactors{"off", "beat", "8th", "16th"};

TVortelProgram::TDeviceOrder ParseOrder(const TOptionText& text) {
	const std::vector<TOptionText> parts = text.List();
	TVortelProgram::TDeviceOrder order{};
	if (parts.size() != order.size())
		text.Fail("is not a list of eleven devices");
	std::array<bool, TVortelProgram::kNumberOfDevices> isUsed{};
	for (std::size_t i = 0; i < order.size(); ++i) {
		order[i] = parts[i].Device();
		if (std::exchange(isUsed[static_cast<std::size_t>(order[i])], true))
			text.Fail("names a device twice");
	}
	if (order[0] != 0)
		text.Fail("does not begin with device 0");
	return order;
}

std::pair<int32_t, std::string> ParseSteps(const TOptionText& text) {
	const auto [device, row] = text.SplitAt('=', "DEVICE=PATTERN");
	if (row.Text().size() > TVortelSequence::kNumberOfSteps)
		row.Fail("has more than 64 steps");
	if (row.Text().find_first_not_of("*+-") != std::string::npos)
		row.Fail("is not a row of *, + and -");
	return {device.Device(), row.Text()};
}

std::vector<float> ParseLevels(const TOptionText& text) {
	std::vector<float> levels;
	for (const TOptionText& level : text.List())
		levels.push_back(level.Fraction());
	if (levels.size() > TVortelScene::kNumberOfGaterSteps)
		text.Fail("has more than sixteen levels");
	return levels;
}

} // namespace

void TInstanceSettings::AddOptions(CLI::App& app) {
	AddPlaceOptions(app);
	AddContentOptions(app);
}

void TInstanceSettings::AddContentOptions(CLI::App& app) {
	AddProgramOptions(app);
	AddSceneOptions(app);
	AddParameterOption(app);
}

void TInstanceSettings::AddPlaceOptions(CLI::App& app) {
	AddOption(app, "--bank", "FILE", "load a bank", [this](const TOptionText& text) { mBankFile = text.Text(); });
	AddOption(app, "--program", "FILE", "load a program into the active one", [this](const TOptionText& text) {
		mProgramFile = text.Text();
	});
	AddOption(
	    app, "--program-index", "N", "make program N active, 0 to 15 (hosts count from 1)",
	    [this](const TOptionText& text) { mProgramIndex = text.Integer(0, TVortelDocument::kNumberOfPrograms - 1); });
	AddOption(
	    app, "--program-name", "NAME", "make the program of the bank active that has this name, or begins so",
	    [this](const TOptionText& text) { mProgramName = text.Text(); });
	AddOption(app, "--scene", "N", "make scene N (0 to 127) active", [this](const TOptionText& text) {
		mSceneIndex = text.Integer(0, TVortelProgram::kNumberOfScenes - 1);
	});
	AddOption(app, "--lock", "on|off", "notes do not change the scene", [this](const TOptionText& text) {
		mLock = text.OnOff();
	});
	AddOption(
	    app, "--solo", "ROW", "hear one row only: its display position 0 to 10, -1 none",
	    [this](const TOptionText& text) { mSolo = text.Integer(-1, TVortelProgram::kNumberOfDevices - 1); });
}

void TInstanceSettings::AddProgramOptions(CLI::App& app) {
	AddOption(
	    app, "--order", "D,D,...", "processing order: all eleven devices, the first 0",
	    [this](const TOptionText& text) { mOrder = ParseOrder(text); });
	AddOption(app, "--trigger", "host|gate|latch", "what starts the sequencer", [this](const TOptionText& text) {
		mTriggerMode = text.Choice(kTriggerModes);
	});
	AddOption(app, "--quantize", "off|beat|8th|16th", "where notes change the scene", [this](const TOptionText& text) {
		mQuantize = text.Choice(kQuantizeFactors);
	});
	AddOption(app, "--soft-clip", "on|off", "soft clipping of the output", [this](const TOptionText& text) {
		mSoftClip = text.OnOff();
	});
}

void TInstanceSettings::AddSceneOptions(CLI::App& app) {
	AddNumberIfAnyOption(
	    app, "--random", "[SEED]", "fill the scene with random content, the same for the same SEED",
	    [this](const TOptionText& text) {
		    const bool isOurChoice = text.Text().empty();
		    mRandomize = {isOurChoice ? std::random_device()() : text.RandomSeed(), isOurChoice};
	    });
	AddOption(app, "--beats", "N", "beats of the pattern, 1 to 8", [this](const TOptionText& text) {
		mBeats = text.Integer(1, 8);
	});
	AddOption(app, "--divisions", "N", "steps in a beat, 2 to 8", [this](const TOptionText& text) {
		mDivisions = text.Integer(2, 8);
	});
	AddOption(app, "--loop", "on|off", "play the pattern again at its end", [this](const TOptionText& text) {
		mLoop = text.OnOff();
	});
	AddOption(app, "--seed", "N", "the scene's seed", [this](const TOptionText& text) {
		using TLimits = std::numeric_limits<int32_t>;
		mSeed = text.Integer(TLimits::min(), TLimits::max());
	});
	AddRepeatedOption(
	    app, "--steps", "DEVICE=PATTERN", "a row: * begins a block, + continues it, - is empty; repeatable",
	    [this](const TOptionText& text) { mSteps.push_back(ParseSteps(text)); });
	AddOption(
	    app, "--gater-steps", "L,L,...", "up to sixteen step levels of the Gater, 0 to 1",
	    [this](const TOptionText& text) { mGaterSteps = ParseLevels(text); });
}

void TInstanceSettings::AddParameterOption(CLI::App& app) {
	AddRepeatedOption(
	    app, "--param", "ID=V|NAME=TEXT",
	    "a parameter by id, with its normalised value, or by name, with its text; repeatable",
	    [this](const TOptionText& text) { AddParameter(text); });
}

void TInstanceSettings::AddParameter(const TOptionText& text) {
	const auto [name, value] = text.SplitAt('=', "ID=VALUE or NAME=TEXT");
	if (name.IsNumber())
		mParameters.push_back({name.Integer(0, TVortelDocument::kNumberOfParameters - 1), value.Fraction()});
	else
		mNamedParameters.push_back(text);
}

void TInstanceSettings::Report(TNotices& notices) const {
	if (mRandomize && mRandomize->mIsOurChoice)
		notices.Remark("--random has taken the seed " + std::to_string(mRandomize->mSeed));
}

void TInstanceSettings::ApplyTo(TVortelDocument& document) const {
	ApplyPlace(document);
	ApplyProgram(document);
	ApplyScene(document);
	ApplyParameters(document);
}

void TInstanceSettings::ApplyPlace(TVortelDocument& document) const {
	if (!mBankFile.empty())
		DocumentFiles::LoadBank(document, mBankFile);
	if (mProgramIndex && !mProgramName.empty())
		throw TUsageError("--program-name: --program-index chooses a program, too");
	if (!mProgramName.empty())
		document.SetCurrentProgramIndex(ProgramNamed(document, {"--program-name", mProgramName}));
	if (mProgramIndex)
		document.SetCurrentProgramIndex(*mProgramIndex);
	if (!mProgramFile.empty())
		DocumentFiles::LoadProgram(document, mProgramFile);
	if (mSceneIndex)
		document.ActiveProgram()->ActiveSceneIndex().Set(*mSceneIndex);
}

void TInstanceSettings::ApplyProgram(TVortelDocument& document) const {
	TVortelProgram& program = *document.ActiveProgram();
	if (mRandomize) {
		TRandom::SetState(mRandomize->mSeed);
		document.RandomizeScene(true);
	}
	if (mOrder)
		program.SetDeviceOrder(*mOrder);
	if (mTriggerMode)
		program.TriggerMode().Set(*mTriggerMode);
	if (mQuantize)
		program.QuantizeFactor().Set(*mQuantize);
	if (mSoftClip)
		program.SoftClip().Set(*mSoftClip);
	if (mLock)
		document.SceneLocked().Set(*mLock);
	if (mSolo)
		document.SoloRow().Set(*mSolo);
}

void TInstanceSettings::ApplyScene(TVortelDocument& document) const {
	TVortelScene& scene = *document.ActiveScene();
	TVortelSequencer& sequencer = *scene.Sequencer();
	if (mBeats)
		sequencer.NumBeats().Set(*mBeats);
	if (mDivisions)
		sequencer.NumStepsPerBeat().Set(*mDivisions);
	if (mLoop)
		sequencer.LoopEnabled().Set(*mLoop);
	if (mSeed)
		scene.Seed().Set(*mSeed);
	for (const auto& [device, row] : mSteps)
		sequencer.Sequence(device).FromString(TString(row.c_str()));
	document.SequenceChangedBang().Bang();
	for (std::size_t i = 0; i < mGaterSteps.size(); ++i)
		scene.SetGaterStep(static_cast<int32_t>(i), mGaterSteps[i]);
	// The device keeps its own, which an editor shows.
	for (std::size_t i = 0; i < mGaterSteps.size(); ++i)
		document.GaterDevice()->SetStepLevel(static_cast<int32_t>(i), mGaterSteps[i]);
}

void TInstanceSettings::ApplyParameters(TVortelDocument& document) const {
	for (const auto& [id, value] : mParameters)
		document.SetParameterValue(id, value);
	for (const TOptionText& setting : mNamedParameters) {
		const auto [name, text] = setting.SplitAt('=', "ID=VALUE or NAME=TEXT");
		const auto [id, value] = ReadParameter(document, name, text);
		document.SetParameterValue(id, value);
	}
}
