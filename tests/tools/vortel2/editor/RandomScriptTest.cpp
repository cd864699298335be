// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts that nobody would write, against the whole editor while the host plays: whatever comes, the program goes on,
// and what it saves can be loaded. VORTEL_EDITOR_EVENTS says how many events (1,500), VORTEL_EDITOR_SEED which.

#include "tests/tools/vortel2/RunVortel2.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>

namespace {

using TJson = nlohmann::json;

int NumberFrom(const char* variable, int otherwise) {
	const char* wanted = std::getenv(variable);
	return wanted ? std::atoi(wanted) : otherwise;
}

/// Where a click does something: the matrix twice as often as all else.
struct TArea {
	int mLeft, mTop, mRight, mBottom;
};

constexpr TArea kAreas[] = {{166, 142, 948, 420}, {166, 142, 948, 420}, {13, 142, 40, 420},  {120, 142, 163, 420},
                            {180, 40, 780, 64},   {13, 96, 400, 118},   {430, 96, 950, 118}, {3, 442, 958, 470},
                            {20, 480, 600, 585},  {605, 480, 950, 585}, {790, 10, 958, 80},  {0, 0, 962, 595},
                            {-40, -40, 1000, 640}};

constexpr const char* kKeys[] = {"Return", "Escape", "Tab",        "Up",         "Down",       "Left",
                                 "Right",  "Prior",  "Next",       "Home",       "End",        "Space",
                                 "Back",   "Delete", "A",          "Q",          "5",          "Comma",
                                 "LMenu",  "LMeta",  "LControl A", "LControl Z", "LControl V", "LControl C"};

constexpr const char* kTexts[] = {"7",
                                  "0.5",
                                  "1 / 16th",
                                  "25 L",
                                  "abc",
                                  "-99999",
                                  "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
                                  "\xF0\x9F\x8E\xB9 \xEF\xBF\xBF",
                                  "1e99"};

class TRandomScript {
public:
	explicit TRandomScript(int seed) : mRandom(static_cast<unsigned>(seed)) {}

	std::string Write(int events) {
		std::string script;
		for (int event = 0; event < events; ++event)
			script += Event() + (event % 8 == 7 ? "\nplay 0.02\n" : "\n");
		return script;
	}

private:
	int Number(int first, int last) { return std::uniform_int_distribution<int>(first, last)(mRandom); }

	template <class T, std::size_t N>
	const T& OneOf(const T (&list)[N]) {
		return list[static_cast<std::size_t>(Number(0, static_cast<int>(N) - 1))];
	}

	std::string Place() {
		// Often near the last one: where a menu has opened.
		if (Number(0, 3) == 0)
			mPlace = {mPlace.first + Number(-20, 120), mPlace.second + Number(0, 120)};
		else {
			const TArea& area = OneOf(kAreas);
			mPlace = {Number(area.mLeft, area.mRight), Number(area.mTop, area.mBottom)};
		}
		return std::to_string(mPlace.first) + " " + std::to_string(mPlace.second);
	}

	std::string Button() {
		static constexpr const char* kButtons[] = {"left", "left", "left", "right", "middle"};
		return OneOf(kButtons);
	}

	std::string Wheel() {
		static constexpr const char* kDirections[] = {"up", "down", "left", "right"};
		return std::string("wheel ") + OneOf(kDirections) + " " + std::to_string(Number(1, 3));
	}

	std::string HostEvent() {
		switch (Number(0, 5)) {
		case 0:
			return "note " + std::to_string(Number(0, 127));
		case 1:
			return "noteoff " + std::to_string(Number(0, 127));
		case 2:
			return "close\nopen";
		case 3:
			return "wait " + std::to_string(Number(0, 900));
		default:
			return "host " + std::to_string(Number(0, 209)) + " 0." + std::to_string(Number(0, 9));
		}
	}

	std::string FileEvent() {
		static constexpr const char* kAnswers[] = {
		    "answer one.v2prg", "answer two.v2bnk", "answer bad.v2prg", "cancel"};
		return OneOf(kAnswers);
	}

	std::string Event() {
		const int choice = Number(0, 99);
		if (choice < 35)
			return "move " + Place() + "\nclick " + Button() + (Number(0, 5) == 0 ? " 2" : "");
		if (choice < 55)
			return "move " + Place() + "\npress " + Button() + "\ndrag " + Place() + " " +
			       std::to_string(Number(1, 6)) + "\nrelease " + Button();
		if (choice < 62)
			return "press " + Button();
		if (choice < 69)
			return "release " + Button();
		if (choice < 74)
			return "move " + Place();
		if (choice < 79)
			return Wheel();
		if (choice < 87)
			return std::string("key ") + OneOf(kKeys);
		if (choice < 89)
			return std::string(Number(0, 1) == 0 ? "keydown " : "keyup ") + (Number(0, 1) == 0 ? "LControl" : "LShift");
		if (choice < 93)
			return std::string("type ") + OneOf(kTexts);
		return choice < 95 ? FileEvent() : HostEvent();
	}

	std::mt19937 mRandom;
	std::pair<int, int> mPlace;
};

/// A name of blanks alone is none to a reader.
std::string WithoutBlankNames(const std::string& bank) {
	std::string kept;
	std::istringstream lines(bank);
	for (std::string line; std::getline(lines, line);) {
		const std::size_t begin = line.find("<Name> ");
		const bool isBlank = begin != line.npos && line.find_first_not_of(' ', begin + 6) == line.find("</Name>");
		if (!isBlank)
			kept += line + "\n";
	}
	return kept;
}

TEST_F(TVortel2Test, RandomScriptsLeaveAnEditorThatWorks) {
	const int seed = NumberFrom("VORTEL_EDITOR_SEED", 1);
	WriteBytes("bad.v2prg", "<VortelProgram doc_version=\"0\"><Name>");
	WriteBytes(
	    "script.txt", TRandomScript(seed).Write(NumberFrom("VORTEL_EDITOR_EVENTS", 1500)) +
	                      // A new editor, in which all programs begin anew and the playing host is followed.
	                      "release left\nrelease right\nrelease middle\nkeyup LControl\nkeyup LShift\nclose\nopen\n"
	                      "save before.v2bnk\nmove 628 52\nclick left\nkey Up\nkey Up\nkey Return\nplay 1\n");
	const TRunResult result = Run(
	    {"snapshot", "out.png", "--random", std::to_string(seed), "--script", "script.txt", "--views", "views.json"});
	ASSERT_EQ(result.mStatus, 0) << result.mErrors << "seed " << seed;

	const TJson views = TJson::parse(Bytes("views.json"));
	EXPECT_EQ(views["windows"].size(), 1u);
	const auto isStrip = [](const TJson& view) { return view["class"] == "TVortelSequencerPlayerPositionView"; };
	const TJson& list = views["windows"][0]["views"];
	const auto strip = std::find_if(list.begin(), list.end(), isStrip);
	ASSERT_NE(strip, list.end());
	EXPECT_NE((*strip)["value"], "-1") << "the engine runs";
	ASSERT_EQ(Run({"bank", "convert", "before.v2bnk", "again.v2bnk"}).mStatus, 0);
	EXPECT_EQ(Bytes("again.v2bnk"), WithoutBlankNames(Bytes("before.v2bnk")))
	    << "what was saved is whole, and nothing is out of range";
}

} // namespace
