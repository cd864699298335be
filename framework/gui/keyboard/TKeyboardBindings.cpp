// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/keyboard/TKeyboardBindings.h"

#include "framework/document/nodes/TXmlDocument.h"
#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"

using TNameRules::MemberNameToElementName;

TKeyBinding::TKeyBinding() {
	ReserveMembers(3, 0);
	AddProperty(&mTopic, MemberNameToElementName("mTopic"), kWrite);
	AddProperty(&mBinding, MemberNameToElementName("mBinding"), kWrite);
	AddProperty(&mKey, MemberNameToElementName("mKey"), kWrite);
	FinishDeclaration();
}

TKeyboardCategory::TKeyboardCategory() : mpKeyBindings(MakePtr<TDocumentList<TKeyBinding>>()) {
	ReserveMembers(1, 1);
	mpKeyBindings->DeclareElementClass();
	AddProperty(&mIdentifier, MemberNameToElementName("mIdentifier"), kWrite);
	AddChild(mpKeyBindings.Get(), MemberNameToElementName("mpKeyBindings"), kWrite);
	FinishDeclaration();
}

namespace {

constexpr const char* kStyleSheet = "KeyBindings.xslt";

/// Fetches the style sheet from the resources when it is missing beside the user's files. Tried once in a process.
bool HasStyleSheet() {
	static const bool sIsThere = [] {
		const TString path = Folders::Preferences().FilePath(kStyleSheet);
		return TFile(path).Exists() ||
		       CopyFile(Folders::ResourceBase().Descend("Stylesheets").FilePath(kStyleSheet), path);
	}();
	return sIsThere;
}

} // namespace

TKeyboardBindings::TKeyboardBindings() : mpCategories(MakePtr<TDocumentList<TKeyboardCategory>>()) {
	ReserveMembers(0, 1);
	mpCategories->DeclareElementClass();
	AddChild(mpCategories.Get(), MemberNameToElementName("mpCategories"), kWrite);
	FinishDeclaration();
	if (HasStyleSheet())
		XmlDocument().SetStyleSheet(kStyleSheet);
}

TKeyboardCategory* TKeyboardBindings::CategoryNamed(const TString& name) const {
	for (int32_t index = 0; index < mpCategories->Size(); ++index)
		if ((*mpCategories)[index]->Identifier().Get().CompareIgnoringCase(name) == 0)
			return (*mpCategories)[index];
	return nullptr;
}

TKeyboardCategory* TKeyboardBindings::CategoryOf(const TTypeRecord& record) const {
	for (int32_t index = mpCategories->Size() - 1; index >= 0; --index) {
		TKeyboardCategory* category = (*mpCategories)[index];
		if (category->Class() && category->Class()->IsKindOf(record))
			return category;
	}
	return nullptr;
}

bool TKeyboardBindings::Dispatch(
    const TTypeRecord& record, const TKeyboardKey& key, bool isRelease, bool isRepeat) const {
	if (key.IsModifierKey())
		return false;
	// A binding on a key that moves also fires while the move extends a selection.
	const TKeyboardKey bound(key.Code(), key.IsSelectionMoveKey() ? 0 : key.Modifiers());
	const TPtr<TKeyboardCategory> category = CategoryOf(record);
	bool isHandled = false;
	for (int32_t index = 0; category && index < category->KeyBindings().Size(); ++index) {
		const TPtr<TKeyBinding> binding = category->KeyBindings()[index];
		if (!(binding->Key() == bound) || (isRepeat && !binding->IsRepeatable()) || !binding->Action())
			continue;
		binding->Action()(isRelease, isRepeat);
		isHandled = true;
	}
	return isHandled;
}

TKeyboardBindings::TPlace TKeyboardBindings::PlaceOf(const TKeyCommand& action) const {
	for (int32_t index = 0; index < mpCategories->Size(); ++index) {
		TKeyboardCategory* category = (*mpCategories)[index];
		for (int32_t place = 0; place < category->KeyBindings().Size(); ++place)
			if (category->KeyBindings()[place]->Action() == action)
				return {category, category->KeyBindings()[place]};
	}
	return {};
}

TKeyboardKey TKeyboardBindings::KeyOfAction(const TKeyCommand& action) const {
	const TPlace place = PlaceOf(action);
	return place.mpBinding ? place.mpBinding->Key() : TKeyboardKey();
}

TString TKeyboardBindings::CategoryOfAction(const TKeyCommand& action) const {
	const TPlace place = PlaceOf(action);
	return place.mpCategory ? place.mpCategory->Identifier().Get() : TString();
}

TString TKeyboardBindings::NameOfAction(const TKeyCommand& action) const {
	const TPlace place = PlaceOf(action);
	return place.mpBinding ? place.mpBinding->Binding().Get() : TString();
}

TKeyboardKey TKeyboardBindings::KeyOf(const TString& category, const TString& topic, const TString& binding) const {
	const TKeyboardCategory* found = CategoryNamed(category);
	for (int32_t index = 0; found && index < found->KeyBindings().Size(); ++index) {
		TKeyBinding* candidate = found->KeyBindings()[index];
		if (candidate->Topic().Get().CompareIgnoringCase(topic) == 0 &&
		    candidate->Binding().Get().CompareIgnoringCase(binding) == 0)
			return candidate->Key();
	}
	return {};
}
