// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/observables/TSerializableList.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/document/undo/TUndoChain.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "platform/headless/THeadlessFolders.h"
#include "tests/support/StreamText.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"

#include <string>
#include <vector>

inline constexpr uint32_t kKept = kWrite | kUndoable;

/// A value that is XML. Knows itself only under the name by which files hold it.
class TUndoXmlValue final : public TSerializable {
public:
	bool IsPlainText() const override { return false; }

	bool IsNestedXml() const override { return true; }

	TString ToString() const override {
		return mText.IsEmpty() ? TString() : "<Inner><Text>" + mText + "</Text></Inner>";
	}

	void FromString(const TString& text) override {
		if (!text.IsEmpty() && text.Find("<Xml>") < 0)
			return;
		const int32_t start = text.Find("<Text>") + 6;
		NotifyObservers(kWillChange);
		mText = text.IsEmpty() ? TString() : text.SubString(start, text.Find("</Text>"));
		NotifyObservers(kDidChange);
	}

	TString mText;
};

/// A node with everything that can be recorded, among it more of its kind.
class TUndoLeaf final : public TDocumentNode {
public:
	TUndoLeaf() {
		AddProperty(&mNumber, "Number", kKept);
		AddProperty(&mText, "Text", kKept);
		AddProperty(&mRatio, "Ratio", kKept);
		AddProperty(&mSteps, "Steps", kKept);
		AddProperty(&mXml, "Xml", kKept);
		AddProperty(&mTags, "Tags", kKept);
		AddChild(&*mpBag, "Bag", kKept);
		mpLeaves->DeclareElementClass();
		AddChild(&*mpLeaves, "Leaves", kKept);
		FinishDeclaration();
	}

	/// A leaf that gets a leaf of its own as soon as it belongs somewhere.
	void OnAfterAttach() override {
		if (std::exchange(mSprouts, false))
			mpLeaves->Insert(new TUndoLeaf);
	}

	void AddTag(int32_t index, const TString& text) {
		mTags.InsertNewElement(
		    index, [&text](TObservable& tag) { static_cast<TObservableBaseType<TString>&>(tag).Set(text); });
	}

	void SetSteps(const TString& text) {
		mSteps.NotifyObservers(kWillChange);
		mSteps.FromString(text);
		mSteps.NotifyObservers(kDidChange);
	}

	bool mSprouts = false;
	TObservableBaseType<int> mNumber{0};
	TObservableBaseType<TString> mText;
	TObservableBaseType<float> mRatio{0.0f};
	TSerializableList<int> mSteps;
	TUndoXmlValue mXml;
	TObservableList<TObservableBaseType<TString>> mTags;
	TPtr<TDocumentByteBag> mpBag = MakePtr<TDocumentByteBag>();
	TPtr<TDocumentList<TUndoLeaf>> mpLeaves = MakePtr<TDocumentList<TUndoLeaf>>();
};

class TUndoRoot final : public TDocumentRoot {
public:
	TUndoRoot() {
		AddChild(&*mpTop, "Top", kKept);
		FinishDeclaration();
	}

	std::string Snapshot() {
		TStream xml;
		SaveToStream(xml, true);
		return TextOf(xml);
	}

	void OnUndoRedoBegin() override { mHooks += "b"; }

	void OnUndoRedoEnd() override { mHooks += "e"; }

	TPtr<TUndoLeaf> mpTop = MakePtr<TUndoLeaf>();
	double mMilliseconds = 0.0;
	std::string mHooks;

protected:
	void UndoTransactionBegun() override { mHooks += "("; }

	void UndoTransactionEnded() override { mHooks += ")"; }

	double MillisecondsSinceLastAction() const override { return mMilliseconds; }
};

/// A document whose temporary files lie in a folder of the test, with what the user is told.
class TUndoFixture : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		UseTemporary(mFolder.Directory());
		TDocumentClassRegistry::RegisterClass<TUndoLeaf>("TUndoLeaf");
		sTold.clear();
		TSystemGlobals::Instance()->SetMessageDialogFunction(
		    [](const TString&, const TString& text, TMessageKind) { sTold.emplace_back(text.CString()); });
		mpRoot = MakePtr<TUndoRoot>();
	}

	void TearDown() override {
		mpRoot = nullptr;
		Folders::UseSystem(nullptr);
		TFrameworkFixture::TearDown();
	}

	void UseTemporary(const TDirectory& folder) {
		mSystem.emplace(folder);
		Folders::UseSystem(&*mSystem);
	}

	/// One step of its own.
	template <class TChange>
	void Do(const TChange& change) {
		const TDocumentRoot::TActionGuard step(&*mpRoot);
		change(*mpRoot->mpTop);
	}

	void SetNumber(int number) {
		Do([number](TUndoLeaf& top) { top.mNumber.Set(number); });
	}

	int Number() const { return mpRoot->mpTop->mNumber.Get(); }

	TUndoChain& Chain() const { return *mpRoot->UndoChain(); }

	TTemporaryFolder mFolder;
	TPtr<TUndoRoot> mpRoot;
	static inline std::vector<std::string> sTold;

private:
	std::optional<THeadlessFolders> mSystem;
};
