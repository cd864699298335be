// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/ListPath.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/nodes/TObservableList.h"

#include <algorithm>

/// One step of a path: a name, or the index of a list's element.
struct TDocumentNode::TPathStep {
	/// Cuts the first step off.
	explicit TPathStep(std::u16string_view& path) {
		if (path.starts_with(u'/'))
			path.remove_prefix(1);
		if (path.starts_with(u'[')) {
			mIndex = ListPath::TakeIndex(path);
			return;
		}
		const std::size_t end = std::min(path.find_first_of(u"/["), path.size());
		mName = path.substr(0, end);
		path.remove_prefix(end);
	}

	std::u16string_view mName; // empty for an index
	int32_t mIndex = -1;
};

TString TDocumentNode::PathStepTo(const TDocumentNode* child) const {
	return TString("/") + child->NameInParent();
}

TString TDocumentNode::BuildPath(const TDocumentNode* root) const {
	TString path;
	const TDocumentNode* node = this;
	for (; node && node != root; node = node->Parent()) {
		if (const TDocumentNode* parent = node->Parent())
			path = parent->PathStepTo(node) + path;
	}
	if (!node)
		return {};
	return path.StartsWithChar(u'/') ? path : TString("/") + path;
}

TString TDocumentNode::BuildValuePath(const TObservable* value, const TDocumentNode* root) const {
	const TString path = BuildPath(root);
	const TString relative = RelativeValuePath(value);
	if (path.IsEmpty() || relative.IsEmpty())
		return {};
	return path.EndsWithChar(u'/') ? path + relative : path + "/" + relative;
}

TString TDocumentNode::RelativeValuePath(const TObservable* value) const {
	TString name = NameOfProperty(value);
	if (!name.IsEmpty())
		return name;
	for (const TValueProperty& property : mObservables) {
		if (!property.mpValue || !property.mpValue->IsObservableList())
			continue;
		const TString relative = static_cast<const TObservableListBase*>(property.mpValue)->RelativePath(value);
		if (!relative.IsEmpty())
			return property.mName + relative;
	}
	return {};
}

TString TDocumentNode::NameOfProperty(const TObservable* value) const {
	for (const TValueProperty& property : mObservables) {
		if (value && property.mpValue == value)
			return property.mName;
	}
	return {};
}

TDocumentNode* TDocumentNode::ChildAtPath(const TString& path) const {
	return ChildAt(path.View());
}

TObservable* TDocumentNode::ValueAtPath(const TString& path) const {
	return ValueAt(path.View());
}

TDocumentNode* TDocumentNode::ChildAt(std::u16string_view path) const {
	if (path.empty() || path == u"/")
		return const_cast<TDocumentNode*>(this);
	const TDocumentNode* child = ChildAtStep(TPathStep(path));
	return child ? child->ChildAt(path) : nullptr;
}

TObservable* TDocumentNode::ValueAt(std::u16string_view path) const {
	const TPathStep step(path);
	if (path.empty() || path.starts_with(u'[')) {
		for (const TValueProperty& property : mObservables) {
			if (!property.mpValue || property.mName.View() != step.mName)
				continue;
			if (path.empty())
				return property.mpValue;
			if (property.mpValue->IsObservableList())
				return static_cast<TObservableListBase*>(property.mpValue)->ElementAtPath(TString(path));
		}
	}
	const TDocumentNode* child = ChildAtStep(step);
	return child && !path.empty() ? child->ValueAt(path) : nullptr;
}

TDocumentNode* TDocumentNode::ChildAtStep(const TPathStep& step) const {
	if (step.mName.empty())
		return ElementAt(step.mIndex);
	for (const TChildProperty& child : mChildren) {
		if (child.mName.View() == step.mName)
			return child.mpValue;
	}
	return nullptr;
}
