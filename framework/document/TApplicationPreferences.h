// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TSerializable.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/instance/TSingleton.h"

/// The settings that hold for all instances on a machine, as a document: one object per plug-in instance, kept in
/// "Config.xml" in the preferences folder of this version. Read after creation and written before destruction; where
/// the system has no folder for it, neither happens. Main thread.
///
/// Instances and processes share the file, not the object. A save therefore writes the values that were changed here
/// over what the file holds by then, and takes over the rest; where two have changed the same value, the later save
/// wins. The file is replaced as a whole, so nobody ever reads half of it.
class TApplicationPreferences : public TSingleton<TApplicationPreferences>, public TDocumentRoot {
public:
	/// Writes the file if it would change by that. Throws a TReadableException; the file then stays as it was.
	void SaveChanges();
	/// The same for a confirmed dialog, where the failure only goes to the log.
	void SaveConfirmed();

	/// Empty where the system has no folder for it.
	static TString FilePath();

protected:
	/// Instead of AddProperty.
	void AddPreference(TSerializable* value, const TString& name);
	/// In a group, which is an element of its own and has been added as a child.
	void AddPreference(TDocumentNode& group, TSerializable* value, const TString& name);

	void OnCreated() override;
	void OnBeforeDestruction() override;

private:
	TList<TString> Texts() const;
	bool LoadIfGood(const TString& path);

	TList<TSerializable*> mValues;
	TList<TString> mKnownTexts; // of the values, when they were last read or written
};
