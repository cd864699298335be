// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TSerializable;
class TString;

/// Values whose text is an XML document of its own.
namespace NestedXml {

/// Gives the value its text. If it is XML, the root element gets the name first under which files hold the value, for
/// that is how it finds the text there too. Throws TReadableException for what is no XML.
void Fill(TSerializable& value, const TString& text, const TString& rootName);

} // namespace NestedXml
