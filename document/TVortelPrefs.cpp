// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelPrefs.h"

#include "framework/document/nodes/TNameRules.h"
#include "framework/foundation/files/Folders.h"
#include "framework/gui/events/TBaseViewsPrefs.h"

TVortelPrefs::TVortelPrefs()
    : mpShowToolTips(TBaseViewsPrefs::Instance()->ShowTooltips()),
      mpWarpCursorOnDrag(TBaseViewsPrefs::Instance()->WarpCursorOnDrag()),
      mpGraphPortPrefs(MakePtr<TGraphPortGroup>()) {
	using TNameRules::MemberNameToElementName;
	OnLoadBegin();
	AddPreference(&mDefaultBankFilename, MemberNameToElementName("mDefaultBankFilename"));
	AddPreference(&mLastUsedPath, MemberNameToElementName("mLastUsedPath"));
	AddPreference(&mpShowToolTips, MemberNameToElementName("mpShowToolTips"));
	AddPreference(&mpWarpCursorOnDrag, MemberNameToElementName("mpWarpCursorOnDrag"));
	AddPreference(&mRandomizeOnLoad, MemberNameToElementName("mRandomizeOnLoad"));
	AddChild(mpGraphPortPrefs.Get(), MemberNameToElementName("mpGraphPortPrefs"), kWrite);
	AddPreference(*mpGraphPortPrefs, &mpGraphPortPrefs->mUiScaleFactor, MemberNameToElementName("mUIScaleFactor"));
	FinishDeclaration();
}

void TVortelPrefs::Create() {
	SetCreateInEveryStorage(false);
	TApplicationPreferences::Create(
	    [] { return static_cast<TApplicationPreferences*>(new TVortelPrefs); },
	    [](TApplicationPreferences* preferences) { delete preferences; });
}

void TVortelPrefs::OnLoadBegin() {
	mDefaultBankFilename.Set({});
	mLastUsedPath.Set(Folders::Documents().Path());
	mpShowToolTips.Set(true);
	mpWarpCursorOnDrag.Set(true);
	mRandomizeOnLoad.Set(true);
	mpGraphPortPrefs->mUiScaleFactor.Set({});
}
