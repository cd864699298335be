// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/memory/TList.h"

#include <type_traits>

/// An index whose text form is a name.
class TObservableEnumBase : public TObservableBaseType<int> {
public:
	using TObservableBaseType::TObservableBaseType;

	/// The name of each index from 0 on.
	virtual TList<TString> EnumerationNames() const = 0;

	bool IsPlainText() const override { return false; }

	/// Empty for an index without a name.
	TString ToString() const override;
	/// An unknown name or an empty text changes nothing.
	void FromString(const TString& text) override;
};

/// TObservableEnumBase in terms of an enumeration that counts from 0.
template <class E>
requires std::is_enum_v<E>

class TObservableEnum : public TObservableEnumBase {
public:
	explicit TObservableEnum(E value = E{}) : TObservableEnumBase(static_cast<int>(value)) {}

	E Value() const { return static_cast<E>(Get()); }

	void SetValue(E value) { Set(static_cast<int>(value)); }
};
