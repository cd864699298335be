// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TTimeMarks.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kClosestColumns = 4.0;
constexpr double kRoundingErrors = 1e-9; // beats

} // namespace

TTimeMarks::TTimeMarks(int64_t frames, int32_t columns)
    : mClosest(kClosestColumns * static_cast<double>(frames) / columns) {}

void TTimeMarks::AddHostBlock(
    int64_t firstSample, int32_t samples, const TTransportInfo* transport, int32_t divisions) {
	const auto first = static_cast<double>(firstSample);
	if (samples >= mClosest)
		mMarks.push_back({kHostBlock, first, 0});
	if (!transport || !transport->mIsPlaying)
		return;
	const double samplesPerBeat = 60.0 * transport->mSampleRate / static_cast<double>(transport->mTempo);
	AddBeats(first, transport->mBeatPosition, samples / samplesPerBeat, samplesPerBeat, divisions);
}

void TTimeMarks::AddBeats(double firstSample, double position, double beats, double samplesPerBeat, int32_t divisions) {
	// Beats that lie too close are thinned to every second, every fourth and so on.
	int64_t beatsPerMark = 1;
	while (samplesPerBeat * static_cast<double>(beatsPerMark) < mClosest)
		beatsPerMark *= 2;
	const bool hasSteps = samplesPerBeat / divisions >= mClosest;
	const int64_t pointsPerBeat = hasSteps ? divisions : 1;
	const auto atOrBehind = [&](double beat) {
		return std::llround(std::ceil((beat - kRoundingErrors) * static_cast<double>(pointsPerBeat)));
	};
	for (int64_t point = atOrBehind(position); point < atOrBehind(position + beats); ++point) {
		const double beat = static_cast<double>(point) / static_cast<double>(pointsPerBeat);
		const double sample = firstSample + (beat - position) * samplesPerBeat;
		if (point % pointsPerBeat != 0)
			mMarks.push_back({kStep, sample, 0});
		else if (point / pointsPerBeat % beatsPerMark == 0)
			mMarks.push_back({kBeat, sample, point / pointsPerBeat});
	}
}
