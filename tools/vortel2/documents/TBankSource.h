// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/TInstanceSettings.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A bank as its designer writes it, in a text file:
///
///     # a remark
///     program NAME
///       options that hold for all scenes of the program
///     scene N WHAT IT DOES
///       options of this scene
///
/// The options are those that `render` has for a program's and a scene's contents, separated by blanks; double quotes
/// keep blanks. Programs follow each other from the first on; what is not mentioned stays as a fresh bank has it.
class TBankSource {
public:
	/// Throws a TWorkError that names file and line.
	explicit TBankSource(const std::string& path);
	/// The same for the file's contents; path is for messages.
	TBankSource(const std::string& path, const std::string& contents);

	/// GUI thread, on a fresh document. Throws a TWorkError for settings that a parameter does not read.
	void ApplyTo(TVortelDocument& document) const;

private:
	struct TEntry {
		int32_t mLine = 0;
		std::string mTitle;
		std::string mOptions;
		TInstanceSettings mSettings;
	};

	struct TScene {
		int32_t mIndex = 0;
		TEntry mEntry;
	};

	struct TProgram {
		TEntry mEntry;
		std::vector<TScene> mScenes;
	};

	TEntry* ReadHeading(const std::string& text, int32_t line);
	void ParseOptions(TEntry& entry) const;
	void ApplyScene(TVortelDocument& document, const TProgram& program, const TScene& scene) const;
	template <class TWork>
	void AtLine(int32_t line, const TWork& work) const;

	std::string mPath;
	std::vector<TProgram> mPrograms;
};
