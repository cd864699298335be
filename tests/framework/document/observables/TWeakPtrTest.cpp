// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TWeakPtr.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

class TTarget : public TWeakReferenceable {};

} // namespace

TEST(TWeakPtrTest, AllReferencesBecomeNullAtOnceWhateverTheirOrder) {
	auto target = std::make_unique<TTarget>();
	auto other = std::make_unique<TTarget>();
	std::vector<TWeakPtr<TTarget>> references(6, TWeakPtr<TTarget>(target.get()));
	references[0] = other.get();                      // leaves the list at its end
	references[4] = nullptr;                          // in between
	references[2] = TWeakPtr<TTarget>(references[2]); // and comes back
	references.pop_back();                            // at its head
	{ const TTarget copy(*target); }                  // takes no references with it
	EXPECT_EQ(references[3], target.get());
	target = nullptr;
	EXPECT_EQ(references[0].Get(), other.get());
	for (std::size_t i = 1; i < references.size(); ++i)
		EXPECT_FALSE(references[i]) << i;
}
