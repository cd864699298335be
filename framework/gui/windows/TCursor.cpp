// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TCursor.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/bitmaps/TBitmap.h"
#include "framework/graphics/surfaces/TAlphaMask.h"
#include "framework/graphics/surfaces/TDeviceAccess.h"
#include "platform/TPlatform.h"

#include <array>
#include <cmath>
#include <vector>

namespace {

struct TCursorPicture {
	const char* mName;
	TPointT<int> mHotSpot; // logical pixels
};

constexpr std::array<TCursorPicture, kNumberOfCursors> kPictures{{
    {"Default", {0, 0}},
    {"Drag", {7, 5}},
    {"CanDrag", {8, 7}},
    {"CanDrop", {0, 0}},
    {"CanCopy", {0, 0}},
    {"CanCreateAlias", {0, 0}},
    {"CanClone", {0, 0}},
    {"CanNotDrop", {11, 11}},
    {"Default", {0, 0}},
    {"Empty", {0, 0}},
    {"EditText", {5, 7}},
    {"ValueChooser", {0, 1}},
    {"Pencil", {6, 21}},
    {"PlaceMarker", {6, 11}},
    {"Crosshair", {8, 8}},
    {"Move", {8, 8}},
    {"ResizeVertical", {3, 8}},
    {"ResizeHorizontal", {8, 3}},
    {"ResizeEdgeVertical", {4, 10}},
    {"ResizeEdgeHorizontal", {10, 4}},
    {"ResizeEdgeDiagonalLeft", {7, 7}},
    {"ResizeEdgeDiagonalRight", {7, 7}},
    {"ZoomVertical", {6, 8}},
    {"ZoomHorizontal", {8, 6}},
    {"Zoom", {7, 7}},
    {"ExtendLeft", {9, 4}},
    {"ExtendRight", {6, 6}},
    {"ExtendTop", {6, 8}},
    {"ExtendBottom", {4, 9}},
    {"ExtendLeftAlias", {9, 4}},
    {"ExtendRightAlias", {6, 6}},
    {"ExtendTopAlias", {6, 8}},
    {"ExtendBottomAlias", {4, 9}},
    {"Play", {9, 7}},
}};

TCursorImpl* Impl() {
	TPlatform* platform = TPlatform::Instance();
	return platform ? &platform->Cursor() : nullptr;
}

uint32_t PixelWithAlpha(const TSurface& surface, const TAlphaMask* mask, TPointT<int> point) {
	const TColor color = surface.Pixel(point);
	const auto alpha = mask ? static_cast<uint32_t>(std::lround(mask->Value(point) * 255.0f)) : 255u;
	return alpha << 24 | static_cast<uint32_t>(color.mRed) << 16 | static_cast<uint32_t>(color.mGreen) << 8 |
	       static_cast<uint32_t>(color.mBlue);
}

/// The twins of the named files with smooth edges, in the resolution of the UI scale.
void Define(TCursorImpl& impl, int id) {
	const TCursorPicture& picture = kPictures[static_cast<std::size_t>(id)];
	TBitmap bitmap(TString("Cursors/") + picture.mName + ".png");
	bitmap.Load();
	TSurface& surface = *bitmap.Surface();
	const TUiScale scale = surface.Scale();
	const TDeviceAccess access(surface); // pictures and masks are both read pixel by pixel
	const TPointT<int> size = surface.Size();
	std::vector<uint32_t> pixels;
	pixels.reserve(static_cast<std::size_t>(size.mX) * static_cast<std::size_t>(size.mY));
	for (int y = 0; y < size.mY; ++y)
		for (int x = 0; x < size.mX; ++x)
			pixels.push_back(PixelWithAlpha(surface, surface.AlphaMask(), {x, y}));
	impl.Define(id, {size, Scaled(picture.mHotSpot, scale), pixels});
}

} // namespace

int TCursor::Current() const {
	const TCursorImpl* impl = Impl();
	return impl ? impl->Current() : static_cast<int>(kDefaultCursor);
}

void TCursor::SetCurrent(int id) {
	const TCursorImpl* impl = Impl();
	if (impl && id >= 0 && id < kNumberOfCursors && impl->Current() != id)
		Show(id);
}

void TCursor::Show(int id) {
	TCursorImpl* impl = Impl();
	bool& isMissing = mMissing[static_cast<std::size_t>(id)];
	try {
		if (!isMissing && !impl->IsDefined(id))
			Define(*impl, id);
	} catch (const TReadableException&) {
		isMissing = true; // it is in the log
	}
	impl->SetCurrent(id);
}

TPointT<int> TCursor::MousePosition() const {
	const TCursorImpl* impl = Impl();
	return impl ? impl->MousePosition() : TPointT<int>{};
}

void TCursor::SetMousePosition(TPointT<int> position) {
	if (TCursorImpl* impl = Impl())
		impl->SetMousePosition(position);
}

bool TCursor::IsLeftButtonDown() const {
	const TCursorImpl* impl = Impl();
	return impl && impl->IsButtonDown(TMouseButton::kLeft);
}

bool TCursor::IsRightButtonDown() const {
	const TCursorImpl* impl = Impl();
	return impl && impl->IsButtonDown(TMouseButton::kRight);
}

bool TCursor::IsMiddleButtonDown() const {
	const TCursorImpl* impl = Impl();
	return impl && impl->IsButtonDown(TMouseButton::kMiddle);
}

void TCursor::ReloadPictures() {
	TCursorImpl* impl = Impl();
	if (!impl)
		return;
	impl->ForgetAll();
	mMissing.fill(false);
	Show(impl->Current());
}

void TCursor::CreateService() {
	Create([]() { return new TCursor; }, [](TCursor* cursor) { delete cursor; });
}

TCursorGuard::TCursorGuard()
    : mPrevious(TCursor::Instance() ? TCursor::Instance()->Current() : int{kNumberOfCursors}) {}

TCursorGuard::~TCursorGuard() {
	if (mPrevious != kNumberOfCursors && TCursor::Instance())
		TCursor::Instance()->SetCurrent(mPrevious);
}
