// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Platform.h"
#include "tests/platform/TTestSystem.h"
#include "tests/platform/linux/TX11User.h"
#include "tests/support/TXvfb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <xcb-imdkit/encoding.h>
#include <xcb-imdkit/imdkit.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An input method that writes a musical note for the key A, keeps the key E, and gives all others back.
class TInputMethodStandIn {
public:
	TInputMethodStandIn(TX11User& user, bool answersKeys) : mUser(user) {
		xcb_compound_text_init();
		static uint32_t sStyle = XCB_IM_PreeditPosition | XCB_IM_StatusNothing;
		static char sEncoding[] = "COMPOUND_TEXT";
		static char* sEncodings[]{sEncoding};
		const xcb_im_styles_t styles{1, &sStyle};
		const xcb_im_encodings_t encodings{1, sEncodings};
		const xcb_im_trigger_keys_t noKeys{0, nullptr};
		const xcb_window_t window = user.OpenWindow({0, 0, 1, 1}, false);
		mpMethod = xcb_im_create(
		    user.Xcb(), 0, window, "standin", "C,en,fr,POSIX", &styles, &noKeys, &noKeys, &encodings,
		    XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE, &Handle, this);
		xcb_im_set_use_sync_mode(mpMethod, answersKeys);
		xcb_im_set_use_sync_event(mpMethod, answersKeys);
		mIsOpen = xcb_im_open_im(mpMethod);
	}

	~TInputMethodStandIn() {
		if (mIsOpen)
			xcb_im_close_im(mpMethod);
		xcb_im_destroy(mpMethod);
		mUser.Sync();
	}

	TInputMethodStandIn(const TInputMethodStandIn&) = delete;
	TInputMethodStandIn& operator=(const TInputMethodStandIn&) = delete;

	void Process() {
		while (const TXcbEvent event{xcb_poll_for_event(mUser.Xcb())})
			xcb_im_filter_event(mpMethod, event.get());
		xcb_flush(mUser.Xcb());
	}

	bool mIsOpen = false;
	bool mIsHung = false;
	int mContexts = 0;

private:
	static void Handle(
	    xcb_im_t* method, xcb_im_client_t*, xcb_im_input_context_t* context, const xcb_im_packet_header_fr_t* header,
	    void*, void* argument, void* self) {
		auto& standIn = *static_cast<TInputMethodStandIn*>(self);
		if (header->major_opcode == XCB_XIM_CREATE_IC)
			++standIn.mContexts;
		if (header->major_opcode == XCB_XIM_DESTROY_IC)
			--standIn.mContexts;
		if (header->major_opcode != XCB_XIM_FORWARD_EVENT || standIn.mIsHung)
			return;
		auto* event = static_cast<xcb_key_press_event_t*>(argument);
		const bool isPress = (event->response_type & 0x7F) == XCB_KEY_PRESS;
		if (event->detail == TX11User::KeycodeOf(kKeyA)) {
			std::size_t length = 0;
			const TXcbPtr<char> text(xcb_utf8_to_compound_text("\u266A\u00E9", 5, &length));
			if (isPress)
				xcb_im_commit_string(
				    method, context, XCB_XIM_LOOKUP_CHARS, text.get(), static_cast<uint32_t>(length), 0);
		} else if (event->detail != TX11User::KeycodeOf(kKeyA + 4)) {
			xcb_im_forward_event(method, context, event);
		}
	}

	TX11User& mUser;
	xcb_im_t* mpMethod;
};

class TX11InputMethodTest : public testing::TestWithParam<bool> {
protected:
	void SetUp() override {
		if (!mServer.IsRunning())
			GTEST_SKIP() << "Xvfb is not installed";
		setenv("XMODIFIERS", "@im=standin", 1);
		mpUser = std::make_unique<TX11User>();
		mpStandIn = std::make_unique<TInputMethodStandIn>(*mpUser, GetParam());
		ASSERT_TRUE(mpStandIn->mIsOpen);
		mpPlatform = std::make_unique<TX11Platform>();
		mpWindow = mpPlatform->CreateWindow(mJournal, kTopLevelWindow, nullptr);
		mpWindow->SetClientRect({100, 80}, {60, 40});
		mpWindow->Show(true, true);
		Settle();
	}

	void TearDown() override { unsetenv("XMODIFIERS"); }

	/// The two sides say many things to each other.
	void Settle() {
		for (int round = 0; round < 20; ++round) {
			mpPlatform->ProcessEvents();
			mpUser->Sync();
			if (mpStandIn)
				mpStandIn->Process();
		}
	}

	void Type(int code) {
		mpUser->Key(TX11User::KeycodeOf(code), true);
		mpUser->Key(TX11User::KeycodeOf(code), false);
		Settle();
	}

	TXvfb mServer;
	std::unique_ptr<TX11User> mpUser;
	std::unique_ptr<TInputMethodStandIn> mpStandIn;
	std::unique_ptr<TX11Platform> mpPlatform;
	TWindowJournal mJournal;
	TPtr<TWindowGlue> mpWindow;
};

TEST_P(TX11InputMethodTest, SeesKeysFirstWhileATextIsEdited) {
	Type(kKeyA);
	EXPECT_EQ(mJournal.Take("down").size(), 1u);
	EXPECT_EQ(mpStandIn->mContexts, 0);
	mJournal.mIsEditing = true;
	Type(kKeySpace); // while the two get to know each other keys are keys
	EXPECT_EQ(mpStandIn->mContexts, 1);
	mJournal.Take();
	Type(kKeyA);
	EXPECT_THAT(mJournal.Take(), ElementsAre("text \u266A\u00E9"));
	Type(kKeyA + 4);
	EXPECT_THAT(mJournal.Take(), IsEmpty());
	Type(kKeyReturn);
	EXPECT_THAT(mJournal.Take(), ElementsAre("down 104 modifiers 0 character 0", "up 104 modifiers 0 character 0"));
	mpWindow->Close();
	Settle();
	EXPECT_EQ(mpStandIn->mContexts, 0);
}

TEST_P(TX11InputMethodTest, KeysGoOnWhenItEndsOrHangs) {
	mJournal.mIsEditing = true;
	Type(kKeySpace);
	mJournal.Take();
	if (GetParam()) { // one that owes no answers cannot be told from one that thinks
		mpStandIn->mIsHung = true;
		mpUser->Key(TX11User::KeycodeOf(kKeySpace), true);
		const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
		std::vector<std::string> keys;
		while (keys.empty() && std::chrono::steady_clock::now() < end) {
			mpPlatform->WaitForTick();
			mpPlatform->ProcessEvents();
			keys = mJournal.Take("down");
		}
		ASSERT_FALSE(keys.empty());
		EXPECT_EQ(keys[0], "down 37 modifiers 0 character 32");
		mpUser->Key(TX11User::KeycodeOf(kKeySpace), false);
	}
	mpStandIn = nullptr;
	Settle();
	mJournal.Take();
	Type(kKeyA);
	EXPECT_THAT(mJournal.Take("down"), ElementsAre("down 11 modifiers 0 character 97"));
}

INSTANTIATE_TEST_SUITE_P(AnswersKeys, TX11InputMethodTest, testing::Bool());

} // namespace
