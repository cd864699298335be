// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommand.h"
#include "shell/TMidiEvent.h"

#include <cstdint>

class TVortelAudioEngine;

/// What waits in the engine's schedule. The engine outlives its schedule. Audio thread.

class TVortelMidiEventCommand final : public TCommand {
public:
	TVortelMidiEventCommand(TVortelAudioEngine* engine, const TMidiEvent& event) : mpEngine(engine), mEvent(event) {}

	void Execute() override;

private:
	TVortelAudioEngine* mpEngine;
	TMidiEvent mEvent;
};

class TVortelNewStepCommand final : public TCommand {
public:
	explicit TVortelNewStepCommand(TVortelAudioEngine* engine) : mpEngine(engine) {}

	void Execute() override;

private:
	TVortelAudioEngine* mpEngine;
};

class TVortelApplyMIDISceneChangeCommand final : public TCommand {
public:
	TVortelApplyMIDISceneChangeCommand(TVortelAudioEngine* engine, int32_t note) : mpEngine(engine), mNote(note) {}

	void Execute() override;

	int32_t Note() const { return mNote; }

private:
	TVortelAudioEngine* mpEngine;
	int32_t mNote;
};

/// Scene changes by this note, or by any.
class TVortelNewSceneCommandMatch final : public TCommandMatch {
public:
	static constexpr int32_t kAnyNote = -1;

	explicit TVortelNewSceneCommandMatch(int32_t note) : mNote(note) {}

	bool Matches(const TCommand* command) const override;

private:
	int32_t mNote;
};

class TVortelNewStepCommandMatch final : public TCommandMatch {
public:
	bool Matches(const TCommand* command) const override;
};
