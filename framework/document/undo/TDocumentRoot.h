// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/values/TStopwatch.h"

#include <concepts>
#include <cstdint>

class TManeuver;
class TStepRecorder;
class TUndoChain;

/// The node at the top of a tree: where the changes below arrive and can be undone. Changes count only inside an
/// action, the bracket of what the user sees as one step; what they are is found out by watching the members declared
/// kUndoable. Steps lie in a temporary file, not in memory. Main thread.
///
/// Failures are told to the user: a step that cannot be kept or read is lost, the document itself goes on.
class TDocumentRoot : public TDocumentNode {
public:
	class TActionGuard;
	class TSuppressGuard;

	static constexpr double kMergeMilliseconds = 2000.0;

	~TDocumentRoot() override;

	/// Opens a step; one that is open and holds records is closed first.
	void BeginAction();
	/// Closes it. UndoTransactionEnded comes even if no step was open.
	void EndAction();
	/// Names the open step; ignored if there is none, or if it has a name. A mergeable step continues the last one, if
	/// that has the same name and was named less than `timeMs` ago.
	void BeginUndoableAction(const TString& name, bool mergeable = false, double timeMs = kMergeMilliseconds);

	bool IsActionOpen() const noexcept { return mActionIsOpen; }

	/// Not while the open step has records.
	bool CanUndo() const;
	bool CanRedo() const;
	/// Ignored if it is not possible. Both throw TReadableException when the document cannot be brought back.
	void Undo();
	void Redo();

	TUndoChain* UndoChain() const noexcept { return mpUndoChain.Get(); }

	TObservableBang& ActionBegun() noexcept { return mActionBegun; }

	TObservableBang& ActionEnded() noexcept { return mActionEnded; }

	/// Whether a change in the node, now being notified, belongs to the open step: it comes from the main thread, is
	/// not suppressed, and every node up to the root is declared kUndoable.
	bool AcceptsChangesFrom(const TDocumentNode* node) const;

	bool IsRoot() const final { return true; }

	TDocumentRoot* Root() const final { return const_cast<TDocumentRoot*>(this); }

protected:
	TDocumentRoot();

	virtual void UndoTransactionBegun() {}

	virtual void UndoTransactionEnded() {}

	/// Since the last step was named.
	virtual double MillisecondsSinceLastAction() const;

	/// Brings the marks and the steps in line with the loaded tree.
	void EndLoad(bool success) override;
	/// Records the change if it belongs to the open step.
	void OnChangeBelow(TDocumentNode& node, TObservable& source, int32_t reason) final;

private:
	struct TUndoTexts;

	/// Around each accepted change in the tree: of a value, or the event of a list or byte bag.
	void RecordChangeBegin(TDocumentNode& node, TObservable& source);
	void RecordChangeEnd(TDocumentNode& node, TObservable& source);
	bool ContinuesLastStep(const TString& name, double timeMs) const;
	void StoreStep();
	void Travel(const TUndoTexts& texts, const TString& name, bool (TUndoChain::*travel)());
	/// The tree is no longer the one that the steps are about.
	void ForgetSteps();

	TPtr<TUndoChain> mpUndoChain;
	TOwnerPtr<TStepRecorder> mpRecorder;
	TPtr<TManeuver> mpLastManeuver; // for a step that continues it
	TStopwatch mLastActionTimer;
	bool mActionIsOpen = false;
	bool mIsMerging = false;
	TObservableBang mActionBegun;
	TObservableBang mActionEnded;
	int32_t mRecordingSuppressed = 0;
};

/// A step for the guard's life, unless one is open already: then what happens belongs to that one. A null root is
/// allowed.
class [[nodiscard]] TDocumentRoot::TActionGuard {
public:
	explicit TActionGuard(TDocumentRoot* root) : TActionGuard(root, false) {}

	/// forcesNewStep: closes a step that is open and holds records. Nothing but a bool will do, a text is a name.
	TActionGuard(TDocumentRoot* root, std::same_as<bool> auto forcesNewStep)
	    : mpOpened(root && (forcesNewStep || !root->IsActionOpen()) ? root : nullptr) {
		if (mpOpened)
			mpOpened->BeginAction();
	}

	/// With a name, if the step has none.
	TActionGuard(TDocumentRoot* root, const TString& name) : TActionGuard(root) {
		if (root)
			root->BeginUndoableAction(name);
	}

	~TActionGuard() {
		if (mpOpened)
			mpOpened->EndAction();
	}

	TActionGuard(const TActionGuard&) = delete;
	TActionGuard& operator=(const TActionGuard&) = delete;

private:
	TDocumentRoot* mpOpened;
};

/// Keeps changes from being recorded for its life.
class [[nodiscard]] TDocumentRoot::TSuppressGuard {
public:
	explicit TSuppressGuard(TDocumentRoot& root) : mRoot(root) { ++mRoot.mRecordingSuppressed; }

	~TSuppressGuard() { --mRoot.mRecordingSuppressed; }

	TSuppressGuard(const TSuppressGuard&) = delete;
	TSuppressGuard& operator=(const TSuppressGuard&) = delete;

private:
	TDocumentRoot& mRoot;
};
