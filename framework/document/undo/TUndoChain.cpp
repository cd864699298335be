// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TUndoChain.h"

#include "framework/document/undo/TDocumentRoot.h"

TUndoChain::TUndoChain(TDocumentRoot* root) : mpRoot(root), mpFileChain(MakePtr<TFileBasedChain>()) {}

TUndoChain::~TUndoChain() = default;

TString TUndoChain::UndoName() const {
	return CanUndo() ? mpFileChain->NameAt(mCurrentIndex) : TString();
}

TString TUndoChain::RedoName() const {
	return CanRedo() ? mpFileChain->NameAt(mCurrentIndex + 1) : TString();
}

bool TUndoChain::Undo() {
	TDocumentRoot* root = mpRoot.Get();
	const TPtr<TManeuver> maneuver = root && CanUndo() ? mpFileChain->Read(mCurrentIndex) : nullptr;
	if (!maneuver)
		return false;
	--mCurrentIndex;
	const TDocumentRoot::TSuppressGuard guard(*root);
	maneuver->Undo(*root);
	return true;
}

bool TUndoChain::Redo() {
	TDocumentRoot* root = mpRoot.Get();
	const TPtr<TManeuver> maneuver = root && CanRedo() ? mpFileChain->Read(mCurrentIndex + 1) : nullptr;
	if (!maneuver)
		return false;
	++mCurrentIndex;
	const TDocumentRoot::TSuppressGuard guard(*root);
	maneuver->Redo(*root);
	return true;
}

bool TUndoChain::Add(const TManeuver& maneuver) {
	mpFileChain->TruncateAfter(mCurrentIndex);
	if (!mpFileChain->Append(maneuver))
		return false;
	++mCurrentIndex;
	return true;
}

bool TUndoChain::Merge(const TManeuver& maneuver) {
	mpFileChain->TruncateAfter(mCurrentIndex);
	return mpFileChain->ReplaceLast(maneuver);
}

void TUndoChain::Clear() {
	mpFileChain->Clear();
	mCurrentIndex = -1;
}
