// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TValue.h"

#include <utility>

/// An observable value that keeps what it was made with: setting it does nothing.
template <class T>
class TObservableConstBaseType : public TValue<T> {
public:
	TObservableConstBaseType() = default;

	explicit TObservableConstBaseType(T value) : mValue(std::move(value)) {}

	typename TValueStorage<T>::TResult Get() const final { return mValue.Load(); }

	void Set(const T& /*value*/) override {}

	void ForceSet(const T& /*value*/) override {}

	bool IsPlainText() const override { return TValueTraits<T>::kIsPlainText; }

	TString ToString() const override { return TValueTraits<T>::ToString(Get()); }

	void FromString(const TString& /*text*/) override {}

protected:
	void Store(const T& value) { mValue.Store(value); }

private:
	TValueStorage<T> mValue;
};

/// The observable value. A number may be read on any thread while another writes.
template <class T>
class TObservableBaseType : public TObservableConstBaseType<T> {
public:
	using TObservableConstBaseType<T>::TObservableConstBaseType;

	void Set(const T& value) override {
		if (!(this->Get() == value))
			this->ForceSet(value);
	}

	void ForceSet(const T& value) override {
		this->NotifyObservers(kWillChange);
		this->Store(value);
		this->NotifyObservers(kDidChange);
	}

	void FromString(const TString& text) override {
		T value{};
		if (TValueTraits<T>::FromString(text, value))
			this->Set(value);
	}
};
