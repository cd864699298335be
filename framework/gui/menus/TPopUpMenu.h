// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/controls/TIncDecButtonPair.h"

class TPopupListView;
class TViewWindow;

/// Shows one of several entries and opens a list of them: the value is the index. Main thread.
class TPopUpMenu : public TControl {
public:
	using TStepAction = TFunctionPtr<void, int>;

	static constexpr int kOpenButtonSize = 18;

	/// The value may go before the menu. A linked value may be made with the menu's own view.
	explicit TPopUpMenu(TValue<int>* value = nullptr);
	~TPopUpMenu() override;

	/// Instead of the one before.
	void SetValue(TValue<int>* value);

	/// What the open list shows and what the closed control shows; an empty list of the latter: the same. A list that
	/// is open takes the new entries.
	void SetEntries(const TList<TString>& labels, const TList<TString>& closedLabels = {});
	/// One for each entry, or none.
	void SetIcons(const TList<TPtr<TRecolorableBitmap>>& icons);
	void SetShowIncDecButtons(bool show);
	void SetShowOpenButton(bool show);
	void SetSearchable(bool searchable) { mSearchable = searchable; }

	void SetSeparatorBelowFirst(bool separator) { mSeparatorBelowFirst = separator; }

	void SetSeparatorAboveLast(bool separator) { mSeparatorAboveLast = separator; }

	void SetDrawFrame(bool drawFrame);
	void SetWheelSteps(bool wheelSteps) { mWheelSteps = wheelSteps; }

	/// Instead of "None", for no entry.
	void SetEmptyText(const TString& text);
	/// Before the list opens; may fill it.
	void SetOpenAction(const TFunctionPtr<void>& action) { mOpenAction = action; }

	/// Before a step by an arrow or a choice: 0 by the left mouse button, 1 by the right one.
	void SetStepAction(const TStepAction& action) { mStepAction = action; }

	bool IsOpen() const;
	void Open();
	void CloseList();

	int Value() const;

	int NumberOfEntries() const noexcept { return mLabels.Count(); }

	bool HasEntries() const noexcept { return mHasEntries; }

	const TList<TString>& Labels() const noexcept { return mLabels; }

	/// What the closed control says, not shortened.
	TString ClosedText() const;

	/// One row of the open list. rect in coordinates of the window.
	virtual void
	DrawEntry(TSurface& port, const TRectT<int>& rect, int row, bool isHovered, bool isSelected, bool isFocused);

	void OnResized() override;
	void Draw(TSurface& port) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	void OnEnabledChanged() override;
	void OnVisibilityChanged() override;
	void OnMainFrameChanged() override;
	TString MakeToolTip() override;
	void ApplyColors() override;

private:
	friend class TPopupListView;

	void OnValueChanged(TObservable* value, int32_t reason);
	void StepBack(int mouseButton);
	void StepForward(int mouseButton);
	void StepAround(int step, int mouseButton);
	bool StepByWheel(int step);
	void WriteValue(int value);
	/// From the list.
	void Choose(int entry, int mouseButton);
	TRectT<int> TextRect() const;
	int TextRoom() const;
	int WidestRow() const;
	/// The list's window: the corner in pixels of the screen, the size logical.
	TRectT<int> PlaceForList() const;
	void OpenList();
	TPopupListView* OpenedList() const;
	void SelectInList();
	void UpdateOpenButton();
	void DrawText(TSurface& port);
	TRecolorableBitmap* Icon(int entry) const;

	TPtr<TButton> mOpenButton;
	TPtr<TIncDecButtonPair> mIncDecButtons;
	TWeakPtr<TValue<int>> mValue;
	int mLastValue = -1; // what is shown when the value has gone
	bool mSeparatorBelowFirst = false;
	bool mSeparatorAboveLast = false;
	bool mDrawFrame = true;
	bool mShowOpenButton = true;
	bool mShowIncDec = false;
	bool mWheelSteps = true;
	bool mSearchable = false;
	bool mHighlighted = false;
	TList<TString> mLabels;
	TList<TString> mClosedLabels;
	TList<TPtr<TRecolorableBitmap>> mIcons;
	bool mHasEntries = false;
	TString mEmptyText;
	TFunctionPtr<void> mOpenAction;
	TStepAction mStepAction;
	TWeakPtr<TViewWindow> mListWindow;
};
