// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFontSettings.h"

#include "framework/document/nodes/TNameRules.h"

using TNameRules::MemberNameToElementName;

TFontSettings::TFontSettings() {
	ReserveMembers(11, 0);
	AddProperty(&mFamilyName, MemberNameToElementName("mFamilyName"), kWrite);
	AddProperty(&mPostScriptName, MemberNameToElementName("mPostScriptName"), kWrite);
	AddProperty(&mWidth, MemberNameToElementName("mWidth"), kWrite);
	AddProperty(&mHeight, MemberNameToElementName("mHeight"), kWrite);
	AddProperty(&mExtraHorizontalSpacing, MemberNameToElementName("mExtraHorizontalSpacing"), kWrite);
	AddProperty(&mExtraVerticalSpacing, MemberNameToElementName("mExtraVerticalSpacing"), kWrite);
	AddProperty(&mExtraBaselineOffset, MemberNameToElementName("mExtraBaselineOffset"), kWrite);
	AddProperty(&mAntiAlias, MemberNameToElementName("mAntiAlias"), kWrite);
	AddProperty(&mAutoHint, MemberNameToElementName("mAutoHint"), kWrite);
	AddProperty(&mBold, MemberNameToElementName("mBold"), kWrite);
	AddProperty(&mItalic, MemberNameToElementName("mItalic"), kWrite);
	FinishDeclaration();
}

TFontSettings::~TFontSettings() = default;

TFontFileSettings::TFontFileSettings() {
	ReserveMembers(5, 0);
	AddProperty(&mFileName, MemberNameToElementName("mFileName"), kWrite);
	AddProperty(&mSize, MemberNameToElementName("mSize"), kWrite);
	AddProperty(&mAntiAlias, MemberNameToElementName("mAntiAlias"), kWrite);
	AddProperty(&mAutoHint, MemberNameToElementName("mAutoHint"), kWrite);
	AddProperty(&mBaselineOffset, MemberNameToElementName("mBaselineOffset"), kWrite);
	FinishDeclaration();
}

TFontFileSettings::~TFontFileSettings() = default;
