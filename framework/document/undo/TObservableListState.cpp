// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TObservableListState.h"

#include "framework/document/nodes/TNameRules.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/document/xml/NestedXml.h"

#include <typeinfo>

TObservableListStateBase::TObservableListStateBase() {
	Declare(mParentNodePath, "mParentNodePath");
	Declare(mListPath, "mListPath");
}

void TObservableListStateBase::SetList(
    const TDocumentRoot& root, const TDocumentNode& parent, const TObservableListBase* list) {
	mParentNodePath.Set(parent.BuildPath(&root));
	mListPath.Set(parent.RelativeValuePath(list));
}

TObservableListBase* TObservableListStateBase::List(const TDocumentRoot& root) const {
	const TDocumentNode* parent = root.ChildAtPath(mParentNodePath.Get());
	return parent ? dynamic_cast<TObservableListBase*>(parent->ValueAtPath(mListPath.Get())) : nullptr;
}

TObservableListState::TObservableListState() {
	Declare(mListIndex, "mListIndex");
	Declare(mObjectType, "mObjectType");
	Declare(mAction, "mAction");
	Declare(mObservableValue, "mObservableValue");
	Declare(mObservablePropertyName, "mObservablePropertyName");
	FinishDeclaration();
}

TObservableListState::TObservableListState(
    const TDocumentRoot& root, const TDocumentNode& parent, const TObservableListElementEvent& event, int32_t index,
    TListAction action)
    : TObservableListState() {
	SetList(root, parent, event.List());
	mListIndex.Set(index);
	mAction.Set(action);
	const auto* element = dynamic_cast<const TSerializable*>(event.Element());
	if (!element || !InsertsElement(action))
		return;
	mObjectType.Set(TNameRules::ClassNameToTypeName(TNameRules::ClassNameOf(typeid(*element))));
	mObservableValue.Set(element->ToString());
	if (element->IsNestedXml())
		mObservablePropertyName.Set(event.List()->ItemName());
}

void TObservableListState::Restore(TDocumentRoot& root) {
	const auto fill = [this](TObservable& element) {
		if (auto* value = dynamic_cast<TSerializable*>(&element))
			NestedXml::Fill(*value, mObservableValue.Get(), mObservablePropertyName.Get());
	};
	RestoreElement(List(root), mListIndex.Get(), mAction.Get(), [&fill](TObservableListBase& list, int32_t index) {
		list.InsertNewElement(index, fill);
	});
}

TObservableListElementsSwappedState::TObservableListElementsSwappedState() {
	Declare(mListIndex1, "mListIndex1");
	Declare(mListIndex2, "mListIndex2");
	FinishDeclaration();
}

TObservableListElementsSwappedState::TObservableListElementsSwappedState(
    const TDocumentRoot& root, const TDocumentNode& parent, const TObservablesSwappedObservable& event)
    : TObservableListElementsSwappedState() {
	SetList(root, parent, event.List());
	mListIndex1.Set(event.Index1());
	mListIndex2.Set(event.Index2());
}

void TObservableListElementsSwappedState::Restore(TDocumentRoot& root) {
	RestoreSwap(List(root), mListIndex1.Get(), mListIndex2.Get());
}
