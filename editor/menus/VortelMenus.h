// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/gui/menus/TPopUpMenu.h"

/// A list of choices for a value of the document or of the program that is active at the time. Main thread.
class TVortelMenu : public TView {
public:
	TPopUpMenu& Menu() const noexcept { return *mMenu; }

	void OnResized() override;

protected:
	TVortelMenu(TVortelDocument& document, int width);

	/// The value may be one of a linked value's pairs on the menu itself.
	template <class TMenu>
	void Bind(TMenu* menu, int (TMenu::*get)() const, void (TMenu::*set)(int)) {
		Bind(TFunctionPtr<int>(menu, get), TFunctionPtr<void, int>(menu, set));
	}

	TVortelDocument* Document() const noexcept { return mDocument.Get(); }

	/// Null once the document is gone.
	TVortelProgram* Program() const { return mDocument ? mDocument->ActiveProgram() : nullptr; }

private:
	void Bind(const TFunctionPtr<int>& getter, const TFunctionPtr<void, int>& setter);

	TWeakPtr<TVortelDocument> mDocument;
	TPtr<TPopUpMenu> mMenu;
};

/// One of the sixteen programs. The open list numbers them.
class TVortelProgramMenu final : public TVortelMenu {
public:
	explicit TVortelProgramMenu(TVortelDocument& document);

	/// The names as they are now.
	void UpdateEntries();

private:
	int Value() const;
	void SetValue(int program);
	void OnProgramsChanged(TObservable* observable, int32_t reason);
};

/// One of the 128 scenes, with the note that calls it up.
class TVortelSceneMenu final : public TVortelMenu {
public:
	explicit TVortelSceneMenu(TVortelDocument& document);

private:
	int Value() const;
	void SetValue(int scene);
};

class TVortelTriggerMenu final : public TVortelMenu {
public:
	explicit TVortelTriggerMenu(TVortelDocument& document);

private:
	int Value() const;
	void SetValue(int mode);
};

class TVortelQuantizeMenu final : public TVortelMenu {
public:
	explicit TVortelQuantizeMenu(TVortelDocument& document);

private:
	int Value() const;
	void SetValue(int factor);
};
