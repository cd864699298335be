// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TNameRules.h"
#include "framework/document/nodes/TDocumentList.h"

#include <gtest/gtest.h>

struct TNameRulesOuter {
	class TInner {};
};

namespace {

struct TCase {
	const char* mName;
	const char* mExpected;
};

template <class TRule, std::size_t kCount>
void ExpectAll(TRule rule, const TCase (&cases)[kCount]) {
	for (int pass = 0; pass < 2; ++pass) { // the second finds the cache filled
		for (const TCase& c : cases)
			EXPECT_EQ(std::string(rule(TString(c.mName)).CString()), c.mExpected) << c.mName;
	}
}

} // namespace

TEST(TNameRulesTest, MembersLoseTheirPrefix) {
	const TCase cases[] = {
	    {"mpTempProgram", "TempProgram"},
	    {"mActiveProgramIndex", "ActiveProgramIndex"},
	    {"mName", "Name"},
	    {"mpName", "Name"},
	    {"mappedValue", "appedValue"},
	    {"NumBeats", "NuBeats"},
	    {"ValueM", "Value"},
	    {"mVortel[kPalette0]", "VortelItemkPalette0"},
	    {"mpColors[3]", "Color3"},
	};
	ExpectAll([](const TString& name) { return TNameRules::MemberNameToElementName(name); }, cases);
	EXPECT_EQ(TNameRules::MemberNameToElementName("mpTempProgram"), "TempProgram");
}

TEST(TNameRulesTest, ItemsAreNamedInTheSingular) {
	const TCase cases[] = {
	    {"List", "ListItem"},          {"Sequence", "SequenceItem"},
	    {"Indices", "Indice"},         {"s", "s_item"},
	    {"myindices", "myindex"},      {"myIndices", "myIndex"},
	    {"Entries", "Entry"},          {"Entry_s", "Entry"},
	    {"ColorList", "Color"},        {"KeyMap", "Key"},
	    {"SkinPALETTE", "Skin"},       {"StepSequence", "Step"},
	    {"ListOfLists", "ListOfList"}, {"Data", "DataItem"},
	    {"data", "data_item"},         {"ies", "ie"},
	};
	ExpectAll(&TNameRules::ListNameToItemName, cases);
}

TEST(TNameRulesTest, ClassesHaveAnElementNameAndATypeName) {
	const TCase elementNames[] = {
	    {"TVortelProgram", "VortelProgram"},
	    {"TDocumentList<TKeyBinding>", "DocumentList_of_KeyBinding_"},
	    {"TFoo::TBar", "Foo.Bar"},
	    {"Thing", "hing"},
	};
	ExpectAll(&TNameRules::ClassNameToElementName, elementNames);
	EXPECT_EQ(TNameRules::ClassNameToTypeName("TDocumentList<TKeyBinding>"), "DocumentList<KeyBinding>");
	EXPECT_EQ(TNameRules::ClassNameOf(typeid(TNameRulesOuter::TInner)), "TNameRulesOuter::TInner");
}
