// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/ParameterText.h"
#include "tools/vortel2/options/TOptionText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

class TNotices;

/// "Randomize scene.", with the general generator set to the seed just before.
struct TRandomizeScene {
	uint32_t mSeed;
	bool mIsOurChoice; // the user gave none
};

/// What the command line sets on a fresh instance. The settings are made in a fixed order, which is that of the
/// members, whatever their order on the command line.
struct TInstanceSettings {
	std::string mBankFile; // empty: none
	std::optional<int32_t> mProgramIndex;
	std::string mProgramName; // instead of the index; empty: none
	std::string mProgramFile; // empty: none
	std::optional<int32_t> mSceneIndex;
	std::optional<TRandomizeScene> mRandomize;
	std::optional<TVortelProgram::TDeviceOrder> mOrder;
	std::optional<int32_t> mTriggerMode;
	std::optional<int32_t> mQuantize;
	std::optional<bool> mSoftClip;
	std::optional<bool> mLock;
	std::optional<int32_t> mSolo;
	std::optional<int32_t> mBeats;
	std::optional<int32_t> mDivisions;
	std::optional<bool> mLoop;
	std::optional<int32_t> mSeed;
	std::vector<std::pair<int32_t, std::string>> mSteps; // device, row
	std::vector<float> mGaterSteps;
	std::vector<TParameterSetting> mParameters;
	/// By name: the text is read as the instance stands when its turn comes, since a time mode changes the reading.
	std::vector<TOptionText> mNamedParameters;

	/// The options of a render; this must outlive the parsing.
	void AddOptions(CLI::App& app);
	/// Those of them that say what a program and a scene hold.
	void AddContentOptions(CLI::App& app);
	/// --param alone.
	void AddParameterOption(CLI::App& app);

	/// GUI thread. Throws a TWorkError for files that cannot be loaded, a TUsageError for a name that no parameter has
	/// and a text that it does not read.
	void ApplyTo(TVortelDocument& document) const;

	/// Tells what a user cannot know and may want to repeat.
	void Report(TNotices& notices) const;

private:
	void AddPlaceOptions(CLI::App& app);
	void AddProgramOptions(CLI::App& app);
	void AddSceneOptions(CLI::App& app);
	void AddParameter(const TOptionText& text);
	void ApplyPlace(TVortelDocument& document) const;
	void ApplyProgram(TVortelDocument& document) const;
	void ApplyScene(TVortelDocument& document) const;
	void ApplyParameters(TVortelDocument& document) const;
};
