// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TTextField.h"

#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/text/TMultilineTextView.h"
#include "framework/gui/text/TTextFieldWindow.h"
#include "framework/gui/text/TTextView.h"
#include "framework/gui/windows/TDesktop.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

#include <functional>
#include <string>

namespace {

class TTextFieldTest : public TControlFixture {
protected:
	TTextField& ShowField(const TRectT<int>& rect = {10, 10, 100, 20}) {
		return Show(MakePtr<TTextField>(&mValue), rect);
	}

	void TearDown() override {
		TTextField::SetUseEditWindow(false);
		TControlFixture::TearDown();
	}

	void Command(int letter, bool withShift = false) {
		if (withShift)
			Keys({kKeyLeftShift, kKeyLeftCommand, kKeyA + letter - 'A'});
		else
			Keys({kKeyLeftCommand, kKeyA + letter - 'A'});
	}

	/// A field that is being edited, its text selected.
	TTextField& EditField(const TString& text) {
		mValue.Set(text);
		TTextField& field = ShowField();
		field.BeginEdit();
		Tick();
		return field;
	}

	TString Clipboard() { return Platform().Clipboard().Text(); }

	TObservableBaseType<TString> mValue{TString("Init")};
};

TEST_F(TTextFieldTest, AClickSelectsAllAndReturnWrites) {
	TTextField& field = ShowField();
	Click(30, 20);
	EXPECT_TRUE(field.IsEditing());
	EXPECT_EQ(field.Model().SelectedText(), "Init");
	EXPECT_EQ(field.Label().Text(), "");
	Type("Glass ");
	EXPECT_EQ(field.Text(), "Glass ");
	EXPECT_EQ(mValue.Get(), "Init");
	Keys({kKeyReturn});
	EXPECT_FALSE(field.IsEditing());
	EXPECT_EQ(mValue.Get(), "Glass ");
	EXPECT_EQ(field.Label().Text(), "Glass ");
}

TEST_F(TTextFieldTest, EscapeWritesTheOldText) {
	TTextField& field = EditField("Init");
	int writes = 0;
	const auto observer = MakePtr<TForwardingStdObserver>(
	    kMainThread, [&](TObservable*, int32_t reason) { writes += reason == kDidChange; });
	observer->Observe(&mValue);
	Type("x");
	Keys({kKeyEscape});
	EXPECT_FALSE(field.IsEditing());
	EXPECT_EQ(mValue.Get(), "Init");
	EXPECT_EQ(writes, 1);
}

TEST_F(TTextFieldTest, EndsWhenTheFocusGoesOrTheFieldIsHidden) {
	TTextField& field = EditField("a");
	const auto other = MakePtr<TTextField>(&mValue);
	Show(other, {10, 40, 100, 20});
	Type("b");
	Click(30, 50);
	EXPECT_EQ(mValue.Get(), "b");
	EXPECT_TRUE(other->IsEditing());
	Type("c");
	other->SetVisible(false);
	EXPECT_EQ(mValue.Get(), "c");
	EXPECT_FALSE(other->IsEditing());
	EXPECT_EQ(field.Text(), "c") << "the focus goes back to where it was";
}

TEST_F(TTextFieldTest, EditsByKeys) {
	TTextField& field = EditField("one two");
	Keys({kKeyEnd});
	Keys({kKeyLeftShift, kKeyLeft});
	EXPECT_EQ(field.Model().SelectedText(), "o");
	Keys({kKeyLeft});
	EXPECT_EQ(field.Model().Caret(), 6);
	Keys({kKeyTab});
	EXPECT_EQ(field.Text(), "one tw  o");
	Keys({kKeyLeftCommand, kKeyBack});
	EXPECT_EQ(field.Text(), "one o");
	Keys({kKeyHome});
	Keys({kKeyDelete});
	EXPECT_EQ(field.Text(), "ne o");
	Command('Z');
	EXPECT_EQ(field.Text(), "one o");
	Command('Z', true);
	EXPECT_EQ(field.Text(), "ne o");
	Command('A');
	Command('X');
	EXPECT_EQ(field.Text(), "");
	Command('Y');
	Command('V');
	Command('V');
	EXPECT_EQ(field.Text(), "ne one o");
	Command('K');
	EXPECT_EQ(Clipboard(), "ne one o");
	EXPECT_EQ(field.Text(), "");
}

TEST_F(TTextFieldTest, KeepsAPasswordToItself) {
	TTextField& field = EditField("secret");
	Platform().PutClipboard("old");
	field.SetPassword(true);
	Command('C');
	Command('X');
	EXPECT_EQ(field.Text(), "");
	EXPECT_EQ(Clipboard(), "old");
	Keys({kKeyEscape});
	EXPECT_EQ(field.Label().Text(), TString(u"\u26AB\u26AB\u26AB\u26AB\u26AB\u26AB"));
}

TEST_F(TTextFieldTest, TakesWhatACarelessClipboardHolds) {
	TTextField& field = EditField("x");
	Platform().PutClipboard(TString(std::string(1 << 20, 'a').c_str()));
	Command('V');
	EXPECT_EQ(field.Text().Length(), 1 << 20);
	Command('A');
	const std::string broken = "\xff\xfe"
	                           "a\x80\xc3(\xe2";
	Platform().PutClipboard(TString(std::string_view(broken), kUtf8Encoding));
	Command('V');
	Keys({kKeyReturn});
	EXPECT_GE(mValue.Get().FindChar('a'), 0);
}

TEST_F(TTextFieldTest, FlagsRestrictWhatGoesIn) {
	TTextField& field = EditField("");
	field.SetUpperCaseOnly(true);
	Type("ab");
	field.InsertText(TString(U"\U0001F600c"), false);
	EXPECT_EQ(field.Text(), TString(U"AB\U0001F600C"));
	Keys({kKeyBack});
	Keys({kKeyBack});
	EXPECT_EQ(field.Text(), "AB");
	field.SetNumericOnly(true);
	Type("1c.2");
	EXPECT_EQ(field.Text(), "AB1.2");
	field.SetLiveUpdate(true);
	Type("3");
	EXPECT_EQ(mValue.Get(), "AB1.23");
	mValue.Set("from elsewhere");
	EXPECT_EQ(field.Text(), "from elsewhere");
	field.SetReadOnly(true);
	Keys({kKeyBack});
	EXPECT_EQ(field.Text(), "from elsewhere");
}

TEST_F(TTextFieldTest, MouseSetsTheCaretAndSelects) {
	TTextField& field = ShowField();
	mValue.Set("one two three four five six");
	Click(30, 20);
	Click(12, 20);
	EXPECT_EQ(field.Model().Caret(), 0);
	EXPECT_TRUE(field.Model().Selection().IsEmpty());
	Press();
	Move(60, 20);
	const int32_t first = field.Model().Selection().mTo;
	EXPECT_GT(first, 3);
	// Beyond the edge it scrolls on, a character at a time.
	Move(180, 20);
	Wait(60);
	EXPECT_GE(field.Model().FirstVisible(), 1);
	EXPECT_LE(field.Model().FirstVisible(), 2);
	Wait(2000);
	EXPECT_EQ(field.Model().SelectedText(), mValue.Get());
	Release();
	Keys({kKeyHome});
	Move(24, 20);
	Press(TMouseButton::kLeft, 2);
	Release();
	EXPECT_EQ(field.Model().SelectedText(), "one");
}

TEST_F(TTextFieldTest, BlinksAndShowsItsCaretToTheInputMethod) {
	TTextField& field = EditField("Init");
	EXPECT_EQ(mpEditor->TextInputRect(), field.CaretRect());
	EXPECT_TRUE((field.AbsoluteRect().Contains({field.CaretRect().mLeft, field.CaretRect().mTop})));
	Keys({kKeyEnd});
	const auto countCaret = [&] {
		const TRectT<int> caret = field.CaretRect();
		const TColor back = mpEditor->Surface()->Pixel({caret.mLeft + 3, caret.mTop + 5});
		return !(mpEditor->Surface()->Pixel({caret.mLeft, caret.mTop + 5}) == back);
	};
	EXPECT_TRUE(countCaret());
	Wait(430);
	EXPECT_FALSE(countCaret());
	Wait(430);
	EXPECT_TRUE(countCaret());
}

/// Removes its field at the first key.
struct TFieldRemover {
	bool HandleKey(const TKeyboardKey&, bool, bool) {
		mpParent->RemoveChild(mField.Get());
		return true;
	}

	TView* mpParent = nullptr;
	TWeakPtr<TTextField> mField;
};

TEST_F(TTextFieldTest, MayGoInItsKeyFilter) {
	TFieldRemover remover;
	remover.mField = &EditField("Init");
	remover.mpParent = mpEditor->MainFrame();
	remover.mField->SetKeyFilter({&remover, &TFieldRemover::HandleKey});
	Type("x");
	EXPECT_FALSE(remover.mField);
	EXPECT_EQ(mValue.Get(), "Init");
}

TEST_F(TTextFieldTest, ShowsAHintAToolTipAndTheLastTextOfADeadValue) {
	auto value = std::make_unique<TObservableBaseType<TString>>(TString("A text that is much too long"));
	TTextField& field = Show(MakePtr<TTextField>(value.get()), {10, 10, 60, 20});
	EXPECT_EQ(field.ToolTipText(), "A text that is much too long");
	EXPECT_NE(field.Label().Text().FindChar(u'\u2026'), -1);
	value = nullptr;
	field.SetSize(190, 20);
	EXPECT_EQ(field.Label().Text(), "A text that is much too long");
	EXPECT_EQ(field.ToolTipText(), "");
	field.BeginEdit();
	Type("x");
	field.EndEdit();
}

TEST_F(TTextFieldTest, EditsInAWindowOverTheEmbeddedEditor) {
	TTextField::SetUseEditWindow(true);
	TTextField& field = ShowField();
	Click(30, 20);
	Tick();
	ASSERT_EQ(TDesktop::Instance()->OpenWindows().Count(), 2);
	auto* window = static_cast<TTextFieldWindow*>(TDesktop::Instance()->OpenWindows()[1]);
	EXPECT_EQ(window->ClientSize(), field.Size());
	EXPECT_EQ(window->Position(), mpEditor->ClientToScreen({10, 10}));
	EXPECT_TRUE(field.IsEditing());
	EXPECT_FALSE(field.HasFocus());
	Type("Glass");
	EXPECT_EQ(field.Text(), "Glass");
	EXPECT_EQ(window->InnerField().Text(), "Glass");
	Keys({kKeyReturn});
	EXPECT_EQ(mValue.Get(), "Glass");
	EXPECT_FALSE(field.IsEditing());
	EXPECT_EQ(field.Label().Text(), "Glass");
	EXPECT_EQ(TDesktop::Instance()->OpenWindows().Count(), 1);

	// A click beside it ends the edit and does nothing else; so does whoever hides the field.
	field.BeginEdit();
	Type("x");
	Click(150, 80);
	EXPECT_FALSE(field.IsEditing());
	EXPECT_EQ(mValue.Get(), "x");
	field.BeginEdit();
	Type("y");
	Keys({kKeyEscape});
	EXPECT_EQ(mValue.Get(), "x");
	field.BeginEdit();
	Type("z");
	mpEditor->MainFrame()->RemoveChild(&field);
	Tick();
	EXPECT_EQ(TDesktop::Instance()->OpenWindows().Count(), 1);
	EXPECT_EQ(mValue.Get(), "z");
}

TEST_F(TTextFieldTest, TextViewSizesItselfUntilItIsSized) {
	OpenEditor();
	const auto view = MakePtr<TTextView>("Mutate");
	EXPECT_EQ(view->Size(), (TPointT<int>{40, 18}));
	view->SetText("Mutate\nMutate");
	EXPECT_EQ(view->Size(), (TPointT<int>{40, 30}));
	Show(view, {0, 0, 30, 18});
	view->SetText("Mutate the current scene.");
	EXPECT_EQ(view->Width(), 30);
	EXPECT_EQ(view->ToolTipText(), "Mutate the current scene.");
	EXPECT_NE(view->DisplayedText().FindChar(u'\u2026'), -1);
	view->SetText("Beat", true);
	EXPECT_EQ(view->ToolTipText(), "");
	EXPECT_EQ(view->DisplayedText(), "Beat");

	auto value = std::make_unique<TObservableBaseType<TString>>(TString("one"));
	const auto bound = MakePtr<TTextView>(value.get());
	EXPECT_EQ(bound->Size(), (TPointT<int>{60, 18}));
	value->Set("two");
	bound->SetUpperCase(true);
	value = nullptr;
	EXPECT_EQ(bound->Text(), "TWO");
}

TEST_F(TTextFieldTest, MultilineTextBreaksBetweenWordsAndWithinLongOnes) {
	const auto linesOf = [](const TString& text, int width) {
		const auto view = MakePtr<TMultilineTextView>(text, width);
		EXPECT_EQ(view->Height(), view->NumberOfLines() * 13 + 4);
		return view->NumberOfLines();
	};
	EXPECT_EQ(linesOf("Panning.", 420), 1);
	EXPECT_EQ(linesOf("one\ntwo\n\nthree", 420), 4);
	EXPECT_EQ(linesOf("one two three", 50), 2);
	EXPECT_GT(linesOf("Donaudampfschifffahrt", 40), 2);
	EXPECT_EQ(linesOf(TString(U"\U0001F600\U0001F600"), 5), 2);
	EXPECT_EQ(linesOf("", 40), 1);
	EXPECT_LE(MakePtr<TMultilineTextView>("Donaudampfschifffahrt is a word", 40)->Width(), 40);
}

} // namespace
