// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "tests/support/TFrameworkFixture.h"

#include <array>

namespace {

static_assert(sizeof(TDocumentNode) <= 160, "a bank has thousands");

/// A node that writes its hooks down, "name:hook", and lets a test play the part of the file engine.
template <class TBase>
class TScribe : public TBase {
public:
	TScribe(const char* name, std::string& journal) : mName(name), mJournal(journal) { this->FinishDeclaration(); }

	using TBase::AddChild;
	using TBase::BeginLoad;
	using TBase::BeginSave;
	using TBase::BeginUndoRedo;
	using TBase::EndLoad;
	using TBase::EndSave;
	using TBase::EndUndoRedo;

	void OnModified() override { Write("modified"); }

	void OnModifiedCleared() override { Write("cleared"); }

	void OnBeforeAttach() override { Write("before"); }

	void OnAfterAttach() override { Write("attached"); }

	void OnBeforeDetach() override { Write("leaving"); }

	void OnAfterDetach() override { Write("detached"); }

	void OnAttachedToRoot(TDocumentRoot*) override { Write("rooted"); }

	void OnDetachedFromRoot(TDocumentRoot*) override { Write("uprooted"); }

	void OnLoadBegin() override { Write(this->IsLoading() ? "load" : "load?"); }

	void OnLoadEnd(bool success) override { Write(success ? "loaded" : "failed"); }

	void OnAfterLoad() override { Write("after"); }

	void OnPrepareSave() override { Write("prepare"); }

	void OnSaveBegin() override { Write("save"); }

	void OnSaveEnd(bool success) override { Write(success ? "saved" : "failed"); }

	void OnUndoRedoBegin() override { Write("undo"); }

	void OnUndoRedoEnd() override { Write("undone"); }

	std::string mName;

private:
	void Write(const char* hook) { mJournal += mName + ":" + hook + " "; }

	std::string& mJournal;
};

using TNode = TScribe<TDocumentNode>;

class TRoot final : public TScribe<TDocumentRoot> {
public:
	using TScribe::TScribe;
	std::string mChanges;

protected:
	void UndoTransactionBegun() override { mChanges += "( "; }

	void UndoTransactionEnded() override { mChanges += ") "; }
};

class TDocumentNodeTest : public TFrameworkFixture {
protected:
	std::string Told() { return std::exchange(mJournal, {}); }

	std::string mJournal;
	TRoot mRoot{"r", mJournal};
	TNode mA{"a", mJournal};
	TNode mB{"b", mJournal};
};

std::string MembersOf(const TDocumentNode& node) {
	std::string text;
	const auto write = [&](const auto& property) { text += std::string(property.mName.CString()) + " "; };
	node.VisitMembers(write, write);
	return text;
}

} // namespace

TEST_F(TDocumentNodeTest, KeepsTheOrderOfDeclarationAcrossKinds) {
	std::array<TObservableBaseType<int>, 3> values;
	mRoot.AddProperty(&values[0], "First", kWrite);
	mRoot.AddChild(&mA, "A", kWrite);
	mRoot.AddComment("and");
	mRoot.AddProperty(&values[1], "Second", kWrite);
	mRoot.AddProperty(&values[2], "Third", kWrite);
	mRoot.AddChild(&mB, "B", kWrite, 0);
	EXPECT_EQ(MembersOf(mRoot), "First B A and Second Third ");
	for (int i = 0; i < 2; ++i) { // the second time there is nothing to remove
		mRoot.RemoveProperty(&values[1]);
		mRoot.RemoveChild(&mA);
		EXPECT_EQ(MembersOf(mRoot), "First B and Third ");
	}
	EXPECT_EQ(mRoot.NameOfProperty(&values[1]), "");
}

TEST_F(TDocumentNodeTest, AttachingTellsTheNodeAndTheWholeSubtreeOfTheRoot) {
	auto parent = MakePtr<TNode>("p", mJournal);
	parent->AddChild(&mA, "A", kWrite);
	parent = nullptr;
	EXPECT_EQ(mA.Parent(), nullptr) << "a parent that dies leaves its children alone";
	EXPECT_EQ(mA.NameInParent(), "");
	mA.AddChild(&mB, "B", kWrite);
	EXPECT_EQ(Told(), "a:before a:attached b:before b:attached ");
	mRoot.AddChild(&mA, "A", kWrite);
	EXPECT_EQ(Told(), "a:before a:attached a:rooted b:rooted ");
	EXPECT_EQ(mB.Root(), &mRoot);
	mRoot.RemoveChild(&mA);
	EXPECT_EQ(Told(), "a:leaving a:detached a:uprooted b:uprooted ");
	EXPECT_EQ(mB.Root(), nullptr);
}

TEST_F(TDocumentNodeTest, ChildTakesOverTheStateOfItsParent) {
	TNode leaf("l", mJournal);
	mA.AddChild(&mB, "B", 0);
	mA.AddChild(&leaf, "Leaf", kWrite);
	mRoot.BeginLoad();
	mRoot.BeginUndoRedo();
	mRoot.AddChild(&mA, "A", kWrite);
	EXPECT_TRUE(mA.IsLoading());
	EXPECT_TRUE(mA.IsUndoing());
	EXPECT_FALSE(mB.IsLoading()); // does not persist
	EXPECT_TRUE(leaf.IsLoading());
	EXPECT_FALSE(leaf.IsUndoing()); // is not recorded
	mRoot.EndLoad(true);
	EXPECT_FALSE(mA.IsLoading());
	EXPECT_FALSE(mA.IsUndoing());
}

TEST_F(TDocumentNodeTest, LoadSaveAndUndoVisitThePartsThatTheFlagsName) {
	TNode reader("x", mJournal);
	TNode aside("y", mJournal);
	mRoot.AddChild(&mA, "A", kWrite | kUndoable);
	mA.AddChild(&mB, "B", kWrite);
	mRoot.AddChild(&reader, "X", kRead);
	mRoot.AddChild(&aside, "Y", 0);
	mA.Touch();
	Told();
	mRoot.BeginLoad();
	EXPECT_EQ(Told(), "r:load a:load b:load x:load ");
	mRoot.EndLoad(true);
	EXPECT_EQ(
	    Told(), "b:loaded a:loaded x:loaded r:loaded r:after a:after b:after x:after y:after "
	            "r:cleared a:cleared b:cleared x:cleared y:cleared ");
	EXPECT_FALSE(mRoot.IsModified());
	mA.BeginLoad();
	mA.EndLoad(false);
	EXPECT_EQ(Told(), "a:load b:load b:failed a:failed ");
	mRoot.BeginSave();
	EXPECT_TRUE(mB.IsSaving());
	mRoot.EndSave(false);
	EXPECT_EQ(
	    Told(), "r:prepare a:prepare b:prepare x:prepare y:prepare r:save a:save b:save "
	            "r:failed a:failed b:failed ");
	EXPECT_FALSE(mB.IsSaving());
	mRoot.BeginUndoRedo();
	mRoot.EndUndoRedo();
	EXPECT_EQ(Told(), "r:undo a:undo r:undone a:undone ");
}

TEST_F(TDocumentNodeTest, TouchGoesUpAndClearingGoesDown) {
	mRoot.AddChild(&mA, "A", kWrite);
	mA.AddChild(&mB, "B", kWrite);
	Told();
	mA.Touch();
	EXPECT_EQ(Told(), "a:modified r:modified ");
	EXPECT_TRUE(mRoot.IsSecondaryModified());
	mRoot.ClearSecondaryModified();
	EXPECT_FALSE(mRoot.IsSecondaryModified());
	EXPECT_TRUE(mA.IsModified());
	mRoot.ClearModified();
	EXPECT_FALSE(mA.IsModified());
	EXPECT_EQ(Told(), "r:cleared a:cleared b:cleared ");
}

TEST_F(TDocumentNodeTest, ChangesCountInsideAnActionFromTheMainThreadAndUndoableAllTheWay) {
	TObservableBaseType<int> value{1};
	TObservableBaseType<int> plain{1};
	mA.AddProperty(&value, "Value", kWrite | kUndoable);
	mA.AddProperty(&plain, "Plain", kWrite);
	mRoot.AddChild(&mA, "A", kWrite | kUndoable);
	value.Set(2);
	EXPECT_EQ(mRoot.mChanges, "");
	EXPECT_FALSE(mRoot.IsModified());
	mRoot.BeginAction();
	value.Set(3);
	plain.Set(3);
	{
		const TDocumentRoot::TSuppressGuard guard(mRoot);
		value.Set(4);
	}
	{
		const TThreadManager::TScope none(kNoThread);
		const TThreadManager::TScope audio(kAudioThread);
		value.Set(5);
	}
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_TRUE(mRoot.IsModified());
	mRoot.RemoveChild(&mA);
	mRoot.AddChild(&mA, "A", kWrite);
	value.Set(6);
	mRoot.EndAction();
	EXPECT_EQ(mRoot.mChanges, "( ) ");
	mRoot.Undo();
	EXPECT_EQ(value.Get(), 2);
	EXPECT_EQ(plain.Get(), 3);
	mRoot.Redo();
	EXPECT_EQ(value.Get(), 3);
	mA.RemoveProperty(&value);
	EXPECT_FALSE(value.HasObservers());
}

TEST_F(TDocumentNodeTest, PathsLeadBackToWhatTheyWereBuiltFrom) {
	TDocumentList<TDocumentNode> lists;
	const auto inner = MakePtr<TDocumentList<TDocumentNode>>();
	const auto node = MakePtr<TNode>("n", mJournal);
	TObservableList<TObservableList<TObservableBaseType<int>>> table;
	TObservableBaseType<int> value;
	mRoot.AddChild(&mA, "A", kWrite);
	mA.AddChild(&lists, "Items", kWrite);
	lists.Insert(new TNode("x", mJournal));
	lists.Insert(inner.Get());
	inner->Insert(node.Get());
	node->AddProperty(&value, "Value", kWrite);
	node->AddProperty(&table, "Table", kWrite);
	TObservable* cell = table.Append()->Append();

	EXPECT_EQ(mRoot.BuildPath(&mRoot), "/");
	EXPECT_EQ(node->BuildPath(&mRoot), "/A/Items[1][0]");
	EXPECT_EQ(node->BuildPath(inner.Get()), "/[0]");
	EXPECT_EQ(mRoot.BuildPath(node.Get()), "");
	EXPECT_EQ(node->BuildValuePath(cell, &mRoot), "/A/Items[1][0]/Table[0][0]");
	EXPECT_EQ(mRoot.BuildValuePath(cell, &mRoot), "");

	EXPECT_EQ(mRoot.ChildAtPath("/"), &mRoot);
	EXPECT_EQ(mRoot.ChildAtPath("/A/Items[1][0]"), node.Get());
	EXPECT_EQ(inner->ChildAtPath("/[0]"), node.Get());
	EXPECT_EQ(mRoot.ValueAtPath("/A/Items[1][0]/Value"), &value);
	EXPECT_EQ(mRoot.ValueAtPath("/A/Items[1][0]/Table[0][0]"), cell);
	for (const char* wrong : {"/B", "/A/Items[2]", "/A/Items[1][0]/Value", "/A[0]", "/A/Items[", "//"})
		EXPECT_EQ(mRoot.ChildAtPath(wrong), nullptr) << wrong;
	for (const char* wrong : {"", "/", "/A", "/A/Items[1][0]", "/A/Items[1][0]/Value[0]", "/A/Items[0]/Value"})
		EXPECT_EQ(mRoot.ValueAtPath(wrong), nullptr) << wrong;
}

TEST_F(TDocumentNodeTest, RegistryMakesNodesByAnyFormOfTheirName) {
	TDocumentClassRegistry::RegisterClass<TDocumentList<TDocumentByteBag>>("TDocumentList<TDocumentByteBag>");
	for (const char* name :
	     {"DocumentList<DocumentByteBag>", "TDocumentList<TDocumentByteBag>", "DocumentList<TDocumentByteBag>"}) {
		const auto made = TDocumentClassRegistry::CreateByTypeName(name);
		ASSERT_TRUE(made) << name;
		EXPECT_EQ(made->NewInstance()->TypeName(), "DocumentList<DocumentByteBag>");
	}
	EXPECT_FALSE(TDocumentClassRegistry::CreateByTypeName("Unheard"));
	EXPECT_FALSE(mA.NewInstance());
}
