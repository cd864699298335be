// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TMainFrameView.h"

class TVortelTabbedView;

/// Everything that the toolkit draws, on four pages: controls to be tried, the skin's shapes in every state, type and
/// colours, pictures. As large as the editor. Main thread.
class TGalleryView final : public TMainFrameView {
public:
	static constexpr int kWidth = 962;
	static constexpr int kHeight = 595;

	TGalleryView();

	void OnResized() override;

private:
	TPtr<TVortelTabbedView> mTabs;
};
