// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Selection.h"

#include "platform/TClipboardImpl.h"
#include "platform/linux/text/Utf8Text.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace {

constexpr std::size_t kLongestPiece = 256 * 1024;
constexpr std::chrono::seconds kLongestSilence{5};
constexpr int kWaitForKeeper = 300; // milliseconds
constexpr std::chrono::seconds kLongestRead{5};

/// What the windows of this process own: editors run on one thread, and one cannot answer while another waits.
class TOwnTexts {
public:
	using TText = std::shared_ptr<const std::string>;
	using TKey = std::pair<xcb_window_t, xcb_atom_t>;

	void Set(TKey key, TText text) {
		const std::lock_guard guard(mMutex);
		mTexts[key] = std::move(text);
	}

	void Remove(TKey key) {
		const std::lock_guard guard(mMutex);
		mTexts.erase(key);
	}

	TText Find(TKey key) {
		const std::lock_guard guard(mMutex);
		const auto found = mTexts.find(key);
		return found == mTexts.end() ? nullptr : found->second;
	}

private:
	std::mutex mMutex;
	std::map<TKey, TText> mTexts;
};

TOwnTexts& OwnTexts() {
	static TOwnTexts sTexts;
	return sTexts;
}

/// For receivers that know no UTF-8.
std::string Latin1(const std::string& utf8) {
	std::string bytes;
	const TString text = TextOfUtf8(utf8);
	for (const char16_t unit : text.View())
		bytes += unit < 0x100 ? static_cast<char>(unit) : '?';
	return bytes;
}

} // namespace

xcb_atom_t TX11Selection::Selection() const {
	return mPredefined != XCB_ATOM_NONE ? mPredefined : mpConnection->Atom(mAtom);
}

void TX11Selection::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	mReader.Connect(connection);
	const auto reply =
	    connection.Reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection.Xcb(), Selection()));
	mOwner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
	mHasOwner = mOwner != XCB_WINDOW_NONE;
}

void TX11Selection::Disconnect() {
	if (!mpConnection)
		return;
	if (mpText && mPredefined == XCB_ATOM_NONE)
		HandOver();
	Disown();
	mReader.Disconnect();
	mpFetched = nullptr;
	mSendings.clear();
	mpConnection = nullptr;
	mHasOwner = false;
}

void TX11Selection::Own(std::string text) {
	if (!mpConnection)
		return;
	mpText = std::make_shared<const std::string>(std::move(text));
	mOwner = mpConnection->ServiceWindow();
	mOwnedSince = mpConnection->UserTime();
	mHasOwner = true;
	mpFetched = nullptr;
	OwnTexts().Set({mOwner, Selection()}, mpText);
	mOwning = xcb_set_selection_owner(mpConnection->Xcb(), mOwner, Selection(), mOwnedSince).sequence;
	mpConnection->Flush();
}

void TX11Selection::Disown() {
	if (std::exchange(mpText, nullptr))
		OwnTexts().Remove({mpConnection->ServiceWindow(), Selection()});
}

bool TX11Selection::OnOwnerChanged(xcb_window_t owner, uint32_t sequence) {
	if (mpText && static_cast<int32_t>(sequence - mOwning) < 0)
		return false;
	mOwner = owner;
	mHasOwner = owner != XCB_WINDOW_NONE;
	mpFetched = nullptr;
	if (owner == mpConnection->ServiceWindow())
		return false;
	Disown();
	mReader.Stop();
	return true;
}

void TX11Selection::ReadAhead() {
	if (!mpConnection || mpText || mpFetched || !mHasOwner || mReader.IsBusy() ||
	    OwnTexts().Find({mOwner, Selection()}))
		return;
	mTriesLatin1 = false;
	mReader.Start(
	    Selection(), mpConnection->Atom(TX11Atom::kUtf8String), mpConnection->UserTime(), TClipboardImpl::kLongestText);
}

std::string TX11Selection::Read() {
	if (!mpConnection || !mHasOwner)
		return {};
	if (!mpText && !mpFetched)
		mpFetched = OwnTexts().Find({mOwner, Selection()});
	if (!mpText && !mpFetched) {
		ReadAhead();
		if (!WaitForReader())
			return {};
	}
	return mpText ? *mpText : mpFetched ? *mpFetched : std::string();
}

/// As long as pieces keep coming, but not for ever.
bool TX11Selection::WaitForReader() {
	using TTaken = TX11Connection::TTaken;
	const auto end = TClock::now() + kLongestRead;
	while (mReader.IsBusy() && TClock::now() < end) {
		const std::size_t before = mReader.Received();
		const bool isDone = mpConnection->WaitFor(TClipboardImpl::kLongestWait, [&](const xcb_generic_event_t& event) {
			if (!HandleEvent(event))
				return TTaken::kNo;
			return mReader.IsBusy() ? TTaken::kYes : TTaken::kLast;
		});
		if (!isDone && mReader.Received() == before)
			break;
	}
	if (mReader.IsBusy())
		mReader.Stop();
	return mpFetched != nullptr;
}

bool TX11Selection::HandleEvent(const xcb_generic_event_t& event) {
	if (!mpConnection)
		return false;
	const bool wasReading = mReader.IsBusy();
	if (mReader.HandleEvent(event)) {
		if (wasReading && !mReader.IsBusy())
			OnReadingEnded();
		return true;
	}
	switch (event.response_type & 0x7F) {
	case XCB_SELECTION_REQUEST: {
		const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
		if (request.owner != mpConnection->ServiceWindow() || request.selection != Selection())
			return false;
		Serve(request);
		return true;
	}
	case XCB_SELECTION_CLEAR:
		return reinterpret_cast<const xcb_selection_clear_event_t&>(event).selection == Selection(); // OnOwnerChanged
	case XCB_PROPERTY_NOTIFY:
		return SendNext(reinterpret_cast<const xcb_property_notify_event_t&>(event));
	default:
		return false;
	}
}

/// Old programs know only their own encoding.
void TX11Selection::OnReadingEnded() {
	if (mReader.HasSucceeded()) {
		std::string bytes = mReader.TakeBytes();
		mpFetched = std::make_shared<const std::string>(mTriesLatin1 ? Utf8Of(TextOfLatin1(bytes)) : std::move(bytes));
	} else if (!std::exchange(mTriesLatin1, true)) {
		mReader.Start(Selection(), XCB_ATOM_STRING, mpConnection->UserTime(), TClipboardImpl::kLongestText);
	}
}

void TX11Selection::Serve(const xcb_selection_request_event_t& request) {
	const xcb_atom_t property = request.property != XCB_ATOM_NONE ? request.property : request.target;
	const bool isDone = mpText && Convert(request.requestor, property, request.target);
	xcb_selection_notify_event_t answer{};
	answer.response_type = XCB_SELECTION_NOTIFY;
	answer.time = request.time;
	answer.requestor = request.requestor;
	answer.selection = request.selection;
	answer.target = request.target;
	answer.property = isDone ? property : xcb_atom_t{XCB_ATOM_NONE};
	xcb_send_event(mpConnection->Xcb(), false, request.requestor, 0, reinterpret_cast<const char*>(&answer));
	mpConnection->Flush();
}

bool TX11Selection::Convert(xcb_window_t receiver, xcb_atom_t property, xcb_atom_t target) {
	const TX11Connection& connection = *mpConnection;
	const xcb_atom_t utf8 = connection.Atom(TX11Atom::kUtf8String);
	const auto is = [&](TX11Atom atom) { return target == connection.Atom(atom); };
	if (is(TX11Atom::kTargets)) {
		const uint32_t targets[]{
		    connection.Atom(TX11Atom::kTargets),
		    connection.Atom(TX11Atom::kTimestamp),
		    connection.Atom(TX11Atom::kMultiple),
		    connection.Atom(TX11Atom::kSaveTargets),
		    utf8,
		    connection.Atom(TX11Atom::kTextPlainUtf8),
		    connection.Atom(TX11Atom::kTextPlain),
		    connection.Atom(TX11Atom::kText),
		    XCB_ATOM_STRING};
		connection.SetProperty(receiver, property, XCB_ATOM_ATOM, targets);
		return true;
	}
	if (is(TX11Atom::kTimestamp)) {
		connection.SetProperty(receiver, property, XCB_ATOM_INTEGER, {&mOwnedSince, 1});
		return true;
	}
	if (is(TX11Atom::kMultiple))
		return ConvertSeveral(receiver, property);
	if (is(TX11Atom::kSaveTargets)) {
		connection.SetProperty(receiver, property, XCB_ATOM_NONE, {});
		return true;
	}
	if (target == XCB_ATOM_STRING) {
		SendText(receiver, property, target, std::make_shared<const std::string>(Latin1(*mpText)));
		return true;
	}
	if (target != utf8 && !is(TX11Atom::kText) && !is(TX11Atom::kTextPlain) && !is(TX11Atom::kTextPlainUtf8))
		return false;
	SendText(receiver, property, is(TX11Atom::kText) ? utf8 : target, mpText);
	return true;
}

/// The property names pairs of target and property; what cannot be had is struck out.
bool TX11Selection::ConvertSeveral(xcb_window_t receiver, xcb_atom_t property) {
	const xcb_atom_t pair = mpConnection->Atom(TX11Atom::kAtomPair);
	std::vector<uint32_t> pairs = mpConnection->Property(receiver, property, pair);
	for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
		const bool isNested = pairs[i] == mpConnection->Atom(TX11Atom::kMultiple);
		if (isNested || !Convert(receiver, pairs[i + 1], pairs[i]))
			pairs[i + 1] = XCB_ATOM_NONE;
	}
	mpConnection->SetProperty(receiver, property, pair, pairs);
	return !pairs.empty();
}

void TX11Selection::SendText(xcb_window_t receiver, xcb_atom_t property, xcb_atom_t type, TText text) {
	const TBrokenPipeGuard guard;
	if (text->size() <= std::min(kLongestPiece, mpConnection->LongestRequest())) {
		mpConnection->SetTextProperty(receiver, property, type, *text);
		return;
	}
	xcb_change_window_attributes(mpConnection->Xcb(), receiver, XCB_CW_EVENT_MASK, &kEventsOfOthers);
	const auto size = static_cast<uint32_t>(text->size());
	mpConnection->SetProperty(receiver, property, mpConnection->Atom(TX11Atom::kIncr), {&size, 1});
	mSendings.push_back({receiver, property, type, std::move(text), 0, TClock::now()});
}

bool TX11Selection::SendNext(const xcb_property_notify_event_t& event) {
	const auto sending = std::find_if(mSendings.begin(), mSendings.end(), [&](const TSending& one) {
		return one.mReceiver == event.window && one.mProperty == event.atom;
	});
	if (event.state != XCB_PROPERTY_DELETE || sending == mSendings.end())
		return false;
	const TBrokenPipeGuard guard;
	const std::string piece =
	    sending->mText->substr(sending->mSent, std::min(kLongestPiece, mpConnection->LongestRequest()));
	mpConnection->SetTextProperty(sending->mReceiver, sending->mProperty, sending->mType, piece);
	mpConnection->Flush();
	sending->mSent += piece.size();
	sending->mLastSign = TClock::now();
	if (piece.empty()) // tells the receiver that this was all
		mSendings.erase(sending);
	return true;
}

void TX11Selection::Settle() {
	if (!mSendings.empty())
		std::erase_if(mSendings, [now = TClock::now()](const TSending& sending) {
			return now - sending.mLastSign > kLongestSilence;
		});
}

/// What was copied in an editor can be pasted when it has closed, where a program keeps clipboards.
void TX11Selection::HandOver() {
	using TTaken = TX11Connection::TTaken;
	const TX11Connection& connection = *mpConnection;
	const xcb_atom_t keeper = connection.Atom(TX11Atom::kClipboardManager);
	const auto owner =
	    connection.Reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection.Xcb(), keeper));
	if (!owner || owner->owner == XCB_WINDOW_NONE)
		return;
	const xcb_atom_t property = connection.Atom(TX11Atom::kPrimaryTransfer);
	const uint32_t targets[]{connection.Atom(TX11Atom::kUtf8String), XCB_ATOM_STRING};
	connection.SetProperty(connection.ServiceWindow(), property, XCB_ATOM_ATOM, targets);
	xcb_convert_selection(
	    connection.Xcb(), connection.ServiceWindow(), keeper, connection.Atom(TX11Atom::kSaveTargets), property,
	    connection.UserTime());
	mpConnection->WaitFor(kWaitForKeeper, [&](const xcb_generic_event_t& event) {
		const bool isAnswer = (event.response_type & 0x7F) == XCB_SELECTION_NOTIFY &&
		                      reinterpret_cast<const xcb_selection_notify_event_t&>(event).selection == keeper;
		return isAnswer ? TTaken::kLast : HandleEvent(event) ? TTaken::kYes : TTaken::kNo;
	});
}
