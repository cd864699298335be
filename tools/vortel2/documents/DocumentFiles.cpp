// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/DocumentFiles.h"

#include "framework/document/nodes/TXmlDocument.h"
#include "framework/foundation/text/TReadableException.h"
#include "tools/vortel2/files/InputFile.h"
#include "tools/vortel2/files/TReplacedFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <unistd.h>

namespace {

TString AsText(const std::string& path) {
	return TString(path.c_str(), kUtf8Encoding);
}

/// Most of the document's messages name the file themselves.
template <class TWork>
void NamingTheFile(const std::string& path, const TWork& work) {
	try {
		work();
	} catch (const TReadableException& error) {
		const std::string message = error.Message().CString();
		throw TWorkError(message.find(path) == std::string::npos ? path + ": " + message : message);
	}
}

void LoadNode(TDocumentNode& node, const std::string& path) {
	close(OpenForReading(path));
	NamingTheFile(path, [&] { node.Load(AsText(path)); });
}

} // namespace

DocumentFiles::EKind DocumentFiles::KindOf(const std::string& path) {
	return KindOf(TOptionText("bank", path));
}

DocumentFiles::EKind DocumentFiles::KindOf(const TOptionText& path) {
	if (path.Text().ends_with(".v2prg"))
		return EKind::kProgram;
	if (path.Text().ends_with(".v2bnk"))
		return EKind::kBank;
	path.Fail("ends neither in .v2prg nor in .v2bnk");
}

void DocumentFiles::LoadBank(TVortelDocument& document, const std::string& path) {
	const TVortelDocument::TLoadGuard guard(document);
	LoadNode(document, path);
}

void DocumentFiles::LoadProgram(TVortelDocument& document, const std::string& path) {
	const auto program = MakePtr<TVortelProgram>();
	LoadNode(*program, path);
	const TVortelDocument::TLoadGuard guard(document);
	document.ActiveProgram()->CopyFrom(*program);
	document.FireAllBangs();
}

DocumentFiles::EKind DocumentFiles::Load(TVortelDocument& document, const std::string& path) {
	const EKind kind = KindOf(path);
	if (kind == EKind::kBank)
		LoadBank(document, path);
	else
		LoadProgram(document, path);
	return kind;
}

void DocumentFiles::Save(TVortelDocument& document, const std::string& path) {
	WriteBytes(path, Saved(document, path).Bytes());
}

TStream DocumentFiles::Saved(TVortelDocument& document, const std::string& path) {
	TStream bytes;
	const bool isBank = KindOf(path) == EKind::kBank;
	TDocumentNode& node = isBank ? static_cast<TDocumentNode&>(document) : *document.ActiveProgram();
	NamingTheFile(path, [&] { node.SaveToStream(bytes, false); });
	return bytes;
}

void DocumentFiles::WriteBytes(const std::string& path, std::span<const uint8_t> bytes) {
	TReplacedFile file(path);
	file.Write(bytes);
	file.Commit();
}

int32_t DocumentFiles::VersionOf(const std::string& path) {
	const std::string bytes = ReadInputFile(path);
	TString rootName;
	TString error;
	int32_t version = 0;
	if (!TXmlDocument::ParseHeader(bytes, rootName, version, error))
		throw TWorkError(path + ": " + error.CString());
	return version;
}
