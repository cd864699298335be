// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TRestorableState.h"

/// The bytes of a byte bag.
class TDocumentByteBagState final : public TRestorableState {
public:
	TDocumentByteBagState();
	TDocumentByteBagState(const TDocumentRoot& root, const TDocumentByteBag& bag);

	void Restore(TDocumentRoot& root) override;

private:
	TObservableBaseType<TString> mByteBagPath;
	TPtr<TDocumentByteBag> mpData;
};
