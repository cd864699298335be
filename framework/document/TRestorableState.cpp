// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TRestorableState.h"

#include "framework/document/TDocumentByteBagState.h"
#include "framework/document/TDocumentListState.h"
#include "framework/document/TNameRules.h"
#include "framework/document/TObservableListState.h"
#include "framework/document/TObservableState.h"
#include "framework/document/TUndoChain.h"

#include <array>

namespace {

template <class T>
constexpr TRestorableState::TClass Class(const char* typeName) {
	return {typeName, []() -> TRestorableState* { return new T; }, []() -> TDocumentNode* { return new T; }};
}

constexpr auto kClasses = std::to_array<TRestorableState::TClass>({
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

std::span<const TRestorableState::TClass> TRestorableState::Classes() {
	return kClasses;
}

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
