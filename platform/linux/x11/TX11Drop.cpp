// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Drop.h"

#include "platform/linux/text/FileUri.h"
#include "platform/linux/x11/TX11Window.h"

#include <algorithm>

namespace {

constexpr uint32_t kVersion = 5;
constexpr std::size_t kLongestList = 1024 * 1024;

} // namespace

TList<TString> TX11Drop::PathsOf(std::string_view uris) {
	TList<TString> paths;
	while (!uris.empty()) {
		std::string_view line = uris.substr(0, uris.find_first_of("\r\n"));
		uris.remove_prefix(std::min(line.size() + 1, uris.size()));
		const TString path = PathOfUri(line);
		if (!path.IsEmpty())
			paths.Append(path);
	}
	return paths;
}

void TX11Drop::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	mReader.Connect(connection);
}

void TX11Drop::Disconnect() {
	Reset();
	mReader.Disconnect();
	mpConnection = nullptr;
}

void TX11Drop::Announce(xcb_window_t window) const {
	mpConnection->SetProperty(window, mpConnection->Atom(TX11Atom::kXdndAware), XCB_ATOM_ATOM, {&kVersion, 1});
}

void TX11Drop::Forget(TX11Window& window) {
	if (mpTarget == &window)
		Reset();
}

void TX11Drop::Reset() {
	mReader.Stop();
	mpTarget = nullptr;
	mSource = 0;
	mHasFiles = mIsKnown = mIsTaken = mIsDropped = false;
	mPaths.Clear();
}

bool TX11Drop::HandleEvent(const xcb_generic_event_t& event) {
	const bool wasReading = mReader.IsBusy();
	if (mReader.HandleEvent(event)) {
		if (wasReading && !mReader.IsBusy())
			OnFiles();
		return true;
	}
	if ((event.response_type & 0x7F) != XCB_CLIENT_MESSAGE)
		return false;
	const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
	TX11Window* window = mWindows.Find(message.window);
	if (!window || message.format != 32)
		return false;
	const auto is = [&](TX11Atom atom) { return message.type == mpConnection->Atom(atom); };
	if (is(TX11Atom::kXdndEnter)) {
		OnEnter(*window, message);
		return true;
	}
	const bool isOfDrag = is(TX11Atom::kXdndPosition) || is(TX11Atom::kXdndLeave) || is(TX11Atom::kXdndDrop);
	if (!isOfDrag || message.data.data32[0] != mSource || window != mpTarget)
		return isOfDrag;
	if (is(TX11Atom::kXdndPosition))
		OnPosition(*window, message);
	else if (is(TX11Atom::kXdndLeave))
		OnLeave();
	else
		OnDrop(message);
	return true;
}

void TX11Drop::OnEnter(TX11Window& window, const xcb_client_message_event_t& message) {
	if (mpTarget)
		OnLeave();
	Reset();
	const uint32_t* data = message.data.data32;
	mpTarget = &window;
	mSource = data[0];
	std::vector<uint32_t> types(data + 2, data + 5);
	if ((data[1] & 1) != 0) // more than three: they stand in a property
		types = mpConnection->Property(mSource, mpConnection->Atom(TX11Atom::kXdndTypeList), XCB_ATOM_ATOM);
	mHasFiles = std::find(types.begin(), types.end(), mpConnection->Atom(TX11Atom::kTextUriList)) != types.end();
}

void TX11Drop::OnPosition(TX11Window& window, const xcb_client_message_event_t& message) {
	const uint32_t* data = message.data.data32;
	mPlace = window.ScreenToClient({static_cast<int>(data[2] >> 16), static_cast<int>(data[2] & 0xFFFF)});
	if (!mHasFiles || mIsKnown) {
		const TPtr<TX11Window> keep(&window);
		mIsTaken = mIsKnown && window.Client().OnGlueFilesDragged(mPlace, mPaths);
	} else if (!mReader.IsBusy()) {
		mReader.Start(
		    mpConnection->Atom(TX11Atom::kXdndSelection), mpConnection->Atom(TX11Atom::kTextUriList), data[3],
		    kLongestList);
	}
	SendStatus();
}

void TX11Drop::OnFiles() {
	mIsKnown = true;
	mPaths = mReader.HasSucceeded() ? PathsOf(mReader.TakeBytes()) : TList<TString>();
	mHasFiles = !mPaths.IsEmpty();
	if (!mpTarget)
		return;
	const TPtr<TX11Window> keep(mpTarget);
	mIsTaken = mHasFiles && mpTarget->Client().OnGlueFilesDragged(mPlace, mPaths);
	if (mIsDropped)
		Finish(mIsTaken);
	else
		SendStatus();
}

void TX11Drop::SendStatus() {
	if (!mpTarget)
		return;
	constexpr uint32_t kTellEachMove = 2;
	const bool mayTake = mIsTaken || (mHasFiles && !mIsKnown);
	const uint32_t action = mayTake ? mpConnection->Atom(TX11Atom::kXdndActionCopy) : xcb_atom_t{XCB_ATOM_NONE};
	mpConnection->Tell(
	    mSource, mSource, mpConnection->Atom(TX11Atom::kXdndStatus),
	    {mpTarget->Id(), kTellEachMove | static_cast<uint32_t>(mayTake), 0, 0, action});
	mpConnection->Flush();
}

void TX11Drop::OnLeave() {
	const TPtr<TX11Window> target(mpTarget);
	const bool wasShown = mIsKnown;
	Reset();
	if (target && wasShown)
		target->Client().OnGlueFilesDragLeft();
}

void TX11Drop::OnDrop(const xcb_client_message_event_t& message) {
	mIsDropped = true;
	if (mHasFiles && !mIsKnown && !mReader.IsBusy())
		mReader.Start(
		    mpConnection->Atom(TX11Atom::kXdndSelection), mpConnection->Atom(TX11Atom::kTextUriList),
		    message.data.data32[2], kLongestList);
	if (!mReader.IsBusy())
		Finish(mIsTaken);
}

void TX11Drop::Finish(bool isTaken) {
	const TPtr<TX11Window> target(mpTarget);
	const uint32_t action = isTaken ? mpConnection->Atom(TX11Atom::kXdndActionCopy) : xcb_atom_t{XCB_ATOM_NONE};
	mpConnection->Tell(
	    mSource, mSource, mpConnection->Atom(TX11Atom::kXdndFinished), {target->Id(), isTaken, action, 0, 0});
	mpConnection->Flush();
	const TList<TString> paths = mPaths;
	const TPointT<int> place = mPlace;
	Reset();
	if (isTaken)
		target->Client().OnGlueFilesDropped(place, paths);
	else
		target->Client().OnGlueFilesDragLeft();
}
