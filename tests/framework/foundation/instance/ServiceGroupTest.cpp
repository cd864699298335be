// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/instance/ServiceGroup.h"

#include "framework/foundation/instance/TSingleton.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

std::string sJournal;
bool sFails = false;

template <char kName>
class TNamed final : public TSingleton<TNamed<kName>> {
public:
	TNamed() { sJournal += kName; }

	~TNamed() override { sJournal += std::string("-") + kName; }

	static void CreateService() {
		if (sFails && kName == 'c')
			throw std::runtime_error("no more");
		TNamed::Create([] { return new TNamed; }, [](TNamed* object) { delete object; });
	}
};

constexpr std::array<TService, 3> kServices{
    ServiceOf<TNamed<'a'>>(&TNamed<'a'>::CreateService), ServiceOf<TNamed<'b'>>(&TNamed<'b'>::CreateService),
    ServiceOf<TNamed<'c'>>(&TNamed<'c'>::CreateService)};

TEST(ServiceGroupTest, StartsInOrderAndLeavesNothingWhenOneFails) {
	const int32_t first = TGlobalStorage::CreateStorage();
	const int32_t second = TGlobalStorage::CreateStorage();
	{
		const TGlobalStorageScope scope(first);
		sFails = true;
		EXPECT_THROW(StartServices(kServices), std::runtime_error);
		EXPECT_EQ(std::exchange(sJournal, {}), "ab-b-a");
		TNamed<'a'>::CreateService();
		EXPECT_THROW(StartServices(kServices), std::runtime_error);
		EXPECT_EQ(std::exchange(sJournal, {}), "ab-b") << "what was there before stays";
		sFails = false;
		StartServices(kServices);
		StartServices(kServices);
		EXPECT_EQ(std::exchange(sJournal, {}), "bc");
	}
	{
		const TGlobalStorageScope scope(second);
		EXPECT_EQ(TNamed<'a'>::Instance(), nullptr);
		EndServices(kServices);
		StartServices(kServices);
	}
	{
		const TGlobalStorageScope scope(first);
		EndServices(kServices);
		EndServices(kServices);
		EXPECT_EQ(std::exchange(sJournal, {}), "abc-c-b-a") << "those of this storage alone";
	}
	{
		const TGlobalStorageScope scope(second);
		EXPECT_NE(TNamed<'a'>::Instance(), nullptr);
		EndServices(kServices);
	}
	TGlobalStorage::DestroyStorage(first);
	TGlobalStorage::DestroyStorage(second);
}

} // namespace
