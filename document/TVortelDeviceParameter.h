// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelParameterTable.h"
#include "document/TVortelValueConverter.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TWeakPtr.h"

class TVortelDevice;

/// A numbered parameter of a device: name, converter, default, and the bangs around its changes. It holds no value:
/// that lies in the active scene under the parameter's id (three master parameters: in the program). Values are
/// normalised, 0 to 1, unless an operation says "real". Lives as long as its device. Main thread, or the host's thread
/// for automation; reading a value is safe on any.
class TVortelDeviceParameter : public TDocumentNode {
public:
	/// Without a converter the parameter makes its own: linear, 0 to 100 %.
	TVortelDeviceParameter(
	    TVortelDevice* device, const TVortelParameterDeclaration& declaration,
	    const TPtr<TVortelValueConverter>& converter = nullptr);

	int32_t Id() const noexcept { return mDeclaration.mId; }

	/// Place in the device's list, -1 for a parameter that fills up the device's ids.
	int32_t ListIndex() const noexcept { return mListIndex; }

	const TString& Name() const noexcept { return mName; }

	bool IsBipolar() const noexcept { return mDeclaration.mBipolar; }

	float Default() const noexcept { return mDefault; }

	TString ToolTip() const;

	/// Null once the device is gone.
	TVortelDevice* Device() const noexcept { return mpDevice.Get(); }

	TVortelValueConverter* Converter() const noexcept { return mpConverter.Get(); }

	virtual void ResetToDefault();
	/// The stored value; the default while no scene is active.
	virtual float NormalizedValue() const;
	/// Stores without telling anybody.
	virtual void SetNormalizedValue(float value);

	float Value() const { return NormalizedValue(); }

	float RealValue() const;

	/// Of a parameter that chooses one of several values.
	template <class E>
	E Choice() const {
		return static_cast<E>(RealValue());
	}

	void SetValue(float value);
	void SetValueByUser(float value);
	void SetRealValue(float real);
	void SetRealValueByUser(float real);

	TString ValueText() const;
	TString ValueTextFor(float value) const;
	/// A text that does not parse changes nothing.
	void SetValueFromText(const TString& text);
	bool ParseValueText(const TString& text, float* value) const;

	/// Uniform between two normalised bounds.
	void Randomize(float low, float high);
	/// Uniform between two real bounds, a whole number where the converter is stepped.
	void RandomizeReal(float low, float high);
	/// Uniform within amount around the present value.
	void Mutate(float amount);

	/// Around every change, on the thread that makes it. Setting the value that there is changes nothing.
	TObservableBang& ChangedBang() noexcept { return mChangedBang; }

	/// Around what the user sets, whatever it was before.
	TObservableBang& UserChangedBang() noexcept { return mUserChangedBang; }

private:
	friend class TVortelDevice;

	TWeakPtr<TVortelDevice> mpDevice;
	const TVortelParameterDeclaration& mDeclaration;
	int32_t mListIndex = -1;
	TString mName;
	TPtr<TVortelValueConverter> mpConverter;
	float mDefault;
	TObservableBang mChangedBang;
	TObservableBang mUserChangedBang;
};

/// The master's mix: kept in the program.
class TVortelMasterMixParameter final : public TVortelDeviceParameter {
public:
	using TVortelDeviceParameter::TVortelDeviceParameter;
	float NormalizedValue() const override;
	void SetNormalizedValue(float value) override;
};

class TVortelMasterPanningParameter final : public TVortelDeviceParameter {
public:
	using TVortelDeviceParameter::TVortelDeviceParameter;
	float NormalizedValue() const override;
	void SetNormalizedValue(float value) override;
};

class TVortelMasterVolumeParameter final : public TVortelDeviceParameter {
public:
	using TVortelDeviceParameter::TVortelDeviceParameter;
	float NormalizedValue() const override;
	void SetNormalizedValue(float value) override;
};

/// A mode parameter: writing it also refreshes which converters of its device are stepped.
template <class TDevice>
class TVortelModeParameter final : public TVortelDeviceParameter {
public:
	using TVortelDeviceParameter::TVortelDeviceParameter;

	void SetNormalizedValue(float value) override {
		TVortelDeviceParameter::SetNormalizedValue(value);
		if (auto* device = static_cast<TDevice*>(Device()))
			device->RefreshStepped();
	}
};
