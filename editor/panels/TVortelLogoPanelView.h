// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/gui/views/TView.h"

class TBackgroundView;
class TBitmapView;
class TTextView;
class TVortelAboutBox;

/// The program's logo and version. A click opens the about box. Main thread.
class TVortelLogoPanelView final : public TView {
public:
	explicit TVortelLogoPanelView(TVortelDocument& document);

	/// Null while it is closed.
	TVortelAboutBox* AboutBox() const noexcept;
	void OpenAboutBox();

	void OnResized() override;
	void ApplyColors() override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;

private:
	TWeakPtr<TVortelDocument> mDocument;
	TPtr<TBackgroundView> mBackground;
	TPtr<TBitmapView> mLogo;
	TPtr<TTextView> mVersionText;
	bool mPressed = false;
	TWeakPtr<TVortelAboutBox> mAboutBox;
};
