// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/TScriptPlayer.h"

#include "tools/vortel2/documents/DocumentFiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <utility>

namespace {

constexpr int32_t kBlockSize = 256;
constexpr int kTickMilliseconds = 10;
constexpr int64_t kTickNanoseconds = kTickMilliseconds * 1000000;
constexpr uint8_t kNoteOn = 0x90;
constexpr uint8_t kNoteOff = 0x80;

TMouseButton ButtonOf(Script::EButton button) {
	return static_cast<TMouseButton>(button);
}

TTransportInfo PlayingAt(double beats, int64_t sample, float tempo, int32_t samples) {
	TTransportInfo info;
	info.mFlags = TTransportInfo::kBeatPositionValid | TTransportInfo::kSamplePositionValid |
	              TTransportInfo::kIsPlayingValid | TTransportInfo::kTempoValid;
	info.mSampleRate = TScriptPlayer::kSampleRate;
	info.mBlockSize = samples;
	info.mBeatPosition = beats;
	info.mSamplePosition = static_cast<double>(sample);
	info.mIsPlaying = true;
	info.mTempo = tempo;
	return info;
}

} // namespace

TScriptPlayer::TScriptPlayer(TInstance& instance, TMemoryEditor& editor, std::vector<Script::TLine> lines)
    : mInstance(instance),
      mEditor(editor),
      mLines(std::move(lines)) {
	mInstance.Shell().Setup(kSampleRate, kBlockSize);
	mEditor.Platform().SetOnWait([this] { return PlayLineInDialog(); });
}

void TScriptPlayer::Play() {
	mEditor.Open();
	mEditor.Tick();
	while (PlayNextLine()) {
	}
}

bool TScriptPlayer::PlayNextLine() {
	if (mNext == mLines.size())
		return false;
	const Script::TCommand& command = mLines[mNext++].mCommand;
	if (std::visit([this](const auto& line) { return Do(line); }, command) == TAfterwards::kTick)
		mEditor.Tick();
	return true;
}

/// The dialog's own loop makes the tick.
bool TScriptPlayer::PlayLineInDialog() {
	if (mNext == mLines.size())
		return false;
	const Script::TCommand& command = mLines[mNext++].mCommand;
	std::visit([this](const auto& line) { return Do(line); }, command);
	return true;
}

// The person

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TMove& move) {
	mEditor.AsGui([&] { mEditor.Platform().MovePointer(mEditor.OnScreen({move.mX, move.mY})); });
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TButtonChange& change) {
	mEditor.AsGui([&] {
		if (change.mIsPressed)
			mEditor.Platform().Press(ButtonOf(change.mButton));
		else
			mEditor.Platform().Release(ButtonOf(change.mButton));
	});
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TClick& click) {
	mEditor.AsGui([&] {
		for (int count = 1; count <= click.mCount; ++count) {
			mEditor.Platform().Press(ButtonOf(click.mButton), count);
			mEditor.Platform().Release(ButtonOf(click.mButton));
		}
	});
	return TAfterwards::kTick;
}

/// By steps, not to places: a pointer that is warped on its way goes on from there.
TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TDrag& drag) {
	const TPixel start = mEditor.AsGui([&] { return mEditor.Platform().Cursor().MousePosition(); });
	const TPixel way = mEditor.OnScreen({drag.mX, drag.mY}) - start;
	const auto part = [&](int length, int move) {
		return static_cast<int>(std::lround(static_cast<double>(length) * move / drag.mMoves));
	};
	for (int move = 1; move <= drag.mMoves; ++move) {
		const TPixel step{part(way.mX, move) - part(way.mX, move - 1), part(way.mY, move) - part(way.mY, move - 1)};
		mEditor.AsGui([&] { mEditor.Platform().MovePointer(mEditor.Platform().Cursor().MousePosition() + step); });
		mEditor.Tick();
	}
	return TAfterwards::kNothing;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TWheel& wheel) {
	static constexpr std::array<TPointT<int>, 4> kNotch{{{0, 1}, {0, -1}, {1, 0}, {-1, 0}}};
	const TPointT<int> notch = kNotch[static_cast<std::size_t>(wheel.mDirection)];
	mEditor.AsGui([&] {
		for (int count = 0; count < wheel.mNotches; ++count)
			mEditor.Platform().Wheel(notch);
	});
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TKeys& keys) {
	mEditor.AsGui([&] {
		for (const int32_t code : keys.mCodes)
			mEditor.Platform().KeyDown(code);
		for (auto code = keys.mCodes.rbegin(); code != keys.mCodes.rend(); ++code)
			mEditor.Platform().KeyUp(*code);
	});
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TKeyChange& change) {
	mEditor.AsGui([&] {
		if (change.mIsPressed)
			mEditor.Platform().KeyDown(change.mCode);
		else
			mEditor.Platform().KeyUp(change.mCode);
	});
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TKeyLost& lost) {
	mEditor.AsGui([&] { mEditor.Platform().LoseKey(lost.mCode); });
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TTyping& typing) {
	mEditor.AsGui([&] { mEditor.Platform().Type(TString(typing.mText.c_str(), kUtf8Encoding)); });
	return TAfterwards::kTick;
}

// Other programs

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TForeignClipboard& clipboard) {
	mEditor.AsGui([&] { mEditor.Platform().PutClipboard(TString(clipboard.mText.c_str(), kUtf8Encoding)); });
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TDialogAnswer& answer) {
	if (answer.mPath.empty())
		mEditor.Platform().CancelDialog();
	else
		mEditor.Platform().AnswerDialog(TString(std::filesystem::absolute(answer.mPath).c_str(), kUtf8Encoding));
	return TAfterwards::kTick;
}

// Time

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TWait& wait) {
	int left = wait.mMilliseconds;
	for (; left >= kTickMilliseconds; left -= kTickMilliseconds) {
		mEditor.Advance(kTickMilliseconds);
		mEditor.Tick();
	}
	mEditor.Advance(left);
	return left > 0 ? TAfterwards::kTick : TAfterwards::kNothing;
}

void TScriptPlayer::PassTime(int64_t nanoseconds) {
	mEditor.AdvanceNanoseconds(nanoseconds);
	mSinceTick += nanoseconds;
	if (mSinceTick < kTickNanoseconds)
		return;
	mSinceTick %= kTickNanoseconds;
	mEditor.Tick();
}

// The host

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TPlay& play) {
	const double samplesPerBeat = 60.0 / play.mTempo * kSampleRate;
	const auto samples = static_cast<int64_t>(std::llround(play.mBeats * samplesPerBeat));
	std::array<float, kBlockSize> left{};
	std::array<float, kBlockSize> right{};
	for (int64_t done = 0; done < samples;) {
		const auto block = static_cast<int32_t>(std::min<int64_t>(kBlockSize, samples - done));
		const double position = mBeatPosition + static_cast<double>(done) / samplesPerBeat;
		const TTransportInfo transport = PlayingAt(position, mSamplePosition + done, play.mTempo, block);
		left.fill(0.0f);
		right.fill(0.0f);
		mInstance.Shell().Process(
		    {.mpLeftIn = left.data(),
		     .mpRightIn = right.data(),
		     .mpLeftOut = left.data(),
		     .mpRightOut = right.data(),
		     .mSamples = block,
		     .mpTransport = &transport,
		     .mParameterChanges = {},
		     .mMidiEvents = mMidiEvents});
		mMidiEvents.clear();
		done += block;
		PassTime(block * int64_t{1000000000} / kSampleRate);
	}
	mBeatPosition += play.mBeats;
	mSamplePosition += samples;
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TNote& note) {
	mMidiEvents.push_back({note.mVelocity == 0 ? kNoteOff : kNoteOn, note.mPitch, note.mVelocity, 0});
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::THostParameter& parameter) {
	mInstance.Shell().SetParameterFromHost(parameter.mParameter, parameter.mValue);
	return TAfterwards::kTick;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::EHostAction& action) {
	if (action == Script::EHostAction::kOpenEditor)
		mEditor.Open();
	else
		mEditor.Close();
	return TAfterwards::kTick;
}

// Results

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TPicture& picture) {
	mEditor.SavePicture(picture.mFile, picture.mWindow);
	return TAfterwards::kNothing;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TViews& views) {
	mEditor.SaveViews(views.mFile);
	return TAfterwards::kNothing;
}

TScriptPlayer::TAfterwards TScriptPlayer::Do(const Script::TSave& save) {
	mInstance.WithDocument([&](TVortelDocument& document) { DocumentFiles::Save(document, save.mFile); });
	return TAfterwards::kNothing;
}
