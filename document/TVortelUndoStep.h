// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TDocumentRoot.h"

/// One undo step for the guard's life, unless a step is open already: then what happens belongs to that one. A host
/// sees the changes of a step as one edit per parameter. Main thread. A null document is allowed.
class [[nodiscard]] TVortelUndoStep {
public:
	explicit TVortelUndoStep(TDocumentRoot* document)
	    : mpOpened(document && !document->IsActionOpen() ? document : nullptr) {
		if (mpOpened)
			mpOpened->BeginAction();
	}

	~TVortelUndoStep() {
		if (mpOpened)
			mpOpened->EndAction();
	}

	TVortelUndoStep(const TVortelUndoStep&) = delete;
	TVortelUndoStep& operator=(const TVortelUndoStep&) = delete;

private:
	TDocumentRoot* mpOpened;
};
