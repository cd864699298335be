// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TFrameworkMemory.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <string>
#include <string_view>

class TDocumentNode;
class TXmlNode;
struct _xmlDoc;
struct _xmlNode;

/// A node's form as an XML document, in files and in memory alike. The elements are the node's declared members, in
/// the order of declaration; nothing is written by hand.
///
/// Failures are TReadableExceptions with a text for the user. Unknown elements and attributes of a file are ignored,
/// missing ones leave the value as it was, and so does a text that does not convert. Main thread, or a host's thread
/// for chunks.
class TXmlDocument : public TFrameworkMemory<TXmlDocument> {
public:
	explicit TXmlDocument(TDocumentNode& owner);

	void LoadFile(const TString& path);
	/// Replaces the file in one step, see TFileReplacement.
	void SaveFile(const TString& path, bool writeEmptyElements);
	/// Leading white space is skipped.
	void LoadMemory(const TStream& bytes);
	void SaveMemory(TStream& bytes, bool writeEmptyElements);

	/// The number of upgrade steps known for the root element, which a save writes; 0 without any.
	int32_t CurrentVersion() const;

	/// The name of the root element: the owner's element name, until another is set.
	const TString& RootName() const noexcept { return mRootName; }

	void SetRootName(const TString& name) { mRootName = name; }

	/// A style sheet for browsers; files only.
	void SetStyleSheet(const TString& href) { mStyleSheet = href; }

	/// The path of the last load or save.
	TObservableBaseType<TString>& FileName() noexcept { return mFileName; }

	/// Looks at the root element only: its name and its "doc_version" (0 without one). False sets the error text.
	static bool ParseHeader(std::string_view bytes, TString& rootName, int32_t& version, TString& errorText);

private:
	void Read(_xmlDoc* document, const TString& path);
	int32_t Translate(_xmlDoc* document, const TString& path) const;
	void CheckRootName(_xmlNode* root, const TString& path) const;
	std::string Print(bool writeEmptyElements, const TString& styleSheet, std::string& errors) const;

	TDocumentNode& mOwner;
	TString mRootName;
	TString mStyleSheet;
	TObservableBaseType<TString> mFileName;
};
