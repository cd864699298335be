// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/nodes/TNameRules.h"
#include "framework/document/observables/TObservableBang.h"

#include <cstdint>
#include <typeinfo>

/// Base of what a document list reports.
class TDocumentListEvent : public TObservableOneShotBang {
public:
	~TDocumentListEvent() override;

	/// Null when the list is gone.
	TDocumentListBase* List() const noexcept { return mpList.Get(); }

protected:
	explicit TDocumentListEvent(TDocumentListBase* list);

private:
	TWeakPtr<TDocumentListBase> mpList;
};

/// One element comes or goes.
class TDocumentListElementEvent : public TDocumentListEvent {
public:
	TDocumentNode* Element() const noexcept { return mpElement.Get(); }

	int32_t Index() const noexcept { return mIndex; }

protected:
	TDocumentListElementEvent(TDocumentListBase* list, TDocumentNode* element, int32_t index);

private:
	TPtr<TDocumentNode> mpElement;
	int32_t mIndex;
};

class TDocumentWasAddedObservable final : public TDocumentListElementEvent {
public:
	TDocumentWasAddedObservable(TDocumentListBase* list, TDocumentNode* element, int32_t index);
};

class TDocumentWasRemovedObservable final : public TDocumentListElementEvent {
public:
	TDocumentWasRemovedObservable(TDocumentListBase* list, TDocumentNode* element, int32_t index);
};

class TDocumentListElementsSwappedObservable final : public TDocumentListEvent {
public:
	TDocumentListElementsSwappedObservable(TDocumentListBase* list, int32_t index1, int32_t index2);

	int32_t Index1() const noexcept { return mIndex1; }

	int32_t Index2() const noexcept { return mIndex2; }

private:
	int32_t mIndex1;
	int32_t mIndex2;
};

/// A node whose children are the elements of a list, besides members that a derived class may declare. Shares the
/// ownership of its elements. Each change fires an event (kWillChange before, kDidChange after) made for the audience
/// of Added(), Removed() or Swapped(), with the payload of the classes above. Indices are not checked.
class TDocumentListBase : public TDocumentNode {
public:
	~TDocumentListBase() override;

	/// Index -1 appends. Throws TOutOfMemoryException; the list then stays as it was.
	void Insert(TDocumentNode* element, int32_t index = -1);
	void Remove(int32_t index);
	/// From the last element to the first.
	void Clear();
	void Swap(int32_t index1, int32_t index2);
	/// By swaps of neighbours.
	void Move(int32_t from, int32_t to);

	int32_t Size() const noexcept { return mElements.Count(); }

	/// -1 if it is no element.
	int32_t IndexOf(const TDocumentNode* element) const noexcept;

	TObservableBang& Added() noexcept { return mAdded; }

	TObservableBang& Removed() noexcept { return mRemoved; }

	TObservableBang& Swapped() noexcept { return mSwapped; }

	const TString& ItemName() const noexcept { return mItemName; }

	void SetItemName(const TString& name) { mItemName = name; }

	/// Classes of which the elements may be. Without any, elements are made by the name in the file.
	void DeclareElementClass(const TString& className);
	/// With an element name of its own: the file then tells classes apart by these names.
	void DeclareElementClass(const TString& className, const TString& itemName);
	/// Takes the other's item name and element classes.
	void CopyElementClassesFrom(const TDocumentListBase& other);

	bool HasSeveralElementClasses() const noexcept { return mTypeNames.Count() > 1; }

	/// Appends an element that is about to be read from a file: it starts from its defaults.
	void InsertLoaded(TDocumentNode* element);
	/// Whether the file gives the element a "type" attribute.
	bool UsesTypeAttribute(const TDocumentNode* element) const;
	/// Whether the list has declared members besides its elements.
	bool HasOwnMembers() const noexcept;
	/// A new element for what a file holds: `name` is the value of its "type" attribute, or its element name. Null if
	/// it is no element of this list; in a list without members of its own that throws TReadableException.
	TPtr<TDocumentNode> CreateFromXml(const TString& name, bool hasTypeAttribute);

	/// Whether elements that are lists take the item name as it stands, else its singular.
	virtual bool ItemNameIsTheListsOwn() const { return false; }

	/// Whether the node's class is not the list's element class.
	virtual bool DiffersFromElementClass(const TDocumentNode* node) const = 0;
	virtual TPtr<TDocumentNode> CreateElementOfType(const TString& typeName, bool hasTypeAttribute);

	bool IsList() const final { return true; }

protected:
	TDocumentListBase() = default;

	const TPtr<TDocumentNode>& ElementNode(int32_t index) const noexcept { return mElements[index]; }

	TString PathStepTo(const TDocumentNode* child) const override;
	TDocumentNode* ElementAt(int32_t index) const override;

private:
	TString ElementNameFor(const TDocumentNode* element) const;
	TString ClassForElementName(const TString& name) const;
	void NameNestedList(TDocumentNode* element) const;

	int32_t FirstElementChild() const noexcept { return Children().Count() - mElements.Count(); }

	TString mItemName;
	TList<TString> mTypeNames;
	TList<TString> mItemNamesByType; // empty, or one for each type name
	TList<TPtr<TDocumentNode>> mElements;
	TObservableBang mAdded;
	TObservableBang mRemoved;
	TObservableBang mSwapped;
};

/// A list of T. Unless the elements' classes are declared by name, T is the one class, which a file does not name.
template <class T>
class TDocumentList : public TDocumentListBase {
public:
	TDocumentList() { FinishDeclaration(); }

	T* Element(int32_t index) const noexcept { return static_cast<T*>(ElementNode(index).Get()); }

	T* operator[](int32_t index) const noexcept { return Element(index); }

	/// Makes the one class known by its run-time name.
	void DeclareElementClass() { TDocumentListBase::DeclareElementClass(TNameRules::ClassNameOf(typeid(T))); }

	using TDocumentListBase::DeclareElementClass;

	bool DiffersFromElementClass(const TDocumentNode* node) const override { return typeid(*node) != typeid(T); }
};
