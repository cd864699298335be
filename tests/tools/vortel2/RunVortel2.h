// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/sound/TSoundSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// What a run of the built program gave.
struct TRunResult {
	int mStatus = -1; // of the exit; -1 if it did not exit by itself
	std::string mOutput;
	std::string mErrors;

	bool HasOneErrorLine() const;
};

using TArguments = std::vector<std::string>;

/// A fresh folder in which the program runs; gone at the end of the test. Its log lies beside the folder's files.
class TVortel2Test : public testing::Test {
protected:
	TVortel2Test();
	~TVortel2Test() override;

	std::string Path(const std::string& name) const { return (mFolder / name).string(); }

	/// File names in arguments are relative to the folder.
	TRunResult Run(const TArguments& arguments) const;
	/// The same through a shell, for what only a shell can set up; "$0" is the program.
	TRunResult RunInShell(const std::string& line) const;
	/// `render in.wav NAME` with further arguments, which must succeed; the file's bytes.
	std::string Render(const std::string& name, const TArguments& arguments) const;

	void WriteWav(const std::string& name, const TStereoSound& sound) const;
	/// Both sides from the file, whatever its format.
	TStereoSound ReadSound(const std::string& name) const;
	std::string Bytes(const std::string& name) const;
	void WriteBytes(const std::string& name, const std::string& bytes) const;
	/// All that lies in the folder, hidden files too, sorted.
	std::vector<std::string> Files() const;

	/// A second of noise that goes beyond full scale, the sides different.
	static TStereoSound Noise(std::size_t frames = 44100, int32_t sampleRate = 44100);

	std::filesystem::path mFolder;
};
