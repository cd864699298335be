// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace CLI {
class App;
}

class TNotices;
class TVortelDocument;

/// `bank` and the commands below it: show, convert, init, random, chunk, levels, build.
class TBankCommands {
public:
	/// This and the notices must outlive the parsing. `print` gets what belongs on the standard output.
	void AddTo(CLI::App& app, std::function<void(const std::string&)> print, TNotices& notices);

private:
	CLI::App*
	Add(CLI::App& parent, const std::string& name, const std::string& help, const std::string& input,
	    const std::string& output);
	std::string Show() const;
	void CheckFiles() const;
	void Convert(TNotices& notices) const;
	void TakeProgramOut(TVortelDocument& document, TNotices& notices) const;
	void PutProgramIn(TVortelDocument& document) const;
	int32_t ChosenProgram(TVortelDocument& document) const;
	void Init() const;
	void Randomize(TNotices& notices) const;
	void WriteChunk() const;
	void Build() const;

	std::string mInput;
	std::string mOutput;
	std::optional<uint32_t> mSeed;
	std::optional<int32_t> mProgramIndex;
	std::string mProgramName; // empty: none
};
