// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/ViewsFile.h"

#include "framework/graphics/surfaces/UiScale.h"
#include "framework/gui/controls/TControl.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TDesktop.h"
#include "platform/headless/THeadlessPlatform.h"
#include "tools/vortel2/editor/DescribeView.h"

#include <nlohmann/json.hpp>

namespace {

using TJson = nlohmann::ordered_json;

std::string Utf8(const TString& text) {
	return text.CString(kUtf8Encoding);
}

TJson RectJson(const TRectT<int>& rect) {
	return {rect.mLeft, rect.mTop, rect.mWidth, rect.mHeight};
}

/// The views of a window in drawing order, parents before children.
class TViewList {
public:
	explicit TViewList(TPointT<int> windowCorner) : mWindowCorner(windowCorner) {}

	void Add(TView& view, int parent) {
		const auto index = static_cast<int>(mViews.size());
		mViews.push_back(Describe(view, parent));
		for (int child = 0; child < view.Children().Count(); ++child)
			Add(*view.Children()[child], index);
	}

	TJson TakeViews() { return std::move(mViews); }

private:
	TJson Describe(TView& view, int parent) const {
		const TViewDescription description = DescribeView(view);
		TRectT<int> rect = view.AbsoluteRect();
		rect.mLeft += mWindowCorner.mX;
		rect.mTop += mWindowCorner.mY;
		const auto* control = dynamic_cast<const TControl*>(&view);
		TJson json{
		    {"class", description.mClass},
		    {"parent", parent},
		    {"rect", RectJson(rect)},
		    {"visible", view.IsVisibleInTree()},
		    {"enabled", !control || control->IsEnabled()}};
		if (const auto* root = dynamic_cast<const TFocusRootView*>(&view))
			json["focused"] = root->HasFocus();
		if (const TString toolTip = view.ToolTipText(); !toolTip.IsEmpty())
			json["tooltip"] = Utf8(toolTip);
		if (description.mText)
			json["text"] = *description.mText;
		if (description.mValue)
			json["value"] = *description.mValue;
		return json;
	}

	const TPointT<int> mWindowCorner;
	TJson mViews = TJson::array();
};

TJson DescribeWindow(TWindow& window, TPointT<int> corner) {
	const TPointT<int> place = Unscaled(window.Glue()->Position() - corner, window.UiScale());
	const TPointT<int> size = Unscaled(window.Glue()->ClientSize(), window.UiScale());
	TViewList views(place);
	if (TViewWindow* viewWindow = window.AsViewWindow(); viewWindow && viewWindow->MainFrame())
		views.Add(*viewWindow->MainFrame(), -1);
	return {
	    {"kind", window.Kind()},
	    {"title", Utf8(window.Title())},
	    {"rect", RectJson({place.mX, place.mY, size.mX, size.mY})},
	    {"modal", window.Kind() == kModalDialogWindow},
	    {"views", views.TakeViews()}};
}

TJson DescribeDialogs(const THeadlessPlatform& platform) {
	TJson dialogs = TJson::array();
	for (const TFileDialogSettings& dialog : platform.Dialogs())
		dialogs.push_back(
		    {{"save", dialog.mSave},
		     {"caption", Utf8(dialog.mCaption)},
		     {"filter", Utf8(dialog.mFilter)},
		     {"directory", Utf8(dialog.mDirectory.Path())},
		     {"name", Utf8(dialog.mName)}});
	return dialogs;
}

} // namespace

std::string DescribeWindows(THeadlessPlatform& platform, TPointT<int> corner, const TFrameCounts& counts) {
	TJson windows = TJson::array();
	for (int index = 0; TDesktop::Instance() && index < TDesktop::Instance()->OpenWindows().Count(); ++index)
		windows.push_back(DescribeWindow(*TDesktop::Instance()->OpenWindows()[index], corner));
	const TUiScale scale = CurrentScale();
	const TJson file{
	    {"scale", {scale.mX, scale.mY}},
	    {"cursor", platform.Cursor().Current()},
	    {"clipboard", Utf8(platform.Clipboard().Text())},
	    {"dirty", counts.mDirtyRects},
	    {"frames", counts.mFrames},
	    {"windows", std::move(windows)},
	    {"dialogs", DescribeDialogs(platform)}};
	return file.dump(1, '\t', false, TJson::error_handler_t::replace) + "\n";
}
