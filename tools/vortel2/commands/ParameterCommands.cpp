// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/ParameterCommands.h"

#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/options/AddOption.h"
#include "tools/vortel2/options/Nearest.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

namespace {

struct TRow {
	std::string mId;
	std::string mName;
	std::string mUnit;
	float mDefault;
	std::string mText;
	std::optional<TParameterRange> mRange;
};

/// The device by its index, its prefix in names, or its name or the beginning of that.
int32_t DeviceOf(const std::string& text) {
	const std::string typed = LowerCase(text);
	std::vector<std::string> known;
	std::vector<int32_t> found;
	for (int32_t device = 0; device < TVortelParameterTable::kNumberOfDevices; ++device) {
		const TVortelDeviceDeclaration& declaration = TVortelParameterTable::Device(device);
		known.insert(known.end(), {declaration.mPrefix, declaration.mName});
		const bool isRandomizer = device == 0 && typed == "rnd";
		if (typed == std::to_string(device) || typed == LowerCase(declaration.mPrefix) || isRandomizer)
			return device;
		if (LowerCase(declaration.mName).starts_with(typed))
			found.push_back(device);
	}
	if (found.size() != 1)
		TOptionText("DEVICE", text)
		    .Fail("is not a device: 0 to 10, a prefix such as RET, or a name" + DidYouMean(text, known));
	return found.front();
}

std::vector<TRow> CollectRows(const TParameterList& list) {
	const bool isWhole = list.mDevice.empty();
	const int32_t device = isWhole ? 0 : DeviceOf(list.mDevice);
	const TInstance instance;
	return instance.WithDocument([&](TVortelDocument& document) {
		std::vector<TRow> rows;
		for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id) {
			const bool isListed =
			    TVortelParameterTable::DeviceOfParameter(id) == device && (list.mHasAll || !IsUnusedParameter(id));
			if (!isWhole && !isListed)
				continue;
			const auto title = document.ParameterName(id);
			const float value = TVortelParameterTable::Defaults()[static_cast<std::size_t>(id)];
			rows.push_back(
			    {std::to_string(id), title.mName.CString(), title.mUnit.CString(), value,
			     document.ParameterValueText(id, value).CString(),
			     isWhole ? std::nullopt : std::optional(RangeOf(document, id))});
		}
		return rows;
	});
}

std::string NineDigits(float value) {
	std::array<char, 32> text;
	std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(value));
	return text.data();
}

/// Columns as they appear on a terminal: characters, not bytes.
std::size_t Width(const std::string& text) {
	return static_cast<std::size_t>(
	    std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string Padded(const std::string& text, std::size_t width) {
	return text + std::string(width - std::min(width, Width(text)), ' ');
}

std::string AsTable(const std::vector<TRow>& rows) {
	std::size_t nameWidth = 0;
	std::size_t unitWidth = 0;
	std::size_t textWidth = 0;
	for (const TRow& row : rows) {
		nameWidth = std::max(nameWidth, Width(row.mName));
		unitWidth = std::max(unitWidth, Width(row.mUnit));
		textWidth = std::max(textWidth, Width(row.mText));
	}
	std::string table;
	for (const TRow& row : rows)
		table += Padded(row.mId, 3) + "  " + Padded(row.mName, nameWidth) + "  " + Padded(row.mUnit, unitWidth) + "  " +
		         (row.mRange ? Padded(row.mText, textWidth) + "  " + row.mRange->InWords() : row.mText) + "\n";
	return table;
}

std::string RangeAsJson(const TParameterRange& range) {
	if (!range.mNames.empty())
		return ", \"values\": " + nlohmann::json(range.mNames).dump();
	return ", \"first\": " + nlohmann::json(range.mFirst).dump() + ", \"last\": " + nlohmann::json(range.mLast).dump();
}

std::string AsJson(const std::vector<TRow>& rows) {
	const auto quoted = [](const std::string& text) { return nlohmann::json(text).dump(); };
	std::string array = "[";
	for (const TRow& row : rows)
		array += std::string(&row == rows.data() ? "\n" : ",\n") + "{\"id\": " + row.mId +
		         ", \"name\": " + quoted(row.mName) + ", \"unit\": " + quoted(row.mUnit) +
		         ", \"default\": " + NineDigits(row.mDefault) + ", \"text\": " + quoted(row.mText) +
		         (row.mRange ? RangeAsJson(*row.mRange) : "") + "}";
	return array + "\n]\n";
}

int32_t ParseId(const TParameterQuery& query) {
	return TOptionText("ID", query.mId).Integer(0, TVortelDocument::kNumberOfParameters - 1);
}

} // namespace

void TParameterList::AddOptions(CLI::App& app) {
	AddArgument(app, "DEVICE", "only this device (RET, 3, Retrigger), and what its parameters can be", mDevice, false);
	AddFlag(app, "--json", "as a JSON array", mIsJson);
	AddFlag(app, "--all", "of a device, also the ids that it does not use", mHasAll);
}

std::string ListParameters(const TParameterList& list) {
	const std::vector<TRow> rows = CollectRows(list);
	return list.mIsJson ? AsJson(rows) : AsTable(rows);
}

void TParameterQuery::AddOptions(CLI::App& app, const std::string& argumentName, const std::string& help) {
	AddArgument(app, "ID", "a parameter, 0 to 209", mId);
	app.add_option(argumentName, mArguments, help)->required();
	mSettings.AddParameterOption(app);
}

std::string ShowTexts(const TParameterQuery& query) {
	const int32_t id = ParseId(query);
	std::vector<float> values;
	for (const std::string& argument : query.mArguments)
		values.push_back(TOptionText("V", argument).Fraction());
	const TInstance instance;
	return instance.WithDocument([&](TVortelDocument& document) {
		query.mSettings.ApplyTo(document);
		std::string lines;
		for (const float value : values)
			lines += std::string(document.ParameterValueText(id, value).CString()) + "\n";
		return lines;
	});
}

TParsedTexts ParseTexts(const TParameterQuery& query) {
	const int32_t id = ParseId(query);
	const TInstance instance;
	return instance.WithDocument([&](TVortelDocument& document) {
		query.mSettings.ApplyTo(document);
		TParsedTexts result;
		for (const std::string& text : query.mArguments) {
			float value = 0.0f;
			const bool isValue = ParseParameterText(document, id, text, value);
			result.mErrors += isValue ? 0 : 1;
			result.mLines += (isValue ? NineDigits(value) : "error") + "\n";
		}
		return result;
	});
}
