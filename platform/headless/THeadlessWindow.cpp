// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/headless/THeadlessWindow.h"

#include "framework/foundation/text/TReadableException.h"
#include "platform/WindowPlacement.h"
#include "platform/headless/THeadlessPlatform.h"

#include <algorithm>
#include <cstring>

THeadlessWindow::THeadlessWindow(
    THeadlessPlatform& platform, TWindowGlueClient& client, int kind, THeadlessWindow* parent)
    : mpPlatform(&platform),
      mpClient(&client),
      mpParent(parent),
      mKind(kind),
      mHandle(++platform.mLastHandle),
      mHasDecorations(kind == kTopLevelWindow || kind == kSecondTopLevelWindow) {
	platform.mWindows.push_back(this);
	platform.mStack.push_back(this);
}

THeadlessWindow::~THeadlessWindow() {
	Leave();
}

THeadlessWindow& THeadlessWindow::Root() {
	return mpParent ? mpParent->Root() : *this;
}

void THeadlessWindow::Leave() {
	if (THeadlessPlatform* platform = std::exchange(mpPlatform, nullptr)) {
		mIsShown = false;
		platform->OnWindowClosed(*this);
	}
}

void THeadlessWindow::Close() {
	const TPtr<THeadlessWindow> keep(this);
	Leave();
}

void THeadlessWindow::Lose(const TString& reason) {
	const TPtr<THeadlessWindow> keep(this);
	if (!IsOpen())
		return;
	Leave();
	mpClient->OnGlueLost(reason);
}

bool THeadlessWindow::IsVisible() const {
	if (!IsOpen() || !mIsShown || mIsMinimized || (mIsEmbedded && !mpPlatform->IsHostVisible()))
		return false;
	return mKind != kEmbeddedWindow || !mpParent || mpParent->IsVisible();
}

void THeadlessWindow::OnVisibilityMayHaveChanged(bool before) {
	if (!IsOpen() || IsVisible() == before)
		return;
	const TPtr<THeadlessWindow> keep(this);
	mpPlatform->UpdateKeyWindow();
	if (IsOpen())
		mpClient->OnGlueVisibilityChanged(!before);
}

void THeadlessWindow::Show(bool /*activate*/, bool front) {
	if (!IsOpen())
		return;
	const bool before = IsVisible();
	mIsShown = true;
	mpPlatform->OnWindowShown(*this, front);
	OnVisibilityMayHaveChanged(before);
}

void THeadlessWindow::Hide() {
	const bool before = IsVisible();
	mIsShown = false;
	OnVisibilityMayHaveChanged(before);
}

bool THeadlessWindow::IsKey() const {
	return IsOpen() && mpPlatform->KeyWindow() == this;
}

void THeadlessWindow::SetClientRect(TPointT<int> position, TPointT<int> size) {
	if (!IsOpen())
		return;
	const TPtr<THeadlessWindow> keep(this);
	size = {std::max(size.mX, 1), std::max(size.mY, 1)};
	const bool hasMoved = std::exchange(mPosition, position) != position;
	if (std::exchange(mSize, size) != size) {
		mPixels.assign(static_cast<std::size_t>(size.mX) * static_cast<std::size_t>(size.mY), 0);
		mpClient->OnGlueResized(size);
		const TRectT<int> all{0, 0, size.mX, size.mY};
		if (IsVisible() && mSize == size)
			mpClient->OnGlueExposed({&all, 1});
	}
	if (hasMoved && IsOpen())
		mpClient->OnGlueMoved(position);
}

void THeadlessWindow::Minimize() {
	const bool before = IsVisible();
	mIsMinimized = true;
	OnVisibilityMayHaveChanged(before);
}

void THeadlessWindow::Maximize() {
	if (!IsOpen() || mIsMaximized)
		return;
	mRestoredRect = {mPosition.mX, mPosition.mY, mSize.mX, mSize.mY};
	mIsMaximized = true;
	const TRectT<int> area = mpPlatform->Screens().At(mPosition).mWorkArea;
	SetClientRect({area.mLeft, area.mTop}, {area.mWidth, area.mHeight});
}

void THeadlessWindow::Restore() {
	const bool before = IsVisible();
	mIsMinimized = false;
	if (std::exchange(mIsMaximized, false))
		SetClientRect({mRestoredRect.mLeft, mRestoredRect.mTop}, {mRestoredRect.mWidth, mRestoredRect.mHeight});
	OnVisibilityMayHaveChanged(before);
}

void THeadlessWindow::Present(const TGluePixels& picture, std::span<const TRectT<int>> rects) {
	if (!IsVisible())
		return;
	const TRectT<int> both{0, 0, std::min(picture.mSize.mX, mSize.mX), std::min(picture.mSize.mY, mSize.mY)};
	for (const TRectT<int>& wanted : rects) {
		const TRectT<int> rect = wanted.Intersected(both);
		for (int y = rect.mTop; y < rect.Bottom(); ++y) {
			const std::byte* from =
			    picture.mpPixels + static_cast<std::ptrdiff_t>(y) * picture.mRowBytes + rect.mLeft * 4;
			uint32_t* to = mPixels.data() + static_cast<std::ptrdiff_t>(y) * mSize.mX + rect.mLeft;
			std::memcpy(to, from, static_cast<std::size_t>(rect.mWidth) * 4);
			std::for_each_n(to, rect.mWidth, [](uint32_t& pixel) { pixel &= 0xFFFFFF; });
		}
		++mPresentedRects;
	}
}

void THeadlessWindow::Embed(TNativeWindow host, bool wantsKeyboardInput) {
	if (!IsOpen())
		return;
	if (host == 0)
		throw TReadableException("The host provides no window for the editor.");
	const bool before = IsVisible();
	mIsEmbedded = true;
	mWantsKeyboardInput = wantsKeyboardInput;
	SetPosition(mpPlatform->HostCorner());
	OnVisibilityMayHaveChanged(before);
}

void THeadlessWindow::Resize(TPointT<int> size) {
	SetClientSize(size);
}

void THeadlessWindow::ForceResize(TPointT<int> /*oldSize*/, TPointT<int> newSize) {
	SetClientSize(newSize);
}

void THeadlessWindow::PassKeyToHost(const TGlueKeyEvent& event) {
	if (IsOpen())
		mpPlatform->mHostKeys.push_back(event);
}

void THeadlessWindow::CenterOnScreen() {
	if (!IsOpen())
		return;
	const TRectT<int> area = mpPlatform->Screens().At(mpParent ? mpParent->Position() : mPosition).mWorkArea;
	SetPosition(CenteredPosition(mSize, area, area));
}

void THeadlessWindow::CenterInParent() {
	if (!IsOpen() || !mpParent)
		return CenterOnScreen();
	const TPointT<int> corner = mpParent->Position();
	const TPointT<int> size = mpParent->ClientSize();
	const TRectT<int> area = mpPlatform->Screens().At(corner).mWorkArea;
	SetPosition(CenteredPosition(mSize, {corner.mX, corner.mY, size.mX, size.mY}, area));
}
