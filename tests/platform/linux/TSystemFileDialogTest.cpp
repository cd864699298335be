// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/dialogs/TSystemFileDialog.h"

#include "platform/linux/dialogs/TChildProcess.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <map>
#include <optional>
#include <sys/stat.h>
#include <systemd/sd-bus.h>
#include <thread>

namespace {

using TState = TFileDialogImpl::TState;
using testing::HasSubstr;
using testing::Not;

/// Sets a variable for a test.
class TVariable {
public:
	TVariable(const char* name, const std::string& value) : mName(name) {
		if (const char* previous = std::getenv(name))
			mPrevious = previous;
		setenv(name, value.c_str(), 1);
	}

	~TVariable() { mPrevious ? setenv(mName, mPrevious->c_str(), 1) : unsetenv(mName); }

	TVariable(const TVariable&) = delete;
	TVariable& operator=(const TVariable&) = delete;

private:
	const char* mName;
	std::optional<std::string> mPrevious;
};

/// A desktop portal that does what the test says.
class TPortalStandIn {
public:
	TPortalStandIn() {
		sd_bus_open_user(&mpBus);
		sd_bus_add_fallback(mpBus, nullptr, "/", &Handle, this);
		sd_bus_request_name(mpBus, "org.freedesktop.portal.Desktop", 0);
	}

	~TPortalStandIn() { sd_bus_close_unref(mpBus); }

	TPortalStandIn(const TPortalStandIn&) = delete;
	TPortalStandIn& operator=(const TPortalStandIn&) = delete;

	void Process() {
		while (sd_bus_process(mpBus, nullptr) > 0) {
		}
		sd_bus_flush(mpBus);
	}

	void Respond(uint32_t response, const char* uri) {
		sd_bus_emit_signal(
		    mpBus, mRequest.c_str(), "org.freedesktop.portal.Request", "Response", "ua{sv}", response, 2, "choices",
		    "a(ss)", 0, "uris", "as", 1, uri);
		sd_bus_flush(mpBus);
	}

	bool mAnswers = true;
	std::string mMember;
	std::string mParent;
	std::string mTitle;
	std::map<std::string, std::string> mOptions; // what is a text or a list of bytes
	std::string mRequest;
	bool mIsWithdrawn = false;

private:
	static int Handle(sd_bus_message* call, void* untyped, sd_bus_error*) {
		auto& self = *static_cast<TPortalStandIn*>(untyped);
		const std::string member = sd_bus_message_get_member(call);
		if (member == "Close") {
			self.mIsWithdrawn = sd_bus_message_get_path(call) == self.mRequest;
			return 1;
		}
		self.mMember = member;
		self.Read(call);
		self.mRequest = "/org/freedesktop/portal/desktop/request/1_1/" + self.mOptions["handle_token"];
		if (self.mAnswers)
			sd_bus_reply_method_return(call, "o", self.mRequest.c_str());
		return 1;
	}

	void Read(sd_bus_message* call) {
		const char* parent = nullptr;
		const char* title = nullptr;
		sd_bus_message_read(call, "ss", &parent, &title);
		mParent = parent;
		mTitle = title;
		sd_bus_message_enter_container(call, 'a', "{sv}");
		while (sd_bus_message_enter_container(call, 'e', "sv") > 0) {
			const char* key = nullptr;
			const char* contents = nullptr;
			char kind = 0;
			sd_bus_message_read(call, "s", &key);
			sd_bus_message_peek_type(call, &kind, &contents);
			ReadValue(call, key, contents);
			sd_bus_message_exit_container(call);
		}
	}

	void ReadValue(sd_bus_message* call, const char* key, const std::string& contents) {
		if (contents == "s") {
			const char* text = nullptr;
			sd_bus_message_read(call, "v", "s", &text);
			mOptions[key] = text;
		} else if (contents == "ay") {
			const void* bytes = nullptr;
			std::size_t size = 0;
			sd_bus_message_enter_container(call, 'v', "ay");
			sd_bus_message_read_array(call, 'y', &bytes, &size);
			sd_bus_message_exit_container(call);
			mOptions[key] = std::string(static_cast<const char*>(bytes), size);
		} else if (contents == "a(sa(us))") {
			const char* name = nullptr;
			const char* pattern = nullptr;
			uint32_t filterKind = 9;
			sd_bus_message_read(call, "v", "a(sa(us))", 1, &name, 1, &filterKind, &pattern);
			mOptions[key] = pattern + std::to_string(filterKind);
		} else {
			sd_bus_message_skip(call, "v");
		}
	}

	sd_bus* mpBus = nullptr;
};

class TSystemFileDialogTest : public testing::Test {
protected:
	TSystemFileDialogTest() { mSettings.mCaption = "Load it"; }

	/// Makes a program of this name that PATH has, and no others of its kind.
	void WriteProgram(const std::string& name, const std::string& script) {
		mFolder.Write(name, "#!/bin/sh\n" + script);
		chmod(mFolder.PathOf(name).c_str(), 0700);
	}

	/// Polls until the dialog has ended, or the portal has heard of it.
	TState PollToEnd(
	    TFileDialogImpl& dialog, const std::function<bool()>& until = [] { return false; }) {
		const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
		TState state = dialog.Poll();
		while (state == TState::kOpen && !until() && std::chrono::steady_clock::now() < end) {
			if (mpPortal)
				mpPortal->Process();
			std::this_thread::sleep_for(std::chrono::milliseconds(1));
			state = dialog.Poll();
		}
		return state;
	}

	/// A bus of our own with a portal on it.
	void StartPortal() {
		const std::string program = TChildProcess::FindProgram("dbus-daemon");
		if (program.empty())
			GTEST_SKIP() << "dbus-daemon is not installed";
		mpDaemon = std::make_unique<TChildProcess>(
		    std::vector<std::string>{program, "--session", "--nofork", "--nopidfile", "--print-address"},
		    std::vector<std::string>());
		while (mpDaemon->Poll() && mpDaemon->Output().find('\n') == std::string::npos)
			std::this_thread::sleep_for(std::chrono::milliseconds(1));
		setenv("DBUS_SESSION_BUS_ADDRESS", mpDaemon->Output().substr(0, mpDaemon->Output().find('\n')).c_str(), 1);
		mpPortal = std::make_unique<TPortalStandIn>();
	}

	const TTemporaryFolder mFolder;
	const TVariable mBus{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"};
	const TVariable mRuntime{"XDG_RUNTIME_DIR", "/nowhere"};
	const TVariable mLibraries{"LD_LIBRARY_PATH", "/opt/host/lib"};
	const TVariable mModules{"GTK_PATH", "/opt/host/modules"};
	TFileDialogSettings mSettings;
	std::unique_ptr<TChildProcess> mpDaemon;
	std::unique_ptr<TPortalStandIn> mpPortal;
};

TEST_F(TSystemFileDialogTest, AsksThePortalAndReadsItsAnswer) {
	StartPortal();
	mSettings.mSave = true;
	mSettings.mFilter = "*.v2prg";
	mSettings.mDirectory = TDirectory("/home/me/");
	mSettings.mName = "Name";
	TSystemFileDialog dialog(mSettings, 0xAB12);
	EXPECT_EQ(PollToEnd(dialog, [&] { return !mpPortal->mRequest.empty(); }), TState::kOpen);
	EXPECT_EQ(mpPortal->mMember, "SaveFile");
	EXPECT_EQ(mpPortal->mParent, "x11:ab12");
	EXPECT_EQ(mpPortal->mTitle, "Load it");
	EXPECT_EQ(mpPortal->mOptions["filters"], "*.v2prg0");
	EXPECT_EQ(mpPortal->mOptions["current_folder"], std::string("/home/me/\0", 10));
	EXPECT_EQ(mpPortal->mOptions["current_name"], "Name");
	mpPortal->Respond(0, "file:///home/me/A%20%C3%A9.v2prg");
	EXPECT_EQ(PollToEnd(dialog), TState::kAccepted);
	EXPECT_EQ(dialog.Path(), TString(u"/home/me/A \u00E9.v2prg"));
	EXPECT_TRUE(dialog.HasAskedToOverwrite());
}

TEST_F(TSystemFileDialogTest, ThePortalsDialogCanBeCancelledFromBothSides) {
	StartPortal();
	const auto isAsked = [&] { return !mpPortal->mRequest.empty(); };
	{
		TSystemFileDialog dialog(mSettings, 0);
		PollToEnd(dialog, isAsked);
		mpPortal->Respond(1, "file:///ignored");
		EXPECT_EQ(PollToEnd(dialog), TState::kCancelled);
	}
	mpPortal->mRequest.clear();
	{
		TSystemFileDialog dialog(mSettings, 0);
		PollToEnd(dialog, isAsked);
		for (int round = 0; round < 20; ++round) { // time for the answer that names the request
			mpPortal->Process();
			std::this_thread::sleep_for(std::chrono::milliseconds(10));
			dialog.Poll();
		}
	}
	for (int round = 0; round < 3000 && !mpPortal->mIsWithdrawn; ++round) {
		std::this_thread::sleep_for(std::chrono::milliseconds(10));
		mpPortal->Process();
	}
	EXPECT_TRUE(mpPortal->mIsWithdrawn);
	mpPortal->mAnswers = false;
	mpPortal->mRequest.clear();
	TSystemFileDialog dialog(mSettings, 0);
	EXPECT_EQ(PollToEnd(dialog, isAsked), TState::kOpen) << "a silent portal blocks nobody, also not at the end";
}

TEST_F(TSystemFileDialogTest, WithoutAPortalAProgramOfTheDesktopAsksInACleanEnvironment) {
	const TVariable path("PATH", mFolder.PathOf("") + ":/nowhere");
	WriteProgram(
	    "zenity", "/usr/bin/env > " + mFolder.PathOf("env") + "\necho \"$@\" > " + mFolder.PathOf("arguments") +
	                  "\necho '/tmp/chosen file'\n");
	mSettings.mSave = true;
	mSettings.mFilter = "*.v2prg; *.v2bnk";
	mSettings.mDirectory = TDirectory("/home/me/");
	mSettings.mName = "Name";
	TSystemFileDialog dialog(mSettings, 77);
	EXPECT_EQ(PollToEnd(dialog), TState::kAccepted);
	EXPECT_EQ(dialog.Path(), "/tmp/chosen file");
	EXPECT_EQ(
	    mFolder.Read("arguments"), "--file-selection --title=Load it --filename=/home/me/Name --save "
	                               "--confirm-overwrite --file-filter=*.v2prg *.v2bnk\n");
	EXPECT_THAT(mFolder.Read("env"), HasSubstr("WINDOWID=77\n"));
	EXPECT_THAT(mFolder.Read("env"), Not(HasSubstr("/opt/host")));
}

TEST_F(TSystemFileDialogTest, AProgramCanBeCancelledAndEndsWithItsDialog) {
	const TVariable path("PATH", mFolder.PathOf(""));
	EXPECT_EQ(TSystemFileDialog(mSettings, 0).Poll(), TState::kUnavailable);
	WriteProgram("kdialog", "exit 1\n");
	{
		TSystemFileDialog dialog(mSettings, 0);
		EXPECT_EQ(PollToEnd(dialog), TState::kCancelled);
	}
	WriteProgram("kdialog", "trap '' TERM\necho $$ > " + mFolder.PathOf("process") + "\nwhile :; do :; done\n");
	int process = 0;
	{
		TSystemFileDialog dialog(mSettings, 0);
		EXPECT_EQ(PollToEnd(dialog, [&] { return !mFolder.Read("process").empty(); }), TState::kOpen);
		process = std::stoi(mFolder.Read("process"));
		EXPECT_EQ(kill(process, 0), 0);
	}
	EXPECT_EQ(kill(process, 0), -1) << "it is gone, even one that does not want to";
}

} // namespace
