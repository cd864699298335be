// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TDocumentListState.h"

#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TNameRules.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/files/TStream.h"

TDocumentListStateBase::TDocumentListStateBase() {
	Declare(mListPath, "mListPath");
}

void TDocumentListStateBase::SetList(const TDocumentRoot& root, const TDocumentListBase* list) {
	mListPath.Set(list->BuildPath(&root));
}

TDocumentListBase* TDocumentListStateBase::List(const TDocumentRoot& root) const {
	TDocumentNode* node = root.ChildAtPath(mListPath.Get());
	return node && node->IsList() ? static_cast<TDocumentListBase*>(node) : nullptr;
}

TDocumentListState::TDocumentListState() : mpData(MakePtr<TDocumentByteBag>()) {
	Declare(mListIndex, "mListIndex");
	Declare(mObjectType, "mObjectType");
	Declare(mAction, "mAction");
	AddChild(mpData.Get(), TNameRules::MemberNameToElementName("mpData"), kWrite);
	FinishDeclaration();
}

TDocumentListState::TDocumentListState(
    const TDocumentRoot& root, const TDocumentListElementEvent& event, TListAction action)
    : TDocumentListState() {
	SetList(root, event.List());
	mListIndex.Set(event.Index());
	mAction.Set(action);
	if (!InsertsElement(action))
		return;
	mObjectType.Set(event.Element()->TypeName());
	TStream xml;
	event.Element()->SaveToStream(xml, false);
	mpData->SetData(xml.Bytes().data(), xml.Bytes().size());
}

void TDocumentListState::Restore(TDocumentRoot& root) {
	RestoreElement(List(root), mListIndex.Get(), mAction.Get(), [this](TDocumentListBase& list, int32_t index) {
		if (const TPtr<TDocumentNode> element = MakeElement(list))
			list.Insert(element.Get(), index);
	});
}

TPtr<TDocumentNode> TDocumentListState::MakeElement(TDocumentListBase& list) const {
	TPtr<TDocumentNode> element = list.CreateFromXml(mObjectType.Get(), true);
	if (element)
		element->LoadFromStream(TStream(mpData->Data()));
	return element;
}

TDocumentListElementsSwappedState::TDocumentListElementsSwappedState() {
	Declare(mListIndex1, "mListIndex1");
	Declare(mListIndex2, "mListIndex2");
	FinishDeclaration();
}

TDocumentListElementsSwappedState::TDocumentListElementsSwappedState(
    const TDocumentRoot& root, const TDocumentListElementsSwappedObservable& event)
    : TDocumentListElementsSwappedState() {
	SetList(root, event.List());
	mListIndex1.Set(event.Index1());
	mListIndex2.Set(event.Index2());
}

void TDocumentListElementsSwappedState::Restore(TDocumentRoot& root) {
	RestoreSwap(List(root), mListIndex1.Get(), mListIndex2.Get());
}
