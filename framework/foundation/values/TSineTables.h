// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

/// Sines and cosines shared by everybody, filled by the first InitializeFramework and constant from then on. A coarse
/// angle plus a fine one, by the addition theorem, gives any angle of the circle to 2*pi/1048576.
class TSineTables {
public:
	struct TPair {
		double mSine;
		double mCosine;
	};

	static constexpr int kStepsPerTable = 1024;
	using TTable = std::array<TPair, kStepsPerTable + 1>;

	static void Fill();

	/// Entry i is the angle i * 2*pi/1024.
	static const TTable& Coarse() noexcept { return sCoarse; }

	/// Entry i is the angle i * 2*pi/1048576.
	static const TTable& Fine() noexcept { return sFine; }

private:
	static TTable sCoarse;
	static TTable sFine;
};
