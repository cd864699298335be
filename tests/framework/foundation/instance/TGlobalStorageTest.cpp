// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/instance/TSingleton.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

class TCounted final : public TSingleton<TCounted> {
public:
	TCounted() {
		if (sFail)
			throw std::runtime_error("no more");
		++sAlive;
	}

	~TCounted() override { --sAlive; }

	static inline int sAlive = 0;
	static inline bool sFail = false;
	bool mWasCreated = false;

private:
	void OnCreated() override { mWasCreated = Instance() == this; }
};

class TExplicit final : public TSingleton<TExplicit> {};

template <class T>
void Create() {
	T::Create([] { return new T; }, [](T* object) { delete object; });
}

class TGlobalStorageTest : public testing::Test {
protected:
	TGlobalStorageTest() : mFirst(TGlobalStorage::CreateStorage()) {
		TGlobalStorageScope scope(mFirst);
		Create<TCounted>();
	}

	~TGlobalStorageTest() override {
		TCounted::sFail = false;
		EXPECT_EQ(TCounted::sAlive, 0);
	}

	/// As the last instance of a host format does.
	void EndIn(int32_t id) {
		{
			TGlobalStorageScope scope(id);
			TCounted::Destroy();
		}
		TGlobalStorage::DestroyStorage(id);
	}

	int32_t mFirst;
};

} // namespace

TEST_F(TGlobalStorageTest, EachStorageHasItsOwnObjectAndTheFirstMayGoBeforeTheSecond) {
	const int32_t second = TGlobalStorage::CreateStorage();
	{
		TGlobalStorageScope scope(mFirst);
		const TCounted* first = TCounted::Instance();
		TGlobalStorageScope inner(second);
		EXPECT_TRUE(TCounted::Instance()->mWasCreated);
		EXPECT_NE(TCounted::Instance(), first);
	}
	EXPECT_EQ(TGlobalStorage::CurrentId(), -1);
	TGlobalStorage::DestroyStorage(mFirst);
	EXPECT_EQ(TCounted::sAlive, mFirst == 0 ? 2 : 1); // those of storage 0 stay until the registration ends
	EndIn(second);
}

TEST_F(TGlobalStorageTest, ThreadWithoutScopeUsesTheDefaultStorage) {
	std::thread([this] {
		ASSERT_NE(TGlobalStorage::Current(), nullptr);
		EXPECT_EQ(TGlobalStorage::Current()->Id(), mFirst);
		EXPECT_EQ(TGlobalStorage::CurrentId(), -1);
	}).join();
	EndIn(mFirst);
	EXPECT_EQ(TGlobalStorage::Current(), nullptr);
}

TEST_F(TGlobalStorageTest, ThrowingCreatorTakesTheNewStorageDown) {
	TCounted::sFail = true;
	EXPECT_THROW(TGlobalStorage::CreateStorage(), std::runtime_error);
	TGlobalStorageScope gone(mFirst + 1);
	EXPECT_EQ(TGlobalStorage::CurrentId(), -1);
	EndIn(mFirst);
}

TEST_F(TGlobalStorageTest, RegistrationLastsUntilTheLastDestroy) {
	const int32_t otherFormat = TGlobalStorage::CreateStorage();
	{
		TGlobalStorageScope scope(otherFormat);
		const TCounted* made = TCounted::Instance();
		Create<TCounted>();
		EXPECT_EQ(TCounted::Instance(), made);
	}
	EndIn(mFirst);
	const int32_t second = TGlobalStorage::CreateStorage();
	EXPECT_EQ(TCounted::sAlive, 2);
	TGlobalStorage::DestroyStorage(second);
	EndIn(otherFormat);
	const int32_t afterTheEnd = TGlobalStorage::CreateStorage();
	EXPECT_EQ(afterTheEnd, mFirst + 3) << "no id is used again";
	EXPECT_EQ(TCounted::sAlive, 0);
	TGlobalStorage::DestroyStorage(afterTheEnd);
	TGlobalStorageScope gone(mFirst);
	EXPECT_EQ(TGlobalStorage::CurrentId(), -1);
}

TEST_F(TGlobalStorageTest, ExplicitClassIsNotCreatedInFurtherStorages) {
	TExplicit::SetCreateInEveryStorage(false);
	TGlobalStorageScope scope(mFirst);
	Create<TExplicit>();
	const int32_t second = TGlobalStorage::CreateStorage();
	{
		TGlobalStorageScope inner(second);
		EXPECT_EQ(TExplicit::Instance(), nullptr);
	}
	TGlobalStorage::DestroyStorage(second);
	TExplicit::Destroy();
	EXPECT_EQ(TExplicit::Instance(), nullptr);
	EndIn(mFirst);
}
