// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/TScript.h"

#include "document/TVortelParameterTable.h"
#include "tools/vortel2/files/InputFile.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/TOptionText.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>

namespace Script {

namespace {

/// Beyond every screen, and safe to add up.
constexpr int32_t kFarthest = 100000;
constexpr int32_t kMostRepeats = 10000;
constexpr int32_t kLongestWait = 24 * 60 * 60 * 1000;
constexpr double kMostBeats = 1e5;
constexpr double kSlowestTempo = 1.0;
constexpr double kFastestTempo = 1000.0;
constexpr float kUsualTempo = 120.0f;
constexpr uint8_t kUsualVelocity = 100;
constexpr int32_t kUsualDragMoves = 8;

constexpr std::string_view kButtons[] = {"left", "right", "middle"};
constexpr std::string_view kDirections[] = {"up", "down", "left", "right"};

/// The words of one line, taken from the left.
class TWords {
public:
	TWords(std::string place, std::string_view line, TKeyLookup codeOfName)
	    : mPlace(std::move(place)),
	      mRest(line),
	      mCodeOfName(codeOfName) {
		mCommand = Take();
	}

	const std::string& Command() const noexcept { return mCommand; }

	bool IsAtEnd() const { return mRest.find_first_not_of(" \t") == std::string_view::npos; }

	TOptionText Next() {
		if (IsAtEnd())
			Fail("misses a word");
		return {mPlace + ": " + mCommand, Take()};
	}

	/// What is left of the line, blanks included, without the one behind the command.
	std::string Rest() {
		std::string rest(mRest.empty() ? mRest : mRest.substr(1));
		mRest = {};
		return rest;
	}

	std::string FileName() {
		std::string name = Rest();
		name.erase(0, name.find_first_not_of(" \t"));
		name.erase(name.find_last_not_of(" \t") + 1);
		if (name.empty())
			Fail("misses a file's name");
		return name;
	}

	int32_t Coordinate() { return Next().Integer(-kFarthest, kFarthest); }

	int32_t Count(int32_t usual) { return IsAtEnd() ? usual : Next().Integer(1, kMostRepeats); }

	int32_t KeyCode() {
		const TOptionText name = Next();
		const int32_t code = mCodeOfName(name.Text());
		if (code < 0)
			name.Fail("is not the name of a key");
		return code;
	}

	EButton Button() { return static_cast<EButton>(Next().Choice(kButtons)); }

	[[noreturn]] void Fail(const std::string& reason) const {
		throw TUsageError(mPlace + ": \"" + mCommand + "\" " + reason);
	}

private:
	std::string Take() {
		const std::size_t start = std::min(mRest.find_first_not_of(" \t"), mRest.size());
		const std::size_t end = std::min(mRest.find_first_of(" \t", start), mRest.size());
		std::string word(mRest.substr(start, end - start));
		mRest.remove_prefix(end);
		return word;
	}

	std::string mPlace;
	std::string_view mRest;
	TKeyLookup mCodeOfName;
	std::string mCommand;
};

TMove ReadMove(TWords& words) {
	const int32_t x = words.Coordinate();
	return {x, words.Coordinate()};
}

TDrag ReadDrag(TWords& words) {
	const TMove end = ReadMove(words);
	return {end.mX, end.mY, words.Count(kUsualDragMoves)};
}

TClick ReadClick(TWords& words) {
	const EButton button = words.Button();
	return {button, words.Count(1)};
}

TWheel ReadWheel(TWords& words) {
	const auto direction = static_cast<EDirection>(words.Next().Choice(kDirections));
	return {direction, words.Count(1)};
}

TKeys ReadKeys(TWords& words) {
	TKeys keys;
	do
		keys.mCodes.push_back(words.KeyCode());
	while (!words.IsAtEnd());
	return keys;
}

std::string Unescape(const TWords& words, std::string_view text) {
	static constexpr std::string_view kLetters = "nrt\\";
	static constexpr std::string_view kMeanings = "\n\r\t\\";
	std::string result;
	for (std::size_t i = 0; i < text.size(); ++i) {
		if (text[i] != '\\') {
			result += text[i];
			continue;
		}
		const std::size_t letter = ++i < text.size() ? kLetters.find(text[i]) : std::string_view::npos;
		if (letter == std::string_view::npos)
			words.Fail("holds an escape other than \\n, \\r, \\t and \\\\");
		result += kMeanings[letter];
	}
	return result;
}

TPlay ReadPlay(TWords& words) {
	const double beats = words.Next().Number(0.0, kMostBeats);
	const double tempo = words.IsAtEnd() ? kUsualTempo : words.Next().Number(kSlowestTempo, kFastestTempo);
	return {beats, static_cast<float>(tempo)};
}

TNote ReadNote(TWords& words) {
	const auto pitch = static_cast<uint8_t>(words.Next().Integer(0, 127));
	return {pitch, words.IsAtEnd() ? kUsualVelocity : static_cast<uint8_t>(words.Next().Integer(1, 127))};
}

THostParameter ReadHostParameter(TWords& words) {
	const int32_t id = words.Next().Integer(0, TVortelParameterTable::kNumberOfParameters - 1);
	return {id, words.Next().Fraction()};
}

/// The window's index is the last word, where it is a number and not the only word.
TPicture ReadPicture(TWords& words) {
	const std::string name = words.FileName();
	const std::size_t blank = name.find_last_of(" \t");
	const std::string last = blank == std::string::npos ? std::string() : name.substr(blank + 1);
	if (last.empty() || last.find_first_not_of("0123456789") != std::string::npos)
		return {name, 0};
	return {
	    name.substr(0, name.find_last_not_of(" \t", blank) + 1), TOptionText("picture", last).Integer(0, kFarthest)};
}

using TReader = TCommand (*)(TWords&);

struct TCommandReader {
	std::string_view mName;
	TReader mReader;
};

constexpr std::array<TCommandReader, 24> kCommands{{
    {"move", [](TWords& words) -> TCommand { return ReadMove(words); }},
    {"press",
     [](TWords& words) -> TCommand {
	     return TButtonChange{words.Button(), true};
     }},
    {"release",
     [](TWords& words) -> TCommand {
	     return TButtonChange{words.Button(), false};
     }},
    {"click", [](TWords& words) -> TCommand { return ReadClick(words); }},
    {"drag", [](TWords& words) -> TCommand { return ReadDrag(words); }},
    {"wheel", [](TWords& words) -> TCommand { return ReadWheel(words); }},
    {"key", [](TWords& words) -> TCommand { return ReadKeys(words); }},
    {"keydown",
     [](TWords& words) -> TCommand {
	     return TKeyChange{words.KeyCode(), true};
     }},
    {"keyup",
     [](TWords& words) -> TCommand {
	     return TKeyChange{words.KeyCode(), false};
     }},
    {"keylost", [](TWords& words) -> TCommand { return TKeyLost{words.KeyCode()}; }},
    {"type", [](TWords& words) -> TCommand { return TTyping{words.Rest()}; }},
    {"clipboard", [](TWords& words) -> TCommand { return TForeignClipboard{Unescape(words, words.Rest())}; }},
    {"answer", [](TWords& words) -> TCommand { return TDialogAnswer{words.FileName()}; }},
    {"cancel", [](TWords&) -> TCommand { return TDialogAnswer{}; }},
    {"wait", [](TWords& words) -> TCommand { return TWait{words.Next().Integer(0, kLongestWait)}; }},
    {"play", [](TWords& words) -> TCommand { return ReadPlay(words); }},
    {"note", [](TWords& words) -> TCommand { return ReadNote(words); }},
    {"noteoff",
     [](TWords& words) -> TCommand {
	     return TNote{static_cast<uint8_t>(words.Next().Integer(0, 127)), 0};
     }},
    {"host", [](TWords& words) -> TCommand { return ReadHostParameter(words); }},
    {"close", [](TWords&) -> TCommand { return EHostAction::kCloseEditor; }},
    {"open", [](TWords&) -> TCommand { return EHostAction::kOpenEditor; }},
    {"picture", [](TWords& words) -> TCommand { return ReadPicture(words); }},
    {"views", [](TWords& words) -> TCommand { return TViews{words.FileName()}; }},
    {"save", [](TWords& words) -> TCommand { return TSave{words.FileName()}; }},
}};

std::optional<TCommand> ReadLine(TWords& words) {
	if (words.Command().empty() || words.Command()[0] == '#')
		return std::nullopt;
	const auto reader = std::ranges::find(kCommands, words.Command(), &TCommandReader::mName);
	if (reader == kCommands.end())
		words.Fail("is not a word of the script language");
	TCommand command = reader->mReader(words);
	if (!words.IsAtEnd())
		words.Next().Fail("is one word too many");
	return command;
}

std::string ReadText(const std::string& path) {
	if (path == "-")
		return {std::istreambuf_iterator<char>(std::cin), {}};
	return ReadInputFile(path);
}

} // namespace

std::vector<TLine> Read(const std::string& path, TKeyLookup codeOfName) {
	std::istringstream file(ReadText(path));
	const std::string name = path == "-" ? "standard input" : path;
	std::vector<TLine> lines;
	std::string text;
	for (int32_t number = 1; std::getline(file, text); ++number) {
		if (text.ends_with('\r'))
			text.pop_back();
		TWords words(name + ":" + std::to_string(number), text, codeOfName);
		if (std::optional<TCommand> command = ReadLine(words))
			lines.push_back({number, std::move(*command)});
	}
	return lines;
}

} // namespace Script
