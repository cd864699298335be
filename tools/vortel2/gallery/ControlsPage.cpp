// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/menus/TVortelEditMenu.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/gui/controls/TButtonField.h"
#include "framework/gui/controls/TRotaryEncoder.h"
#include "framework/gui/controls/TSwitchButton.h"
#include "framework/gui/controls/TValueBox.h"
#include "framework/gui/controls/TValueDragger.h"
#include "framework/gui/menus/TContextMenu.h"
#include "framework/gui/menus/TPopUpMenu.h"
#include "framework/gui/scrolling/TListView.h"
#include "framework/gui/text/TMultilineTextView.h"
#include "framework/gui/text/TTextField.h"
#include "tools/vortel2/gallery/GalleryPages.h"

namespace Gallery {

namespace {

constexpr int kListEntries = 40;

/// Holds the values that the controls are bound to. Each kind of control is there twice: to be used, and disabled.
class TControlsPage final : public TView {
public:
	TControlsPage() : mSheet(*this) {
		AddButtons();
		AddSwitches();
		AddValues();
		AddTexts();
		AddMenusAndLists();
	}

private:
	template <class TControlType>
	void AddBoth(const std::function<TPtr<TControlType>()>& make, const TString& name) {
		mSheet.Add(make(), name);
		const TPtr<TControlType> disabled = make();
		disabled->SetEnabled(false);
		mSheet.Add(disabled, "disabled");
	}

	void AddButtons() {
		mSheet.Section("Buttons", {0, 0}, 440);
		const auto make = [](int style, const char* label) {
			return [style, label] {
				const auto button = MakePtr<TButton>(label, style);
				button->SetSize(60, 20);
				return button;
			};
		};
		AddBoth<TButton>(make(kPlainButton, "Plain"), "plain");
		AddBoth<TButton>(make(kToolButton, "Tool"), "tool");
		AddBoth<TButton>(
		    [] {
			    const auto button = MakePtr<TButton>("Dice", kToolButton);
			    const auto icon = MakePtr<TRecolorableBitmap>("Icons/Randomise.bmp");
			    button->SetBitmaps(icon, icon, true);
			    button->SetSize(20, 20);
			    return button;
		    },
		    "icon");
		const auto pressed = make(kToolButton, "On")();
		pressed->SetRestState(kButtonPressed);
		mSheet.Add(pressed, "selected");
		const auto menu = make(kToolButton, "Menu")();
		menu->SetClickAction({this, &TControlsPage::OpenMenu});
		mMenuButton = menu.Get();
		mSheet.Add(menu, "opens a menu");
	}

	void AddSwitches() {
		mSheet.Section("Switches", {460, 0}, 470);
		AddBoth<TSwitchButton<bool>>(
		    [this] {
			    const auto pair = MakePtr<TSwitchButton<bool>>(&mFlag, kOnOffRow);
			    pair->SetSize(70, 20);
			    return pair;
		    },
		    "pair");
		AddBoth<TSwitchButton<bool>>(
		    [this] {
			    const auto lock = MakePtr<TSwitchButton<bool>>(&mFlag, kToolSwitch);
			    lock->SetBitmaps(
			        MakePtr<TRecolorableBitmap>("Icons/Locked.png"), MakePtr<TRecolorableBitmap>("Icons/Unlocked.png"));
			    lock->SetSize(19, 20);
			    return lock;
		    },
		    "tool");
		AddBoth<TSwitchButtonViewPair<bool>>(
		    [this] { return MakePtr<TSwitchButtonViewPair<bool>>(&mFlag, "Tick box"); }, "tick box");
		AddBoth<TSwitchButtonField<int>>(
		    [this] {
			    const auto field = MakePtr<TSwitchButtonField<int>>(&mChoice, 3, 3);
			    for (int index = 0; index < 3; ++index)
				    field->SetButtonName(index, TString::ToString(index + 1));
			    field->SetSize(70, 20);
			    return field;
		    },
		    "field");
	}

	void AddValues() {
		mSheet.Section("Values", {0, 110}, 440);
		AddBoth<TValueBox<int>>(
		    [this] {
			    const auto box = MakePtr<TValueBox<int>>(
			        TFunctionPtr<int>(&mChoice, &Get), TFunctionPtr<void, int>(&mChoice, &Set), 0, 2);
			    box->SetSize(60, 20);
			    return box;
		    },
		    "value box");
		AddBoth<TValueDragger<int>>(
		    [this] {
			    const auto dragger = MakePtr<TValueDragger<int>>(
			        TFunctionPtr<int>(&mChoice, &Get), TFunctionPtr<void, int>(&mChoice, &Set), 0, 2);
			    dragger->SetSize(46, 16);
			    return dragger;
		    },
		    "dragger");
		const auto encoder = [this](int mode, int size) {
			return [this, mode, size] {
				const auto rotary = MakePtr<TRotaryEncoder<float>>(&mPosition);
				rotary->SetDrawMode(mode);
				rotary->SetSize(size, size);
				return rotary;
			};
		};
		AddBoth<TRotaryEncoder<float>>(encoder(TRotaryEncoder<float>::kFromMinimum, 66), "rotary");
		AddBoth<TRotaryEncoder<float>>(encoder(TRotaryEncoder<float>::kFromMiddle, 43), "bipolar");
	}

	void AddTexts() {
		mSheet.Section("Texts", {460, 110}, 470);
		const auto field = MakePtr<TTextField>(&mText);
		field->SetSize(150, 20);
		mSheet.Add(field, "text field");
		const auto hinted = MakePtr<TTextField>(&mEmptyText);
		hinted->SetHint("Search");
		hinted->SetSize(100, 20);
		mSheet.Add(hinted, "with a hint");
		const auto readOnly = MakePtr<TTextField>(&mText);
		readOnly->SetReadOnly(true);
		readOnly->SetSize(100, 20);
		mSheet.Add(readOnly, "read only");
		const auto lines = MakePtr<TMultilineTextView>(TString(), 260);
		lines->SetText("A text of several lines,\nas messages and tool tips have it.");
		lines->SetSize(260, 36);
		mSheet.Add(lines, "lines");
	}

	void AddMenusAndLists() {
		mSheet.Section("Menus and lists", {0, 290}, 930);
		TList<TString> entries;
		for (int index = 1; index <= kListEntries; ++index)
			entries.Append(TString("Entry ") + TString::ToString(index));
		AddBoth<TPopUpMenu>(
		    [&] {
			    const auto menu = MakePtr<TPopUpMenu>(&mEntry);
			    menu->SetEntries(entries);
			    menu->SetShowIncDecButtons(true);
			    menu->SetSize(140, 20);
			    return menu;
		    },
		    "pop-up menu");
		const auto list = MakePtr<TListView>();
		list->SetEntries(entries);
		list->SetMultiSelect(true);
		list->SetSize(160, 200);
		mSheet.Add(list, "list");
		const auto searched = MakePtr<TListView>();
		searched->SetEntries(entries);
		searched->ShowSearchField();
		searched->SetSize(160, 200);
		mSheet.Add(searched, "with a search field");
	}

	void OpenMenu() {
		const TFunctionPtr<void> toggle(this, &TControlsPage::ToggleFlag);
		const auto checked = MakePtr<TMenuEntry>("Checked", toggle);
		checked->SetChecked(mFlag.Get());
		const auto disabled = MakePtr<TMenuEntry>("Disabled", toggle);
		disabled->SetEnabled(false);
		disabled->SetSeparator(TMenuEntry::kSeparatorAbove);
		TList<TPtr<TMenuEntry>> subEntries;
		subEntries.Append(MakePtr<TMenuEntry>("Toggle the switches", toggle));
		TList<TPtr<TMenuEntry>> entries;
		entries.Append(checked);
		entries.Append(disabled);
		entries.Append(MakePtr<TMenuEntry>("More", subEntries));
		TContextMenu::OpenBelow(*mMenuButton, entries, true);
	}

	void ToggleFlag() { mFlag.Set(!mFlag.Get()); }

	static int Get(TObservableBaseType<int>* value) { return value->Get(); }

	static void Set(TObservableBaseType<int>* value, int number) { value->Set(number); }

	TSheet mSheet;
	TObservableBaseType<bool> mFlag{true};
	TObservableBaseType<int> mChoice{1};
	TObservableBaseType<int> mEntry{0};
	TObservableBaseType<float> mPosition{0.7f};
	TObservableBaseType<TString> mText{"Glass Staircase"};
	TObservableBaseType<TString> mEmptyText;
	TButton* mMenuButton = nullptr; // a child
};

} // namespace

TPtr<TView> MakeControlsPage() {
	return MakePtr<TControlsPage>();
}

} // namespace Gallery
