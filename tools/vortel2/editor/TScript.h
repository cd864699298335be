// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// What a person does to the editor, line by line, as `snapshot --script` plays it. Read whole before anything is
/// opened. Points are logical pixels from the editor's top left corner.
namespace Script {

enum class EButton : uint8_t { kLeft, kRight, kMiddle };
enum class EDirection : uint8_t { kUp, kDown, kLeft, kRight };
enum class EHostAction : uint8_t { kCloseEditor, kOpenEditor };

struct TMove {
	int32_t mX;
	int32_t mY;
};

struct TButtonChange {
	EButton mButton;
	bool mIsPressed;
};

/// The click count rises from one to mCount.
struct TClick {
	EButton mButton;
	int32_t mCount;
};

struct TDrag {
	int32_t mX;
	int32_t mY;
	int32_t mMoves;
};

struct TWheel {
	EDirection mDirection;
	int32_t mNotches;
};

/// Codes of the key table: pressed in this order, let go in reverse.
struct TKeys {
	std::vector<int32_t> mCodes;
};

struct TKeyChange {
	int32_t mCode;
	bool mIsPressed;
};

/// The key is let go without an event.
struct TKeyLost {
	int32_t mCode;
};

/// UTF-8, as all texts here.
struct TTyping {
	std::string mText;
};

struct TForeignClipboard {
	std::string mText;
};

/// The answer to the next file dialog; an empty path cancels it.
struct TDialogAnswer {
	std::string mPath;
};

struct TWait {
	int32_t mMilliseconds;
};

struct TPlay {
	double mBeats;
	float mTempo; // beats per minute
};

/// Velocity 0 lets the note go.
struct TNote {
	uint8_t mPitch;
	uint8_t mVelocity;
};

struct THostParameter {
	int32_t mParameter;
	float mValue; // normalised
};

struct TPicture {
	std::string mFile;
	int32_t mWindow;
};

struct TViews {
	std::string mFile;
};

struct TSave {
	std::string mFile;
};

using TCommand = std::variant<
    TMove, TButtonChange, TClick, TDrag, TWheel, TKeys, TKeyChange, TKeyLost, TTyping, TForeignClipboard, TDialogAnswer,
    TWait, TPlay, TNote, THostParameter, EHostAction, TPicture, TViews, TSave>;

struct TLine {
	int32_t mNumber; // from 1
	TCommand mCommand;
};

/// The code of a key of the key table, -1 for a name that is none.
using TKeyLookup = int32_t (*)(std::string_view name);

/// path "-" is standard input. Throws a TUsageError that names the line, a TWorkError for a file that cannot be read.
std::vector<TLine> Read(const std::string& path, TKeyLookup codeOfName);

} // namespace Script
