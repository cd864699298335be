// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TXmlDocument.h"

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentClassRegistry.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/document/xml/TDocumentTranslator.h"
#include "framework/foundation/text/TReadableException.h"
#include "tests/support/StreamText.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"

#include <gmock/gmock.h>

#include <string>

using testing::HasSubstr;
using testing::StartsWith;

class TXmlPart final : public TDocumentNode {
public:
	TXmlPart() {
		AddProperty(&mText, "Text", kWrite);
		AddProperty(&mOld, "Old", kRead);
		FinishDeclaration();
	}

	bool IsSkippedOnSave() override { return mText.Get() == TString("skip"); }

	TObservableBaseType<TString> mText;
	TObservableBaseType<int> mOld{0};
};

class TNestedText final : public TObservableBaseType<TString> {
public:
	bool IsNestedXml() const override { return true; }
};

class TXmlThing final : public TDocumentRoot {
public:
	TXmlThing()
	    : mpPart(MakePtr<TXmlPart>()),
	      mpBag(MakePtr<TDocumentByteBag>()),
	      mpParts(MakePtr<TDocumentList<TXmlPart>>()) {
		AddProperty(&mSize, "Size", kWrite);
		AddComment(" the part ");
		AddChild(mpPart.Get(), "Part", kWrite);
		AddProperty(&mName, "Name", kWrite);
		AddProperty(&mNumbers, "Numbers", kWrite);
		mpParts->DeclareElementClass();
		AddChild(mpParts.Get(), "Parts", kWrite);
		AddChild(mpBag.Get(), "Bag", kWrite);
		AddProperty(&mHidden, "Hidden", 0);
		AddProperty(&mNested, "Nested", kWrite);
		FinishDeclaration();
	}

	void OnLoadBegin() override { mLog += "b"; }

	void OnLoadEnd(bool success) override { mLog += success ? "e" : "f"; }

	void OnSaveEnd(bool success) override { mLog += success ? "S" : "s"; }

	std::string mLog;
	TNestedText mNested;
	TObservableBaseType<int> mSize{0};
	TPtr<TXmlPart> mpPart;
	TObservableBaseType<TString> mName;
	TObservableList<TObservableBaseType<int>> mNumbers;
	TPtr<TDocumentByteBag> mpBag;
	TPtr<TDocumentList<TXmlPart>> mpParts;
	TObservableBaseType<int> mHidden{5};
};

namespace {

class TXmlDocumentTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		TDocumentClassRegistry::RegisterClass<TXmlPart>(TNameRules::ClassNameOf(typeid(TXmlPart)));
		TDocumentClassRegistry::RegisterClass<TXmlThing>(TNameRules::ClassNameOf(typeid(TXmlThing)));
		mpThing = MakePtr<TXmlThing>();
	}

	void TearDown() override {
		mpThing = nullptr;
		TFrameworkFixture::TearDown();
	}

	std::string Saved(bool writeEmptyElements) {
		TStream stream;
		mpThing->SaveToStream(stream, writeEmptyElements);
		return TextOf(stream);
	}

	void Load(const std::string& inner) { mpThing->LoadFromStream(StreamOf("<XmlThing>" + inner + "</XmlThing>")); }

	std::string ErrorOf(const std::string& text) {
		try {
			mpThing->LoadFromStream(StreamOf(text));
		} catch (const TReadableException& error) {
			return error.what();
		}
		return {};
	}

	TPtr<TXmlThing> mpThing;
	TTemporaryFolder mFolder;
};

} // namespace

TEST_F(TXmlDocumentTest, MembersStandInTheOrderOfDeclarationAndEmptyOnesAreLeftOut) {
	EXPECT_EQ(
	    Saved(false), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
	                  "<XmlThing doc_version=\"0\">\n  <Size>0</Size>\n  <!-- the part -->\n"
	                  "  <Part/>\n" // of which a part has a value, though it is not written
	                  "</XmlThing>\n");
	mpThing->mpPart->mText.Set("a<b&c");
	mpThing->mNumbers.Append()->Set(7);
	mpThing->mpParts->Insert(new TXmlPart);
	mpThing->mpBag->SetData("xyz", 3);
	EXPECT_EQ(
	    Saved(true), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
	                 "<XmlThing doc_version=\"0\">\n  <Size>0</Size>\n  <!-- the part -->\n"
	                 "  <Part>\n    <Text>a&lt;b&amp;c</Text>\n  </Part>\n"
	                 "  <Name/>\n"
	                 "  <Numbers>\n    <Number>7</Number>\n  </Numbers>\n"
	                 "  <Parts>\n    <Part>\n      <Text/>\n    </Part>\n  </Parts>\n"
	                 "  <Bag><![CDATA[eHl6]]></Bag>\n"
	                 "  <Nested/>\n"
	                 "</XmlThing>\n");
	mpThing->mpPart->mText.Set("skip");
	EXPECT_EQ(Saved(true).find("<Text>skip"), std::string::npos);
}

TEST_F(TXmlDocumentTest, WhatIsSavedComesBack) {
	const char16_t odd[] = {u'<', 1, u'&', 0xD83D, u'"', 0xE9, 0xFFFE, u'\n', u'&', u'#', u'6', u'5', u';', 0};
	mpThing->mName.Set(TString(std::u16string_view(odd)));
	mpThing->mSize.Set(-3);
	mpThing->mpBag->SetData("\0\xFF", 2);
	for (int i = 0; i < 3; ++i) {
		mpThing->mNumbers.Append()->Set(i);
		mpThing->mpParts->Insert(new TXmlPart);
		mpThing->mpParts->Element(i)->mText.Set(TString::ToString(i));
	}
	EXPECT_THAT(Saved(false), HasSubstr("&amp;#1;"));
	const TPtr<TDocumentNode> clone = mpThing->Clone();
	ASSERT_TRUE(clone);
	auto& copy = static_cast<TXmlThing&>(*clone);
	EXPECT_EQ(copy.mName.Get(), mpThing->mName.Get());
	EXPECT_EQ(copy.mpBag->Data().size(), 2u);
	EXPECT_FALSE(copy.IsModified());
	const std::string saved = Saved(true);
	mpThing = TPtr<TXmlThing>(&copy);
	EXPECT_EQ(Saved(true), saved);
}

// A value that is an XML document of its own stands as an element among the others, under the value's name.
TEST_F(TXmlDocumentTest, NestedDocumentsAreElements) {
	mpThing->mNested.FromString("<?xml version=\"1.0\"?><Inner doc_version=\"4\" a=\"1\"><B>&amp;x</B></Inner>");
	const std::string text = Saved(false);
	EXPECT_THAT(text, HasSubstr("  <Nested a=\"1\">\n    <B>&amp;x</B>\n  </Nested>\n"));
	mpThing->mNested.FromString({});
	mpThing->LoadFromStream(StreamOf(text));
	EXPECT_EQ(
	    mpThing->mNested.ToString(), TString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
	                                         "<Nested a=\"1\"><B>&amp;x</B></Nested>"));
	mpThing->mNested.FromString("<Broken>");
	mpThing->mLog.clear();
	EXPECT_THROW(Saved(false), TReadableException);
	EXPECT_EQ(mpThing->mLog, "s") << "a failed save ends too";
}

TEST_F(TXmlDocumentTest, ReadingTakesWhatItKnowsWhereverItStands) {
	Load("<Unknown><Size>9</Size></Unknown><Part><Old>4</Old><Text>t</Text></Part>text<Name>first</Name><Size>2</Size>"
	     "<Name>last</Name><Hidden>1</Hidden><Size>no number</Size><Numbers><Number>1</Number><Odd>5</Odd></Numbers>");
	EXPECT_EQ(mpThing->mSize.Get(), 2);
	EXPECT_EQ(mpThing->mpPart->mOld.Get(), 4);
	EXPECT_EQ(mpThing->mpPart->mText.Get(), TString("t"));
	EXPECT_EQ(mpThing->mName.Get(), TString("last"));
	EXPECT_EQ(mpThing->mHidden.Get(), 5);
	ASSERT_EQ(mpThing->mNumbers.Size(), 2);
	EXPECT_EQ(mpThing->mNumbers[1]->Get(), 0);
	EXPECT_EQ(mpThing->mLog, "be");
	Load("<Name>   </Name>");
	EXPECT_EQ(mpThing->mName.Get(), TString()) << "blanks alone are layout";
	Load("<Numbers/>");
	EXPECT_EQ(mpThing->mNumbers.Size(), 0) << "an element that is there replaces the list";
}

// Endless if an element cost as much as there were elements, or references, before it.
TEST_F(TXmlDocumentTest, RepetitionsCostNoMoreThanTheirNumber) {
	std::string text = "<XmlThing>";
	for (int i = 0; i < 300000; ++i)
		text += "<Size>4</Size>";
	text += "<Size>7</Size><Name>";
	for (int i = 0; i < 1000000; ++i)
		text += "&amp;#";
	mpThing->LoadFromStream(StreamOf(text + "1;</Name></XmlThing>"));
	EXPECT_EQ(mpThing->mSize.Get(), 7);
	EXPECT_EQ(mpThing->mName.Get().Length(), 2 * 999999 + 1);
}

TEST_F(TXmlDocumentTest, EntitiesAreNotFollowed) {
	const std::string declared = "<!DOCTYPE XmlThing [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
	                             "<!ENTITY c SYSTEM \"file:///etc/hostname\">]>";
	mpThing->LoadFromStream(StreamOf(
	    declared + "<XmlThing doc_version=\"&a;\"><Name>&b;</Name><Part><Text>&c;</Text></Part>"
	               "<Parts><Part type=\"&b;XmlPart\"/></Parts></XmlThing>"));
	EXPECT_EQ(mpThing->mName.Get(), TString());
	EXPECT_EQ(mpThing->mpPart->mText.Get(), TString());
	EXPECT_EQ(mpThing->mpParts->Size(), 1);

	std::string laughs = "<!DOCTYPE XmlThing [<!ENTITY e0 \"haha\">";
	for (int i = 1; i < 30; ++i) {
		const std::string below = "&e" + std::to_string(i - 1) + ";";
		laughs += "<!ENTITY e" + std::to_string(i) + " \"" + below + below + below + below + "\">";
	}
	EXPECT_NE(ErrorOf(laughs + "]><XmlThing><Name>&e29;</Name></XmlThing>"), "");
	EXPECT_NE(ErrorOf(laughs + "]><XmlThing doc_version=\"&e29;\"/>"), "");
}

TEST_F(TXmlDocumentTest, UnreadableFilesSaySo) {
	const auto repeated = [](int count, const auto& text) {
		std::string all;
		for (int i = 0; i < count; ++i)
			all += text(std::to_string(i));
		return all;
	};
	const std::pair<std::string, const char*> cases[] = {
	    {" \n", "Failed to parse a memory XML file (The document is empty)!"},
	    {"<XmlThing><Size>", "Failed to parse a memory XML file (line 1: "},
	    {std::string("\x00\x01\xFF", 3), "Failed to parse a memory XML file ("},
	    {"\n\n<?xml version=\"1.0\"?><Other/>", "'[BinStream]' is not a Vortel2 XmlThing file. Expected a 'XmlThing' "
	                                            "root node, but found a 'Other' root node."},
	    {repeated(5000, [](auto) { return "<XmlThing>"; }), "Excessive depth"},
	    {"<XmlThing" + repeated(100000, [](auto i) { return " a" + i + "='>'"; }) + "/>",
	     "(an element has too many attributes)"},
	    {"<!DOCTYPE XmlThing [<!ATTLIST XmlThing" + repeated(100000, [](auto i) { return " a" + i + " CDATA 'x'"; }) +
	         ">]><XmlThing/>",
	     "(the document declares attributes)"},
	    // more names than the parser can look up in time
	    {"<XmlThing>" + repeated(100000, [](auto i) { return "<another_name_" + i + "/>"; }) + "</XmlThing>", "Failed"},
	    {"<XmlThing><Parts><Part type=\"Nothing\"/></Parts></XmlThing>", "type 'Nothing'!"},
	};
	for (const auto& [text, error] : cases) {
		mpThing->mLog.clear();
		EXPECT_THAT(ErrorOf(text), HasSubstr(error));
		EXPECT_EQ(mpThing->mLog, "bf");
	}
}

TEST_F(TXmlDocumentTest, OtherEncodingsAreRead) {
	const std::string body = "<XmlThing><Name>caf\xE9</Name></XmlThing>";
	std::string wide = "\xFF\xFE";
	for (const char byte : body)
		wide += {byte, '\0'};
	for (const std::string& text : {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + body, wide}) {
		mpThing->mName.Set("");
		mpThing->LoadFromStream(StreamOf(text));
		EXPECT_EQ(mpThing->mName.Get(), TString("caf\xC3\xA9", kUtf8Encoding));
	}
}

TEST_F(TXmlDocumentTest, FileIsReplacedInOneStepOrNotAtAll) {
	const TString path = mFolder.Path("thing.xml");
	mpThing->mSize.Set(12);
	mpThing->XmlDocument().SetStyleSheet("style.xsl");
	mpThing->Save(path, false);
	EXPECT_THAT(
	    mFolder.Read("thing.xml"),
	    StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
	               "<?xml-stylesheet type=\"text/xsl\" href=\"style.xsl\"?>\n<XmlThing doc_version=\"0\">"));
	EXPECT_EQ(mpThing->XmlDocument().FileName().Get(), path);
	mpThing->mSize.Set(0);
	mpThing->Load(path);
	EXPECT_EQ(mpThing->mSize.Get(), 12);
	for (const TString& noFile : {mFolder.Path("none/thing.xml"), mFolder.Directory().Path()}) {
		EXPECT_THROW(mpThing->Save(noFile, false), TReadableException);
		EXPECT_THROW(mpThing->Load(noFile), TReadableException);
	}
	EXPECT_THAT(mFolder.Names(), testing::ElementsAre("thing.xml")) << "nothing half-written stays";
	mpThing->Save(TString("file://") + mFolder.Path("a%20b.xml"), false);
	mpThing->Save(TString("file://localhost") + mFolder.Path("%41.xml"), false);
	mpThing->Save(TString("FILE://LocalHost") + mFolder.Path("%42.xml"), false);
	EXPECT_THAT(mFolder.Names(), testing::ElementsAre("%42.xml", "A.xml", "a b.xml", "thing.xml"));
}

TEST_F(TXmlDocumentTest, OldFilesGoThroughEveryStep) {
	const auto translator = MakePtr<TDocumentTranslator>();
	translator->BeginStep();
	translator->AddRenameNode("/XmlThing/Title", "Name");
	translator->AddMoveNode("/XmlThing/Old/*", "/XmlThing/Part");
	translator->AddRemoveNode("//Junk | //Junk/Junk");
	translator->EndStep();
	translator->BeginStep();
	translator->AddChangeAttributeValue("//Part", "type", "b");
	translator->AddDocumentFunction([](TDocumentNode* node) {
		auto* thing = static_cast<TXmlThing*>(node);
		thing->mSize.Set(thing->mSize.Get() * 2);
	});
	translator->EndStep();
	TDocumentTranslator::Register("XmlThing", translator);

	Load("<Title>x</Title><Part/><Old><Text>moved</Text></Old><Size>4</Size><Junk><Junk/></Junk>");
	EXPECT_EQ(mpThing->mName.Get(), TString("x"));
	EXPECT_EQ(mpThing->mpPart->mText.Get(), TString("moved"));
	EXPECT_EQ(mpThing->mSize.Get(), 8);
	EXPECT_EQ(mpThing->XmlDocument().CurrentVersion(), 2);
	mpThing->LoadFromStream(StreamOf("<XmlThing doc_version=\"2\"><Size>4</Size></XmlThing>"));
	EXPECT_EQ(mpThing->mSize.Get(), 4);
	EXPECT_EQ(
	    ErrorOf("<XmlThing doc_version=\"3\"/>"),
	    "'[BinStream]' was saved with an incompatible, more recent version of Vortel2.");

	translator->BeginStep();
	translator->AddRemoveNode("//[");
	translator->EndStep();
	EXPECT_EQ(
	    ErrorOf("<XmlThing/>"), "There was an error while upgrading a document:\nFailed to remove the node(s) '//['.");
	TDocumentTranslator::Register("XmlThing", MakePtr<TDocumentTranslator>());
}

TEST_F(TXmlDocumentTest, HeaderIsReadWithoutADocument) {
	TString name;
	TString error;
	int32_t version = -1;
	EXPECT_TRUE(TXmlDocument::ParseHeader("\n<A doc_version=\"7\"><B/></A>", name, version, error));
	EXPECT_EQ(name, TString("A"));
	EXPECT_EQ(version, 7);
	EXPECT_FALSE(TXmlDocument::ParseHeader("  ", name, version, error));
	EXPECT_EQ(error, TString("XML document is empty!"));
	EXPECT_FALSE(TXmlDocument::ParseHeader("<A>", name, version, error));
	EXPECT_EQ(error, TString("Not a valid XML document!"));
}
