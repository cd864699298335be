// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TListAction.h"
#include "framework/document/undo/TRestorableState.h"

class TObservableListElementEvent;
class TObservablesSwappedObservable;

/// Something in a TObservableListBase.
class TObservableListStateBase : public TRestorableState {
protected:
	TObservableListStateBase();

	void SetList(const TDocumentRoot& root, const TDocumentNode& parent, const TObservableListBase* list);
	/// Null if it is no longer there.
	TObservableListBase* List(const TDocumentRoot& root) const;

private:
	TObservableBaseType<TString> mParentNodePath;
	TObservableBaseType<TString> mListPath; // from the parent node
};

/// One element, which comes or goes, with its text.
class TObservableListState final : public TObservableListStateBase {
public:
	TObservableListState();
	TObservableListState(
	    const TDocumentRoot& root, const TDocumentNode& parent, const TObservableListElementEvent& event, int32_t index,
	    TListAction action);

	void Restore(TDocumentRoot& root) override;

private:
	TObservableBaseType<int> mListIndex;
	TObservableBaseType<TString> mObjectType; // what the text is of; the list itself knows what it makes
	TObservableBaseType<int> mAction;         // TListAction
	TObservableBaseType<TString> mObservableValue;
	TObservableBaseType<TString> mObservablePropertyName;
};

/// Two elements in each other's place: its own inverse.
class TObservableListElementsSwappedState final : public TObservableListStateBase {
public:
	TObservableListElementsSwappedState();
	TObservableListElementsSwappedState(
	    const TDocumentRoot& root, const TDocumentNode& parent, const TObservablesSwappedObservable& event);

	void Restore(TDocumentRoot& root) override;

private:
	TObservableBaseType<int> mListIndex1;
	TObservableBaseType<int> mListIndex2;
};
