// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TStream.h"

#include "framework/foundation/text/TReadableException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

TEST(TStreamTest, WritingInTheMiddleOverwritesAndGrows) {
	TStream stream(std::span<const uint8_t>(std::vector<uint8_t>{1, 2, 3}));
	ASSERT_TRUE(stream.Seek(2));
	stream.SetByteOrder(TStream::kBigEndian);
	stream.WriteInt16(0x0405);
	EXPECT_THAT(stream.Bytes(), testing::ElementsAre(1, 2, 4, 5));
	EXPECT_EQ(stream.Position(), 4);
	EXPECT_FALSE(stream.Seek(5));
	stream.SetSize(1);
	EXPECT_EQ(stream.Position(), 1) << "never behind the end";
	EXPECT_THROW(stream.ReadInt8(), TReadableException);
}
