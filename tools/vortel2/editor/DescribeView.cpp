// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/DescribeView.h"

#include "editor/devices/TVortelTabbedView.h"
#include "editor/sequencer/TVortelSequencerEffectListView.h"
#include "editor/sequencer/TVortelSequencerPlayerPositionView.h"
#include "framework/foundation/text/TString.h"
#include "framework/gui/controls/TButtonField.h"
#include "framework/gui/controls/TRotaryEncoder.h"
#include "framework/gui/controls/TSwitchButton.h"
#include "framework/gui/controls/TValueBox.h"
#include "framework/gui/controls/TValueDragger.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/menus/TContextMenuScrollableContentView.h"
#include "framework/gui/menus/TPopUpMenu.h"
#include "framework/gui/menus/TPopupListView.h"
#include "framework/gui/text/TMultilineTextView.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/text/TTextView.h"

#include <charconv>
#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

namespace {

std::string Utf8(const TString& text) {
	return text.CString(kUtf8Encoding);
}

std::string InWords(float value) {
	char buffer[32];
	return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

/// Without namespaces, enclosing classes and template arguments.
std::string ClassName(const TView& view) {
	const std::unique_ptr<char, decltype(&std::free)> demangled(
	    abi::__cxa_demangle(typeid(view).name(), nullptr, nullptr, nullptr), &std::free);
	std::string name;
	int depth = 0;
	for (const char c : std::string_view(demangled ? demangled.get() : typeid(view).name())) {
		depth += c == '<' ? 1 : c == '>' ? -1 : 0;
		if (depth == 0 && c != '>')
			name += c;
	}
	const std::size_t scope = name.rfind("::");
	return scope == std::string::npos ? name : name.substr(scope + 2);
}

std::string Lines(const TList<TString>& texts) {
	std::string lines;
	for (int index = 0; index < texts.Count(); ++index)
		lines += (index == 0 ? "" : "\n") + Utf8(texts[index]);
	return lines;
}

void Describe(const TTextView& view, TViewDescription& description) {
	description.mText = Utf8(view.DisplayedText());
}

void Describe(const TMultilineTextView& view, TViewDescription& description) {
	description.mText = Utf8(view.Text());
}

void Describe(const TTextField& view, TViewDescription& description) {
	description.mText = Utf8(view.Text());
}

void Describe(const TBackgroundView& view, TViewDescription& description) {
	if (!view.Text().IsEmpty())
		description.mText = Utf8(view.Text());
}

void Describe(const TButton& view, TViewDescription& description) {
	description.mText = Utf8(view.Label());
}

void Describe(const TPopUpMenu& view, TViewDescription& description) {
	description.mText = Utf8(view.ClosedText());
	description.mValue = std::to_string(view.Value());
}

void Describe(const TPopupListView& view, TViewDescription& description) {
	description.mText = Lines(view.Entries());
	description.mValue = std::to_string(view.FirstSelected());
}

void Describe(const TMenuEntryView& view, TViewDescription& description) {
	description.mText = Utf8(view.Entry().Label());
}

void Describe(const TSwitchButton<bool>& view, TViewDescription& description) {
	description.mValue = view.IsOn() ? "true" : "false";
}

void Describe(const TSwitchButtonField<int>& view, TViewDescription& description) {
	description.mValue = std::to_string(view.PressedIndex());
}

void Describe(const TValueBox<int>& view, TViewDescription& description) {
	description.mValue = std::to_string(view.Value());
}

void Describe(const TValueDragger<int>& view, TViewDescription& description) {
	description.mText = Utf8(view.DisplayedText());
	description.mValue = std::to_string(view.Value());
}

void Describe(const TRotaryEncoder<float>& view, TViewDescription& description) {
	description.mValue = InWords(view.Value());
}

void Describe(const TVortelTabbedView& view, TViewDescription& description) {
	TList<TString> names;
	for (const TString& name : view.TabNames())
		names.Append(name);
	description.mText = Lines(names);
	description.mValue = std::to_string(view.SelectedTab());
}

void Describe(const TVortelSequencerEffectListView& view, TViewDescription& description) {
	description.mValue = std::to_string(view.SelectedRow()) + ", " + std::to_string(view.SoloRow()) + ", " +
	                     std::to_string(view.RandomDevice());
}

void Describe(const TVortelSequencerPlayerPositionView& view, TViewDescription& description) {
	description.mValue = std::to_string(view.CurrentStep());
}

/// The first of the classes that the view is one of.
template <class... TViews>
void DescribeAs(const TView& view, TViewDescription& description) {
	const auto describe = [&]<class T>(const T* known) {
		if (known)
			Describe(*known, description);
		return known != nullptr;
	};
	(describe(dynamic_cast<const TViews*>(&view)) || ...);
}

} // namespace

TViewDescription DescribeView(const TView& view) {
	TViewDescription description{ClassName(view), std::nullopt, std::nullopt};
	DescribeAs<
	    TTextView, TMultilineTextView, TTextField, TBackgroundView, TButton, TPopUpMenu, TPopupListView, TMenuEntryView,
	    TSwitchButton<bool>, TSwitchButtonField<int>, TValueBox<int>, TValueDragger<int>, TRotaryEncoder<float>,
	    TVortelTabbedView, TVortelSequencerEffectListView, TVortelSequencerPlayerPositionView>(view, description);
	return description;
}
