// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/ProgramNames.h"

#include "tools/vortel2/options/Nearest.h"

#include <functional>

namespace {

using TNameTest = std::function<bool(const std::string& name)>;

std::vector<std::string> NamesOf(TVortelDocument& document) {
	std::vector<std::string> names;
	for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i)
		names.emplace_back(document.Program(i)->Name().Get().CString());
	return names;
}

std::vector<std::string> IndicesWhere(const std::vector<std::string>& names, const TNameTest& isMeant) {
	std::vector<std::string> indices;
	for (std::size_t i = 0; i < names.size(); ++i)
		if (isMeant(LowerCase(names[i])))
			indices.push_back(std::to_string(i));
	return indices;
}

} // namespace

int32_t ProgramNamed(TVortelDocument& document, const TOptionText& name) {
	const std::vector<std::string> names = NamesOf(document);
	const std::string typed = LowerCase(name.Text());
	std::vector<std::string> found = IndicesWhere(names, [&](const std::string& other) { return other == typed; });
	if (found.empty())
		found = IndicesWhere(names, [&](const std::string& other) { return other.starts_with(typed); });
	if (found.empty())
		name.Fail("is not the name of a program" + DidYouMean(name.Text(), names));
	if (found.size() > 1)
		name.Fail("is the name of the programs " + Listed(found, " and ") + "; --program-index chooses one");
	return std::stoi(found.front());
}
