// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/gui/keyboard/TKeyCommand.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/keyboard/TTypeRecord.h"

/// A key and the command it calls. Main thread.
class TKeyBinding final : public TDocumentNode {
public:
	TKeyBinding();

	TObservableBaseType<TString>& Topic() noexcept { return mTopic; }

	TObservableBaseType<TString>& Binding() noexcept { return mBinding; }

	TKeyboardKey& Key() noexcept { return mKey; }

	const TKeyboardKey& Key() const noexcept { return mKey; }

	bool IsRepeatable() const noexcept { return mRepeatable; }

	void SetRepeatable(bool repeatable) noexcept { mRepeatable = repeatable; }

	const TKeyCommand& Action() const noexcept { return mAction; }

	void SetAction(const TKeyCommand& action) { mAction = action; }

private:
	TObservableBaseType<TString> mTopic;
	TObservableBaseType<TString> mBinding;
	TKeyboardKey mKey;
	bool mRepeatable = true;
	TKeyCommand mAction;
};

/// The bindings of one class of views. Main thread.
class TKeyboardCategory final : public TDocumentNode {
public:
	TKeyboardCategory();

	TObservableBaseType<TString>& Identifier() noexcept { return mIdentifier; }

	const TTypeRecord* Class() const noexcept { return mClass; }

	void SetClass(const TTypeRecord& record) noexcept { mClass = &record; }

	TDocumentList<TKeyBinding>& KeyBindings() const noexcept { return *mpKeyBindings; }

private:
	TObservableBaseType<TString> mIdentifier;
	const TTypeRecord* mClass = nullptr;
	TPtr<TDocumentList<TKeyBinding>> mpKeyBindings;
};

/// Which keys call which commands, by the class of the view that has the focus. Main thread.
class TKeyboardBindings final : public TDocumentRoot {
public:
	TKeyboardBindings();

	TDocumentList<TKeyboardCategory>& Categories() const noexcept { return *mpCategories; }

	/// In either case; null if there is none.
	TKeyboardCategory* CategoryNamed(const TString& name) const;
	/// The last one whose class is a kind of this one; null if there is none.
	TKeyboardCategory* CategoryOf(const TTypeRecord& record) const;
	/// Calls all commands that the key has there. False if there is none.
	bool Dispatch(const TTypeRecord& record, const TKeyboardKey& key, bool isRelease, bool isRepeat) const;
	/// No key if there is none.
	TKeyboardKey KeyOfAction(const TKeyCommand& action) const;
	/// Names in either case.
	TKeyboardKey KeyOf(const TString& category, const TString& topic, const TString& binding) const;
	/// The identifier; empty if there is none.
	TString CategoryOfAction(const TKeyCommand& action) const;
	/// The binding's name; empty if there is none.
	TString NameOfAction(const TKeyCommand& action) const;

private:
	struct TPlace {
		TKeyboardCategory* mpCategory;
		TKeyBinding* mpBinding;
	};

	TPlace PlaceOf(const TKeyCommand& action) const;

	TPtr<TDocumentList<TKeyboardCategory>> mpCategories;
};
