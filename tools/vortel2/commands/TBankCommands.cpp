// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/TBankCommands.h"

#include "framework/foundation/values/TRandom.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/ProgramNames.h"
#include "tools/vortel2/documents/TBankSource.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/files/CheckFiles.h"
#include "tools/vortel2/files/TNotices.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/AddOption.h"
#include "tools/vortel2/render/TScenePlayer.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <random>
#include <unistd.h>

namespace {

using DocumentFiles::EKind;

constexpr const char* kFile = "a .v2prg program or a .v2bnk bank";

std::string SceneList(const TVortelProgram& program) {
	std::string list;
	int32_t count = 0;
	for (int32_t i = 0; i < TVortelProgram::kNumberOfScenes; ++i) {
		if (!program.Scene(i)->HasContent())
			continue;
		list += (count++ == 0 ? " " : ", ") + std::to_string(i);
	}
	if (count == 0)
		return "no scenes with content";
	return (count == 1 ? "scene" : std::to_string(count) + " scenes") + list;
}

std::string ProgramLine(TVortelProgram& program) {
	return std::string(program.Name().Get().CString()) + ": " + SceneList(program) + "\n";
}

std::string BankInWords(TVortelDocument& document) {
	std::string text;
	int32_t count = 0;
	for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i) {
		if (document.Program(i)->IsInitialized())
			continue;
		++count;
		std::array<char, 32> numbers;
		std::snprintf(numbers.data(), numbers.size(), "%5d  %8d  ", i, i + 1);
		text += numbers.data() + ProgramLine(*document.Program(i));
	}
	if (count > 0)
		text = "index  in hosts  name\n" + text;
	return "programs with content: " + std::to_string(count) +
	       ", active: " + std::to_string(document.CurrentProgramIndex()) + "\n" + text;
}

void RandomizeProgram(TVortelDocument& document) {
	document.RandomizeProgramName();
	document.ActiveProgram()->RandomizeDeviceOrder();
	document.RandomizeScene(true);
}

} // namespace

void TBankCommands::AddTo(CLI::App& app, std::function<void(const std::string&)> print, TNotices& notices) {
	CLI::App* bank = app.add_subcommand("bank", "Look at, make and convert program and bank files");
	bank->require_subcommand(1);
	Add(*bank, "show", "Print what a file holds, in words", kFile, "")->final_callback([this, print] {
		print(Show());
	});
	CLI::App* convert =
	    Add(*bank, "convert", "Save a file anew, as this version does; take a program out of a bank, or put one in",
	        kFile, kFile);
	AddOption(*convert, "--program-index", "N", "the bank's program, 0 to 15", [this](const TOptionText& text) {
		mProgramIndex = text.Integer(0, TVortelDocument::kNumberOfPrograms - 1);
	});
	AddOption(*convert, "--program-name", "NAME", "the bank's program, by name", [this](const TOptionText& text) {
		mProgramName = text.Text();
	});
	convert->final_callback([this, &notices] { Convert(notices); });
	Add(*bank, "init", "Write a fresh bank or program", "", kFile)->final_callback([this] { Init(); });
	CLI::App* random = Add(*bank, "random", "Write a bank or program with random content", "", kFile);
	AddOption(*random, "--seed", "N", "the same content for the same N", [this](const TOptionText& text) {
		mSeed = text.RandomSeed();
	});
	random->final_callback([this, &notices] { Randomize(notices); });
	Add(*bank, "chunk", "Write what a host is given to keep", kFile, "the bytes")->final_callback([this] {
		WriteChunk();
	});
	Add(*bank, "levels", "Print how loud each scene plays the built-in drum loop", "a .v2bnk bank", "")
	    ->final_callback([this, print] { print(ListSceneLevels(mInput)); });
	Add(*bank, "build", "Write the bank that a text describes", "the text", "a .v2bnk bank")->final_callback([this] {
		Build();
	});
}

CLI::App* TBankCommands::Add(
    CLI::App& parent, const std::string& name, const std::string& help, const std::string& input,
    const std::string& output) {
	CLI::App* command = parent.add_subcommand(name, help);
	if (!input.empty())
		AddArgument(*command, output.empty() ? "FILE" : "IN", input, mInput);
	if (!output.empty())
		AddArgument(*command, "OUT", output, mOutput);
	return command;
}

std::string TBankCommands::Show() const {
	const TInstance instance;
	return instance.WithDocument([&](TVortelDocument& document) {
		const bool isBank = DocumentFiles::Load(document, mInput) == EKind::kBank;
		const std::string version = "version " + std::to_string(DocumentFiles::VersionOf(mInput)) + "\n";
		if (isBank)
			return "bank, " + version + BankInWords(document);
		return "program, " + version + ProgramLine(*document.ActiveProgram());
	});
}

void TBankCommands::CheckFiles() const {
	CheckOutputs(std::vector<TNamedFile>{{"OUT", mOutput}}, std::vector<TNamedFile>{{"IN", mInput}});
}

void TBankCommands::Convert(TNotices& notices) const {
	CheckFiles();
	const EKind from = DocumentFiles::KindOf(mInput);
	const EKind to = DocumentFiles::KindOf(mOutput);
	const bool isChosen = mProgramIndex || !mProgramName.empty();
	if (mProgramIndex && !mProgramName.empty())
		throw TUsageError("--program-name: --program-index chooses a program, too");
	if (from != to && !isChosen)
		throw TUsageError(
		    "bank convert: \"" + mInput + "\" and \"" + mOutput +
		    "\" are not of one kind; --program-index or --program-name says which program of the bank is meant");
	if (from == to && isChosen)
		throw TUsageError(
		    std::string(mProgramIndex ? "--program-index" : "--program-name") +
		    ": chooses a program where one file is a bank and the other a program");
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		if (from == to)
			DocumentFiles::Load(document, mInput);
		else if (from == EKind::kBank)
			TakeProgramOut(document, notices);
		else
			PutProgramIn(document);
		DocumentFiles::Save(document, mOutput);
	});
}

void TBankCommands::TakeProgramOut(TVortelDocument& document, TNotices& notices) const {
	DocumentFiles::LoadBank(document, mInput);
	const int32_t index = ChosenProgram(document);
	document.SetCurrentProgramIndex(index);
	if (document.ActiveProgram()->IsInitialized())
		notices.Warn(mOutput + ": program " + std::to_string(index) + " of " + mInput + " is empty");
}

/// Into the bank that is there, whose other programs stay, or into a fresh one.
void TBankCommands::PutProgramIn(TVortelDocument& document) const {
	if (access(mOutput.c_str(), F_OK) == 0)
		DocumentFiles::LoadBank(document, mOutput);
	const int32_t active = document.CurrentProgramIndex();
	document.SetCurrentProgramIndex(ChosenProgram(document));
	DocumentFiles::LoadProgram(document, mInput);
	document.SetCurrentProgramIndex(active);
}

int32_t TBankCommands::ChosenProgram(TVortelDocument& document) const {
	return mProgramIndex ? *mProgramIndex : ProgramNamed(document, {"--program-name", mProgramName});
}

void TBankCommands::Init() const {
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { DocumentFiles::Save(document, mOutput); });
}

void TBankCommands::Randomize(TNotices& notices) const {
	const EKind kind = DocumentFiles::KindOf(mOutput);
	const uint32_t seed = mSeed ? *mSeed : std::random_device()();
	if (!mSeed)
		notices.Remark("bank random has taken the seed " + std::to_string(seed));
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		TRandom::SetState(seed);
		if (kind == EKind::kBank)
			document.RandomizeAllPrograms();
		else
			RandomizeProgram(document);
		DocumentFiles::Save(document, mOutput);
	});
}

void TBankCommands::WriteChunk() const {
	CheckFiles();
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		TStream chunk;
		if (DocumentFiles::Load(document, mInput) == EKind::kBank)
			document.SaveBankChunk(chunk);
		else
			document.SaveProgramChunk(chunk);
		if (chunk.IsEmpty())
			throw TWorkError(mInput + ": no chunk could be made of it");
		DocumentFiles::WriteBytes(mOutput, chunk.Bytes());
	});
}

void TBankCommands::Build() const {
	CheckFiles();
	if (DocumentFiles::KindOf(mOutput) != EKind::kBank)
		throw TUsageError("bank build: \"" + mOutput + "\" does not end in .v2bnk");
	const TBankSource source(mInput);
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		source.ApplyTo(document);
		DocumentFiles::Save(document, mOutput);
	});
}
