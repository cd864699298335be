// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <typeinfo>

/// How names of members and classes become names in files. Results are cached for the process, since a document
/// declares the same few dozen names tens of thousands of times: equal names share one text. Any thread.
namespace TNameRules {

/// mActiveScene -> ActiveScene, mpSequencer -> Sequencer, mVortel[kPalette0] -> VortelItemkPalette0.
TString MemberNameToElementName(const TString& name);
/// The literal form finds a known name without making a text of it. ASCII.
TString MemberNameToElementName(const char* name);
/// The singular of a list's name: Entries -> Entry, ColorList -> Color, Data -> DataItem.
TString ListNameToItemName(const TString& name);
/// TDocumentList<TKeyBinding> -> DocumentList_of_KeyBinding_, TFoo::TBar -> Foo.Bar.
TString ClassNameToElementName(const TString& name);
/// TDocumentList<TKeyBinding> -> DocumentList<KeyBinding>.
TString ClassNameToTypeName(const TString& name);
/// The class's name as it stands in the source; "unknown Type" if the compiler's form cannot be read.
TString ClassNameOf(const std::type_info& type);

} // namespace TNameRules
