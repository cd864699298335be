// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TSerializable.h"
#include "framework/document/observables/TValueTraits.h"

/// A value that can be read and watched.
template <class T>
class TConstValue : public TSerializable {
public:
	/// Numbers by value, others as a reference to what is stored.
	virtual typename TValueStorage<T>::TResult Get() const = 0;
};

/// A value that can be set through this interface. One thread writes.
template <class T>
class TValue : public TConstValue<T> {
public:
	/// Notifies around a change; an equal value is no change.
	virtual void Set(const T& value) = 0;
	/// Notifies, even for an equal value.
	virtual void ForceSet(const T& value) = 0;
};
