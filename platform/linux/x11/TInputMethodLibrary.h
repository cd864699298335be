// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb-imdkit/encoding.h>
#include <xcb-imdkit/imclient.h>

/// The library for input methods, loaded when one is wanted: most machines run none, and many do not have the library.
class TInputMethodLibrary {
public:
	TInputMethodLibrary();
	~TInputMethodLibrary();

	TInputMethodLibrary(const TInputMethodLibrary&) = delete;
	TInputMethodLibrary& operator=(const TInputMethodLibrary&) = delete;

	/// All functions below are there, or none.
	bool IsLoaded() const { return mpLibrary != nullptr; }

	decltype(&xcb_compound_text_init) mInitCompoundText = nullptr;
	decltype(&xcb_compound_text_to_utf8) mCompoundTextToUtf8 = nullptr;
	decltype(&xcb_xim_create) mCreate = nullptr;
	decltype(&xcb_xim_destroy) mDestroy = nullptr;
	decltype(&xcb_xim_open) mOpen = nullptr;
	decltype(&xcb_xim_close) mClose = nullptr;
	decltype(&xcb_xim_set_use_compound_text) mUseCompoundText = nullptr;
	decltype(&xcb_xim_set_use_utf8_string) mUseUtf8 = nullptr;
	decltype(&xcb_xim_get_encoding) mEncoding = nullptr;
	decltype(&xcb_xim_set_im_callback) mSetCallbacks = nullptr;
	decltype(&xcb_xim_filter_event) mFilterEvent = nullptr;
	decltype(&xcb_xim_create_nested_list) mCreateNestedList = nullptr;
	decltype(&xcb_xim_create_ic) mCreateContext = nullptr;
	decltype(&xcb_xim_destroy_ic) mDestroyContext = nullptr;
	decltype(&xcb_xim_set_ic_values) mSetContextValues = nullptr;
	decltype(&xcb_xim_set_ic_focus) mSetContextFocus = nullptr;
	decltype(&xcb_xim_unset_ic_focus) mUnsetContextFocus = nullptr;
	decltype(&xcb_xim_forward_event) mForwardEvent = nullptr;

private:
	template <class TFunction>
	void Find(TFunction& function, const char* name);

	void* mpLibrary = nullptr;
	bool mHasAll = true;
};
