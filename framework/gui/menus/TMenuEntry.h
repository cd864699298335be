// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakReferenceable.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/graphics/bitmaps/TBitmap.h"
#include "framework/gui/keyboard/TKeyCommand.h"
#include "framework/gui/keyboard/TKeyboardKey.h"

#include <cstdint>

/// One line of a context menu. Main thread.
class TMenuEntry final : public TReferenceCountable, public TWeakReferenceable {
public:
	enum TSeparator : int32_t { kNoSeparator = 0, kSeparatorAbove = 1 };

	explicit TMenuEntry(const TFunctionPtr<void>& action);
	/// Called with the entry's id.
	explicit TMenuEntry(const TFunctionPtr<void, int>& idAction);
	/// Opens a menu of its own.
	explicit TMenuEntry(const TList<TPtr<TMenuEntry>>& subEntries);
	TMenuEntry(const TString& text, const TFunctionPtr<void>& action);
	TMenuEntry(const TString& text, const TFunctionPtr<void, int>& idAction);
	TMenuEntry(const TString& text, const TList<TPtr<TMenuEntry>>& subEntries);
	~TMenuEntry() override;

	/// Null unless it lives.
	static TMenuEntry* WithId(int id);

	int Id() const noexcept { return mId; }

	/// Functors come before fixed states. That of the text adds to the label, behind a blank.
	void SetText(const TString& text) { mText = text; }

	void SetTextFunctor(const TFunctionPtr<TString>& functor) { mTextFunctor = functor; }

	void SetEnabled(bool enabled) { mEnabled = enabled; }

	void SetEnabledFunctor(const TFunctionPtr<bool>& functor) { mEnabledFunctor = functor; }

	void SetChecked(bool checked) { mChecked = checked; }

	void SetCheckedFunctor(const TFunctionPtr<bool>& functor) { mCheckedFunctor = functor; }

	/// TSeparator. The caption stands within the separator.
	void SetSeparator(int kind, const TString& caption = TString());
	void SetIcon(const TPtr<TBitmap>& icon) { mIcon = icon; }

	/// Shown on the right.
	void SetKey(const TKeyboardKey& key) { mKey = key; }

	/// What a key binding calls. Runs where the entry has no action.
	void SetBoundAction(const TKeyCommand& command) { mBoundAction = command; }

	TString Label() const;

	bool IsEnabled() const { return mEnabledFunctor ? mEnabledFunctor() : mEnabled; }

	bool IsChecked() const { return mCheckedFunctor ? mCheckedFunctor() : mChecked; }

	bool HasSeparator() const noexcept { return mSeparatorAbove != kNoSeparator; }

	const TString& SeparatorCaption() const noexcept { return mSeparatorCaption; }

	TBitmap* Icon() const noexcept { return mIcon.Get(); }

	const TKeyboardKey& Key() const noexcept { return mKey; }

	const TKeyCommand& BoundAction() const noexcept { return mBoundAction; }

	const TList<TPtr<TMenuEntry>>& SubEntries() const noexcept { return mSubEntries; }

	bool HasSubEntries() const noexcept { return !mSubEntries.IsEmpty(); }

	/// The action, else the one with the id, else the bound one.
	void Run() const;

private:
	TMenuEntry();

	const int mId;
	TString mText;
	TFunctionPtr<TString> mTextFunctor;
	bool mEnabled = true;
	TFunctionPtr<bool> mEnabledFunctor;
	bool mChecked = false;
	TFunctionPtr<bool> mCheckedFunctor;
	int mSeparatorAbove = kNoSeparator;
	TString mSeparatorCaption;
	TPtr<TBitmap> mIcon;
	TFunctionPtr<void> mAction;
	TFunctionPtr<void, int> mIdAction;
	TKeyCommand mBoundAction;
	TKeyboardKey mKey;
	TList<TPtr<TMenuEntry>> mSubEntries;
};
