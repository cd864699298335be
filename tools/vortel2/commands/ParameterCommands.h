// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/TInstanceSettings.h"

#include <string>
#include <vector>

/// What the command line says for the command `params`.
struct TParameterList {
	bool mIsJson = false;
	std::string mDevice;  // empty: all parameters, without their ranges
	bool mHasAll = false; // of a device: the ids that it leaves over, too

	void AddOptions(CLI::App& app);
};

/// A line per parameter: id, host name, unit, default as text; or the same as a JSON array. Of one device also what the
/// parameters can be. Throws a TUsageError for a device that is none.
std::string ListParameters(const TParameterList& list);

/// What the command line says for the commands `text` and `value`.
struct TParameterQuery {
	std::string mId;
	std::vector<std::string> mArguments;
	TInstanceSettings mSettings; // of parameters only

	void AddOptions(CLI::App& app, const std::string& argumentName, const std::string& help);
};

/// A line per normalised value: the text that the parameter shows.
std::string ShowTexts(const TParameterQuery& query);

/// A line per text: the normalised value with nine digits, or "error"; and how many of them were errors.
struct TParsedTexts {
	std::string mLines;
	int mErrors = 0;
};

TParsedTexts ParseTexts(const TParameterQuery& query);
