// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentNode.h"

#include "framework/document/nodes/ListPath.h"
#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TNameRules.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/nodes/TXmlDocument.h"
#include "framework/document/observables/TFrameworkMemory.h"
#include "framework/document/observables/TObservableBaseType.h"

#include <memory>
#include <typeinfo>
#include <utility>

namespace {

constexpr uint32_t kAllChildren = ~0u;
constexpr uint32_t kLoadMask = kRead | kWrite;

template <class TList, class TVisit>
void VisitEventsOfList(TList* list, const TVisit& visit) {
	visit(list->Added());
	visit(list->Removed());
	visit(list->Swapped());
}

/// What tells of the changes in a declared value.
template <class TVisit>
void VisitEventsOf(TObservable* value, const TVisit& visit) {
	if (value->IsObservableList())
		VisitEventsOfList(static_cast<TObservableListBase*>(value), visit);
	else
		visit(*value);
}

/// What tells of the changes in a child itself.
template <class TVisit>
void VisitEventsOf(TDocumentNode* node, const TVisit& visit) {
	if (node->IsList())
		VisitEventsOfList(static_cast<TDocumentListBase*>(node), visit);
	else if (node->IsByteBag())
		visit(static_cast<TDocumentByteBag*>(node)->DataChanged());
}

} // namespace

struct TDocumentNode::TExtras : TFrameworkMemory<TExtras> {
	TList<TAttribute> mAttributes;
	TObservableBaseType<TString> mTypeName;
	bool mHasTypeName = false;
	std::unique_ptr<TXmlDocument> mpXmlDocument;
};

TDocumentNode::TDocumentNode() : TObserver(kMainThread) {}

TDocumentNode::~TDocumentNode() = default;

void TDocumentNode::AddProperty(TObservable* value, const TString& name, uint32_t flags) {
	mObservables.Append({value, name, flags, mChildren.Count()});
	value->SetOwnerNode(this);
	if (value->IsObservableList()) {
		auto* list = static_cast<TObservableListBase*>(value);
		if (list->ItemName().IsEmpty())
			list->SetItemName(TNameRules::ListNameToItemName(name));
	}
	if (flags & kUndoable)
		ObserveValue(value);
}

void TDocumentNode::AddProperty(TObservableListBase* value, const TString& name, uint32_t flags) {
	AddProperty(static_cast<TObservable*>(value), name, flags);
}

void TDocumentNode::AddChild(TDocumentNode* node, const TString& name, uint32_t flags, int32_t index) {
	if (index < 0)
		index = mChildren.Count();
	mChildren.Insert({node, name, flags}, index);
	CountChild(index, 1);
	node->SetParent(this);
	if (node->IsList()) {
		auto* list = static_cast<TDocumentListBase*>(node);
		if (list->ItemName().IsEmpty())
			list->SetItemName(TNameRules::ListNameToItemName(name));
	}
	if (flags & kUndoable)
		ObserveChild(node);
}

void TDocumentNode::RemoveProperty(TObservable* value) {
	for (int32_t i = 0; value && i < mObservables.Count(); ++i) {
		if (mObservables[i].mpValue != value)
			continue;
		if (mObservables[i].mFlags & kUndoable)
			StopObservingValue(value);
		mObservables.RemoveAt(i);
		value->SetOwnerNode(nullptr);
		return;
	}
}

void TDocumentNode::RemoveChild(TDocumentNode* node) {
	const int32_t index = IndexOfChild(node);
	if (index < 0)
		return;
	if (mChildren[index].mFlags & kUndoable)
		StopObservingChild(node);
	mChildren.RemoveAt(index);
	CountChild(index, -1);
	node->SetParent(nullptr);
}

void TDocumentNode::AddAttribute(const TString& name, TSerializable* value) {
	Extras().mAttributes.Append({name, value});
}

void TDocumentNode::AddComment(const TString& text) {
	mObservables.Append({nullptr, text, kWrite, mChildren.Count()});
}

const TList<TDocumentNode::TAttribute>& TDocumentNode::Attributes() const noexcept {
	static const TList<TAttribute> sNone;
	return mpExtras ? mpExtras->mAttributes : sNone;
}

TXmlDocument& TDocumentNode::XmlDocument() {
	TExtras& extras = Extras();
	if (!extras.mpXmlDocument)
		extras.mpXmlDocument = std::make_unique<TXmlDocument>(*this);
	return *extras.mpXmlDocument;
}

void TDocumentNode::VisitMembers(
    const std::function<void(const TValueProperty&)>& onValue,
    const std::function<void(const TChildProperty&)>& onChild) const {
	int32_t child = 0;
	for (const TValueProperty& property : mObservables) {
		for (; child < property.mChildrenBefore; ++child)
			onChild(mChildren[child]);
		onValue(property);
	}
	for (; child < mChildren.Count(); ++child)
		onChild(mChildren[child]);
}

TDocumentRoot* TDocumentNode::Root() const {
	const TDocumentNode* parent = Parent();
	return parent ? parent->Root() : nullptr;
}

TString TDocumentNode::NameInParent() const {
	const TDocumentNode* parent = Parent();
	const int32_t index = parent ? parent->IndexOfChild(this) : -1;
	return index < 0 ? TString() : parent->mChildren[index].mName;
}

uint32_t TDocumentNode::FlagsOfChild(const TDocumentNode* child) const noexcept {
	const int32_t index = IndexOfChild(child);
	return index < 0 ? 0 : mChildren[index].mFlags;
}

void TDocumentNode::Touch() {
	for (TDocumentNode* node = this; node; node = node->Parent()) {
		node->mIsModified = true;
		node->mIsSecondaryModified = true;
		node->OnModified();
	}
}

void TDocumentNode::ClearModified() {
	VisitSubtree(kAllChildren, [](TDocumentNode& node) {
		node.mIsModified = false;
		node.OnModifiedCleared();
	});
	ClearSecondaryModified();
}

void TDocumentNode::ClearSecondaryModified() {
	VisitSubtree(kAllChildren, [](TDocumentNode& node) {
		node.mIsSecondaryModified = false;
		node.OnSecondaryModifiedCleared();
	});
}

TString TDocumentNode::TypeName() const {
	return TNameRules::ClassNameToTypeName(TypeNameOf(this));
}

TPtr<TDocumentNode> TDocumentNode::NewInstance() const {
	return TDocumentClassRegistry::CreateByTypeName(TypeName());
}

TString TDocumentNode::TypeNameOf(const TDocumentNode* object) const {
	return TNameRules::ClassNameOf(typeid(*object));
}

const TString& TDocumentNode::StoredTypeName() const noexcept {
	static const TString sNone;
	return mpExtras ? mpExtras->mTypeName.Get() : sNone;
}

void TDocumentNode::StoreTypeName() {
	TExtras& extras = Extras();
	if (!extras.mHasTypeName)
		AddAttribute("type", &extras.mTypeName);
	extras.mHasTypeName = true;
	extras.mTypeName.Set(TypeName());
}

void TDocumentNode::ReserveMembers(int32_t values, int32_t children) {
	mObservables.Reserve(mObservables.Count() + values);
	mChildren.Reserve(mChildren.Count() + children);
}

void TDocumentNode::FinishDeclaration() {
	mElementName = TNameRules::ClassNameToElementName(TNameRules::ClassNameOf(typeid(*this)));
}

void TDocumentNode::BeginLoad() {
	VisitSubtree(kLoadMask, [](TDocumentNode& node) {
		node.mIsLoading = true;
		node.OnLoadBegin();
	});
}

void TDocumentNode::EndLoad(bool success) {
	VisitSubtreeBottomUp(kLoadMask, [success](TDocumentNode& node) {
		node.OnLoadEnd(success);
		node.mIsLoading = node.mIsSaving = node.mIsUndoing = false;
	});
	if (success)
		VisitSubtree(kAllChildren, [](TDocumentNode& node) { node.OnAfterLoad(); });
}

void TDocumentNode::BeginSave() {
	VisitSubtree(kAllChildren, [](TDocumentNode& node) { node.OnPrepareSave(); });
	VisitSubtree(kWrite, [](TDocumentNode& node) {
		node.mIsSaving = true;
		if (node.mpExtras && node.mpExtras->mHasTypeName)
			node.StoreTypeName();
		node.OnSaveBegin();
	});
}

void TDocumentNode::EndSave(bool success) {
	VisitSubtree(kWrite, [success](TDocumentNode& node) {
		node.OnSaveEnd(success);
		node.mIsSaving = false;
	});
	if (success && IsRoot())
		ClearModified();
}

void TDocumentNode::BeginUndoRedo() {
	VisitSubtree(kUndoable, [](TDocumentNode& node) {
		node.mIsUndoing = true;
		node.OnUndoRedoBegin();
	});
}

void TDocumentNode::EndUndoRedo() {
	VisitSubtree(kUndoable, [](TDocumentNode& node) {
		node.OnUndoRedoEnd();
		node.mIsUndoing = false;
	});
}

void TDocumentNode::SwapChildren(int32_t index1, int32_t index2) {
	std::swap(mChildren[index1], mChildren[index2]);
}

void TDocumentNode::SetParent(TDocumentNode* parent) {
	if (mpParent == parent)
		return;
	TDocumentRoot* oldRoot = Root();
	if (parent) {
		OnBeforeAttach();
		mpParent = parent;
		InheritState(*parent, kRead | kWrite | kUndoable);
		OnAfterAttach();
	} else {
		OnBeforeDetach();
		mpParent = nullptr;
		OnAfterDetach();
	}
	TDocumentRoot* newRoot = Root();
	if (!oldRoot && newRoot)
		VisitSubtree(kAllChildren, [newRoot](TDocumentNode& node) { node.OnAttachedToRoot(newRoot); });
	else if (oldRoot && !newRoot)
		VisitSubtree(kAllChildren, [oldRoot](TDocumentNode& node) { node.OnDetachedFromRoot(oldRoot); });
}

void TDocumentNode::InheritState(const TDocumentNode& parent, uint32_t flags) {
	if (flags & kLoadMask)
		mIsLoading = parent.mIsLoading;
	if (flags & kWrite)
		mIsSaving = parent.mIsSaving;
	if (flags & kUndoable)
		mIsUndoing = parent.mIsUndoing;
	for (const TChildProperty& child : mChildren)
		child.mpValue->InheritState(*this, child.mFlags);
}

// Hooks may add and remove children behind the one that is being visited.
template <class TVisit>
void TDocumentNode::VisitSubtree(uint32_t mask, const TVisit& visit) {
	visit(*this);
	for (int32_t i = 0; i < mChildren.Count(); ++i) {
		if (mask == kAllChildren || (mChildren[i].mFlags & mask))
			mChildren[i].mpValue->VisitSubtree(mask, visit);
	}
}

template <class TVisit>
void TDocumentNode::VisitSubtreeBottomUp(uint32_t mask, const TVisit& visit) {
	for (int32_t i = 0; i < mChildren.Count(); ++i) {
		if (mChildren[i].mFlags & mask)
			mChildren[i].mpValue->VisitSubtreeBottomUp(mask, visit);
	}
	visit(*this);
}

void TDocumentNode::CountChild(int32_t index, int32_t difference) noexcept {
	for (int32_t i = mObservables.Count() - 1; i >= 0 && mObservables[i].mChildrenBefore > index; --i)
		mObservables[i].mChildrenBefore += difference;
}

int32_t TDocumentNode::IndexOfChild(const TDocumentNode* node) const noexcept {
	int32_t index = mChildren.Count() - 1;
	while (index >= 0 && mChildren[index].mpValue != node)
		--index;
	return index;
}

TDocumentNode::TExtras& TDocumentNode::Extras() {
	if (!mpExtras)
		mpExtras = std::make_unique<TExtras>();
	return *mpExtras;
}

void TDocumentNode::ObserveValue(TObservable* value) {
	VisitEventsOf(value, [this](TObservable& event) { event.AddObserver({this, &TDocumentNode::OnChange}); });
}

void TDocumentNode::StopObservingValue(TObservable* value) {
	VisitEventsOf(value, [this](TObservable& event) { event.RemoveObserver({this, &TDocumentNode::OnChange}); });
}

void TDocumentNode::ObserveChild(TDocumentNode* node) {
	VisitEventsOf(node, [this](TObservable& event) { event.AddObserver({this, &TDocumentNode::OnChange}); });
}

void TDocumentNode::StopObservingChild(TDocumentNode* node) {
	VisitEventsOf(node, [this](TObservable& event) { event.RemoveObserver({this, &TDocumentNode::OnChange}); });
}

void TDocumentNode::OnChange(TObservable* source, int32_t reason) {
	if (reason == kWillChange || reason == kDidChange)
		OnChangeBelow(*this, *source, reason);
}

void TDocumentNode::OnChangeBelow(TDocumentNode& node, TObservable& source, int32_t reason) {
	if (TDocumentNode* parent = Parent())
		parent->OnChangeBelow(node, source, reason);
}
