// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TCursor.h"

#include "tests/support/TControlFixture.h"

#include <cstdlib>
#include <vector>

namespace {

class TCursorTest : public TControlFixture {
protected:
	struct TPicture {
		TPointT<int> mSize;
		TPointT<int> mHotSpot;
		std::vector<uint32_t> mPixels;

		uint32_t At(int x, int y) const { return mPixels[static_cast<std::size_t>(y * mSize.mX + x)]; }
	};

	static TPicture PictureOf(int id) {
		TCursor::Instance()->SetCurrent(kDefaultCursor);
		TCursor::Instance()->SetCurrent(id);
		const TCursorImage image = Platform().CursorImage(id);
		return {image.mSize, image.mHotSpot, {image.mPixels.begin(), image.mPixels.end()}};
	}

	static bool IsSolid(uint32_t pixel) { return pixel >> 24 == 255; }

	static int Green(uint32_t pixel) { return static_cast<int>(pixel >> 8 & 255); }

	/// How far the greens lie apart where the small picture's pixel and all four of the large one's are solid.
	static double Difference(const TPicture& small, const TPicture& large) {
		int sum = 0;
		int count = 0;
		for (int y = 0; y < small.mSize.mY; ++y)
			for (int x = 0; x < small.mSize.mX; ++x) {
				const uint32_t block[] = {
				    large.At(2 * x, 2 * y), large.At(2 * x + 1, 2 * y), large.At(2 * x, 2 * y + 1),
				    large.At(2 * x + 1, 2 * y + 1)};
				if (!IsSolid(small.At(x, y)) || !std::all_of(std::begin(block), std::end(block), IsSolid))
					continue;
				int mean = 0;
				for (const uint32_t pixel : block)
					mean += Green(pixel);
				sum += std::abs(mean / 4 - Green(small.At(x, y)));
				++count;
			}
		return count == 0 ? 0.0 : static_cast<double>(sum) / count;
	}
};

TEST_F(TCursorTest, PicturesHaveTheScaleOfTheInterface) {
	std::vector<TPicture> small;
	for (int id = 1; id < kNumberOfCursors; ++id)
		small.push_back(PictureOf(id));
	Preferences().mUIScaleFactor.Set(TGraphPort::kScale200);
	TCursor::Instance()->ReloadPictures();
	for (int id = 1; id < kNumberOfCursors; ++id) {
		const TPicture& at100 = small[static_cast<std::size_t>(id - 1)];
		const TPicture at200 = PictureOf(id);
		ASSERT_FALSE(at100.mPixels.empty()) << id;
		ASSERT_EQ(at200.mSize, (TPointT<int>{2 * at100.mSize.mX, 2 * at100.mSize.mY})) << id;
		EXPECT_EQ(at200.mHotSpot, (TPointT<int>{2 * at100.mHotSpot.mX, 2 * at100.mHotSpot.mY})) << id;
		EXPECT_LT(Difference(at100, at200), 48.0) << id;
	}
}

} // namespace
