// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"

#include <algorithm>
#include <vector>

/// Rising S-curve from 0 to nearly 1, as a table. Fades use it forwards and, as 1 - value, backwards.
/// Resize allocates; reading is for the audio thread.
class TVortelDeClickEnvelope final : public TReferenceCountable {
public:
	explicit TVortelDeClickEnvelope(int size) { Resize(size); }

	/// Rebuilds the table. A size below 1 counts as 1.
	void Resize(int size);

	int Size() const { return mSize; }

	/// Indexes past the end read the last entry. Not for negative ones.
	double Value(int index) const { return mValues[static_cast<std::size_t>(std::min(index, mLastIndex))]; }

	/// x runs from 0 to 1 over the whole table; beyond it the ends hold.
	double Interpolated(double x) const {
		const double last = mLastIndex;
		return std::min(std::max(Between(std::min(std::max(x * last, 0.0), last)), 0.0), 1.0);
	}

	/// Linear between entries. Unchecked: the position, in entries, lies from 0 to the last index.
	double Between(double position) const {
		const int index = static_cast<int>(position);
		const double rest = position - index;
		const double* values = mValues.data() + index;
		return values[0] * (1.0 - rest) + values[1] * rest;
	}

	int LastIndex() const { return mLastIndex; }

private:
	std::vector<double> mValues;
	int mSize = 0;
	int mLastIndex = 0;
};
