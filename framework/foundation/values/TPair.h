// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Two values that belong together.
template <class A, class B>
struct TPair {
	A mFirst{};
	B mSecond{};

	friend bool operator==(const TPair&, const TPair&) = default;
	friend auto operator<=>(const TPair&, const TPair&) = default;
};

template <class A, class B>
TPair(A, B) -> TPair<A, B>;
