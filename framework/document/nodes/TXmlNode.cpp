// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TXmlNode.h"

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TObservableList.h"

#include <algorithm>

TXmlNode::TXmlNode(const TString& name, uint32_t flags, TDocumentNode* node, TObservable* value)
    : mName(name),
      mFlags(flags),
      mpNode(node) {
	if (value && value->IsObservableList())
		mpObservableList = static_cast<TObservableListBase*>(value);
	else
		mpValue = dynamic_cast<TSerializable*>(value);
}

TDocumentListBase* TXmlNode::DocumentList() const noexcept {
	return mpNode && mpNode->IsList() ? static_cast<TDocumentListBase*>(mpNode) : nullptr;
}

bool TXmlNode::IsWritten() const {
	return (mFlags & kWrite) && !(mpNode && mpNode->IsSkippedOnSave());
}

bool TXmlNode::IsEmpty(const TXmlNode& parent) const {
	if (IsComment())
		return false;
	if (mName.IsEmpty())
		return true;
	if (mpObservableList)
		return mpObservableList->Size() == 0 && !parent.mpObservableList;
	if (const TDocumentListBase* list = DocumentList())
		return list->Size() == 0 && !parent.DocumentList();
	if (parent.HasBoundList())
		return false;
	if (mpNode && mpNode->IsByteBag())
		return static_cast<const TDocumentByteBag*>(mpNode)->Data().empty();
	if (mpValue)
		return Text().IsEmpty();
	return std::ranges::all_of(Children(), [this](const TXmlNode& child) { return child.IsEmpty(*this); });
}

const TString& TXmlNode::Text() const {
	if (!mText)
		mText = mpValue ? mpValue->ToString() : TString();
	return *mText;
}

const std::vector<TXmlNode>& TXmlNode::Children() const {
	if (!mChildren)
		mChildren = CollectChildren();
	return *mChildren;
}

std::vector<TXmlNode> TXmlNode::CollectChildren() const {
	std::vector<TXmlNode> children;
	const auto append = [&children](const TString& name, uint32_t flags, TDocumentNode* node, TObservable* value) {
		const bool hasText = !value || dynamic_cast<TSerializable*>(value);
		if ((flags & (kRead | kWrite)) && hasText)
			children.push_back(TXmlNode(name, flags, node, value));
	};
	if (mpObservableList) {
		for (int32_t i = 0; i < mpObservableList->Size(); ++i)
			append(mpObservableList->ItemName(), kWrite, nullptr, mpObservableList->ElementObservable(i));
	} else if (mpNode) {
		const int32_t count = mpNode->Properties().Count() + mpNode->Children().Count();
		children.reserve(static_cast<std::size_t>(count));
		mpNode->VisitMembers(
		    [&](const TDocumentNode::TValueProperty& value) {
			    append(value.mName, value.mFlags, nullptr, value.mpValue);
		    },
		    [&](const TDocumentNode::TChildProperty& child) {
			    append(child.mName, child.mFlags, child.mpValue, nullptr);
		    });
	}
	return children;
}

void TXmlNode::AppendElement(const TString& name, bool hasType) {
	Children();
	if (mpObservableList) {
		const int32_t last = mpObservableList->Size();
		mpObservableList->ResizeWithDefaults(last + 1);
		mChildren->push_back(
		    TXmlNode(mpObservableList->ItemName(), kWrite, nullptr, mpObservableList->ElementObservable(last)));
		return;
	}
	TDocumentListBase& list = *DocumentList();
	if (const TPtr<TDocumentNode> element = list.CreateFromXml(name, hasType)) {
		list.InsertLoaded(element.Get());
		const auto& added = list.Children()[list.Children().Count() - 1];
		mChildren->push_back(TXmlNode(added.mName, added.mFlags, added.mpValue, nullptr));
	}
}

bool TXmlNode::CountsOccurrences() const noexcept {
	const TDocumentListBase* list = DocumentList();
	return list && list->HasOwnMembers();
}

bool TXmlNode::ChildNamesAreUnique() const noexcept {
	if (mpObservableList)
		return mpObservableList->Size() < 2;
	const TDocumentListBase* list = DocumentList();
	return !list || !(list->HasSeveralElementClasses() || list->HasOwnMembers());
}

bool TXmlNode::IsChild(int32_t index, const TString& name) const {
	if (index < 0 || index >= static_cast<int32_t>(mChildren->size()))
		return false;
	const TXmlNode& child = (*mChildren)[static_cast<std::size_t>(index)];
	return !child.IsComment() && child.mName == name;
}

TXmlNode* TXmlNode::FindChild(const TString& name, int32_t expectedIndex, int32_t occurrence) {
	const auto count = static_cast<int32_t>(Children().size());
	const auto at = [this](int32_t index) { return &(*mChildren)[static_cast<std::size_t>(index)]; };
	if (CountsOccurrences()) {
		for (int32_t i = 0; i < count; ++i)
			if (IsChild(i, name) && occurrence-- <= 0)
				return at(i);
		return nullptr;
	}
	if (IsChild(expectedIndex, name))
		return at(expectedIndex);
	if (!ChildNamesAreUnique())
		return nullptr;
	// Where elements repeat, the expected index runs far beyond the members; there is nothing to look at there.
	const int32_t nearest = std::max(1, expectedIndex - (count - 1));
	for (int32_t distance = nearest; distance <= std::max(expectedIndex, count - expectedIndex); ++distance) {
		if (IsChild(expectedIndex + distance, name))
			return at(expectedIndex + distance);
		if (IsChild(expectedIndex - distance, name))
			return at(expectedIndex - distance);
	}
	return nullptr;
}
