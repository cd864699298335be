// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/text/TTextField.h"
#include "framework/gui/views/TViewWindow.h"

/// A small window exactly over a text field of the embedded editor, with a field of its own on the same value, which
/// gets the keys that the host would not let through. Main thread.
class TTextFieldWindow final : public TViewWindow {
public:
	/// Opens at once, over the field, and begins the edit.
	static TPtr<TTextFieldWindow> Open(TWindow* parent, TTextField& field);

	TTextField* Field() const noexcept { return mField.Get(); }

	TTextField& InnerField() const noexcept { return *mInnerField; }

	void ClearField() { mField = nullptr; }

	void OnClosing() override;

private:
	TTextFieldWindow(TWindow* parent, TTextField& field);

	void OnInnerEditChanged();

	TWeakPtr<TTextField> mField;
	TPtr<TTextField> mInnerField;
};
