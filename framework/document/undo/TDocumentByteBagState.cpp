// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TDocumentByteBagState.h"

#include "framework/document/nodes/TNameRules.h"
#include "framework/document/undo/TDocumentRoot.h"

TDocumentByteBagState::TDocumentByteBagState() : mpData(MakePtr<TDocumentByteBag>()) {
	Declare(mByteBagPath, "mByteBagPath");
	AddChild(mpData.Get(), TNameRules::MemberNameToElementName("mpData"), kWrite);
	FinishDeclaration();
}

TDocumentByteBagState::TDocumentByteBagState(const TDocumentRoot& root, const TDocumentByteBag& bag)
    : TDocumentByteBagState() {
	mByteBagPath.Set(bag.BuildPath(&root));
	mpData->SetData(bag.Data().data(), bag.Data().size());
}

void TDocumentByteBagState::Restore(TDocumentRoot& root) {
	TDocumentNode* node = root.ChildAtPath(mByteBagPath.Get());
	if (node && node->IsByteBag())
		static_cast<TDocumentByteBag*>(node)->SetData(mpData->Data().data(), mpData->Data().size());
}
