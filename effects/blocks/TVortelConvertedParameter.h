// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDeviceParameter.h"
#include "document/TVortelScene.h"
#include "framework/foundation/memory/TPtr.h"

#include <bit>
#include <cstdint>

/// A parameter's real value as a DSP device reads it from a scene. Remembers the last conversion, so that reading a
/// value that has not moved costs no pow. Audio thread.
class TVortelConvertedParameter {
public:
	explicit TVortelConvertedParameter(const TVortelDeviceParameter& parameter)
	    : mId(parameter.Id()),
	      mpConverter(parameter.Converter()) {}

	float Read(const TVortelScene& scene) { return Real(scene.ParameterValue(mId)); }

	/// The whole part.
	int ReadWhole(const TVortelScene& scene) { return static_cast<int>(Read(scene)); }

	/// One of the values that the parameter chooses from.
	template <class E>
	E ReadChoice(const TVortelScene& scene) {
		return static_cast<E>(ReadWhole(scene));
	}

	float Real(float normalized) {
		const bool stepped = mpConverter->IsStepped();
		const auto bits = std::bit_cast<uint32_t>(normalized);
		if (bits != mNormalizedBits || stepped != mStepped) {
			mNormalizedBits = bits;
			mStepped = stepped;
			mReal = mpConverter->RealFromNormalized(normalized);
		}
		return mReal;
	}

private:
	int32_t mId;
	TPtr<TVortelValueConverter> mpConverter;
	uint32_t mNormalizedBits = ~0u; // no parameter has this value, so the first read converts
	bool mStepped = false;
	float mReal = 0.0f;
};
