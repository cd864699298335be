// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TPair.h"

#include <atomic>
#include <span>
#include <vector>

/// Maps a normalised value (0 to 1, what is stored and automated) to the real value of a parameter (hertz,
/// milliseconds, a note division, an index of a name list) and back, and either to text. This class is the linear
/// curve.
///
/// Every result lies inside the range, whatever goes in; not-a-number counts as the minimum. The arithmetic is float,
/// step by step, so that a real value survives the way to normalised and back: lengths in samples are cut from it.
/// Only powers and logarithms are taken in double and rounded once, to come out alike with every library.
/// One converter may serve several parameters. RealFromNormalized and NormalizedFromReal neither allocate nor lock: any
/// thread. The texts: main thread.
class TVortelValueConverter : public TReferenceCountable {
public:
	using TRange = TPair<float, float>;

	/// The format is a printf format for one number.
	TVortelValueConverter(
	    TRange range, const TString& format, const TString& unit = TString(), const TString& prefix = TString(),
	    bool stepped = false);

	/// The value without its unit.
	virtual TString TextFromNormalized(float normalized) const;
	/// False when the text does not parse; the result is then left alone.
	virtual bool NormalizedFromText(float* result, const TString& text) const;
	virtual float RealFromNormalized(float normalized) const noexcept;
	virtual float NormalizedFromReal(float real) const noexcept;

	/// What one unit of a stepped value (one exponent, on a power-of-two curve) is on the normalised scale.
	virtual float NormalizedStep() const noexcept { return 1.0f / (mRange.mSecond - mRange.mFirst); }

	/// The next stepped value in that direction (-1 or 1), normalised; it may lie outside 0 to 1.
	float SteppedNeighbour(float normalized, int32_t direction) const noexcept;

	const TRange& Range() const noexcept { return mRange; }

	const TString& Unit() const noexcept { return mUnit; }

	const TString& Prefix() const noexcept { return mPrefix; }

	/// The real value moves in whole units (the exponent, on a power-of-two curve). Written by the main thread or the
	/// host's, read by the audio thread too.
	bool IsStepped() const noexcept { return mStepped.load(std::memory_order_relaxed); }

	void SetStepped(bool stepped) noexcept {
		if (mStepped.exchange(stepped, std::memory_order_relaxed) != stepped)
			sChanges.fetch_add(1, std::memory_order_release);
	}

	/// Moves on whenever any converter gives other values than before, so that who follows values looks again.
	static uint32_t Changes() noexcept { return sChanges.load(std::memory_order_acquire); }

protected:
	/// Number with the prefix in front of it.
	TString TextFromReal(float real, const TString& format) const;
	/// Reads a number, after taking the prefix out of the text. Not-a-number does not count as one.
	bool ScanReal(const TString& text, float& real) const;
	float ClampToRange(float real) const noexcept;

	TRange mRange;
	TString mFormat;
	TString mScanFormat;
	TString mUnit;
	TString mPrefix;

private:
	static inline std::atomic<uint32_t> sChanges{0};

	std::atomic<bool> mStepped;
};

/// real = 2 ^ (linear between the logarithms). The minimum must be above 0.
class TVortelPowerOfTwoValueConverter : public TVortelValueConverter {
public:
	TVortelPowerOfTwoValueConverter(
	    TRange range, const TString& format, const TString& unit = TString(), const TString& prefix = TString(),
	    bool stepped = false);

	TString TextFromNormalized(float normalized) const override;
	bool NormalizedFromText(float* result, const TString& text) const override;
	float RealFromNormalized(float normalized) const noexcept override;
	float NormalizedFromReal(float real) const noexcept override;

	float NormalizedStep() const noexcept override { return 1.0f / (mLog2Maximum - mLog2Minimum); }

private:
	float mLog2Minimum;
	float mLog2Maximum;
};

/// Fractions of a bar of four beats: 16 is a sixteenth, 4 one beat, 0.5 eight beats. Texts: "4 beats", "1 / 16th".
class TVortelBeatTimeValueConverter final : public TVortelPowerOfTwoValueConverter {
public:
	using TVortelPowerOfTwoValueConverter::TVortelPowerOfTwoValueConverter;

	TString TextFromNormalized(float normalized) const override;
	bool NormalizedFromText(float* result, const TString& text) const override;
};

/// The real value is an index into a list of names.
class TVortelEnumValueConverter final : public TVortelValueConverter {
public:
	explicit TVortelEnumValueConverter(std::span<const char* const> names, const TString& prefix = TString());

	TString TextFromNormalized(float normalized) const override;
	bool NormalizedFromText(float* result, const TString& text) const override;
	float RealFromNormalized(float normalized) const noexcept override;
	float NormalizedFromReal(float real) const noexcept override;

	std::span<const TString> Names() const noexcept { return mNames; }

private:
	std::vector<TString> mNames;
};

/// real = minimum + span * (100 ^ normalised - 1) / 99.
class TVortelFrequencyValueConverter final : public TVortelValueConverter {
public:
	using TVortelValueConverter::TVortelValueConverter;

	float RealFromNormalized(float normalized) const noexcept override;
	float NormalizedFromReal(float real) const noexcept override;
};

/// Range 0 to 1. Texts: "25 L", "Center", "50 R".
class TVortelPanningValueConverter final : public TVortelValueConverter {
public:
	TVortelPanningValueConverter();

	TString TextFromNormalized(float normalized) const override;
	bool NormalizedFromText(float* result, const TString& text) const override;
};

/// Linear; the maximum reads "Original".
class TVortelLofiBitDepthConverter final : public TVortelValueConverter {
public:
	using TVortelValueConverter::TVortelValueConverter;

	TString TextFromNormalized(float normalized) const override;
	bool NormalizedFromText(float* result, const TString& text) const override;
};
