// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentList.h"

#include "framework/document/nodes/ListPath.h"
#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/foundation/text/TReadableException.h"

#include <utility>

TDocumentListEvent::TDocumentListEvent(TDocumentListBase* list) : mpList(list) {}

TDocumentListEvent::~TDocumentListEvent() = default;

TDocumentListElementEvent::TDocumentListElementEvent(TDocumentListBase* list, TDocumentNode* element, int32_t index)
    : TDocumentListEvent(list),
      mpElement(element),
      mIndex(index) {}

TDocumentWasAddedObservable::TDocumentWasAddedObservable(TDocumentListBase* list, TDocumentNode* element, int32_t index)
    : TDocumentListElementEvent(list, element, index) {}

TDocumentWasRemovedObservable::TDocumentWasRemovedObservable(
    TDocumentListBase* list, TDocumentNode* element, int32_t index)
    : TDocumentListElementEvent(list, element, index) {}

TDocumentListElementsSwappedObservable::TDocumentListElementsSwappedObservable(
    TDocumentListBase* list, int32_t index1, int32_t index2)
    : TDocumentListEvent(list),
      mIndex1(index1),
      mIndex2(index2) {}

TDocumentListBase::~TDocumentListBase() = default;

void TDocumentListBase::Insert(TDocumentNode* element, int32_t index) {
	const TPtr<TDocumentNode> keepAlive(element);
	if (index < 0)
		index = Size();
	const int32_t childIndex = FirstElementChild() + index;
	NameNestedList(element);
	FireEvent<TDocumentWasAddedObservable>(mAdded, kWillChange, this, element, index);
	if (UsesTypeAttribute(element))
		element->StoreTypeName();
	mElements.Insert(keepAlive, index);
	try {
		AddChild(element, ElementNameFor(element), kWrite | kUndoable, childIndex);
	} catch (...) {
		mElements.RemoveAt(index);
		throw;
	}
	FireEvent<TDocumentWasAddedObservable>(mAdded, kDidChange, this, element, index);
}

void TDocumentListBase::InsertLoaded(TDocumentNode* element) {
	element->BeginLoad();
	Insert(element);
}

void TDocumentListBase::Remove(int32_t index) {
	const TPtr<TDocumentNode> element = mElements[index];
	FireEvent<TDocumentWasRemovedObservable>(mRemoved, kWillChange, this, element.Get(), index);
	RemoveChild(element.Get());
	mElements.RemoveAt(index);
	FireEvent<TDocumentWasRemovedObservable>(mRemoved, kDidChange, this, element.Get(), index);
}

void TDocumentListBase::Clear() {
	while (Size() > 0)
		Remove(Size() - 1);
}

void TDocumentListBase::Swap(int32_t index1, int32_t index2) {
	if (index1 == index2)
		return;
	FireEvent<TDocumentListElementsSwappedObservable>(mSwapped, kWillChange, this, index1, index2);
	SwapChildren(FirstElementChild() + index1, FirstElementChild() + index2);
	mElements[index1].Swap(mElements[index2]);
	FireEvent<TDocumentListElementsSwappedObservable>(mSwapped, kDidChange, this, index1, index2);
}

void TDocumentListBase::Move(int32_t from, int32_t to) {
	for (; from < to; ++from)
		Swap(from, from + 1);
	for (; from > to; --from)
		Swap(from, from - 1);
}

int32_t TDocumentListBase::IndexOf(const TDocumentNode* element) const noexcept {
	int32_t index = Size() - 1;
	while (index >= 0 && mElements[index].Get() != element)
		--index;
	return index;
}

void TDocumentListBase::DeclareElementClass(const TString& className) {
	mTypeNames.Append(TNameRules::ClassNameToTypeName(className));
}

void TDocumentListBase::DeclareElementClass(const TString& className, const TString& itemName) {
	DeclareElementClass(className);
	mItemNamesByType.Append(itemName);
}

void TDocumentListBase::CopyElementClassesFrom(const TDocumentListBase& other) {
	mItemName = other.mItemName;
	mTypeNames = other.mTypeNames;
	mItemNamesByType = other.mItemNamesByType;
}

bool TDocumentListBase::UsesTypeAttribute(const TDocumentNode* element) const {
	if (!mItemNamesByType.IsEmpty())
		return false;
	return mTypeNames.Count() != 1 || DiffersFromElementClass(element);
}

bool TDocumentListBase::HasOwnMembers() const noexcept {
	return Properties().Count() > 0 || FirstElementChild() > 0;
}

TPtr<TDocumentNode> TDocumentListBase::CreateFromXml(const TString& name, bool hasTypeAttribute) {
	const TString typeName = hasTypeAttribute ? name : ClassForElementName(name);
	TPtr<TDocumentNode> element = CreateElementOfType(typeName, hasTypeAttribute);
	if (!element && !HasOwnMembers()) {
		throw TReadableException(TString::Format(
		    "Fatal error while reading a document. Failed to create an object of type '%s'!", typeName));
	}
	return element;
}

TPtr<TDocumentNode> TDocumentListBase::CreateElementOfType(const TString& typeName, bool /*hasTypeAttribute*/) {
	return TDocumentClassRegistry::CreateByTypeName(typeName);
}

TString TDocumentListBase::PathStepTo(const TDocumentNode* child) const {
	const int32_t index = IndexOf(child);
	return index < 0 ? TDocumentNode::PathStepTo(child) : ListPath::Step(index);
}

TDocumentNode* TDocumentListBase::ElementAt(int32_t index) const {
	return index >= 0 && index < Size() ? mElements[index].Get() : nullptr;
}

TString TDocumentListBase::ElementNameFor(const TDocumentNode* element) const {
	const int32_t entry = mTypeNames.IndexOf(element->TypeName());
	if (entry >= 0 && entry < mItemNamesByType.Count())
		return mItemNamesByType[entry];
	return mTypeNames.IsEmpty() ? TNameRules::ClassNameToElementName(TypeNameOf(element)) : mItemName;
}

TString TDocumentListBase::ClassForElementName(const TString& name) const {
	const int32_t entry = mItemNamesByType.IndexOf(name);
	if (entry >= 0)
		return mTypeNames[entry];
	return mTypeNames.Count() == 1 ? mTypeNames[0] : name;
}

void TDocumentListBase::NameNestedList(TDocumentNode* element) const {
	if (!element->IsList())
		return;
	auto* list = static_cast<TDocumentListBase*>(element);
	if (list->mItemName.IsEmpty())
		list->mItemName = ItemNameIsTheListsOwn() ? mItemName : TNameRules::ListNameToItemName(mItemName);
}
