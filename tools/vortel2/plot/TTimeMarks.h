// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TTransportInfo.h"

#include <cstdint>
#include <vector>

/// Where beats and steps of the host's song, and its blocks, fall in a render; of each only as many as a picture of
/// that many columns can show apart.
class TTimeMarks {
public:
	enum EKind : uint8_t { kBeat, kStep, kHostBlock };

	struct TMark {
		EKind mKind;
		double mSample;
		int64_t mNumber; // of a beat: whole beats from the song's beginning
	};

	TTimeMarks(int64_t frames, int32_t columns);

	/// Before each host block; no transport, or a stopped one, has no beats. divisions: steps per beat.
	void AddHostBlock(int64_t firstSample, int32_t samples, const TTransportInfo* transport, int32_t divisions);

	const std::vector<TMark>& Marks() const noexcept { return mMarks; }

private:
	void AddBeats(double firstSample, double position, double beats, double samplesPerBeat, int32_t divisions);

	double mClosest; // samples
	std::vector<TMark> mMarks;
};
