// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelScene.h"

#include <functional>
#include <memory>
#include <utility>

/// The effects written down a second time, sample by sample and without any short cut, to hold the fast ones against.
/// Real values are computed here from the normalised ones of the scene, by formulas of their own.
class TSlowEffect {
public:
	struct TSettings {
		const TVortelScene* mpScene;
		int mRate;
		double mTempo;
	};

	explicit TSlowEffect(const TSettings& settings) : mSettings(settings) {}

	virtual ~TSlowEffect() = default;

	virtual void Start() {}

	virtual void Retrigger() { Start(); }

	virtual std::pair<double, double> Process(float left, float right) = 0;

	/// Device index 1 to 10, without the Retrigger, whose twin stands in its own test.
	static std::unique_ptr<TSlowEffect> Make(int device, const TSettings& settings);

protected:
	float Normalized(int id) const { return mSettings.mpScene->ParameterValue(id); }

	float Linear(int id, double low, double high) const;
	float Frequency(int id, double low, double high) const;
	/// On powers of two unless the mode parameter says free.
	float BeatTime(int id, int modeId, double low, double high) const;
	int Choice(int id, int choices) const;

	double SamplesPerBeat() const { return mSettings.mRate * 60.0 / mSettings.mTempo; }

	double Bar(int modeId) const;

	int Rate() const { return mSettings.mRate; }

	int OneMillisecond() const { return static_cast<int>(mSettings.mRate * 0.001 + 0.5); }

private:
	TSettings mSettings;
};
