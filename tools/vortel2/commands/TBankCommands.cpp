// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/TBankCommands.h"

#include "framework/foundation/values/TRandom.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/TBankSource.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/AddOption.h"
#include "tools/vortel2/render/TScenePlayer.h"

#include <CLI/CLI.hpp>

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
		text += "  " + std::to_string(i) + "  " + ProgramLine(*document.Program(i));
	}
	return "programs with content: " + std::to_string(count) +
	       ", active: " + std::to_string(document.CurrentProgramIndex()) + "\n" + text;
}

void RandomizeProgram(TVortelDocument& document) {
	document.RandomizeProgramName();
	document.ActiveProgram()->RandomizeDeviceOrder();
	document.RandomizeScene(true);
}

} // namespace

void TBankCommands::AddTo(CLI::App& app, std::function<void(const std::string&)> print) {
	CLI::App* bank = app.add_subcommand("bank", "Look at, make and convert program and bank files");
	bank->require_subcommand(1);
	Add(*bank, "show", "Print what a file holds, in words", kFile, "")->final_callback([this, print] {
		print(Show());
	});
	Add(*bank, "convert", "Save a file anew, as this version does", kFile, kFile)->final_callback([this] {
		Convert();
	});
	Add(*bank, "init", "Write a fresh bank or program", "", kFile)->final_callback([this] { Init(); });
	CLI::App* random = Add(*bank, "random", "Write a bank or program with random content", "", kFile);
	AddOption(*random, "--seed", "N", "the same content for the same N", [this](const TOptionText& text) {
		mSeed = text.RandomSeed();
	});
	random->final_callback([this] { Randomize(); });
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
		command->add_option(output.empty() ? "FILE" : "IN", mInput, input)->required();
	if (!output.empty())
		command->add_option("OUT", mOutput, output)->required();
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

void TBankCommands::Convert() const {
	if (DocumentFiles::KindOf(mInput) != DocumentFiles::KindOf(mOutput))
		throw TUsageError("bank convert: \"" + mInput + "\" and \"" + mOutput + "\" are not of one kind");
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		DocumentFiles::Load(document, mInput);
		DocumentFiles::Save(document, mOutput);
	});
}

void TBankCommands::Init() const {
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { DocumentFiles::Save(document, mOutput); });
}

void TBankCommands::Randomize() const {
	const EKind kind = DocumentFiles::KindOf(mOutput);
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		if (mSeed)
			TRandom::SetState(*mSeed);
		if (kind == EKind::kBank)
			document.RandomizeAllPrograms();
		else
			RandomizeProgram(document);
		DocumentFiles::Save(document, mOutput);
	});
}

void TBankCommands::WriteChunk() const {
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
	if (DocumentFiles::KindOf(mOutput) != EKind::kBank)
		throw TUsageError("bank build: \"" + mOutput + "\" does not end in .v2bnk");
	const TBankSource source(mInput);
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) {
		source.ApplyTo(document);
		DocumentFiles::Save(document, mOutput);
	});
}
