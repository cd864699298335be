// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TWindowResizeBorder.h"

#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TWindow.h"

#include <algorithm>
#include <array>

namespace {

constexpr int kStrip = 3;
constexpr int kLongestCorner = 20;

struct TEdgeFacts {
	int mX; // -1 the left edge moves, 1 the right one, 0 neither
	int mY;
	int mCursor;
};

constexpr std::array<TEdgeFacts, 8> kEdges{{
    {0, -1, kResizeEdgeVerticalCursor},
    {1, -1, kResizeEdgeDiagonalRightCursor},
    {1, 0, kResizeEdgeHorizontalCursor},
    {1, 1, kResizeEdgeDiagonalLeftCursor},
    {0, 1, kResizeEdgeVerticalCursor},
    {-1, 1, kResizeEdgeDiagonalRightCursor},
    {-1, 0, kResizeEdgeHorizontalCursor},
    {-1, -1, kResizeEdgeDiagonalLeftCursor},
}};

const TEdgeFacts& FactsOf(int edge) {
	return kEdges[static_cast<std::size_t>(edge)];
}

int EdgeFor(int x, int y) {
	for (int edge = 0; edge < static_cast<int>(kEdges.size()); ++edge)
		if (FactsOf(edge).mX == x && FactsOf(edge).mY == y)
			return edge;
	return TWindowResizeBorder::kNoEdge;
}

/// -1 near the start, 1 near the end.
int SideAt(int position, int length, int reach) {
	return position < reach ? -1 : position >= length - reach ? 1 : 0;
}

/// One axis of the window while its edge moves by so much; the other edge stays.
void MoveEdge(int side, int distance, int minimum, int& start, int& length) {
	if (side == 0)
		return;
	const int oldLength = length;
	length = std::max(length + side * distance, minimum);
	if (side < 0)
		start += oldLength - length;
}

} // namespace

int TWindowResizeBorder::EdgeAt(int x, int y) const {
	if (!mWindow || !mWindow->IsResizable() || mWindow->IsMaximized() || !AbsoluteRect().Contains({x, y}))
		return kNoEdge;
	const TPointT<int> point = TPointT<int>{x, y} - AbsolutePosition();
	const int sideX = SideAt(point.mX, Width(), kStrip);
	const int sideY = SideAt(point.mY, Height(), kStrip);
	if (sideX == 0 && sideY == 0)
		return kNoEdge;
	// Near its end a strip belongs to the corner.
	const int cornerX = SideAt(point.mX, Width(), std::min(Width() / 2, kLongestCorner));
	const int cornerY = SideAt(point.mY, Height(), std::min(Height() / 2, kLongestCorner));
	return cornerX != 0 && cornerY != 0 ? EdgeFor(cornerX, cornerY) : EdgeFor(sideX, sideY);
}

bool TWindowResizeBorder::ContainsPoint(int x, int y) const {
	return TView::ContainsPoint(x, y) && EdgeAt(x, y) != kNoEdge;
}

TRectT<int> TWindowResizeBorder::WindowRect() const {
	const TPointT<int> position = mWindow->Position();
	const TPointT<int> size = Scaled(mWindow->ClientSize(), mWindow->UiScale());
	return {position.mX, position.mY, size.mX, size.mY};
}

bool TWindowResizeBorder::OnLeftMouseDown(int x, int y, int /*modifiers*/) {
	mEdge = EdgeAt(x, y);
	if (mEdge == kNoEdge)
		return false;
	mStartRect = WindowRect();
	mPressOffset = TCursor::Instance()->MousePosition();
	return true;
}

void TWindowResizeBorder::OnMouseCaptureReleased(int /*x*/, int /*y*/, int /*modifiers*/) {
	mEdge = kNoEdge;
}

bool TWindowResizeBorder::OnMouseDrag(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (mEdge == kNoEdge || !mWindow)
		return false;
	const TPointT<int> distance = TCursor::Instance()->MousePosition() - mPressOffset;
	const TUiScale scale = mWindow->UiScale();
	const TPointT<int> minimum = Scaled(mWindow->MinimumSize(), scale);
	TRectT<int> rect = mStartRect;
	MoveEdge(FactsOf(mEdge).mX, distance.mX, std::max(minimum.mX, 1), rect.mLeft, rect.mWidth);
	MoveEdge(FactsOf(mEdge).mY, distance.mY, std::max(minimum.mY, 1), rect.mTop, rect.mHeight);
	mWindow->SetClientRect({rect.mLeft, rect.mTop}, Unscaled(TPointT<int>{rect.mWidth, rect.mHeight}, scale));
	return true;
}

bool TWindowResizeBorder::OnMouseHover(int x, int y, int /*modifiers*/) {
	const int edge = EdgeAt(x, y);
	SetCursor(edge == kNoEdge ? kInheritCursor : FactsOf(edge).mCursor);
	return false;
}
