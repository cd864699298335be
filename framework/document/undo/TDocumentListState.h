// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TListAction.h"
#include "framework/document/undo/TRestorableState.h"

class TDocumentListElementEvent;
class TDocumentListElementsSwappedObservable;

/// Something in a TDocumentListBase.
class TDocumentListStateBase : public TRestorableState {
protected:
	TDocumentListStateBase();

	void SetList(const TDocumentRoot& root, const TDocumentListBase* list);
	/// Null if it is no longer there.
	TDocumentListBase* List(const TDocumentRoot& root) const;

private:
	TObservableBaseType<TString> mListPath;
};

/// One element, which comes or goes, with everything in it.
class TDocumentListState final : public TDocumentListStateBase {
public:
	TDocumentListState();
	TDocumentListState(const TDocumentRoot& root, const TDocumentListElementEvent& event, TListAction action);

	void Restore(TDocumentRoot& root) override;

private:
	TPtr<TDocumentNode> MakeElement(TDocumentListBase& list) const;

	TObservableBaseType<int> mListIndex;
	TObservableBaseType<TString> mObjectType;
	TObservableBaseType<int> mAction; // TListAction
	TPtr<TDocumentByteBag> mpData;    // the element as XML
};

/// Two elements in each other's place: its own inverse.
class TDocumentListElementsSwappedState final : public TDocumentListStateBase {
public:
	TDocumentListElementsSwappedState();
	TDocumentListElementsSwappedState(const TDocumentRoot& root, const TDocumentListElementsSwappedObservable& event);

	void Restore(TDocumentRoot& root) override;

private:
	TObservableBaseType<int> mListIndex1;
	TObservableBaseType<int> mListIndex2;
};
