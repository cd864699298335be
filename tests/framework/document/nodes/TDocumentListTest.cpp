// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/text/TReadableException.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TJournal.h"

class TShelfBook : public TDocumentNode {
public:
	TShelfBook() { FinishDeclaration(); }
};

class TShelfAtlas final : public TShelfBook {};

namespace {

class TShelf final : public TDocumentList<TShelfBook> {
public:
	void AddLabel() { AddProperty(&mLabel, "Label", kWrite); }

	void AddSign(TDocumentNode* sign) { AddChild(sign, "Sign", kWrite); }

private:
	TObservableBaseType<TString> mLabel;
};

class TDocumentListTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		TDocumentClassRegistry::RegisterClass<TShelfBook>("TShelfBook");
		TDocumentClassRegistry::RegisterClass<TShelfAtlas>("TShelfAtlas");
		mShelf.SetItemName("Book");
	}

	TShelf mShelf;
};

std::string NamesOfChildren(const TDocumentNode& node) {
	std::string names;
	for (const auto& child : node.Children())
		names += std::string(child.mName.CString()) + " ";
	return names;
}

} // namespace

// "+2@0:1" is kWillChange of an insertion at 0 while the list holds one element.
TEST_F(TDocumentListTest, ElementsBecomeChildrenAndEveryChangeIsToldTwice) {
	TJournal journal;
	const auto noteElement = [](TObservable* observable, int32_t) {
		const auto* event = dynamic_cast<TDocumentListElementEvent*>(observable);
		return "@" + std::to_string(event->Index()) + ":" + std::to_string(event->List()->Size());
	};
	journal.Watch(mShelf.Added(), noteElement);
	journal.Watch(mShelf.Removed(), [&](auto* event, int32_t reason) { return "-" + noteElement(event, reason); });
	journal.Watch(mShelf.Swapped(), [](TObservable* observable, int32_t) {
		const auto* event = dynamic_cast<TDocumentListElementsSwappedObservable*>(observable);
		return "x" + std::to_string(event->Index1()) + std::to_string(event->Index2());
	});
	const TPtr<TShelfBook> a = MakePtr<TShelfBook>();
	mShelf.Insert(a.Get());
	mShelf.Insert(new TShelfBook);
	EXPECT_EQ(journal.Told(), "2@0:0 3@0:1 2@1:1 3@1:2 ");
	mShelf.Insert(new TShelfBook, 0);
	EXPECT_EQ(journal.Told(), "2@0:2 3@0:3 ");
	mShelf.Swap(0, 2);
	EXPECT_EQ(journal.Told(), "2x02 3x02 ");
	EXPECT_EQ(mShelf.Children()[0].mpValue, mShelf[0]);
	EXPECT_EQ(mShelf.IndexOf(a.Get()), 1);
	mShelf.Remove(1);
	EXPECT_EQ(journal.Told(), "2-@1:3 3-@1:2 ");
	EXPECT_EQ(a->Parent(), nullptr);
	EXPECT_EQ(mShelf.IndexOf(a.Get()), -1);
	mShelf.Clear();
	EXPECT_EQ(journal.Told(), "2-@1:2 3-@1:1 2-@0:1 3-@0:0 ");
	EXPECT_EQ(mShelf.Children().Count(), 0);
}

TEST_F(TDocumentListTest, ElementsKeepTheirPlaceBehindMembersOfTheListsOwn) {
	TShelfBook sign;
	mShelf.AddLabel();
	mShelf.AddSign(&sign);
	const std::array books{new TShelfBook, new TShelfBook, new TShelfBook};
	for (TShelfBook* book : books)
		mShelf.Insert(book);
	mShelf.Move(2, 0);
	mShelf.Remove(1);
	EXPECT_EQ(mShelf.Children()[0].mpValue, &sign);
	EXPECT_EQ(mShelf.Children()[1].mpValue, books[2]);
	EXPECT_EQ(sign.BuildPath(&mShelf), "/Sign");
	EXPECT_EQ(books[1]->BuildPath(&mShelf), "/[1]");
	EXPECT_FALSE(mShelf.CreateFromXml("Vase", false)) << "might be a member of a later version";
}

TEST_F(TDocumentListTest, DeclaredClassesDecideHowElementsAreNamed) {
	mShelf.Insert(new TShelfBook);
	mShelf.Insert(new TShelfAtlas);
	EXPECT_EQ(NamesOfChildren(mShelf), "ShelfBook ShelfAtlas ");
	EXPECT_EQ(mShelf[1]->StoredTypeName(), "ShelfAtlas");
	EXPECT_EQ(mShelf.CreateFromXml("ShelfAtlas", false)->TypeName(), "ShelfAtlas");
	EXPECT_THROW(mShelf.CreateFromXml("Vase", false), TReadableException);

	TShelf ofOneClass;
	ofOneClass.SetItemName("Book");
	ofOneClass.DeclareElementClass();
	ofOneClass.Insert(new TShelfBook);
	ofOneClass.Insert(new TShelfAtlas);
	EXPECT_EQ(NamesOfChildren(ofOneClass), "Book Book ");
	EXPECT_EQ(ofOneClass[0]->StoredTypeName(), "") << "is not named";
	EXPECT_EQ(ofOneClass[1]->StoredTypeName(), "ShelfAtlas");
	EXPECT_EQ(ofOneClass.CreateFromXml("Book", false)->TypeName(), "ShelfBook");
	EXPECT_EQ(ofOneClass.CreateFromXml("ShelfAtlas", true)->TypeName(), "ShelfAtlas");

	TShelf named;
	named.DeclareElementClass("TShelfBook", "Volume");
	named.DeclareElementClass("TShelfAtlas", "Maps");
	named.Insert(new TShelfAtlas);
	named.Insert(new TShelfBook);
	EXPECT_EQ(NamesOfChildren(named), "Maps Volume ");
	EXPECT_EQ(named[0]->Attributes().Count(), 0) << "the name tells the class";
	EXPECT_EQ(named.CreateFromXml("Maps", false)->TypeName(), "ShelfAtlas");
}

TEST_F(TDocumentListTest, NestedListTakesTheSingularOfTheItemName) {
	TDocumentList<TDocumentNode> outer;
	outer.SetItemName("Shelves");
	const auto inner = MakePtr<TShelf>();
	outer.Insert(inner.Get());
	EXPECT_EQ(inner->ItemName(), "Shelve");
}
