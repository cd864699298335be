// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/undo/TRestorableState.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

class TBinaryStream;
class TDocumentRoot;
class TUndoChain;

/// One recorded change: what restores the state before it and what restores the state after it. Main thread.
class TActionRecord final : public TReferenceCountable {
public:
	/// Null until it has been captured.
	const TPtr<TRestorableState>& UndoState() const noexcept { return mpUndoState; }

	const TPtr<TRestorableState>& RedoState() const noexcept { return mpRedoState; }

	void SetUndoState(const TPtr<TRestorableState>& state) { mpUndoState = state; }

	void SetRedoState(const TPtr<TRestorableState>& state) { mpRedoState = state; }

	/// A state that is missing is written as one that does nothing. Both throw TReadableException.
	void Write(TBinaryStream& stream) const;
	void Read(TBinaryStream& stream);
	void Undo(TDocumentRoot& root) const;
	void Redo(TDocumentRoot& root) const;

private:
	TPtr<TRestorableState> mpUndoState;
	TPtr<TRestorableState> mpRedoState;
};

/// What the user sees as one step. Main thread.
class TManeuver final : public TReferenceCountable {
public:
	TList<TPtr<TActionRecord>>& ActionRecords() noexcept { return mActionRecords; }

	const TList<TPtr<TActionRecord>>& ActionRecords() const noexcept { return mActionRecords; }

	/// For the user; empty until the step is named.
	const TString& Name() const noexcept { return mName; }

	void SetName(const TString& name) { mName = name; }

	/// The records, without the name. Both throw TReadableException.
	void Write(TBinaryStream& stream) const;
	void Read(TBinaryStream& stream);
	/// From the last record to the first.
	void Undo(TDocumentRoot& root) const;
	/// From the first record to the last.
	void Redo(TDocumentRoot& root) const;

private:
	TList<TPtr<TActionRecord>> mActionRecords; // in the order of recording
	TString mName;
};
