// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TObservableList.h"

#include "framework/document/nodes/ListPath.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/nodes/TNameRules.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

bool IsChange(int32_t reason) {
	return reason == kWillChange || reason == kDidChange;
}

TObservableListBase* AsList(TObservable* observable) {
	return observable->IsObservableList() ? static_cast<TObservableListBase*>(observable) : nullptr;
}

} // namespace

TObservableListEvent::TObservableListEvent(TObservableListBase* list) : mpList(list) {}

TObservableListEvent::~TObservableListEvent() = default;

TObservable* TObservableListEvent::ChangedObservable() const {
	return List();
}

TObservableListElementEvent::TObservableListElementEvent(
    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive)
    : TObservableListEvent(list),
      mpKeepAlive(keepAlive),
      mpElement(element) {}

TObservableWasAddedObservable::TObservableWasAddedObservable(
    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive, int32_t index)
    : TObservableListElementEvent(list, element, keepAlive),
      mIndex(index) {}

TObservableWasRemovedObservable::TObservableWasRemovedObservable(
    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive, int32_t index)
    : TObservableListElementEvent(list, element, keepAlive),
      mIndex(index) {}

TObservablesSwappedObservable::TObservablesSwappedObservable(TObservableListBase* list, int32_t index1, int32_t index2)
    : TObservableListEvent(list),
      mIndex1(index1),
      mIndex2(index2) {}

TObservableChangedObservable::TObservableChangedObservable(
    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive, TObservable* changed)
    : TObservableListElementEvent(list, element, keepAlive),
      mpChanged(changed) {}

TObservableListBase::TObservableListBase()
    : mpElementForwarder(
          MakePtr<TForwardingObserver<TObservableListBase>>(kMainThread, this, &TObservableListBase::OnElementChange)),
      mpNestedListForwarder(MakePtr<TForwardingObserver<TObservableListBase>>(
          kMainThread, this, &TObservableListBase::OnNestedListEvent)) {}

TObservableListBase::~TObservableListBase() = default;

void TObservableListBase::Insert(TObservable* element, int32_t index) {
	element->SetOwnerNode(OwnerNode());
	NameNestedList(element);
	FireForElement<TObservableWasAddedObservable>(mAdded, kWillChange, element, index);
	mElements.Insert(element, index);
	FireForElement<TObservableWasAddedObservable>(mAdded, kDidChange, element, index);
	Observe(element);
}

void TObservableListBase::Remove(int32_t index) {
	TObservable* element = mElements[index];
	FireForElement<TObservableWasRemovedObservable>(mRemoved, kWillChange, element, index);
	StopObserving(element);
	mElements.RemoveAt(index);
	element->FlushObserverThreads();
	FireForElement<TObservableWasRemovedObservable>(mRemoved, kDidChange, element, index);
	element->SetOwnerNode(nullptr);
	DestroyElement(element);
}

void TObservableListBase::Clear(int32_t capacity) {
	while (Size() > 0)
		Remove(Size() - 1);
	OnCleared();
	mElements.Reserve(capacity);
}

void TObservableListBase::Swap(int32_t index1, int32_t index2) {
	if (index1 == index2)
		return;
	FireEvent<TObservablesSwappedObservable>(mSwapped, kWillChange, this, index1, index2);
	std::swap(mElements[index1], mElements[index2]);
	FireEvent<TObservablesSwappedObservable>(mSwapped, kDidChange, this, index1, index2);
}

void TObservableListBase::Move(int32_t from, int32_t to) {
	for (; from < to; ++from)
		Swap(from, from + 1);
	for (; from > to; --from)
		Swap(from, from - 1);
}

void TObservableListBase::ResizeWithDefaults(int32_t count) {
	while (Size() > count)
		Remove(Size() - 1);
	while (Size() < count)
		InsertNewElement(Size());
}

TObservable* TObservableListBase::InsertNewElement(int32_t index, const std::function<void(TObservable&)>& fill) {
	TObservable* element = CreateElement();
	try {
		if (fill)
			fill(*element);
		Insert(element, index);
	} catch (...) {
		if (IndexOf(element) >= 0)
			Remove(index);
		else
			DestroyElement(element);
		throw;
	}
	return element;
}

TString TObservableListBase::BuildPath(const TObservable* element) const {
	const TString relative = RelativePath(element);
	const TDocumentNode* owner = OwnerNode();
	return relative.IsEmpty() || !owner ? relative : owner->RelativeValuePath(this) + relative;
}

TString TObservableListBase::RelativePath(const TObservable* element) const {
	for (int32_t i = 0; i < Size(); ++i) {
		if (mElements[i] == element)
			return ListPath::Step(i);
		if (const TObservableListBase* nested = AsList(mElements[i])) {
			const TString rest = nested->RelativePath(element);
			if (!rest.IsEmpty())
				return ListPath::Step(i) + rest;
		}
	}
	return {};
}

TObservable* TObservableListBase::ElementAtPath(const TString& path) const {
	std::u16string_view rest = path.View();
	rest.remove_prefix(std::min(rest.find(u'['), rest.size()));
	const TObservableListBase* list = this;
	TObservable* element = nullptr;
	while (!rest.empty()) {
		const int32_t index = ListPath::TakeIndex(rest);
		if (!list || index < 0 || index >= list->Size())
			return nullptr;
		element = list->mElements[index];
		list = AsList(element);
	}
	return element;
}

void TObservableListBase::SetOwnerNode(TDocumentNode* node) {
	mpOwner = node;
	for (TObservable* element : mElements)
		element->SetOwnerNode(node);
}

void TObservableListBase::DestroyElements() {
	while (Size() > 0) {
		TObservable* element = mElements[Size() - 1];
		StopObserving(element);
		mElements.RemoveAt(Size() - 1);
		element->SetOwnerNode(nullptr);
		DestroyElement(element);
	}
}

template <class TEvent, class... TArguments>
void TObservableListBase::FireForElement(
    const TObservable& prototype, int32_t reason, TObservable* element, const TArguments&... arguments) {
	if (prototype.HasObservers())
		FireEvent<TEvent>(prototype, reason, this, element, MakeKeepAlive(element), arguments...);
}

void TObservableListBase::FireChanged(TObservable* element, TObservable* changed, int32_t reason) {
	FireForElement<TObservableChangedObservable>(mChanged, reason, element, changed);
	mAnyChange.NotifyObservers(reason);
}

void TObservableListBase::Observe(TObservable* element) {
	TObservableListBase* list = AsList(element);
	if (!list)
		return mpElementForwarder->Observe(*element);
	for (TObservable* event : {&list->mAdded, &list->mRemoved, &list->mSwapped, &list->mChanged})
		mpNestedListForwarder->Observe(*event);
}

void TObservableListBase::StopObserving(TObservable* element) {
	TObservableListBase* list = AsList(element);
	if (!list)
		return mpElementForwarder->StopObserving(*element);
	for (TObservable* event : {&list->mAdded, &list->mRemoved, &list->mSwapped, &list->mChanged})
		mpNestedListForwarder->StopObserving(*event);
}

void TObservableListBase::NameNestedList(TObservable* element) const {
	TObservableListBase* list = AsList(element);
	if (list && list->mItemName.IsEmpty())
		list->mItemName = ItemNamesAreIndexed() ? mItemName : TNameRules::ListNameToItemName(mItemName);
}

void TObservableListBase::OnElementChange(TObservable* element, int32_t reason) {
	// A change on another thread arrives late; the element may have gone.
	if (IsChange(reason) && IndexOf(element) >= 0)
		FireChanged(element, element, reason);
}

void TObservableListBase::OnNestedListEvent(TObservable* observable, int32_t reason) {
	if (!IsChange(reason))
		return;
	const auto* event = static_cast<TObservableListEvent*>(observable);
	TObservableListBase* list = event->List();
	if (list && IndexOf(list) >= 0)
		FireChanged(list, event->ChangedObservable(), reason);
}
