// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/ParameterCommands.h"

#include "tools/vortel2/documents/TInstance.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

struct TRow {
	std::string mId;
	std::string mName;
	std::string mUnit;
	float mDefault;
	std::string mText;
};

std::vector<TRow> CollectRows() {
	const TInstance instance;
	return instance.WithDocument([](TVortelDocument& document) {
		std::vector<TRow> rows;
		for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id) {
			const auto title = document.ParameterName(id);
			const float value = TVortelParameterTable::Defaults()[static_cast<std::size_t>(id)];
			rows.push_back(
			    {std::to_string(id), title.mName.CString(), title.mUnit.CString(), value,
			     document.ParameterValueText(id, value).CString()});
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
	for (const TRow& row : rows) {
		nameWidth = std::max(nameWidth, Width(row.mName));
		unitWidth = std::max(unitWidth, Width(row.mUnit));
	}
	std::string table;
	for (const TRow& row : rows)
		table += Padded(row.mId, 3) + "  " + Padded(row.mName, nameWidth) + "  " + Padded(row.mUnit, unitWidth) + "  " +
		         row.mText + "\n";
	return table;
}

std::string AsJson(const std::vector<TRow>& rows) {
	const auto quoted = [](const std::string& text) { return nlohmann::json(text).dump(); };
	std::string array = "[";
	for (const TRow& row : rows)
		array += std::string(&row == rows.data() ? "\n" : ",\n") + "{\"id\": " + row.mId +
		         ", \"name\": " + quoted(row.mName) + ", \"unit\": " + quoted(row.mUnit) +
		         ", \"default\": " + NineDigits(row.mDefault) + ", \"text\": " + quoted(row.mText) + "}";
	return array + "\n]\n";
}

int32_t ParseId(const TParameterQuery& query) {
	return TOptionText("ID", query.mId).Integer(0, TVortelDocument::kNumberOfParameters - 1);
}

} // namespace

std::string ListParameters(bool asJson) {
	const std::vector<TRow> rows = CollectRows();
	return asJson ? AsJson(rows) : AsTable(rows);
}

void TParameterQuery::AddOptions(CLI::App& app, const std::string& argumentName, const std::string& help) {
	app.add_option("ID", mId, "a parameter, 0 to 209")->required();
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
