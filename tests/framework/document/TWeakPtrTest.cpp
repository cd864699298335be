// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TWeakPtr.h"
#include "framework/document/TGloballyAccessible.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

class TTarget : public TWeakReferenceable {};

class TPanel final : public TGloballyAccessible<TPanel> {};

} // namespace

TEST(TWeakPtrTest, AllReferencesBecomeNullAtOnceWhateverTheirOrder) {
	auto target = std::make_unique<TTarget>();
	auto other = std::make_unique<TTarget>();
	std::vector<TWeakPtr<TTarget>> references(5, TWeakPtr<TTarget>(target.get()));
	references[0] = other.get();                      // leaves the list at its end
	references[4] = nullptr;                          // at its head
	references[2] = TWeakPtr<TTarget>(references[2]); // and comes back
	target = nullptr;
	EXPECT_EQ(references[0].Get(), other.get());
	for (std::size_t i = 1; i < references.size(); ++i)
		EXPECT_FALSE(references[i]) << i;
}

TEST(TWeakPtrTest, ReferenceMayDieBeforeItsTarget) {
	TTarget target;
	const TWeakPtr<TTarget> first(&target);
	auto second = std::make_unique<TWeakPtr<TTarget>>(&target);
	const TWeakPtr<TTarget> third(&target);
	second = nullptr;
	EXPECT_EQ(first, &target);
	EXPECT_EQ(third, first);
}

TEST(TWeakPtrTest, CopyOfATargetTakesNoReferencesWithIt) {
	auto target = std::make_unique<TTarget>();
	const TWeakPtr<TTarget> reference(target.get());
	{ const TTarget copy(*target); }
	EXPECT_EQ(reference, target.get());
}

TEST(TGloballyAccessibleTest, AnswersWhileTheObjectLives) {
	EXPECT_EQ(TPanel::Instance(), nullptr);
	{
		TPanel panel;
		EXPECT_EQ(TPanel::Instance(), &panel);
	}
	EXPECT_EQ(TPanel::Instance(), nullptr);
}
