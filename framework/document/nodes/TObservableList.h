// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TForwardingObserver.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TSerializable.h"
#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"

#include <cstdint>
#include <functional>

class TObservableListBase;

/// Base of what a list reports.
class TObservableListEvent : public TObservableOneShotBang {
public:
	~TObservableListEvent() override;

	/// Null when the list is gone.
	TObservableListBase* List() const noexcept { return mpList.Get(); }

	/// The list itself, or the element or what within it has changed.
	virtual TObservable* ChangedObservable() const;

protected:
	explicit TObservableListEvent(TObservableListBase* list);

private:
	TWeakPtr<TObservableListBase> mpList;
};

/// Something about one element, which it keeps alive.
class TObservableListElementEvent : public TObservableListEvent {
public:
	TObservable* Element() const noexcept { return mpElement; }

protected:
	TObservableListElementEvent(
	    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive);

private:
	TPtr<TReferenceCountable> mpKeepAlive;
	TObservable* mpElement;
};

class TObservableWasAddedObservable final : public TObservableListElementEvent {
public:
	TObservableWasAddedObservable(
	    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive, int32_t index);

	int32_t Index() const noexcept { return mIndex; }

private:
	int32_t mIndex;
};

class TObservableWasRemovedObservable final : public TObservableListElementEvent {
public:
	TObservableWasRemovedObservable(
	    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive, int32_t index);

	int32_t Index() const noexcept { return mIndex; }

private:
	int32_t mIndex;
};

class TObservablesSwappedObservable final : public TObservableListEvent {
public:
	TObservablesSwappedObservable(TObservableListBase* list, int32_t index1, int32_t index2);

	int32_t Index1() const noexcept { return mIndex1; }

	int32_t Index2() const noexcept { return mIndex2; }

private:
	int32_t mIndex1;
	int32_t mIndex2;
};

/// An element changes, or something within an element that is a list itself.
class TObservableChangedObservable final : public TObservableListElementEvent {
public:
	TObservableChangedObservable(
	    TObservableListBase* list, TObservable* element, const TPtr<TReferenceCountable>& keepAlive,
	    TObservable* changed);

	TObservable* ChangedObservable() const override { return mpChanged; }

private:
	TObservable* mpChanged;
};

/// A list of observable elements that it owns. Each change of the list fires an event, kWillChange before and
/// kDidChange after, made for the audience of Added(), Removed(), Swapped() or Changed(), with the payload of the
/// classes above. Main thread; elements may be set on other threads, the list then reports it on the main thread.
/// Indices are not checked. Throws TOutOfMemoryException; the list then stays as it was.
class TObservableListBase : public TSerializable {
public:
	~TObservableListBase() override;

	/// The element must come from this list's CreateElement; the list takes it over.
	void Insert(TObservable* element, int32_t index);
	void Remove(int32_t index);
	/// From the last element to the first; then makes room for `capacity` elements.
	void Clear(int32_t capacity = 0);
	void Swap(int32_t index1, int32_t index2);
	/// By swaps of neighbours.
	void Move(int32_t from, int32_t to);
	/// Appends new elements, or removes elements from the end.
	void ResizeWithDefaults(int32_t count);

	int32_t Size() const noexcept { return mElements.Count(); }

	TObservable* ElementObservable(int32_t index) const noexcept { return mElements[index]; }

	/// -1 if it is no element.
	int32_t IndexOf(const TObservable* element) const noexcept {
		return mElements.IndexOf(const_cast<TObservable*>(element));
	}

	TObservableBang& Added() noexcept { return mAdded; }

	TObservableBang& Removed() noexcept { return mRemoved; }

	TObservableBang& Swapped() noexcept { return mSwapped; }

	TObservableBang& Changed() noexcept { return mChanged; }

	/// Fires around every change of an element.
	TObservableBang& AnyChange() noexcept { return mAnyChange; }

	const TString& ItemName() const noexcept { return mItemName; }

	void SetItemName(const TString& name) { mItemName = name; }

	/// The owner's name for the list + "[index]" for each list down to the element; empty if it is not in here.
	TString BuildPath(const TObservable* element) const;
	/// The same without the name.
	TString RelativePath(const TObservable* element) const;
	/// Takes such a path; what stands before the first "[" is not looked at. Null for an unknown one.
	TObservable* ElementAtPath(const TString& path) const;

	TDocumentNode* OwnerNode() const noexcept { return mpOwner.Get(); }

	bool IsObservableList() const final { return true; }

	void SetOwnerNode(TDocumentNode* node) override;

	/// A list stands in files as an element with elements, not as text.
	bool IsPlainText() const override { return true; }

	TString ToString() const override { return {}; }

	void FromString(const TString& /*text*/) override {}

	/// A new element that is in no list yet.
	virtual TObservable* CreateElement() = 0;
	/// Makes one, lets `fill` give it a value, if there is a fill, and inserts it.
	TObservable* InsertNewElement(int32_t index, const std::function<void(TObservable&)>& fill = {});

	/// Whether elements that are lists take this list's item name, else its singular.
	virtual bool ItemNamesAreIndexed() const { return false; }

protected:
	TObservableListBase();

	virtual void DestroyElement(TObservable* element) = 0;

	virtual void OnCleared() {}

	/// What keeps the element alive beyond its time in the list.
	virtual TPtr<TReferenceCountable> MakeKeepAlive(TObservable* element) = 0;
	/// For the destructor of the class that has DestroyElement: without events.
	void DestroyElements();

private:
	template <class TEvent, class... TArguments>
	void
	FireForElement(const TObservable& prototype, int32_t reason, TObservable* element, const TArguments&... arguments);
	void FireChanged(TObservable* element, TObservable* changed, int32_t reason);
	void Observe(TObservable* element);
	void StopObserving(TObservable* element);
	void NameNestedList(TObservable* element) const;
	void OnElementChange(TObservable* element, int32_t reason);
	void OnNestedListEvent(TObservable* event, int32_t reason);

	TList<TObservable*> mElements;
	TString mItemName;
	TObservableBang mAdded;
	TObservableBang mRemoved;
	TObservableBang mSwapped;
	TObservableBang mChanged;
	TObservableBang mAnyChange;
	TPtr<TForwardingObserver<TObservableListBase>> mpElementForwarder;
	TPtr<TForwardingObserver<TObservableListBase>> mpNestedListForwarder;
	TWeakPtr<TDocumentNode> mpOwner;
};

/// A list of T, an observable that can be made without arguments.
template <class T>
class TObservableList : public TObservableListBase {
public:
	TObservableList() = default;

	~TObservableList() override { DestroyElements(); }

	T* Element(int32_t index) const noexcept { return static_cast<T*>(ElementObservable(index)); }

	T* operator[](int32_t index) const noexcept { return Element(index); }

	/// A new element at the end.
	T* Append() { return InsertNew(Size()); }

	T* InsertNew(int32_t index) { return static_cast<T*>(InsertNewElement(index)); }

	TObservable* CreateElement() override {
		auto* element = new TCountedElement;
		element->Retain();
		return element;
	}

protected:
	void DestroyElement(TObservable* element) override { static_cast<TCountedElement*>(element)->Release(); }

	TPtr<TReferenceCountable> MakeKeepAlive(TObservable* element) override {
		return TPtr<TReferenceCountable>(static_cast<TCountedElement*>(element));
	}

private:
	// Counted, so that events under way keep the element.
	class TCountedElement final : public T, public TReferenceCountable {
	protected:
		TReferenceCountable* Counted() noexcept override { return this; }
	};
};
