// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/gui/dialogs/TFileDialog.h"
#include "framework/gui/views/TView.h"

class TButton;
class TDynamicColumnLayoutView;
class TTextField;
class TVortelProgramMenu;
class TVortelQuantizeMenu;
class TVortelTriggerMenu;

/// The program: which one, its name and files, how it is triggered. Main thread.
class TVortelProgramPanelView final : public TView {
public:
	explicit TVortelProgramPanelView(TVortelDocument& document);

	void OnResized() override;

private:
	void AddControls(TVortelDocument& document);
	TPtr<TView> MakeProgramColumn(TVortelDocument& document);
	TPtr<TView> MakeRenameSwitch();
	TPtr<TTextField> MakeNameField();
	void OpenFileMenu();
	void OpenEditMenu();

	void OpenFileDialog(const TFileDialogSettings& settings, const TFunctionPtr<void, const TString&>& accepted);
	void LoadProgram();
	void SaveProgram();
	void LoadBank();
	void SaveBank();

	TString ProgramName() const;
	void SetProgramName(const TString& name);
	void OnRenaming(TObservable* observable, int32_t reason);
	void OnNameFieldEdit();

	TWeakPtr<TVortelDocument> mDocument;
	TPtr<TDynamicColumnLayoutView> mLayout;
	TPtr<TVortelProgramMenu> mProgramMenu;
	TPtr<TTextField> mNameField;
	TObservableBaseType<bool> mRenaming{false};
	TPtr<TVortelTriggerMenu> mTriggerMenu;
	TPtr<TVortelQuantizeMenu> mQuantizeMenu;
	TPtr<TButton> mFileButton;
	TPtr<TButton> mEditButton;
	TPtr<TFileDialog> mFileDialog;
};
