// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelParameterIds.h"
#include "document/TVortelValueConverter.h"
#include "framework/foundation/memory/TPtr.h"

#include <array>
#include <cstdint>
#include <span>

/// What a converter is made of; see TVortelValueConverter.
enum class EVortelCurve : uint8_t { kLinear, kBeatTime, kEnum, kFrequency, kPanning, kBitDepth };

/// The facts of one parameter. Texts are UTF-8.
struct TVortelParameterDeclaration {
	int32_t mId = -1;
	const char* mName = "Unused";
	EVortelCurve mCurve = EVortelCurve::kLinear;
	float mMinimum = 0.0f;
	float mMaximum = 100.0f;
	const char* mUnit = "%";
	const char* mFormat = "%.01f";
	const char* mPrefix = "";
	std::span<const char* const> mNames{}; // of an enum
	bool mStepped = false;                 // before a time mode says otherwise
	bool mBipolar = false;
	int32_t mConverterOf = -1; // shares the converter of the parameter with this id
	float mDefault = 0.0f;
	bool mDefaultIsReal = false; // else normalised
	const char* mToolTip = "";
};

/// One device and the block of ids that it owns.
struct TVortelDeviceDeclaration {
	const char* mName;
	const char* mPrefix; // of the names that a host sees
	int32_t mFirstId;
	int32_t mLastId;
};

/// The one place where devices and parameters are declared. Ids are part of the file format and known to hosts.
namespace TVortelParameterTable {

inline constexpr int32_t kNumberOfParameters = 210;
inline constexpr int32_t kNumberOfDevices = 11;
inline constexpr int32_t kNumberOfCommonParameters = 7; // weight, mixer and filter, at the front of every device

/// Ids outside 0 to 209 give the declaration of id 209.
const TVortelParameterDeclaration& Declaration(int32_t id) noexcept;
/// Indices outside 0 to 10 give device 10.
const TVortelDeviceDeclaration& Device(int32_t deviceIndex) noexcept;
int32_t DeviceOfParameter(int32_t id) noexcept;

/// The name that a host shows: "RET:Initial Speed".
TString HostName(int32_t id);
/// A new converter of that declaration's own, even where the parameter shares another's.
TPtr<TVortelValueConverter> MakeConverter(const TVortelParameterDeclaration& declaration);
/// The normalised default of every parameter, by id.
const std::array<float, kNumberOfParameters>& Defaults();

} // namespace TVortelParameterTable
