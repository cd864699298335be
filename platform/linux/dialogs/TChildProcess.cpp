// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/dialogs/TChildProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace {

constexpr std::size_t kLongestOutput = 64 * 1024;
constexpr int kPatience = 200; // milliseconds between asking a program to end and ending it
constexpr const char* kUsualPath = "/usr/local/bin:/usr/bin:/bin";

constexpr auto kKept = std::to_array<std::string_view>({
    "COLORTERM",
    "DBUS_SESSION_BUS_ADDRESS",
    "DESKTOP_SESSION",
    "DISPLAY",
    "GDK_DPI_SCALE",
    "GDK_SCALE",
    "GTK_IM_MODULE",
    "GTK_THEME",
    "HOME",
    "HOSTNAME",
    "ICEAUTHORITY",
    "KDE_FULL_SESSION",
    "KDE_SESSION_VERSION",
    "LANG",
    "LANGUAGE",
    "LOGNAME",
    "PATH",
    "QT_IM_MODULE",
    "QT_SCALE_FACTOR",
    "SESSION_MANAGER",
    "SHELL",
    "TMPDIR",
    "TZ",
    "USER",
    "WAYLAND_DISPLAY",
    "XAUTHORITY",
    "XMODIFIERS",
});

/// Of everything that can be inherited, the child gets its output and the default ways of signals.
class TSpawnSettings {
public:
	explicit TSpawnSettings(int output) {
		posix_spawn_file_actions_init(&mActions);
		posix_spawn_file_actions_addopen(&mActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
		posix_spawn_file_actions_adddup2(&mActions, output, STDOUT_FILENO);
		posix_spawn_file_actions_addopen(&mActions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
		posix_spawn_file_actions_addclosefrom_np(&mActions, STDERR_FILENO + 1);
		posix_spawnattr_init(&mAttributes);
		sigset_t all;
		sigset_t none;
		sigfillset(&all);
		sigemptyset(&none);
		posix_spawnattr_setsigdefault(&mAttributes, &all);
		posix_spawnattr_setsigmask(&mAttributes, &none);
		posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
	}

	~TSpawnSettings() {
		posix_spawn_file_actions_destroy(&mActions);
		posix_spawnattr_destroy(&mAttributes);
	}

	TSpawnSettings(const TSpawnSettings&) = delete;
	TSpawnSettings& operator=(const TSpawnSettings&) = delete;

	posix_spawn_file_actions_t mActions;
	posix_spawnattr_t mAttributes;
};

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
	std::vector<char*> pointers;
	for (const std::string& text : texts)
		pointers.push_back(const_cast<char*>(text.c_str()));
	pointers.push_back(nullptr);
	return pointers;
}

bool IsKept(std::string_view variable) {
	const std::string_view name = variable.substr(0, variable.find('='));
	return name.starts_with("LC_") || name.starts_with("XDG_") ||
	       std::find(kKept.begin(), kKept.end(), name) != kKept.end();
}

} // namespace

std::string TChildProcess::FindProgram(const std::string& name) {
	const char* value = std::getenv("PATH");
	std::string_view path(value && *value ? value : kUsualPath);
	while (!path.empty()) {
		const std::string_view folder = path.substr(0, path.find(':'));
		path.remove_prefix(std::min(folder.size() + 1, path.size()));
		const std::string program = std::string(folder) + "/" + name;
		if (folder.starts_with('/') && access(program.c_str(), X_OK) == 0)
			return program;
	}
	return {};
}

std::vector<std::string> TChildProcess::CleanEnvironment() {
	std::vector<std::string> variables;
	for (char** variable = environ; variable && *variable; ++variable)
		if (IsKept(*variable))
			variables.emplace_back(*variable);
	return variables;
}

TChildProcess::TChildProcess(const std::vector<std::string>& command, const std::vector<std::string>& extra) {
	int ends[2];
	if (command.empty() || pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
		return;
	fcntl(ends[1], F_SETFL, fcntl(ends[1], F_GETFL) & ~O_NONBLOCK);
	std::vector<std::string> environment = CleanEnvironment();
	environment.insert(environment.end(), extra.begin(), extra.end());
	const TSpawnSettings settings(ends[1]);
	const int error = posix_spawn(
	    &mProcess, command[0].c_str(), &settings.mActions, &settings.mAttributes, Pointers(command).data(),
	    Pointers(environment).data());
	close(ends[1]);
	if (error != 0) {
		close(ends[0]);
		mProcess = -1;
		return;
	}
	mPipe = ends[0];
	mHandle = static_cast<int>(syscall(SYS_pidfd_open, mProcess, 0));
}

TChildProcess::~TChildProcess() {
	End();
}

bool TChildProcess::Poll() {
	char buffer[4096];
	while (mPipe >= 0) {
		const ssize_t count = read(mPipe, buffer, sizeof buffer);
		if (count > 0 && mOutput.size() < kLongestOutput) {
			mOutput.append(buffer, static_cast<std::size_t>(count));
		} else if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
			close(std::exchange(mPipe, -1));
		} else if (count < 0) {
			break;
		}
	}
	return mPipe >= 0;
}

/// The host may have collected the process already, if it collects all its children; the number is then not ours to
/// send signals to, but the handle is.
void TChildProcess::End() {
	if (mPipe >= 0)
		close(std::exchange(mPipe, -1));
	if (mProcess <= 0)
		return;
	const auto send = [&](int signal) {
		if (mHandle >= 0)
			syscall(SYS_pidfd_send_signal, mHandle, signal, nullptr, 0);
	};
	const pid_t process = std::exchange(mProcess, -1);
	if (waitpid(process, nullptr, WNOHANG) == 0) {
		send(SIGTERM);
		pollfd ended{mHandle, POLLIN, 0};
		if (mHandle < 0 || poll(&ended, 1, kPatience) <= 0)
			send(SIGKILL);
		if (mHandle >= 0)
			waitpid(process, nullptr, 0);
	}
	if (mHandle >= 0)
		close(std::exchange(mHandle, -1));
}
