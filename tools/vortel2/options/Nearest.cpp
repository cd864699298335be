// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/options/Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t kMostNames = 3;

/// How many letters must be put in, taken out, replaced or changed round with their neighbour.
std::size_t Distance(std::string_view a, std::string_view b) {
	std::vector<std::size_t> before(b.size() + 1);
	std::vector<std::size_t> above(b.size() + 1);
	std::vector<std::size_t> row(b.size() + 1);
	std::iota(above.begin(), above.end(), std::size_t{0});
	for (std::size_t i = 1; i <= a.size(); ++i) {
		row[0] = i;
		for (std::size_t j = 1; j <= b.size(); ++j) {
			row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
			if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
				row[j] = std::min(row[j], before[j - 2] + 1);
		}
		std::swap(before, above);
		std::swap(above, row);
	}
	return above[b.size()];
}

} // namespace

std::vector<std::string> Nearest(std::string_view text, std::span<const std::string> names) {
	const std::string typed = LowerCase(text);
	std::vector<std::pair<std::size_t, std::string>> found;
	for (const std::string& name : names) {
		const std::size_t distance = Distance(typed, LowerCase(name));
		const std::size_t length = std::max(typed.size(), name.size());
		const bool isListed =
		    std::any_of(found.begin(), found.end(), [&](const auto& entry) { return entry.second == name; });
		if (!isListed && distance * 5 <= length * 2)
			found.emplace_back(distance, name);
	}
	std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
	// Beside a likely one, unlikely ones only confuse.
	std::vector<std::string> nearest;
	for (const auto& [distance, name] : found)
		if (nearest.size() < kMostNames && distance <= found[0].first + 1)
			nearest.push_back(name);
	return nearest;
}

std::string DidYouMean(std::string_view text, std::span<const std::string> names) {
	const std::vector<std::string> nearest = Nearest(text, names);
	return nearest.empty() ? std::string() : "; did you mean " + Listed(nearest) + "?";
}

std::string LowerCase(std::string_view text) {
	std::string lower(text);
	std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
		return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
	});
	return lower;
}

std::string Listed(std::span<const std::string> words, std::string_view lastJoint) {
	std::string list;
	for (std::size_t i = 0; i < words.size(); ++i)
		list += (i == 0 ? "" : i + 1 == words.size() ? std::string(lastJoint) : ", ") + words[i];
	return list;
}
