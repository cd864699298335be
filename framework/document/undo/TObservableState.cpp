// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TObservableState.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/document/xml/NestedXml.h"

TObservableState::TObservableState() {
	Declare(mParentNodePath, "mParentNodePath");
	Declare(mObservablePath, "mObservablePath");
	Declare(mObservableValue, "mObservableValue");
	Declare(mObservablePropertyName, "mObservablePropertyName");
	FinishDeclaration();
}

TObservableState::TObservableState(const TDocumentRoot& root, const TDocumentNode& parent, const TSerializable& value)
    : TObservableState() {
	mParentNodePath.Set(parent.BuildPath(&root));
	mObservablePath.Set(parent.RelativeValuePath(&value));
	mObservableValue.Set(value.ToString());
	if (value.IsNestedXml())
		mObservablePropertyName.Set(parent.NameOfProperty(&value));
}

void TObservableState::Restore(TDocumentRoot& root) {
	const TDocumentNode* parent = root.ChildAtPath(mParentNodePath.Get());
	auto* value = parent ? dynamic_cast<TSerializable*>(parent->ValueAtPath(mObservablePath.Get())) : nullptr;
	if (value)
		NestedXml::Fill(*value, mObservableValue.Get(), mObservablePropertyName.Get());
}
