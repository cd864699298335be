// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservable.h"
#include "framework/foundation/text/TString.h"

/// A leaf of the document: an observable with a text form.
class TSerializable : public TObservable {
public:
	/// Whether the text can stand in XML as it is.
	virtual bool IsPlainText() const = 0;
	virtual TString ToString() const = 0;
	/// A text that does not parse changes nothing.
	virtual void FromString(const TString& text) = 0;

	/// Whether the text is an XML document of its own.
	virtual bool IsNestedXml() const { return false; }
};
