// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TTransportInfo.h"
#include "tools/vortel2/editor/TMemoryEditor.h"
#include "tools/vortel2/editor/TScript.h"

#include <cstddef>
#include <vector>

/// Does what a script says, line by line: as the person, as the host, as other programs. While a modal dialog is open,
/// its loop goes on with the lines that follow; at the script's end it closes.
class TScriptPlayer {
public:
	static constexpr int32_t kSampleRate = 44100;

	/// Both must outlive the player.
	TScriptPlayer(TInstance& instance, TMemoryEditor& editor, std::vector<Script::TLine> lines);

	/// Throws TWorkError for files that cannot be written.
	void Play();

private:
	using TPixel = TPointT<int>;

	enum class TAfterwards { kTick, kNothing };

	bool PlayNextLine();
	bool PlayLineInDialog();

	TAfterwards Do(const Script::TMove& move);
	TAfterwards Do(const Script::TButtonChange& change);
	TAfterwards Do(const Script::TClick& click);
	TAfterwards Do(const Script::TDrag& drag);
	TAfterwards Do(const Script::TWheel& wheel);
	TAfterwards Do(const Script::TKeys& keys);
	TAfterwards Do(const Script::TKeyChange& change);
	TAfterwards Do(const Script::TKeyLost& lost);
	TAfterwards Do(const Script::TTyping& typing);
	TAfterwards Do(const Script::TForeignClipboard& clipboard);
	TAfterwards Do(const Script::TDialogAnswer& answer);
	TAfterwards Do(const Script::TWait& wait);
	TAfterwards Do(const Script::TPlay& play);
	TAfterwards Do(const Script::TNote& note);
	TAfterwards Do(const Script::THostParameter& parameter);
	TAfterwards Do(const Script::EHostAction& action);
	TAfterwards Do(const Script::TPicture& picture);
	TAfterwards Do(const Script::TViews& views);
	TAfterwards Do(const Script::TSave& save);

	void PassTime(int64_t nanoseconds);

	TInstance& mInstance;
	TMemoryEditor& mEditor;
	const std::vector<Script::TLine> mLines;
	std::size_t mNext = 0;
	double mBeatPosition = 0.0;
	int64_t mSamplePosition = 0;
	int64_t mSinceTick = 0;              // nanoseconds
	std::vector<TMidiEvent> mMidiEvents; // of the next block
};
