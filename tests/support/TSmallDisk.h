// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TTemporaryFolder.h"

#include <cerrno>
#include <fstream>
#include <string>
#include <sys/mount.h>

/// A disk of a few blocks in memory, mounted on a fresh folder, that can be filled and made read-only: root does not
/// meet the limits of access rights, but meets those of a disk. Mounting takes root; without, IsMounted is false and
/// the test has to be skipped.
class TSmallDisk {
public:
	static constexpr const char* kNotMounted = "mounting a disk takes root";

	explicit TSmallDisk(const char* options = "size=64k")
	    : mIsMounted(mount("none", Folder().c_str(), "tmpfs", 0, options) == 0) {}

	~TSmallDisk() {
		if (mIsMounted)
			umount2(Folder().c_str(), MNT_DETACH);
	}

	TSmallDisk(const TSmallDisk&) = delete;
	TSmallDisk& operator=(const TSmallDisk&) = delete;

	bool IsMounted() const { return mIsMounted; }

	TTemporaryFolder& operator*() { return mFolder; }

	TTemporaryFolder* operator->() { return &mFolder; }

	/// Until no byte more fits.
	void Fill() {
		std::ofstream file(mFolder.PathOf("filling"), std::ios::binary);
		while (file.put('x').flush()) {
		}
	}

	void MakeReadOnly() { mount(nullptr, Folder().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr); }

private:
	std::string Folder() const { return mFolder.PathOf(""); }

	TTemporaryFolder mFolder;
	bool mIsMounted;
};
