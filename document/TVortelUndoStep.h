// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"

/// One undo step of the document for the guard's life: a host sees what happens meanwhile as one edit per parameter.
/// Main thread. A null document is allowed.
class [[nodiscard]] TVortelUndoStep {
public:
	TVortelUndoStep(TVortelDocument* document, const char* /*name*/) : mpDocument(document) {
		if (mpDocument)
			mpDocument->UndoTransactionBegun();
	}

	~TVortelUndoStep() {
		if (mpDocument)
			mpDocument->UndoTransactionEnded();
	}

	TVortelUndoStep(const TVortelUndoStep&) = delete;
	TVortelUndoStep& operator=(const TVortelUndoStep&) = delete;

private:
	TVortelDocument* mpDocument;
};
