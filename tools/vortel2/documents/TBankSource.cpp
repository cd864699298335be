// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/TBankSource.h"

#include "tools/vortel2/files/InputFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace {

/// From the last to the first, as the library takes them.
std::vector<std::string> SplitWords(const std::string& text) {
	std::vector<std::string> words;
	bool isQuoted = false;
	bool isInside = false;
	for (const char c : text) {
		if (c == '"') {
			isQuoted = !isQuoted;
			continue;
		}
		const bool isBlank = !isQuoted && (c == ' ' || c == '\t');
		if (!isBlank && !isInside)
			words.emplace_back();
		isInside = !isBlank;
		if (isInside)
			words.back() += c;
	}
	if (isQuoted)
		throw TUsageError("a quotation mark is missing");
	std::reverse(words.begin(), words.end());
	return words;
}

/// The text without its first word and the blanks behind that.
std::string BehindWord(const std::string& text) {
	const std::size_t blank = text.find(' ');
	const std::size_t start = blank == std::string::npos ? blank : text.find_first_not_of(' ', blank);
	return start == std::string::npos ? std::string() : text.substr(start);
}

} // namespace

TBankSource::TBankSource(const std::string& path) : TBankSource(path, ReadInputFile(path)) {}

TBankSource::TBankSource(const std::string& path, const std::string& contents) : mPath(path) {
	std::istringstream file(contents);
	TEntry* entry = nullptr;
	std::string text;
	for (int32_t line = 1; std::getline(file, text); ++line) {
		const std::size_t start = text.find_first_not_of(" \t");
		if (start == std::string::npos || text[start] == '#')
			continue;
		AtLine(line, [&] {
			if (start == 0)
				entry = ReadHeading(text, line);
			else if (entry)
				entry->mOptions += text.substr(start) + " ";
			else
				throw TUsageError("options stand above the first program");
		});
	}
	for (TProgram& program : mPrograms) {
		ParseOptions(program.mEntry);
		for (TScene& scene : program.mScenes)
			ParseOptions(scene.mEntry);
	}
}

TBankSource::TEntry* TBankSource::ReadHeading(const std::string& text, int32_t line) {
	const std::string rest = BehindWord(text);
	if (text.starts_with("program ")) {
		if (mPrograms.size() == TVortelDocument::kNumberOfPrograms)
			throw TUsageError("a bank has sixteen programs");
		mPrograms.push_back({{line, rest, {}, {}}, {}});
		return &mPrograms.back().mEntry;
	}
	if (!text.starts_with("scene ") || mPrograms.empty())
		throw TUsageError("\"" + text + "\" is neither a program nor a scene of one");
	const TOptionText number("scene", rest.substr(0, rest.find(' ')));
	const int32_t index = number.Integer(0, TVortelProgram::kNumberOfScenes - 1);
	auto& scenes = mPrograms.back().mScenes;
	scenes.push_back({index, {line, BehindWord(rest), {}, {}}});
	return &scenes.back().mEntry;
}

void TBankSource::ParseOptions(TEntry& entry) const {
	AtLine(entry.mLine, [&] {
		CLI::App app;
		app.set_help_flag();
		entry.mSettings.AddContentOptions(app);
		app.parse(SplitWords(entry.mOptions));
	});
}

void TBankSource::ApplyTo(TVortelDocument& document) const {
	int32_t index = 0;
	for (const TProgram& program : mPrograms) {
		document.SetCurrentProgramIndex(index++);
		document.ActiveProgram()->Name().Set(TString(program.mEntry.mTitle.c_str(), kUtf8Encoding));
		for (const TScene& scene : program.mScenes)
			ApplyScene(document, program, scene);
		document.ActiveProgram()->ActiveSceneIndex().Set(0);
	}
	document.SetCurrentProgramIndex(0);
}

void TBankSource::ApplyScene(TVortelDocument& document, const TProgram& program, const TScene& scene) const {
	document.ActiveProgram()->ActiveSceneIndex().Set(scene.mIndex);
	AtLine(program.mEntry.mLine, [&] { program.mEntry.mSettings.ApplyTo(document); });
	AtLine(scene.mEntry.mLine, [&] { scene.mEntry.mSettings.ApplyTo(document); });
}

template <class TWork>
void TBankSource::AtLine(int32_t line, const TWork& work) const {
	const auto fail = [&](const std::exception& error) {
		throw TWorkError(mPath + ":" + std::to_string(line) + ": " + error.what());
	};
	try {
		work();
	} catch (const TUsageError& error) {
		fail(error);
	} catch (const CLI::ParseError& error) {
		fail(error);
	}
}
