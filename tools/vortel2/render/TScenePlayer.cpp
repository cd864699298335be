// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TScenePlayer.h"

#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/render/THostTransport.h"
#include "tools/vortel2/sound/DemoLoop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr float kTempo = 120.0f;
constexpr std::size_t kBlock = 256;
constexpr uint8_t kNoteOn = 0x90;

double InDecibels(double amplitude) {
	return 20.0 * std::log10(amplitude);
}

std::string LevelLine(const std::string& title, const TLevels& levels, double dryRms) {
	std::array<char, 96> numbers;
	std::snprintf(
	    numbers.data(), numbers.size(), "  peak %7.2f dB  RMS %+6.2f dB", InDecibels(levels.mPeak),
	    InDecibels(levels.Rms() / dryRms));
	return title + numbers.data() + "\n";
}

} // namespace

TScenePlayer::TScenePlayer(std::string bankFile, std::size_t frames)
    : mBankFile(std::move(bankFile)),
      mLoop(MakeDemoLoop()) {
	mLoop.mLeft.resize(std::min(frames, mLoop.mLeft.size()));
	mLoop.mRight.resize(mLoop.mLeft.size());
}

TStereoSound TScenePlayer::Play(int32_t program, int32_t scene) const {
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		DocumentFiles::LoadBank(document, mBankFile);
		document.SetCurrentProgramIndex(program);
	});
	TProgramPluginShell& shell = instance.Shell();
	shell.Setup(mLoop.mSampleRate, static_cast<int32_t>(kBlock));

	TStereoSound sound = mLoop;
	THostTransport transport(mLoop.mSampleRate, {kTempo, 0.0, true}, {});
	const TMidiEvent key{kNoteOn, static_cast<uint8_t>(scene), 100, 0};
	for (std::size_t start = 0; start < sound.mLeft.size(); start += kBlock) {
		TProgramPluginShell::TBlock block;
		block.mpLeftIn = block.mpLeftOut = sound.mLeft.data() + start;
		block.mpRightIn = block.mpRightOut = sound.mRight.data() + start;
		block.mSamples = static_cast<int32_t>(std::min(kBlock, sound.mLeft.size() - start));
		block.mpTransport = &transport.AtBlock(static_cast<int64_t>(start), block.mSamples);
		if (start == 0)
			block.mMidiEvents = {&key, 1};
		shell.Process(block);
		shell.Tick();
	}
	return sound;
}

std::string ListSceneLevels(const std::string& bankFile) {
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { DocumentFiles::LoadBank(document, bankFile); });
	const TScenePlayer player(bankFile);
	TMemorySource loop(player.Loop());
	const TLevels dry = TLevels::Measure(loop);
	std::string list = "index  in hosts  scene\n" + LevelLine("the loop              ", dry, dry.Rms());
	for (int32_t program = 0; program < TVortelDocument::kNumberOfPrograms; ++program) {
		for (int32_t scene = 0; scene < TVortelProgram::kNumberOfScenes; ++scene) {
			const bool isUsed = instance.WithDocument(
			    [&](TVortelDocument& document) { return document.Program(program)->Scene(scene)->HasContent(); });
			if (!isUsed)
				continue;
			std::array<char, 48> title;
			std::snprintf(title.data(), title.size(), "%5d  %8d  %5d", program, program + 1, scene);
			TMemorySource sound(player.Play(program, scene));
			list += LevelLine(title.data(), TLevels::Measure(sound), dry.Rms());
		}
	}
	return list;
}
