// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <optional>
#include <vector>

class TDocumentListBase;
class TObservableListBase;

/// One element as the declarations give it: a declared value, list, node or comment under its name. Made for the time
/// of a load or save, from the declarations as they then are, so that a document at rest carries no second tree.
class TXmlNode {
public:
	/// The node under a name of its own, as the root element of a file.
	static TXmlNode ForRoot(TDocumentNode& node, const TString& name) { return TXmlNode(name, kWrite, &node, nullptr); }

	const TString& Name() const noexcept { return mName; }

	/// Null for a comment, a node, and a list.
	TSerializable* Value() const noexcept { return mpValue; }

	/// Null for a value, also one that is a list, and for a comment.
	TDocumentNode* Node() const noexcept { return mpNode; }

	TDocumentListBase* DocumentList() const noexcept;

	TObservableListBase* ObservableList() const noexcept { return mpObservableList; }

	bool HasBoundList() const noexcept { return mpObservableList || DocumentList(); }

	bool IsComment() const noexcept { return !mpValue && !mpNode && !mpObservableList; }

	/// Not written: declared as only read, or the node does not want to be.
	bool IsWritten() const;
	/// What is left out of a file. Depends on where the element stands: elements of a list never are.
	bool IsEmpty(const TXmlNode& parent) const;

	/// The value's text; empty for what has no value.
	const TString& Text() const;
	/// In the order of declaration. Made when first asked for.
	const std::vector<TXmlNode>& Children() const;

	/// A new element at the end of the bound list, made for what a file holds, unless the list says that it is none.
	void AppendElement(const TString& name, bool hasType);

	/// The member of that name. Files hold members in the order of declaration as a rule, so the expected place is
	/// looked at first and then its neighbourhood. occurrence: how many siblings of this name came before, for lists
	/// with members of their own. Null for an unknown name.
	TXmlNode* FindChild(const TString& name, int32_t expectedIndex, int32_t occurrence);

	/// Elements of this name may be meant one by one.
	bool CountsOccurrences() const noexcept;

private:
	TXmlNode(const TString& name, uint32_t flags, TDocumentNode* node, TObservable* value);

	std::vector<TXmlNode> CollectChildren() const;
	bool ChildNamesAreUnique() const noexcept;
	bool IsChild(int32_t index, const TString& name) const;

	TString mName;
	uint32_t mFlags;
	TDocumentNode* mpNode;
	TSerializable* mpValue = nullptr;
	TObservableListBase* mpObservableList = nullptr;
	mutable std::optional<TString> mText;
	mutable std::optional<std::vector<TXmlNode>> mChildren;
};
