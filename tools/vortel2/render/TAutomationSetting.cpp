// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TAutomationSetting.h"

namespace {

constexpr std::string_view kForm = "PARAM@SECONDS=VALUE or PARAM@FROM..TO=VALUE..VALUE";

} // namespace

TAutomationSetting::TAutomationSetting(const TOptionText& text) : mParameter(text), mValue(text) {
	const auto [target, values] = text.SplitAt('=', kForm);
	const auto [parameter, times] = target.SplitAt('@', kForm);
	const auto [start, end] = times.SplitIf("..");
	const auto [value, endValue] = values.SplitIf("..");
	if (end.has_value() != endValue.has_value())
		text.Fail("is not of the form " + std::string(kForm));
	mParameter = parameter;
	mSeconds = start.Seconds();
	mValue = value;
	mEndValue = endValue;
	if (!end)
		return;
	mEndSeconds = end->Seconds();
	if (mEndSeconds <= mSeconds)
		times.Fail("ends before it begins");
}

TAutomation TAutomationSetting::Resolve(TVortelDocument& document) const {
	const auto [id, value] = ReadParameter(document, mParameter, mValue);
	TAutomation automation{id, mSeconds, value};
	if (mEndValue) {
		automation.mEndSeconds = mEndSeconds;
		// A name that two parameters share means one of them: the one that the first text is for.
		automation.mEndValue = mParameter.IsNumber() ? ReadParameter(document, mParameter, *mEndValue).mValue
		                                             : ReadParameterText(document, {id}, *mEndValue).mValue;
	}
	return automation;
}
