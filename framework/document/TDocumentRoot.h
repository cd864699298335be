// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TDocumentNode.h"
#include "framework/document/TObservableBang.h"

#include <cstdint>

/// The node at the top of a tree: where the changes below arrive. Changes count only inside an action, the bracket of
/// what the user sees as one step. Main thread.
class TDocumentRoot : public TDocumentNode {
public:
	/// Keeps changes from being recorded for its life.
	class [[nodiscard]] TSuppressGuard {
	public:
		explicit TSuppressGuard(TDocumentRoot& root) : mRoot(root) { ++mRoot.mRecordingSuppressed; }

		~TSuppressGuard() { --mRoot.mRecordingSuppressed; }

		TSuppressGuard(const TSuppressGuard&) = delete;
		TSuppressGuard& operator=(const TSuppressGuard&) = delete;

	private:
		TDocumentRoot& mRoot;
	};

	/// Opens a step.
	void BeginAction();
	/// Closes it. UndoTransactionEnded comes even if no step was open.
	void EndAction();

	bool IsActionOpen() const noexcept { return mActionIsOpen; }

	TObservableBang& ActionBegun() noexcept { return mActionBegun; }

	TObservableBang& ActionEnded() noexcept { return mActionEnded; }

	/// Whether a change in the node, now being notified, belongs to the open step: it comes from the main thread, is
	/// not suppressed, and every node up to the root is declared kUndoable.
	bool AcceptsChangesFrom(const TDocumentNode* node) const;

	bool IsRoot() const final { return true; }

protected:
	TDocumentRoot() = default;

	virtual void UndoTransactionBegun() {}

	virtual void UndoTransactionEnded() {}

	/// Around each accepted change in the tree: of a value, or the event of a list or byte bag.
	virtual void OnChangeBegin(TDocumentNode* /*node*/, TObservable* /*source*/) {}

	virtual void OnChangeEnd(TDocumentNode* /*node*/, TObservable* /*source*/) {}

private:
	friend class TDocumentNode;

	TObservableBang mActionBegun;
	TObservableBang mActionEnded;
	int32_t mRecordingSuppressed = 0;
	bool mActionIsOpen = false;
};
