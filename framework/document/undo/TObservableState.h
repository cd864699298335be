// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TRestorableState.h"

/// A value, as text.
class TObservableState final : public TRestorableState {
public:
	TObservableState();
	TObservableState(const TDocumentRoot& root, const TDocumentNode& parent, const TSerializable& value);

	void Restore(TDocumentRoot& root) override;

private:
	TObservableBaseType<TString> mParentNodePath;
	TObservableBaseType<TString> mObservablePath; // from the parent node
	TObservableBaseType<TString> mObservableValue;
	TObservableBaseType<TString> mObservablePropertyName; // of a value that is XML: the name of its root element
};
