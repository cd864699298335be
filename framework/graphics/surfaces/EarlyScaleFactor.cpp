// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/EarlyScaleFactor.h"

#include "framework/document/TApplicationPreferences.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/WholeFile.h"

#include <algorithm>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

constexpr const char* kKey = "GraphPortPrefs.UIScaleFactor";

/// The parser goes one call deeper with each element; preferences are three deep.
void RequireShallow(const std::string& xml) {
	constexpr int kDeepest = 100;
	int depth = 0;
	for (std::size_t i = 0; i + 1 < xml.size(); ++i) {
		if (xml[i] == '<')
			depth += xml[i + 1] == '/' ? -1 : xml[i + 1] == '!' || xml[i + 1] == '?' ? 0 : 1;
		else if (xml[i] == '/' && xml[i + 1] == '>')
			--depth;
		if (depth > kDeepest)
			throw std::runtime_error("elements are nested too deep");
	}
}

std::string ReadKey(const TString& path) {
	std::string xml;
	TString reason;
	if (!ReadWholeFile(path, xml, reason))
		throw std::runtime_error(reason.CString(kPlatformEncoding));
	RequireShallow(xml);
	std::istringstream stream(xml);
	boost::property_tree::ptree tree;
	boost::property_tree::read_xml(stream, tree);
	// The key counts from below the root element, whose name is that of the program's preferences.
	for (const auto& [name, root] : tree)
		if (const auto value = root.get_optional<std::string>(kKey))
			return *value;
	return tree.get<std::string>(kKey, {});
}

} // namespace

TString EarlyScaleFactor() {
	const TString path = TApplicationPreferences::FilePath();
	if (path.IsEmpty() || !TFile(path).Exists())
		return {};
	try {
		return TString(ReadKey(path), kPlatformEncoding);
	} catch (const std::exception& exception) {
		TLog::Instance()->Log("GraphPort", "Failed to parse preferences file: %s", exception.what());
		return {};
	}
}
