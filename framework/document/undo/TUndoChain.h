// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/document/undo/TFileBasedChain.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>

class TDocumentRoot;

/// The steps of a root, and where among them the document stands. Main thread.
class TUndoChain final : public TReferenceCountable, public TWeakReferenceable {
public:
	explicit TUndoChain(TDocumentRoot* root);
	~TUndoChain() override;

	bool CanUndo() const noexcept { return mCurrentIndex >= 0; }

	bool CanRedo() const noexcept { return mCurrentIndex + 1 < mpFileChain->Count(); }

	/// Of the step that would be undone or redone; empty without one.
	TString UndoName() const;
	TString RedoName() const;

	/// False if the step cannot be read; nothing has happened then. Throws TReadableException from the restoring.
	bool Undo();
	bool Redo();

	/// Puts the step behind the one that would be undone next; what could be redone is lost. False if the step is lost.
	/// Throws TOutOfMemoryException.
	bool Add(const TManeuver& maneuver);
	/// Puts the step in the place of the one that would be undone next, which it continues.
	bool Merge(const TManeuver& maneuver);
	void Clear();

	/// See TFileBasedChain.
	void AddSideFile(const TString& path) { mpFileChain->AddSideFile(path); }

private:
	TWeakPtr<TDocumentRoot> mpRoot;
	TPtr<TFileBasedChain> mpFileChain;
	int32_t mCurrentIndex = -1; // of the step that the next undo takes
};
