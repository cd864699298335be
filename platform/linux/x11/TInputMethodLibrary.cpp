// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TInputMethodLibrary.h"

#include <dlfcn.h>
#include <utility>

template <class TFunction>
void TInputMethodLibrary::Find(TFunction& function, const char* name) {
	function = reinterpret_cast<TFunction>(dlsym(mpLibrary, name));
	mHasAll = mHasAll && function;
}

TInputMethodLibrary::TInputMethodLibrary() : mpLibrary(dlopen("libxcb-imdkit.so.1", RTLD_NOW | RTLD_LOCAL)) {
	if (!mpLibrary)
		return;
	Find(mInitCompoundText, "xcb_compound_text_init");
	Find(mCompoundTextToUtf8, "xcb_compound_text_to_utf8");
	Find(mCreate, "xcb_xim_create");
	Find(mDestroy, "xcb_xim_destroy");
	Find(mOpen, "xcb_xim_open");
	Find(mClose, "xcb_xim_close");
	Find(mUseCompoundText, "xcb_xim_set_use_compound_text");
	Find(mUseUtf8, "xcb_xim_set_use_utf8_string");
	Find(mEncoding, "xcb_xim_get_encoding");
	Find(mSetCallbacks, "xcb_xim_set_im_callback");
	Find(mFilterEvent, "xcb_xim_filter_event");
	Find(mCreateNestedList, "xcb_xim_create_nested_list");
	Find(mCreateContext, "xcb_xim_create_ic");
	Find(mDestroyContext, "xcb_xim_destroy_ic");
	Find(mSetContextValues, "xcb_xim_set_ic_values");
	Find(mSetContextFocus, "xcb_xim_set_ic_focus");
	Find(mUnsetContextFocus, "xcb_xim_unset_ic_focus");
	Find(mForwardEvent, "xcb_xim_forward_event");
	if (!mHasAll)
		dlclose(std::exchange(mpLibrary, nullptr));
}

TInputMethodLibrary::~TInputMethodLibrary() {
	if (mpLibrary)
		dlclose(mpLibrary);
}
