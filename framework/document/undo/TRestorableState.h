// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"

class TUndoChain;

/// One side of a recorded change: how a piece of the document was, before or after. Refers to the document by paths
/// only, so that it outlives the objects there, and is itself a document, so that it can lie in a file. Main thread.
class TRestorableState : public TDocumentNode {
public:
	/// Brings the piece back. What can no longer be found is left alone. Throws TReadableException.
	virtual void Restore(TDocumentRoot& root) = 0;

	/// Null for an unknown name.
	static TPtr<TRestorableState> CreateByTypeName(const TString& typeName);

	/// The chain of the root whose change this is; null when that is gone.
	TUndoChain* UndoChain() const noexcept { return mpUndoChain.Get(); }

	void SetUndoChain(TUndoChain* chain);

	/// Stands in where memory ran out.
	virtual bool IsVoid() const { return false; }

protected:
	TRestorableState();
	~TRestorableState() override;

	/// Declares a member under the name that follows from its name in the class.
	void Declare(TObservable& member, const char* name);

private:
	TWeakPtr<TUndoChain> mpUndoChain;
};

/// Nothing.
class TVoidRestorableState final : public TRestorableState {
public:
	TVoidRestorableState() { FinishDeclaration(); }

	void Restore(TDocumentRoot& /*root*/) override {}

	bool IsVoid() const override { return true; }
};
