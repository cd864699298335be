// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TView;

/// A value that a view polls once per drawn frame, so that what others change reaches it without a notification from
/// another thread. Made with new; the view owns it from then on. Main thread.
class TLinkedViewValueBase {
public:
	virtual ~TLinkedViewValueBase() = default;
	TLinkedViewValueBase(const TLinkedViewValueBase&) = delete;
	TLinkedViewValueBase& operator=(const TLinkedViewValueBase&) = delete;

	/// The index is the value's place among the view's linked values. Called every frame: cheap while nothing changed.
	virtual void Poll(int index) = 0;

	TView& View() const noexcept { return mView; }

protected:
	/// Enters the view's list.
	explicit TLinkedViewValueBase(TView& view);

private:
	TView& mView; // outlives the value, which it owns
};
