// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Platform.h"
#include "tests/platform/TTestSystem.h"
#include "tests/platform/linux/TX11User.h"
#include "tests/support/TXvfb.h"

namespace {

class TX11System final : public TTestSystem {
public:
	bool IsThere() const { return mServer.IsRunning(); }

	TPlatform& Platform() override { return mPlatform; }

	void MovePointer(TPointT<int> position) override { User().MovePointer(position); }

	void Button(TMouseButton button, bool press) override {
		constexpr int kButtons[]{1, 3, 2};
		User().Button(kButtons[static_cast<int>(button)], press);
	}

	void Wheel(TPointT<int> notches) override {
		const int button = notches.mY > 0 ? 4 : notches.mY < 0 ? 5 : notches.mX > 0 ? 6 : 7;
		for (int count = std::abs(notches.mX) + std::abs(notches.mY); count > 0; --count) {
			User().Button(button, true);
			User().Button(button, false);
		}
	}

	void Key(int code, bool press) override { User().Key(TX11User::KeycodeOf(code), press); }

	TNativeWindow OpenHost(TPointT<int> corner) override {
		mHost = User().OpenWindow({corner.mX, corner.mY, 400, 300});
		User().Focus(mHost);
		return mHost;
	}

	void MoveHost(TPointT<int> corner) override {
		const uint32_t values[]{static_cast<uint32_t>(corner.mX), static_cast<uint32_t>(corner.mY)};
		User().Configure(mHost, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
	}

	void ShowHost(bool visible) override {
		if (visible)
			xcb_map_window(User().Xcb(), mHost);
		else
			xcb_unmap_window(User().Xcb(), mHost);
		User().Sync();
	}

	void DestroyHost() override {
		xcb_destroy_window(User().Xcb(), mHost);
		User().Sync();
	}

	bool HasHostKeys() override { return User().FocusHolder() == mHost; }

	uint32_t PixelAt(TWindowGlue& window, TPointT<int> point) override {
		return User().PixelAt(static_cast<xcb_window_t>(window.NativeHandle()), point);
	}

	/// What the platform does may make the server tell it more; three rounds are one more than any of the tests needs.
	void Settle() override {
		for (int round = 0; round < 3; ++round) {
			mPlatform.ProcessEvents();
			if (mPlatform.EventDescriptor() >= 0)
				mPlatform.Connection().Reply(
				    xcb_get_input_focus_reply, xcb_get_input_focus(mPlatform.Connection().Xcb()));
			User().Sync();
		}
	}

private:
	TX11User& User() {
		if (!mpUser)
			mpUser = std::make_unique<TX11User>();
		return *mpUser;
	}

	TXvfb mServer;
	std::unique_ptr<TX11User> mpUser;
	TX11Platform mPlatform;
	xcb_window_t mHost = 0;
};

} // namespace

std::unique_ptr<TTestSystem> MakeX11System() {
	auto system = std::make_unique<TX11System>();
	return system->IsThere() ? std::move(system) : nullptr;
}
