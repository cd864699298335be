// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/keyboard/TKeyboardBindings.h"

#include "framework/foundation/files/TStream.h"
#include "framework/gui/views/TMainFrameView.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TStringPrinter.h"

namespace {

class TKeyboardBindingsTest : public TGuiFixture {
protected:
	struct TCommand {
		void Run(bool /*isRelease*/, bool /*isRepeat*/) { ++mRuns; }

		operator TKeyCommand() { return {this, &TCommand::Run}; }

		int mRuns = 0;
	};

	void SetUp() override {
		TGuiFixture::SetUp();
		mpBindings = MakePtr<TKeyboardBindings>();
		mpCategory = MakePtr<TKeyboardCategory>();
		mpCategory->Identifier().Set("Global");
		mpCategory->SetClass(TMainFrameView::kTypeRecord);
		mpBindings->Categories().Insert(mpCategory.Get());
	}

	void TearDown() override {
		mpCategory = nullptr;
		mpBindings = nullptr;
		TGuiFixture::TearDown();
	}

	TKeyBinding& Bind(const TKeyboardKey& key, TCommand& command) {
		const auto binding = MakePtr<TKeyBinding>();
		binding->Topic().Set("Edit");
		binding->Binding().Set("Undo");
		binding->Key() = key;
		binding->SetAction(command);
		mpCategory->KeyBindings().Insert(binding.Get());
		return *binding;
	}

	bool Dispatch(const TKeyboardKey& key, bool isRepeat = false) const {
		return mpBindings->Dispatch(TMainFrameView::kTypeRecord, key, false, isRepeat);
	}

	TPtr<TKeyboardBindings> mpBindings;
	TPtr<TKeyboardCategory> mpCategory;
};

TEST_F(TKeyboardBindingsTest, AllBindingsOfAKeyRunAndSelectingMovesCountAsMoves) {
	TCommand first;
	TCommand second;
	Bind({kKeyHome, 0}, first);
	Bind({kKeyHome, 0}, second).SetRepeatable(false);
	EXPECT_TRUE(Dispatch({kKeyHome, kShiftModifier}));
	EXPECT_FALSE(Dispatch({kKeyHome, kCommandModifier}));
	EXPECT_TRUE(Dispatch({kKeyHome, 0}, true));
	EXPECT_EQ(first.mRuns, 2);
	EXPECT_EQ(second.mRuns, 1);
	EXPECT_FALSE(Dispatch({kKeyLeftShift, kShiftModifier}));
	EXPECT_EQ(mpBindings->CategoryOf(TFocusRootView::kTypeRecord), mpCategory.Get());
}

TEST_F(TKeyboardBindingsTest, ABindingIsFoundByItsActionAndByItsNamesAndKeptInAFile) {
	TCommand command;
	TCommand other;
	Bind({kKeyA + 25, kCommandModifier}, command);
	EXPECT_EQ(mpBindings->KeyOfAction(command).Code(), kKeyA + 25);
	EXPECT_EQ(mpBindings->CategoryOfAction(command), "Global");
	EXPECT_FALSE(mpBindings->KeyOfAction(other).IsKey());
	EXPECT_EQ(mpBindings->KeyOf("global", "EDIT", "undo").Modifiers(), int{kCommandModifier});

	TStream file;
	mpBindings->SaveToStream(file, false);
	const auto loaded = MakePtr<TKeyboardBindings>();
	loaded->LoadFromStream(file);
	EXPECT_EQ(loaded->KeyOf("Global", "Edit", "Undo"), TKeyboardKey(kKeyA + 25, kCommandModifier));
}

} // namespace
