// SPDX-License-Identifier: GPL-3.0-or-later
// What is peculiar to X servers: other programs, layouts, losses.

#include "platform/linux/x11/TX11Platform.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "tests/platform/TTestSystem.h"
#include "tests/platform/linux/TX11User.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"
#include "tests/support/TXvfb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TX11PlatformTest : public testing::Test {
protected:
	void SetUp() override {
		if (!mServer.IsRunning())
			GTEST_SKIP() << "Xvfb is not installed";
		mpUser = std::make_unique<TX11User>();
		mpPlatform = std::make_unique<TX11Platform>();
	}

	TX11User& User() { return *mpUser; }

	TX11Platform& Platform() { return *mpPlatform; }

	void Settle() {
		for (int round = 0; round < 3; ++round) {
			Platform().ProcessEvents();
			if (Platform().EventDescriptor() >= 0)
				Platform().Connection().Reply(
				    xcb_get_input_focus_reply, xcb_get_input_focus(Platform().Connection().Xcb()));
			User().Sync();
		}
	}

	/// Until it holds, at most half a minute.
	bool SettleUntil(const std::function<bool()>& condition) {
		const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
		bool holds = condition();
		while (!holds && std::chrono::steady_clock::now() < end) {
			Platform().WaitForTick();
			Settle();
			holds = condition();
		}
		return holds;
	}

	TPtr<TWindowGlue> Open(TWindowGlueClient& client, int kind = kTopLevelWindow, TWindowGlue* parent = nullptr) {
		const TPtr<TWindowGlue> window = Platform().CreateWindow(client, kind, parent);
		window->SetClientRect({100, 80}, {60, 40});
		window->Show(true, true);
		Settle();
		return window;
	}

	TPtr<TWindowGlue> OpenEditor(TWindowGlueClient& client, bool wantsKeys) {
		mHost = User().OpenWindow({50, 50, 300, 200});
		User().Focus(mHost);
		const TPtr<TWindowGlue> window = Open(client, kEmbeddedWindow);
		window->Embed(mHost, wantsKeys);
		Settle();
		return window;
	}

	void Type(int code) {
		User().Key(TX11User::KeycodeOf(code), true);
		User().Key(TX11User::KeycodeOf(code), false);
	}

	/// The keys that have come to a window of the user's.
	int TakeHostKeys() {
		int keys = 0;
		while (const TXcbEvent event{xcb_poll_for_event(User().Xcb())})
			keys += (event->response_type & 0x7F) == XCB_KEY_PRESS;
		return keys;
	}

	/// Runs a program while the platform goes on, and gives what it writes.
	std::string Run(const std::string& command) {
		FILE* pipe = popen(command.c_str(), "r");
		const int descriptor = fileno(pipe);
		fcntl(descriptor, F_SETFL, O_NONBLOCK);
		std::string output;
		std::array<char, 65536> buffer{};
		for (int i = 0; i < 2000; ++i) {
			const ssize_t count = read(descriptor, buffer.data(), buffer.size());
			if (count == 0)
				break;
			if (count > 0)
				output.append(buffer.data(), static_cast<std::size_t>(count));
			else
				Platform().WaitForTick();
			Platform().ProcessEvents();
		}
		pclose(pipe);
		return output;
	}

	TXvfb mServer;
	std::unique_ptr<TX11User> mpUser;
	std::unique_ptr<TX11Platform> mpPlatform;
	xcb_window_t mHost = 0;
};

// Losses

TEST_F(TX11PlatformTest, WithoutADisplayThereIsAReadableError) {
	setenv("DISPLAY", ":nowhere", 1);
	TWindowJournal journal;
	TX11Platform platform;
	EXPECT_TRUE(platform.Screens().All().IsEmpty());
	EXPECT_EQ(platform.Screens().At({1, 1}).mDpi, 96);
	try {
		platform.CreateWindow(journal, kTopLevelWindow, nullptr);
		FAIL();
	} catch (const TReadableException& exception) {
		EXPECT_EQ(exception.Message(), "The display ':nowhere' cannot be opened.");
	}
	EXPECT_FALSE(platform.WaitForTick());
	platform.ProcessEvents();
}

TEST_F(TX11PlatformTest, AKilledConnectionTakesAllWindowsAndNothingElse) {
	TWindowJournal first;
	TWindowJournal second;
	const auto window = Open(first);
	const auto dialog = Open(second, kModalDialogWindow, window.Get());
	xcb_kill_client(User().Xcb(), static_cast<uint32_t>(window->NativeHandle()));
	User().Sync();
	const std::vector<uint32_t> pixels(60 * 40);
	const TRectT<int> all{0, 0, 60, 40};
	for (int i = 0; i < 5; ++i) // also writes into the dead connection
		window->Present({reinterpret_cast<const std::byte*>(pixels.data()), 240, {60, 40}}, {&all, 1});
	window->SetTitle("gone");
	Settle();
	EXPECT_THAT(first.Take("lost"), testing::Contains("lost: The connection to the display was lost."));
	EXPECT_THAT(second.Take("lost:"), ElementsAre("lost: The connection to the display was lost."));
	EXPECT_FALSE(window->IsOpen() || dialog->IsOpen());
	EXPECT_EQ(Platform().EventDescriptor(), -1);
	EXPECT_TRUE(Open(first)->IsVisible()) << "a new window brings a new connection";
}

TEST_F(TX11PlatformTest, AnotherThreadMayCloseTheLastWindowDuringAWait) {
	const int32_t storage = TGlobalStorage::CreateStorage();
	{
		const TGlobalStorageScope scope(storage);
		InitializeFramework();
		TWindowJournal journal;
		const auto window = Open(journal);
		const TThreadManager::THostScope role(kMainThread);
		std::thread other([&] {
			const TGlobalStorageScope sameInstance(storage);
			const TThreadManager::THostScope sameRole(kMainThread); // comes in while the first one waits
			window->Close();
		});
		while (Platform().WaitForTick())
			Platform().ProcessEvents();
		EXPECT_FALSE(window->IsOpen());
		EXPECT_EQ(Platform().EventDescriptor(), -1);
		other.join();
		FinalizeFramework();
	}
	TGlobalStorage::DestroyStorage(storage);
}

TEST_F(TX11PlatformTest, AServerThatDiesIsAnErrorAndNoEnd) {
	TWindowJournal journal;
	const auto window = Open(journal);
	journal.Take();
	mServer.Kill();
	Platform().Clipboard().SetText("text");
	EXPECT_EQ(Platform().Clipboard().PrimaryText(), "");
	window->Show(true, true);
	Platform().ProcessEvents();
	EXPECT_EQ(journal.Take("lost:").size(), 1u);
	EXPECT_THROW(Platform().CreateWindow(journal, kTopLevelWindow, nullptr), TReadableException);
}

TEST_F(TX11PlatformTest, LeavesNothingAtTheServer) {
	const auto resources = [&] {
		const auto tree = TXcbPtr<xcb_query_tree_reply_t>(
		    xcb_query_tree_reply(User().Xcb(), xcb_query_tree(User().Xcb(), User().Root()), nullptr));
		return tree->children_len;
	};
	const auto before = resources();
	for (int i = 0; i < 20; ++i) {
		TWindowJournal journal;
		const auto window = Open(journal);
		const auto popup = Open(journal, kPopupWindow, window.Get());
		Platform().Clipboard().SetText("text");
		if (i % 2 == 0)
			window->Close();
		else
			mpPlatform = std::make_unique<TX11Platform>();
	}
	User().Sync();
	EXPECT_EQ(resources(), before);
}

// Windows among others

TEST_F(TX11PlatformTest, PopupsBelongToTheHostsWindowAndGrabThePointer) {
	TWindowJournal journal;
	const auto editor = OpenEditor(journal, false);
	const auto popup = Open(journal, kPopupWindow, editor.Get());
	const TX11Connection& connection = Platform().Connection();
	const auto id = static_cast<xcb_window_t>(popup->NativeHandle());
	EXPECT_THAT(connection.Property(id, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW), ElementsAre(mHost));
	EXPECT_THAT(
	    connection.Property(id, connection.Atom(TX11Atom::kNetWmWindowType), XCB_ATOM_ATOM),
	    ElementsAre(connection.Atom(TX11Atom::kNetWmWindowTypePopupMenu)));
	const auto grabStatus = [&] {
		const auto reply = TXcbPtr<xcb_grab_pointer_reply_t>(xcb_grab_pointer_reply(
		    User().Xcb(),
		    xcb_grab_pointer(
		        User().Xcb(), false, User().Root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE,
		        XCB_CURRENT_TIME),
		    nullptr));
		return reply->status;
	};
	EXPECT_EQ(grabStatus(), XCB_GRAB_STATUS_ALREADY_GRABBED);
	xcb_destroy_window(User().Xcb(), mHost);
	User().Sync();
	Settle();
	EXPECT_TRUE(popup->IsOpen()) << "it is the client's to close";
	popup->Close();
	EXPECT_TRUE(SettleUntil([&] { return grabStatus() == XCB_GRAB_STATUS_SUCCESS; }));
}

TEST_F(TX11PlatformTest, AnEditorSharesTheKeysWithItsHost) {
	TWindowJournal journal;
	const auto editor = OpenEditor(journal, false);
	const auto id = static_cast<xcb_window_t>(editor->NativeHandle());
	User().MovePointer({70, 70});
	User().Button(1, true);
	User().Button(1, false);
	Settle();
	EXPECT_EQ(User().FocusHolder(), mHost) << "a press takes no keys that are not wanted";
	TakeHostKeys();
	User().Focus(id); // whatever the host does with the focus
	Type(kKeyA);
	Settle();
	EXPECT_EQ(TakeHostKeys(), 1);
	EXPECT_THAT(journal.Take("down"), IsEmpty());

	User().Focus(mHost);
	Settle();
	editor->SetWantsKeyboardInput(true);
	Settle();
	EXPECT_EQ(User().FocusHolder(), id);
	EXPECT_TRUE(editor->IsKey());
	Type(kKeyA + 4); // not the first key once more: on a fast machine, it would have the same time
	Settle();
	EXPECT_EQ(journal.Take("down").size(), 1u);
	EXPECT_EQ(TakeHostKeys(), 0);
	TGlueKeyEvent press = journal.mLastKey;
	press.mIsRelease = false;
	editor->PassKeyToHost(press);
	editor->PassKeyToHost(press);
	Settle();
	EXPECT_EQ(TakeHostKeys(), 1) << "a key is passed on once";
	editor->SetWantsKeyboardInput(false);
	Settle();
	EXPECT_EQ(User().FocusHolder(), mHost);
}

TEST_F(TX11PlatformTest, AHostMayResizeReparentAndLetGo) {
	TWindowJournal journal;
	const auto editor = OpenEditor(journal, false);
	journal.Take();
	const uint32_t size[]{130, 90};
	User().Configure(
	    static_cast<xcb_window_t>(editor->NativeHandle()), XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
	Settle();
	EXPECT_THAT(journal.Take("size"), ElementsAre("size 130,90"));
	const xcb_window_t frame = User().OpenWindow({400, 300, 320, 240});
	xcb_reparent_window(User().Xcb(), mHost, frame, 10, 20);
	User().Sync();
	Settle();
	EXPECT_EQ(editor->Position(), (TPointT<int>{410, 320}));
	xcb_unmap_window(User().Xcb(), frame);
	User().Sync();
	Settle();
	EXPECT_FALSE(editor->IsVisible());
	xcb_map_window(User().Xcb(), frame);
	xcb_reparent_window(User().Xcb(), static_cast<xcb_window_t>(editor->NativeHandle()), User().Root(), 0, 0);
	User().Sync();
	Settle();
	EXPECT_FALSE(editor->IsVisible());
	EXPECT_TRUE(editor->IsOpen());
	EXPECT_THROW(editor->Embed(0x7FFFFFF, false), TReadableException);
}

TEST_F(TX11PlatformTest, AnEmbedderMaySendKeysThoughItHasThem) {
	TWindowJournal journal;
	const auto editor = OpenEditor(journal, true);
	const auto id = static_cast<xcb_window_t>(editor->NativeHandle());
	const TX11Connection& connection = Platform().Connection();
	const auto tell = [&](uint32_t message) {
		connection.Tell(id, id, connection.Atom(TX11Atom::kXembed), {0, message, 0, 0, 0});
		connection.Flush();
		Settle();
	};
	const auto send = [&](xcb_timestamp_t time) {
		xcb_key_press_event_t event{};
		event.response_type = XCB_KEY_PRESS;
		event.detail = static_cast<xcb_keycode_t>(TX11User::KeycodeOf(kKeyA));
		event.time = time;
		event.event = id;
		xcb_send_event(User().Xcb(), false, id, XCB_EVENT_MASK_KEY_PRESS, reinterpret_cast<const char*>(&event));
		User().Sync();
		Settle();
		return journal.Take("down").size();
	};
	tell(0); // embedded
	EXPECT_FALSE(editor->IsKey());
	tell(4); // has the focus
	EXPECT_TRUE(editor->IsKey());
	EXPECT_EQ(User().FocusHolder(), mHost);
	EXPECT_EQ(send(1000), 1u);
	editor->PassKeyToHost(journal.mLastKey);
	EXPECT_EQ(send(1000), 0u) << "it came back";
	EXPECT_EQ(send(1001), 1u);
	tell(5); // has it no more
	EXPECT_FALSE(editor->IsKey());
}

TEST_F(TX11PlatformTest, TellsOfScreensThatChange) {
	class TListener final : public TPlatformClient {
	public:
		void OnScreensChanged() override { ++mChanges; }

		int mChanges = 0;
	} listener;
	EXPECT_EQ(Platform().Screens().At({1, 1}).mBounds, (TRectT<int>{0, 0, 1280, 1024})) << "also before any window";
	TWindowJournal journal;
	const auto window = Open(journal);
	Platform().SetClient(&listener);
	const TX11Connection& connection = Platform().Connection();
	connection.SetTextProperty(User().Root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, "Xft.dpi:\t192\n");
	const uint32_t area[]{0, 30, 1280, 994};
	connection.SetProperty(User().Root(), connection.Atom(TX11Atom::kNetWorkArea), XCB_ATOM_CARDINAL, area);
	connection.Flush();
	Settle();
	EXPECT_GE(listener.mChanges, 1);
	EXPECT_EQ(Platform().Screens().At({1, 1}).mDpi, 192);
	EXPECT_EQ(Platform().Screens().At({1, 1}).mWorkArea, (TRectT<int>{0, 30, 1280, 994}));
	Platform().SetClient(nullptr);
}

TEST_F(TX11PlatformTest, AWindowManagerDecoratesClosesAndMaximizes) {
	if (std::system("command -v openbox >/dev/null") != 0)
		GTEST_SKIP() << "openbox is not installed";
	FILE* manager = popen("exec openbox 2>/dev/null & echo $!", "r");
	char process[32] = "";
	ASSERT_TRUE(std::fgets(process, sizeof process, manager));
	TWindowJournal journal;
	TWindowJournal second;
	auto window = Open(journal);
	const xcb_atom_t check = Platform().Connection().Atom(TX11Atom::kNetSupportingWmCheck);
	ASSERT_TRUE(
	    SettleUntil([&] { return !Platform().Connection().Property(User().Root(), check, XCB_ATOM_WINDOW).empty(); }));
	window->SetResizable(true);
	const auto dialog = Open(second, kModalDialogWindow, window.Get());
	EXPECT_TRUE(SettleUntil([&] { return dialog->IsKey(); }));
	EXPECT_TRUE(SettleUntil([&] {
		return dialog->Position() == TPointT<int>{100, 80};
	})) << dialog->Position().mX
	    << "," << dialog->Position().mY;
	dialog->Close();
	EXPECT_TRUE(SettleUntil([&] { return window->IsKey(); }));
	window->Maximize();
	EXPECT_TRUE(SettleUntil([&] { return window->IsMaximized() && window->ClientSize().mX == 1280; }));
	window->Restore();
	EXPECT_TRUE(SettleUntil([&] { return !window->IsMaximized() && window->ClientSize() == TPointT<int>{60, 40}; }));
	window->Minimize();
	EXPECT_TRUE(SettleUntil([&] { return !window->IsVisible(); }));
	window->Restore();
	EXPECT_TRUE(SettleUntil([&] { return window->IsVisible(); }));
	const auto& connection = Platform().Connection();
	connection.Tell(
	    static_cast<xcb_window_t>(window->NativeHandle()), static_cast<xcb_window_t>(window->NativeHandle()),
	    connection.Atom(TX11Atom::kWmProtocols), {connection.Atom(TX11Atom::kWmDeleteWindow), 0, 0, 0, 0});
	EXPECT_TRUE(SettleUntil([&] { return !journal.Take("close").empty(); }));
	window->Close();
	std::system(("kill " + std::string(process)).c_str());
	pclose(manager);
}

// Keys

TEST_F(TX11PlatformTest, WritesWhatTheLayoutSaysWithDeadKeysAndThirdCharacters) {
	TWindowJournal journal;
	const auto window = Open(journal);
	ASSERT_EQ(std::system("setxkbmap fr"), 0);
	Settle();
	journal.mIsEditing = true;
	journal.Take();
	EXPECT_EQ(Platform().Keyboard().CharacterOf(kKeyA, true), u'q');
	Type(kKeyLeftBracket); // a dead circumflex
	Settle();
	EXPECT_THAT(journal.Take(), IsEmpty());
	EXPECT_TRUE(Platform().Keyboard().HeldKeys().none());
	Type(kKeyA + 4);
	Settle();
	EXPECT_THAT(journal.Take(), ElementsAre("text \u00EA"));
	Type(kKey0 + 2); // the key of the French e acute
	User().Key(TX11User::KeycodeOf(kKeyRightOption), true);
	Type(kKeyA + 4);
	User().Key(TX11User::KeycodeOf(kKeyRightOption), false);
	Settle();
	const auto lines = journal.Take("down");
	EXPECT_EQ(lines[0], "down 3 modifiers 0 character " + std::to_string(0xE9));
	EXPECT_EQ(lines.back(), "down 15 modifiers 4 character " + std::to_string(0x20AC));
	journal.mIsEditing = false;
	Type(kKeyLeftBracket);
	Settle();
	EXPECT_EQ(journal.Take("down").size(), 1u) << "where no text is edited keys are keys";
}

TEST_F(TX11PlatformTest, TheKeysOfAPadFollowTheirLock) {
	TWindowJournal journal;
	const auto window = Open(journal);
	Type(kKeyNumpad0 + 7);
	Settle();
	EXPECT_THAT(journal.Take("down"), ElementsAre("down 99 modifiers 0 character 0"));
}

TEST_F(TX11PlatformTest, ALostReleaseIsNoticedAndModifiersAreKnownWithoutTheKeys) {
	TWindowJournal journal;
	const auto window = Open(journal);
	Type(kKeyA);
	User().Key(TX11User::KeycodeOf(kKeyA), true);
	Settle();
	EXPECT_TRUE(Platform().Keyboard().HeldKeys()[kKeyA]);
	const xcb_window_t other = User().OpenWindow({400, 400, 50, 50});
	User().Focus(other);
	User().Key(TX11User::KeycodeOf(kKeyA), false);
	EXPECT_TRUE(SettleUntil([&] { return Platform().Keyboard().HeldKeys().none(); }));
	User().Key(TX11User::KeycodeOf(kKeyLeftShift), true);
	Settle();
	EXPECT_EQ(Platform().Keyboard().Modifiers(), kShiftModifier);
	User().Key(TX11User::KeycodeOf(kKeyLeftShift), false);
}

TEST_F(TX11PlatformTest, RepeatsAreMarked) {
	TWindowJournal journal;
	const auto window = Open(journal);
	User().Key(TX11User::KeycodeOf(kKeyA), true);
	EXPECT_TRUE(SettleUntil([&] {
		const auto lines = journal.Take("down");
		return !lines.empty() && lines.back().find("repeated") != std::string::npos;
	}));
	EXPECT_THAT(journal.Take("up"), IsEmpty());
	User().Key(TX11User::KeycodeOf(kKeyA), false);
}

// The clipboard

TEST_F(TX11PlatformTest, LongTextsGoInPiecesBothWays) {
	if (std::system("command -v xclip >/dev/null") != 0)
		GTEST_SKIP() << "xclip is not installed";
	TWindowJournal journal;
	const auto window = Open(journal);
	std::string text;
	while (text.size() < 3'000'000)
		text += "line " + std::to_string(text.size()) + " \u00E9\n";
	Platform().Clipboard().SetText(TString(text, kPlatformEncoding));
	EXPECT_TRUE(Run("xclip -selection clipboard -o -target UTF8_STRING") == text);
	EXPECT_EQ(
	    Run("xclip -selection clipboard -o -target STRING").size(),
	    text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')))
	    << "Latin-1";

	const TTemporaryFolder folder;
	const std::string other = text.substr(1000) + "end";
	folder.Write("text", other);
	Run("xclip -selection clipboard -i " + folder.PathOf("text") + " >/dev/null 2>&1");
	EXPECT_TRUE(SettleUntil([&] { return Platform().Clipboard().Text() == TString(other, kPlatformEncoding); }));
	Run("printf '\\377caf\\303\\251\\200' | xclip -selection primary -i >/dev/null 2>&1");
	EXPECT_TRUE(SettleUntil([&] {
		return Platform().Clipboard().PrimaryText() == TString(std::u16string_view(u"\uFFFDcaf\u00E9\uFFFD"));
	}));
}

TEST_F(TX11PlatformTest, EditorsOfOneProcessPasteFromEachOtherWithoutWaiting) {
	class TListener final : public TPlatformClient {
	public:
		void OnClipboardChanged() override { ++mChanges; }

		int mChanges = 0;
	} listener;
	TWindowJournal journal;
	const auto window = Open(journal);
	Platform().SetClient(&listener);
	TX11Platform other;
	TWindowJournal otherJournal;
	const auto otherWindow = other.CreateWindow(otherJournal, kTopLevelWindow, nullptr);
	Platform().Clipboard().SetText("mine");
	Settle();
	EXPECT_EQ(listener.mChanges, 0);
	EXPECT_TRUE(SettleUntil([&] {
		other.ProcessEvents();
		return other.Clipboard().Text() == "mine";
	}));
	other.Clipboard().SetText("theirs");
	EXPECT_TRUE(SettleUntil([&] { return listener.mChanges == 1; }));
	EXPECT_EQ(Platform().Clipboard().Text(), "theirs");
	otherWindow->Close();
	EXPECT_TRUE(SettleUntil([&] { return !Platform().Clipboard().HasText(); }));
	Platform().SetClient(nullptr);
}

TEST_F(TX11PlatformTest, AnOwnerThatNeverAnswersCostsOnlyAWait) {
	TWindowJournal journal;
	const auto window = Open(journal);
	xcb_set_selection_owner(
	    User().Xcb(), User().OpenWindow({0, 0, 5, 5}, false), Platform().Connection().Atom(TX11Atom::kClipboard),
	    XCB_CURRENT_TIME);
	User().Sync();
	Settle();
	EXPECT_TRUE(Platform().Clipboard().HasText());
	EXPECT_EQ(Platform().Clipboard().Text(), TString());
	User().MovePointer({110, 90});
	Settle();
	EXPECT_FALSE(journal.Take("move").empty());
}

// Files

/// The side of a drag that has the files.
class TDragSource {
public:
	TDragSource(TX11User& user, const TX11Connection& atoms, TWindowGlue& target)
	    : mUser(user),
	      mAtoms(atoms),
	      mTarget(static_cast<xcb_window_t>(target.NativeHandle())),
	      mWindow(user.OpenWindow({0, 0, 5, 5}, false)) {
		xcb_set_selection_owner(user.Xcb(), mWindow, atoms.Atom(TX11Atom::kXdndSelection), XCB_CURRENT_TIME);
	}

	void Send(TX11Atom type, const std::array<uint32_t, 4>& data) {
		xcb_client_message_event_t event{};
		event.response_type = XCB_CLIENT_MESSAGE;
		event.format = 32;
		event.window = mTarget;
		event.type = mAtoms.Atom(type);
		event.data.data32[0] = mWindow;
		std::copy(data.begin(), data.end(), event.data.data32 + 1);
		xcb_send_event(mUser.Xcb(), false, mTarget, 0, reinterpret_cast<const char*>(&event));
		mUser.Sync();
	}

	/// Answers requests, and remembers what the target says.
	void Handle(const std::string& uris) {
		while (const TXcbEvent event{xcb_poll_for_event(mUser.Xcb())}) {
			const int type = event->response_type & 0x7F;
			if (type == XCB_SELECTION_REQUEST)
				Answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event), uris);
			if (type == XCB_CLIENT_MESSAGE) {
				const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
				if (message.type == mAtoms.Atom(TX11Atom::kXdndStatus))
					mIsAccepted = (message.data.data32[1] & 1) != 0;
				if (message.type == mAtoms.Atom(TX11Atom::kXdndFinished))
					mIsFinished = true;
			}
		}
	}

	bool mIsAccepted = false;
	bool mIsFinished = false;

private:
	void Answer(const xcb_selection_request_event_t& request, const std::string& uris) {
		xcb_change_property(
		    mUser.Xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target, 8,
		    static_cast<uint32_t>(uris.size()), uris.data());
		xcb_selection_notify_event_t answer{};
		answer.response_type = XCB_SELECTION_NOTIFY;
		answer.requestor = request.requestor;
		answer.selection = request.selection;
		answer.target = request.target;
		answer.property = request.property;
		xcb_send_event(mUser.Xcb(), false, request.requestor, 0, reinterpret_cast<const char*>(&answer));
		mUser.Sync();
	}

	TX11User& mUser;
	const TX11Connection& mAtoms;
	xcb_window_t mTarget;
	xcb_window_t mWindow;
};

TEST_F(TX11PlatformTest, TakesFilesThatAreDroppedAndNothingElse) {
	constexpr const char* kUris =
	    "# files\r\nfile:///tmp/a%20b\r\nhttp://example.com/x\r\nfile://host/c%C3%A9\r\nfile:///d%0\r\n";
	TWindowJournal journal;
	const auto window = Open(journal);
	TDragSource source(User(), Platform().Connection(), *window);
	const uint32_t files = Platform().Connection().Atom(TX11Atom::kTextUriList);
	const auto move = [&](uint32_t x, uint32_t y) { source.Send(TX11Atom::kXdndPosition, {0, x << 16 | y, 0, 0}); };
	const auto settle = [&] {
		for (int i = 0; i < 3; ++i) {
			Settle();
			source.Handle(kUris);
		}
	};
	journal.Take();
	source.Send(TX11Atom::kXdndEnter, {5u << 24, files, 0, 0});
	move(110, 95);
	settle();
	EXPECT_THAT(journal.Take("files"), ElementsAre("files over 10,15: /tmp/a b|/c\u00E9"));
	EXPECT_TRUE(source.mIsAccepted);
	source.Send(TX11Atom::kXdndDrop, {0, 0, 0, 0});
	settle();
	EXPECT_THAT(journal.Take("files"), ElementsAre("files dropped 10,15: /tmp/a b|/c\u00E9"));
	EXPECT_TRUE(source.mIsFinished);

	journal.mAcceptsFiles = false;
	source.Send(TX11Atom::kXdndEnter, {5u << 24, files, 0, 0});
	move(110, 95);
	settle();
	EXPECT_FALSE(source.mIsAccepted);
	source.Send(TX11Atom::kXdndLeave, {0, 0, 0, 0});
	settle();
	EXPECT_THAT(journal.Take("files left").size(), 1u);
	source.Send(TX11Atom::kXdndEnter, {5u << 24, files + 1, 0, 0}); // offers something else
	move(110, 95);
	window->Close();
	settle();
	EXPECT_THAT(journal.Take("files"), IsEmpty());
}

// What needs no server

TEST(TX11ScreensTest, ReadsDpiFromResourcesAndFromMeasures) {
	EXPECT_EQ(TX11Screens::DpiOfResources("Xcursor.size:\t24\nXft.dpi:\t192\nXft.rgba: none\n"), 192);
	EXPECT_EQ(TX11Screens::DpiOfResources("Xft.dpi: 143.6"), 144);
	for (const char* text : {"", "Xft.dpi:", "Xft.dpi: many", "Xft.dpi: -3", "*Xft.dpi: 100", "Xft.dpi: 99999"})
		EXPECT_EQ(TX11Screens::DpiOfResources(text), 0) << text;
	EXPECT_EQ(TX11Screens::DpiOfSize(3840, 600), 163);
	EXPECT_EQ(TX11Screens::DpiOfSize(1920, 0), 96);
	EXPECT_EQ(TX11Screens::DpiOfSize(1920, 1), 96);
}

TEST(TFontconfigLookupTest, FindsFontsByNameAndStyleAndNoneThatOnlyResemble) {
	TFontconfigLookup fonts;
	const auto find = [&](const char* family, const char* postScript, bool bold = false, bool italic = false) {
		const TString path = fonts.Find(family, postScript, bold, italic).mPath;
		return path.SubString(path.FindChar(u'/', path.Length() - 1, true) + 1);
	};
	EXPECT_EQ(find("DejaVu Sans", ""), "DejaVuSans.ttf");
	EXPECT_EQ(find("DejaVu Sans", "", true), "DejaVuSans-Bold.ttf");
	EXPECT_EQ(find("", "DejaVuSansMono-Bold"), "DejaVuSansMono-Bold.ttf");
	EXPECT_NE(find("Helvetica", ""), "");
	EXPECT_EQ(find("No Such Family", ""), "");
	EXPECT_EQ(find("DejaVu Sans", "NoSuchFace"), "");
}

TEST(TWheelAxisTest, CutsTheWayIntoNotches) {
	TWheelAxis axis(15, 100);
	EXPECT_EQ(axis.MoveTo(110), 0);
	EXPECT_EQ(axis.MoveTo(115), 1);
	EXPECT_EQ(axis.MoveTo(160), 3);
	EXPECT_EQ(axis.MoveTo(151), 0);
	EXPECT_EQ(axis.MoveTo(130), -2);
	axis.Place(1000); // by another window's scrolling
	EXPECT_EQ(axis.MoveTo(1014), 0);
	TWheelAxis reversed(-1, 0);
	EXPECT_EQ(reversed.MoveTo(2), -2);
}

} // namespace
