// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TString;
class TView;

/// Who shows tool tips, so that views and their mouse handler need not know how one looks. Main thread.
class TToolTipPresenter {
public:
	virtual bool IsOpen() const = 0;
	/// Both of the open tip.
	virtual TString Text() const = 0;
	virtual TView* Target() const = 0;
	/// Opens the tip at the pointer, or makes the open one that of the target.
	virtual void Show(TView& target, const TString& text) = 0;
	virtual void Close() = 0;

	/// Null for none.
	static void SetInstance(TToolTipPresenter* presenter) noexcept { spInstance = presenter; }

	static TToolTipPresenter* Instance() noexcept { return spInstance; }

protected:
	~TToolTipPresenter() = default;

private:
	static inline TToolTipPresenter* spInstance = nullptr;
};
