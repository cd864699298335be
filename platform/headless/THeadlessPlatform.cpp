// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/headless/THeadlessPlatform.h"

#include "framework/foundation/threads/TThreadManager.h"
#include "platform/headless/UsKeyboard.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>

namespace {

constexpr TRectT<int> kScreen{0, 0, 2400, 1500};

/// Knows its answer from the beginning.
class TAnsweredDialog final : public TFileDialogImpl {
public:
	TAnsweredDialog(TState state, TString path) : mState(state), mPath(std::move(path)) {}

	TState Poll() override { return mState; }

	TString Path() const override { return mPath; }

	bool HasAskedToOverwrite() const override { return true; }

private:
	TState mState;
	TString mPath;
};

/// Windows of a higher layer lie over all those of a lower one.
int LayerOf(const THeadlessWindow& window) {
	constexpr std::array kLayers{0, 0, 2, 0, 0, 3, 4};
	return window.Kind() == kEmbeddedWindow && window.Parent() ? 1 : kLayers[static_cast<std::size_t>(window.Kind())];
}

} // namespace

THeadlessPlatform::THeadlessPlatform() {
	mScreens.mScreens.Append({.mBounds = kScreen, .mWorkArea = kScreen});
}

THeadlessPlatform::~THeadlessPlatform() {
	mpClient = nullptr;
	while (!mWindows.empty())
		mWindows.back()->Close();
}

void THeadlessPlatform::SetScreens(const TList<TScreen>& screens) {
	mScreens.mScreens = screens;
	if (mpClient)
		mpClient->OnScreensChanged();
}

void THeadlessPlatform::MoveHost(TPointT<int> corner) {
	const TPointT<int> distance = corner - std::exchange(mHostCorner, corner);
	for (THeadlessWindow* window : std::vector(mWindows))
		if (window->IsOpen() && window->Kind() == kEmbeddedWindow && window->Root().IsEmbedded())
			window->SetPosition(window->Position() + distance);
}

void THeadlessPlatform::ShowHost(bool visible) {
	std::vector<std::pair<TPtr<THeadlessWindow>, bool>> before;
	for (THeadlessWindow* window : mWindows)
		before.emplace_back(window, window->IsVisible());
	mIsHostVisible = visible;
	for (const auto& [window, wasVisible] : before)
		window->OnVisibilityMayHaveChanged(wasVisible);
}

void THeadlessPlatform::PutClipboard(const TString& text) {
	mClipboard.SetText(text);
	if (mpClient)
		mpClient->OnClipboardChanged();
}

void THeadlessPlatform::SetActive(bool active) {
	if (std::exchange(mIsActive, active) == active)
		return;
	UpdateKeyWindow();
	if (mpClient)
		active ? mpClient->OnApplicationActivated() : mpClient->OnApplicationDeactivated();
}

void THeadlessPlatform::AnswerDialog(const TString& path) {
	mAnswers.push_back(path);
}

void THeadlessPlatform::CancelDialog() {
	mAnswers.emplace_back();
}

TPtr<TWindowGlue> THeadlessPlatform::CreateWindow(TWindowGlueClient& client, int kind, TWindowGlue* parent) {
	return MakePtr<THeadlessWindow>(*this, client, kind, static_cast<THeadlessWindow*>(parent)).Get();
}

TWindowGlueClient* THeadlessPlatform::WindowUnderPointer() const {
	const THeadlessWindow* window = WindowAt(mPointer);
	return window ? &window->Client() : nullptr;
}

void THeadlessPlatform::ProcessEvents() {
	if (std::exchange(mHasWarped, false))
		MovePointer(mPointer);
}

bool THeadlessPlatform::WaitForTick() {
	const std::function<bool()> onWait = mOnWait;
	if (!onWait)
		return false;
	std::optional<TThreadManager::TReleasedScope> released;
	if (TThreadManager::Instance())
		released.emplace();
	return onWait();
}

TOwnerPtr<TFileDialogImpl> THeadlessPlatform::StartFileDialog(const TFileDialogSettings& settings, TWindowGlue*) {
	using TState = TFileDialogImpl::TState;
	if (!mHasDialogs)
		return std::make_unique<TAnsweredDialog>(TState::kUnavailable, TString());
	mDialogs.push_back(settings);
	TString path;
	if (!mAnswers.empty()) {
		path = mAnswers.front();
		mAnswers.pop_front();
	}
	return std::make_unique<TAnsweredDialog>(path.IsEmpty() ? TState::kCancelled : TState::kAccepted, path);
}

char16_t THeadlessPlatform::TUsKeyboard::CharacterOf(int code, bool) const {
	return UsKeyboard::CharacterOf(code, false);
}

char16_t THeadlessPlatform::TUsKeyboard::TextCharacterOf(int code, int modifiers) const {
	const bool writes = (modifiers & ~kShiftModifier) == 0;
	return writes ? UsKeyboard::CharacterOf(code, (modifiers & kShiftModifier) != 0) : char16_t{0};
}

void THeadlessPlatform::OnWindowShown(THeadlessWindow& window, bool front) {
	if (!front)
		return;
	std::erase(mStack, &window);
	mStack.push_back(&window);
}

void THeadlessPlatform::OnWindowClosed(THeadlessWindow& window) {
	std::erase(mWindows, &window);
	std::erase(mStack, &window);
	for (THeadlessWindow** pointer : {&mpKeyWindow, &mpPressWindow, &mpPointerWindow})
		if (*pointer == &window)
			*pointer = nullptr;
	UpdateKeyWindow();
}

THeadlessWindow* THeadlessPlatform::Topmost(int kind, bool withParent) const {
	const auto found = std::find_if(mStack.rbegin(), mStack.rend(), [&](const THeadlessWindow* window) {
		return window->IsVisible() && window->Kind() == kind && (window->Parent() != nullptr || !withParent);
	});
	return found == mStack.rend() ? nullptr : *found;
}

THeadlessWindow* THeadlessPlatform::WantedKeyWindow() const {
	if (!mIsActive)
		return nullptr;
	if (THeadlessWindow* popup = Topmost(kPopupWindow, false))
		return popup;
	if (THeadlessWindow* dialog = Topmost(kModalDialogWindow, false))
		return dialog;
	if (THeadlessWindow* field = Topmost(kEmbeddedWindow, true))
		return field;
	const auto found = std::find_if(mStack.rbegin(), mStack.rend(), [](const THeadlessWindow* window) {
		return window->IsVisible() && window->Kind() != kToolTipWindow;
	});
	return found == mStack.rend() ? nullptr : *found;
}

void THeadlessPlatform::UpdateKeyWindow() {
	const TPtr<THeadlessWindow> next(WantedKeyWindow());
	if (next == mpKeyWindow)
		return;
	const TPtr<THeadlessWindow> previous(std::exchange(mpKeyWindow, next.Get()));
	if (previous && previous->IsOpen())
		previous->Client().OnGlueLostKey(next ? &next->Client() : nullptr);
	if (next && next->IsKey())
		next->Client().OnGlueBecameKey(previous && previous->IsOpen() ? &previous->Client() : nullptr);
}

THeadlessWindow* THeadlessPlatform::WindowAt(TPointT<int> point) const {
	THeadlessWindow* found = nullptr;
	for (THeadlessWindow* window : mStack) {
		const TPointT<int> corner = window->Position();
		const TPointT<int> size = window->ClientSize();
		const bool isHit = window->IsVisible() && window->Kind() != kToolTipWindow &&
		                   TRectT<int>{corner.mX, corner.mY, size.mX, size.mY}.Contains(point);
		if (isHit && (!found || LayerOf(*window) >= LayerOf(*found)))
			found = window;
	}
	return found;
}
