// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TDocumentList.h"
#include "framework/document/TDocumentClassRegistry.h"
#include "framework/document/TObservableBaseType.h"
#include "framework/foundation/TReadableException.h"
#include "tests/support/TFrameworkFixture.h"

class TShelfBook : public TDocumentNode {
public:
	TShelfBook() { FinishDeclaration(); }

	explicit TShelfBook(char letter) : mLetter(letter) { FinishDeclaration(); }

	char mLetter = '?';
};

class TShelfAtlas final : public TShelfBook {
public:
	TShelfAtlas() { FinishDeclaration(); }
};

namespace {

class TShelf final : public TDocumentList<TShelfBook> {
public:
	void AddLabel() { AddProperty(&mLabel, "Label", kWrite); }

	void AddSign(TDocumentNode* sign) { AddChild(sign, "Sign", kWrite); }

	TString NamesOfChildren() const {
		TList<TString> names;
		for (const TChildProperty& child : Children())
			names.Append(child.mName);
		return TString::Join(names, " ");
	}

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

	std::string Letters() const {
		std::string letters;
		for (int32_t i = 0; i < mShelf.Size(); ++i)
			letters += mShelf[i]->mLetter;
		return letters;
	}

	void Fill(const char* letters) {
		for (; *letters; ++letters)
			mShelf.Insert(new TShelfBook(*letters));
	}

	TShelf mShelf;
};

/// "+2a0:1" is kWillChange of the insertion of a at 0 while the list holds one element.
class TShelfWatcher final : public TObserver {
public:
	explicit TShelfWatcher(TShelf& shelf) {
		shelf.Added().AddObserver({this, &TShelfWatcher::OnElement});
		shelf.Removed().AddObserver({this, &TShelfWatcher::OnElement});
		shelf.Swapped().AddObserver({this, &TShelfWatcher::OnSwapped});
	}

	std::string Told() { return std::exchange(mJournal, {}); }

private:
	void OnElement(TObservable* observable, int32_t reason) {
		if (reason < kWillChange)
			return;
		const auto* event = static_cast<TDocumentListElementEvent*>(observable);
		mJournal += dynamic_cast<TDocumentWasAddedObservable*>(observable) ? "+" : "-";
		mJournal += std::to_string(reason) + static_cast<TShelfBook*>(event->Element())->mLetter +
		            std::to_string(event->Index()) + ":" + std::to_string(event->List()->Size()) + " ";
	}

	void OnSwapped(TObservable* observable, int32_t reason) {
		if (reason < kWillChange)
			return;
		const auto* event = static_cast<TDocumentListElementsSwappedObservable*>(observable);
		mJournal +=
		    "x" + std::to_string(reason) + std::to_string(event->Index1()) + std::to_string(event->Index2()) + " ";
	}

	std::string mJournal;
};

} // namespace

TEST_F(TDocumentListTest, ElementsBecomeChildrenAndEveryChangeIsToldTwice) {
	TShelfWatcher watcher(mShelf);
	Fill("ab");
	EXPECT_EQ(watcher.Told(), "+2a0:0 +3a0:1 +2b1:1 +3b1:2 ");
	mShelf.Insert(new TShelfBook('c'), 0);
	EXPECT_EQ(watcher.Told(), "+2c0:2 +3c0:3 ");
	mShelf.Swap(0, 2);
	EXPECT_EQ(watcher.Told(), "x202 x302 ");
	EXPECT_EQ(Letters(), "bac");
	EXPECT_EQ(mShelf.Children()[0].mpValue, mShelf[0]);
	const TPtr<TShelfBook> book(mShelf[1]);
	mShelf.Remove(1);
	EXPECT_EQ(watcher.Told(), "-2a1:3 -3a1:2 ");
	EXPECT_EQ(book->Parent(), nullptr);
	EXPECT_EQ(mShelf.IndexOf(book.Get()), -1);
	mShelf.Clear();
	EXPECT_EQ(watcher.Told(), "-2c1:2 -3c1:1 -2b0:1 -3b0:0 ");
	EXPECT_EQ(mShelf.Children().Count(), 0);
}

TEST_F(TDocumentListTest, ElementsKeepTheirPlaceBehindMembersOfTheListsOwn) {
	TShelfBook sign('s');
	mShelf.AddLabel();
	mShelf.AddSign(&sign);
	Fill("abc");
	mShelf.Move(2, 0);
	mShelf.Remove(1);
	EXPECT_EQ(Letters(), "cb");
	EXPECT_EQ(mShelf.Children()[0].mpValue, &sign);
	EXPECT_EQ(mShelf.Children()[1].mpValue, mShelf[0]);
	EXPECT_EQ(sign.BuildPath(&mShelf), "/Sign");
	EXPECT_EQ(mShelf[1]->BuildPath(&mShelf), "/[1]");
}

TEST_F(TDocumentListTest, WithoutDeclaredClassesElementsAreNamedAndTypedByTheirClass) {
	mShelf.Insert(new TShelfBook('a'));
	mShelf.Insert(new TShelfAtlas);
	EXPECT_EQ(mShelf.NamesOfChildren(), "ShelfBook ShelfAtlas");
	EXPECT_EQ(mShelf[1]->StoredTypeName(), "ShelfAtlas");
	EXPECT_EQ(mShelf[0]->Attributes().Count(), 1);
	EXPECT_TRUE(dynamic_cast<TShelfAtlas*>(mShelf.CreateFromXml("ShelfAtlas", false).Get()));
}

TEST_F(TDocumentListTest, OneDeclaredClassIsTheOneThatAFileDoesNotName) {
	mShelf.DeclareElementClass();
	mShelf.Insert(new TShelfBook('a'));
	mShelf.Insert(new TShelfAtlas);
	EXPECT_EQ(mShelf.NamesOfChildren(), "Book Book");
	EXPECT_EQ(mShelf[0]->StoredTypeName(), "");
	EXPECT_EQ(mShelf[1]->StoredTypeName(), "ShelfAtlas");
	EXPECT_EQ(mShelf.CreateFromXml("Book", false)->TypeName(), "ShelfBook");
	EXPECT_EQ(mShelf.CreateFromXml("ShelfAtlas", true)->TypeName(), "ShelfAtlas");
}

TEST_F(TDocumentListTest, ClassesWithNamesOfTheirOwnNeedNoTypes) {
	mShelf.DeclareElementClass("TShelfBook", "Volume");
	mShelf.DeclareElementClass("TShelfAtlas", "Maps");
	mShelf.Insert(new TShelfAtlas);
	mShelf.Insert(new TShelfBook('a'));
	EXPECT_EQ(mShelf.NamesOfChildren(), "Maps Volume");
	EXPECT_EQ(mShelf[0]->Attributes().Count(), 0);
	EXPECT_EQ(mShelf.CreateFromXml("Maps", false)->TypeName(), "ShelfAtlas");
}

TEST_F(TDocumentListTest, UnknownElementIsFatalUnlessTheListHasMembersOfItsOwn) {
	try {
		mShelf.CreateFromXml("Vase", false);
		FAIL() << "made something";
	} catch (const TReadableException& exception) {
		EXPECT_EQ(
		    exception.Message(), "Fatal error while reading a document. Failed to create an object of type 'Vase'!");
	}
	mShelf.AddLabel();
	EXPECT_FALSE(mShelf.CreateFromXml("Vase", false));
}

TEST_F(TDocumentListTest, NestedListTakesTheSingularOfTheItemName) {
	TDocumentList<TDocumentNode> outer;
	outer.SetItemName("Shelves");
	auto inner = MakePtr<TShelf>();
	outer.Insert(inner.Get());
	EXPECT_EQ(inner->ItemName(), "Shelve");
}
