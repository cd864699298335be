// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TRestorableState.h"

#include "framework/document/nodes/TNameRules.h"
#include "framework/document/undo/TDocumentByteBagState.h"
#include "framework/document/undo/TDocumentListState.h"
#include "framework/document/undo/TObservableListState.h"
#include "framework/document/undo/TObservableState.h"
#include "framework/document/undo/TUndoChain.h"

#include <array>

namespace {

struct TClass {
	const char* mTypeName;
	TRestorableState* (*mFactory)();
};

template <class T>
constexpr TClass Class(const char* typeName) {
	return {typeName, []() -> TRestorableState* { return new T; }};
}

constexpr auto kClasses = std::to_array<TClass>({
    Class<TVoidRestorableState>("VoidRestorableState"),
    Class<TObservableState>("ObservableState"),
    Class<TObservableListState>("ObservableListState"),
    Class<TObservableListElementsSwappedState>("ObservableListElementsSwappedState"),
    Class<TDocumentListState>("DocumentListState"),
    Class<TDocumentListElementsSwappedState>("DocumentListElementsSwappedState"),
    Class<TDocumentByteBagState>("DocumentByteBagState"),
});

} // namespace

TRestorableState::TRestorableState() = default;

TRestorableState::~TRestorableState() = default;

TPtr<TRestorableState> TRestorableState::CreateByTypeName(const TString& typeName) {
	for (const TClass& known : kClasses)
		if (typeName == known.mTypeName)
			return TPtr<TRestorableState>(known.mFactory());
	return nullptr;
}

void TRestorableState::SetUndoChain(TUndoChain* chain) {
	mpUndoChain = chain;
}

void TRestorableState::Declare(TObservable& member, const char* name) {
	AddProperty(&member, TNameRules::MemberNameToElementName(name), kWrite);
}
