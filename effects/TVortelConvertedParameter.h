// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDeviceParameter.h"
#include "document/TVortelScene.h"
#include "framework/foundation/TPtr.h"

#include <cstdint>
#include <limits>

/// A parameter's real value as a DSP device reads it from a scene. Remembers the last conversion, so that reading a
/// value that has not moved costs no pow. Audio thread.
class TVortelConvertedParameter {
public:
	explicit TVortelConvertedParameter(const TVortelDeviceParameter& parameter)
	    : mId(parameter.Id()),
	      mpConverter(parameter.Converter()) {}

	float Read(const TVortelScene& scene) { return Real(scene.ParameterValue(mId)); }

	/// For values whose meaning is an index: the whole part.
	int ReadWhole(const TVortelScene& scene) { return static_cast<int>(Read(scene)); }

	float Real(float normalized) {
		const bool stepped = mpConverter->IsStepped();
		if (normalized != mNormalized || stepped != mStepped) {
			mNormalized = normalized;
			mStepped = stepped;
			mReal = mpConverter->RealFromNormalized(normalized);
		}
		return mReal;
	}

private:
	int32_t mId;
	TPtr<TVortelValueConverter> mpConverter;
	float mNormalized = std::numeric_limits<float>::quiet_NaN(); // equals nothing, so the first read converts
	bool mStepped = false;
	float mReal = 0.0f;
};
