// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "tools/vortel2/options/TOptionText.h"

#include <cstdint>
#include <string>
#include <vector>

// Names and values of parameters as a person types them. GUI thread.

/// An id that a device leaves over.
bool IsUnusedParameter(int32_t id);

/// The parameters of a host name, "RET:Initial Speed": its letters may be of either case, and its end may be missing
/// where the rest is still of one name only. Two parameters of a device may share a name (its filter's type and its
/// own), so there may be two. Throws a TUsageError that names the nearest.
std::vector<int32_t> ParametersNamed(const TOptionText& name);

/// A parameter and its normalised value.
struct TParameterSetting {
	int32_t mId;
	float mValue;
};

/// The value that the text is of one of the parameters, in the state of the document. Throws a TUsageError unless the
/// whole text is understood and the parameter can take that very value.
TParameterSetting
ReadParameterText(TVortelDocument& document, const std::vector<int32_t>& ids, const TOptionText& text);
/// The same for a parameter as options name it: by its id, with a normalised value, or by name, with a text.
TParameterSetting ReadParameter(TVortelDocument& document, const TOptionText& parameter, const TOptionText& value);

/// What a parameter can show: the names of its values, or its ends.
struct TParameterRange {
	std::vector<std::string> mNames; // of an enumeration
	std::string mFirst;              // else
	std::string mLast;

	/// "Free, Even, Triplet or Dotted", "1 to 5000"
	std::string InWords() const;
};

TParameterRange RangeOf(TVortelDocument& document, int32_t id);

/// Reads a text as the parameter itself does, in the state of the document. False leaves value alone.
bool ParseParameterText(TVortelDocument& document, int32_t id, const std::string& text, float& value);
