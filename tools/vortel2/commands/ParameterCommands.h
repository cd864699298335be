// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/TInstanceSettings.h"

#include <string>
#include <vector>

/// A line per parameter: id, host name, unit, default as text; or the same as a JSON array.
std::string ListParameters(bool asJson);

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
