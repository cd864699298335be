// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TWindowGlue.h"

#include <vector>

class THeadlessPlatform;

/// A window that is a block of memory: what was presented can be looked at. Its platform must outlive it or be told to
/// close it first.
class THeadlessWindow final : public TWindowGlue {
public:
	THeadlessWindow(THeadlessPlatform& platform, TWindowGlueClient& client, int kind, THeadlessWindow* parent);
	~THeadlessWindow() override;

	int Kind() const { return mKind; }

	TWindowGlueClient& Client() const { return *mpClient; }

	THeadlessWindow* Parent() const { return mpParent; }

	/// The window that this one belongs to in the end.
	THeadlessWindow& Root();

	/// What the window shows: rows of 0x00RRGGBB as they were presented last, 0 where nothing was. The size is the
	/// client area's.
	const std::vector<uint32_t>& Pixels() const { return mPixels; }

	/// How many rectangles have been presented so far.
	int PresentedRects() const { return mPresentedRects; }

	/// The native window goes without having been asked.
	void Lose(const TString& reason);

	bool IsOpen() const override { return mpPlatform != nullptr; }

	void Close() override;

	TNativeWindow NativeHandle() const override { return IsOpen() ? mHandle : 0; }

	bool IsVisible() const override;
	void Show(bool activate, bool front) override;
	void Hide() override;
	bool IsKey() const override;

	TString Title() const override { return mTitle; }

	void SetTitle(const TString& title) override { mTitle = title; }

	TPointT<int> Position() const override { return mPosition; }

	TPointT<int> ClientSize() const override { return mSize; }

	void SetClientRect(TPointT<int> position, TPointT<int> size) override;

	TPointT<int> MinimumSize() const override { return mMinimumSize; }

	void SetMinimumSize(TPointT<int> size) override { mMinimumSize = size; }

	bool IsResizable() const override { return mIsResizable; }

	void SetResizable(bool resizable) override { mIsResizable = resizable; }

	bool HasNativeDecorations() const override { return mHasDecorations; }

	void SetHasNativeDecorations(bool decorations) override { mHasDecorations = decorations; }

	void Minimize() override;
	void Maximize() override;
	void Restore() override;

	bool IsMinimized() const override { return mIsMinimized; }

	bool IsMaximized() const override { return mIsMaximized; }

	void Present(const TGluePixels& picture, std::span<const TRectT<int>> rects) override;

	/// At the platform's host corner; any id but 0 will do.
	void Embed(TNativeWindow host, bool wantsKeyboardInput) override;
	void Resize(TPointT<int> size) override;
	void ForceResize(TPointT<int> oldSize, TPointT<int> newSize) override;

	void SetWantsKeyboardInput(bool wants) override { mWantsKeyboardInput = wants; }

	bool WantsKeyboardInput() const { return mWantsKeyboardInput; }

	bool IsEmbedded() const { return mIsEmbedded; }

	void PassKeyToHost(const TGlueKeyEvent& event) override;

	void CenterOnScreen() override;
	void CenterInParent() override;

private:
	friend class THeadlessPlatform;

	void Leave();
	void OnVisibilityMayHaveChanged(bool before);

	THeadlessPlatform* mpPlatform; // null when closed
	TWindowGlueClient* mpClient;
	THeadlessWindow* mpParent;
	const int mKind;
	const TNativeWindow mHandle;
	bool mIsShown = false;
	bool mIsMinimized = false;
	bool mIsMaximized = false;
	bool mIsResizable = false;
	bool mHasDecorations;
	bool mIsEmbedded = false;
	bool mWantsKeyboardInput = false;
	TString mTitle;
	TPointT<int> mPosition;
	TPointT<int> mSize{1, 1};
	TPointT<int> mMinimumSize;
	TRectT<int> mRestoredRect;
	std::vector<uint32_t> mPixels{0};
	int mPresentedRects = 0;
};
