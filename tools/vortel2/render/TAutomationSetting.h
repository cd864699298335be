// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/ParameterText.h"
#include "tools/vortel2/options/TOptionText.h"
#include "tools/vortel2/render/TEventList.h"

#include <optional>

/// What --automate says: a jump, PARAM@SECONDS=VALUE, or a ramp, PARAM@FROM..TO=VALUE..VALUE. PARAM is an id, and then
/// the values are normalised, or a name, and then they are texts.
class TAutomationSetting {
public:
	/// Throws a TUsageError for all that can be told without an instance.
	explicit TAutomationSetting(const TOptionText& text);

	/// Texts are read as the instance stands before the first sample. GUI thread. Throws a TUsageError.
	TAutomation Resolve(TVortelDocument& document) const;

private:
	TOptionText mParameter;
	double mSeconds = 0.0;
	double mEndSeconds = -1.0; // -1: a jump
	TOptionText mValue;
	std::optional<TOptionText> mEndValue;
};
