// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/controls/TLinkedViewValue.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/views/TView.h"

class TRecolorableBitmap;

/// Something to press, turn or type into. Can be disabled, and then lets the mouse through to what lies below it. Has
/// no value of its own: it is bound to one that may go before the control does. Main thread.
class TControl : public TView {
public:
	TControl();
	~TControl() override;

	/// The enabled state has changed.
	virtual void OnEnabledChanged() {}

	virtual void OnContentViewChanged() {}

	bool IsEnabled() const;
	/// Without effect on what a getter says.
	void SetEnabled(bool enabled);
	/// Polled from now on, once per frame; an empty one goes back to SetEnabled's state.
	void SetEnabledGetter(const TFunctionPtr<bool>& getter);

	/// A child that covers the control and has its own input; null for none.
	void SetContentView(const TPtr<TView>& view);

	TView* ContentView() const noexcept { return mContentView.Get(); }

	/// What the control triggers; its key is shown in the tool tip.
	void SetKeyCommand(const TKeyCommand& command);

	const TKeyCommand& KeyCommand() const noexcept { return mKeyCommand; }

	/// Shown in the tool tip while there is no command.
	void SetKey(const TKeyboardKey& key);

	bool HasKeyHint() const { return mKeyCommand || mKey.IsKey(); }

	TKeyboardKey ToolTipKey() const;
	/// Says when the key holds, unless it always does.
	TString ToolTipKeySuffix() const;
	/// The key in font 0, drawn with pictures for the modifiers.
	int ToolTipKeyWidth() const;
	/// Returns where it ends.
	int DrawToolTipKey(TSurface& port, const TRectT<int>& rect, const TColor& color) const;

	bool HitTest(int x, int y) override;
	bool WantsMouseCapture(int x, int y, int modifiers) override;
	void OnResized() override;

private:
	bool HasShownContentView() const;
	void OnEnabledLinkChanged(TObservable* link, int32_t reason);
	void EnabledChanged();

	TWeakPtr<TConstLinkedViewValue<bool>> mEnabledLink;
	TFunctionPtr<bool> mEnabledGetter;
	bool mEnabled = true;
	TPtr<TView> mContentView;
	TKeyCommand mKeyCommand;
	TKeyboardKey mKey;
};
