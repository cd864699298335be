// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TDocumentRoot.h"

void TDocumentRoot::BeginAction() {
	mActionIsOpen = true;
	UndoTransactionBegun();
	mActionBegun.Bang();
}

void TDocumentRoot::EndAction() {
	mActionIsOpen = false;
	UndoTransactionEnded();
	mActionEnded.Bang();
}

bool TDocumentRoot::AcceptsChangesFrom(const TDocumentNode* node) const {
	if (!mActionIsOpen || mRecordingSuppressed > 0 || NotificationSourceThread() != kMainThread)
		return false;
	while (node && node != this) {
		const TDocumentNode* parent = node->Parent();
		if (!parent || (parent->FlagsOfChild(node) & kUndoable) == 0)
			return false;
		node = parent;
	}
	return node == this;
}
