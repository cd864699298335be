// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TValue.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/views/TView.h"

#include <type_traits>
#include <utility>

/// What a view shows of a value that lies elsewhere: read through a getter once per frame, and observable, so that what
/// the host, the audio thread or another view changes is seen within a frame. T is bool, int, float or TString.
///
/// Made with new and owned by the view; who needs it longer than one call refers to it by TWeakPtr. Main thread; the
/// getter may read what other threads write.
template <class T>
class TConstLinkedViewValue : public TValue<T>, public TLinkedViewValueBase {
public:
	using TGetter = TFunctionPtr<T>;

	/// Neither may be missing, and the getter's target outlives the view.
	TConstLinkedViewValue(TView* view, const TGetter& getter)
	    : TLinkedViewValueBase(*view),
	      mGetter(getter),
	      mCachedValue(getter()) {}

	typename TValueStorage<T>::TResult Get() const final { return mCachedValue; }

	void Set(const T& /*value*/) override {}

	void ForceSet(const T& /*value*/) override {}

	void Poll(int /*index*/) final {
		if (T value = mGetter(); !(value == mCachedValue)) {
			this->NotifyObservers(kWillChange);
			mCachedValue = std::move(value);
			this->NotifyObservers(kDidChange);
		}
	}

	bool IsPlainText() const override { return TValueTraits<T>::kIsPlainText; }

	TString ToString() const override { return TValueTraits<T>::ToString(mCachedValue); }

	void FromString(const TString& text) override {
		T value{};
		if (TValueTraits<T>::FromString(text, value))
			this->Set(value);
	}

protected:
	void Refresh() { mCachedValue = mGetter(); }

private:
	const TGetter mGetter;
	T mCachedValue;
};

/// The same with a way back: setting it calls the setter and shows what came of that.
template <class T>
class TLinkedViewValue final : public TConstLinkedViewValue<T> {
public:
	using TGetter = TFunctionPtr<T>;
	/// Numbers by value, texts by reference.
	using TSetter = TFunctionPtr<void, std::conditional_t<std::is_arithmetic_v<T>, T, const T&>>;

	TLinkedViewValue(TView* view, const TGetter& getter, const TSetter& setter)
	    : TConstLinkedViewValue<T>(view, getter),
	      mSetter(setter) {}

	/// A value equal to the last one seen does not reach the setter.
	void Set(const T& value) override {
		if (!(value == this->Get()))
			ForceSet(value);
	}

	void ForceSet(const T& value) override {
		this->NotifyObservers(kWillChange);
		mSetter(value);
		this->Refresh();
		this->NotifyObservers(kDidChange);
	}

private:
	const TSetter mSetter;
};
