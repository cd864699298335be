// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/program/TProgramPluginShell.h"
#include "tools/vortel2/render/MidiFile.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A host parameter change as the command line gives it.
struct TAutomation {
	int32_t mParameter;
	double mSeconds;
	float mValue;              // normalised
	double mEndSeconds = -1.0; // of a ramp; -1: a jump
	float mEndValue = 0.0f;
};

/// A note as the command line gives it.
struct TNote {
	uint8_t mPitch;
	uint8_t mVelocity;
	double mOn;         // seconds
	double mOff = -1.0; // -1: never
};

/// All parameter changes and MIDI events of a render at the samples nearest to their times, handed out block by block.
/// MIDI events at one sample: those of the command line by time, then as given, before those of a file.
class TEventList {
public:
	using TParameterChange = TProgramPluginShell::TParameterChange;

	/// Hertz.
	explicit TEventList(int32_t sampleRate) : mSampleRate(sampleRate) {}

	void AddAutomation(std::span<const TAutomation> automation);
	void AddNotes(std::span<const TNote> notes);
	void AddFile(std::span<const TMidiFileEvent> events);

	/// What falls into the samples that follow those of the last call; valid until the next call.
	struct TBlock {
		std::span<const TParameterChange> mParameterChanges;
		std::span<const TMidiEvent> mMidiEvents;
	};

	TBlock NextBlock(int32_t samples);

private:
	/// The order of the values is the order at one sample.
	enum ESource : uint8_t { kCommandLine, kFile };

	template <class T>
	struct TTimed {
		int64_t mSample;
		ESource mSource;
		double mSeconds;
		T mEvent;
	};

	/// Sorted at the first block.
	template <class T>
	struct TTrack {
		std::vector<TTimed<T>> mEvents;
		std::size_t mNext = 0;
		std::vector<T> mBlock;

		void Sort();
		std::span<const T> TakeUntil(int64_t blockStart, int64_t end);
	};

	void AddRamp(const TAutomation& ramp);
	void AddChange(int64_t sample, double seconds, int32_t parameter, float value);
	int64_t NearestSample(double seconds) const;
	void AddMidi(ESource source, double seconds, TMidiEvent event);

	int32_t mSampleRate;
	TTrack<TParameterChange> mChanges;
	TTrack<TMidiEvent> mMidi;
	int64_t mPosition = 0;
};
