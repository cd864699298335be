// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TMenuEntry.h"

#include <unordered_map>

namespace {

std::unordered_map<int, TMenuEntry*>& LivingEntries() {
	static std::unordered_map<int, TMenuEntry*> entries;
	return entries;
}

int NextId() {
	static int id = 0;
	return ++id;
}

} // namespace

TMenuEntry::TMenuEntry() : mId(NextId()) {
	LivingEntries()[mId] = this;
}

TMenuEntry::TMenuEntry(const TFunctionPtr<void>& action) : TMenuEntry() {
	mAction = action;
}

TMenuEntry::TMenuEntry(const TFunctionPtr<void, int>& idAction) : TMenuEntry() {
	mIdAction = idAction;
}

TMenuEntry::TMenuEntry(const TList<TPtr<TMenuEntry>>& subEntries) : TMenuEntry() {
	mSubEntries = subEntries;
}

TMenuEntry::TMenuEntry(const TString& text, const TFunctionPtr<void>& action) : TMenuEntry(action) {
	mText = text;
}

TMenuEntry::TMenuEntry(const TString& text, const TFunctionPtr<void, int>& idAction) : TMenuEntry(idAction) {
	mText = text;
}

TMenuEntry::TMenuEntry(const TString& text, const TList<TPtr<TMenuEntry>>& subEntries) : TMenuEntry(subEntries) {
	mText = text;
}

TMenuEntry::~TMenuEntry() {
	LivingEntries().erase(mId);
}

TMenuEntry* TMenuEntry::WithId(int id) {
	const auto found = LivingEntries().find(id);
	return found == LivingEntries().end() ? nullptr : found->second;
}

void TMenuEntry::SetSeparator(int kind, const TString& caption) {
	mSeparatorAbove = kind;
	mSeparatorCaption = caption;
}

TString TMenuEntry::Label() const {
	return mTextFunctor ? mText + " " + mTextFunctor() : mText;
}

void TMenuEntry::Run() const {
	if (mAction)
		mAction();
	else if (mIdAction)
		mIdAction(mId);
	else if (mBoundAction)
		mBoundAction(false, false);
}
