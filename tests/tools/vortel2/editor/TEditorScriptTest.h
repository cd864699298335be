// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/tools/vortel2/RunVortel2.h"

#include <nlohmann/json.hpp>

/// Pieces of scripts for the editor, and where its parts lie; logical pixels.
namespace EditorScript {

inline constexpr int kMatrixLeft = 166;
inline constexpr int kMatrixTop = 142;
inline constexpr int kMatrixWidth = 782;
inline constexpr int kColumns = 16; // of a new scene
inline constexpr double kRowHeight = 277.0 / 11;
inline constexpr int kHandle = 20; // x of a row's dots in the effect list

inline std::string At(int x, int y) {
	return std::to_string(x) + " " + std::to_string(y);
}

/// The middle of a cell, or another part of its width.
inline std::string Cell(double column, int row, double part = 0.5, int columns = kColumns) {
	return At(
	    kMatrixLeft + static_cast<int>(static_cast<double>(kMatrixWidth) / columns * (column + part)),
	    kMatrixTop + static_cast<int>(kRowHeight * (row + 0.5)));
}

inline std::string RowAt(double row) {
	return At(kHandle, kMatrixTop + static_cast<int>(kRowHeight * row));
}

inline std::string Drag(const std::string& from, const std::string& to, const std::string& button = "left") {
	return "move " + from + "\npress " + button + "\ndrag " + to + "\nrelease " + button + "\n";
}

inline std::string Draw(int first, int last, int row, int columns = kColumns) {
	return Drag(Cell(first, row, 0.5, columns), Cell(last, row, 0.5, columns));
}

inline std::string Click(const std::string& place, const std::string& button = "left") {
	return "move " + place + "\nclick " + button + "\n";
}

/// Into a field: begins the edit, replaces the text, ends it.
inline std::string Type(const std::string& place, const std::string& text) {
	return Click(place) + "key LControl A\ntype " + text + "\nkey Return\n";
}

inline const std::string kPencil = "569 52";
inline const std::string kFileButton = "207 52";
inline const std::string kLoadProgram = "250 80"; // in the menu of that button, as the next
inline const std::string kSaveProgram = "250 98";
inline const std::string kBeats = "622 106";
inline const std::string kDivisions = "676 106";

} // namespace EditorScript

/// Plays scripts with the built program.
class TEditorScriptTest : public TVortel2Test {
protected:
	using TJson = nlohmann::json;

	/// The program and the views that the script leaves can then be asked for.
	void Play(const std::string& script, const TArguments& more = {}) {
		WriteBytes("script.txt", script);
		TArguments arguments{"snapshot", "out.png",    "--script", "script.txt",
		                     "--views",  "views.json", "--save",   "end.v2prg"};
		arguments.insert(arguments.end(), more.begin(), more.end());
		const TRunResult result = Run(arguments);
		ASSERT_EQ(result.mStatus, 0) << result.mErrors;
		mViews = TJson::parse(Bytes("views.json"));
		mProgram = Bytes("end.v2prg");
	}

	/// The text of the first element of that name.
	std::string Element(const std::string& name) const {
		const std::size_t start = mProgram.find("<" + name + ">");
		if (start == std::string::npos)
			return {};
		const std::size_t text = start + name.size() + 2;
		return mProgram.substr(text, mProgram.find('<', text) - text);
	}

	/// The first steps of a device's row.
	std::string Steps(int device, std::size_t count = EditorScript::kColumns) const {
		const std::string steps = Element("Sequence" + std::to_string(device));
		return steps.empty() ? std::string(count, '-') : steps.substr(0, count);
	}

	/// The first view of a class in a window.
	TJson View(const std::string& className, std::size_t window = 0) const {
		for (const TJson& view : mViews["windows"][window]["views"])
			if (view["class"] == className)
				return view;
		return {};
	}

	TJson mViews;
	std::string mProgram;
};
