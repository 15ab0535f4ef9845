#include <tests/support/temporaryfolder.h>
#include <uabase/system/uaxmldocument.h>
#include <uabase/values/uastring.h>

#include <gtest/gtest.h>

#include <string>

namespace {

UaXmlDocument parse(const std::string& text, const UaXmlDocument::Limits& limits = {})
{
    return UaXmlDocument::fromBytes({reinterpret_cast<const unsigned char*>(text.data()), text.size()},
                                    limits);
}

std::string nested(int depth)
{
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "<a>";
    for (int i = 0; i < depth; ++i)
        text += "</a>";
    return text;
}

class UaXml : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { UaXmlDocument::initParser(); }
    static void TearDownTestSuite() { UaXmlDocument::cleanupParser(); }
};

} // namespace

TEST_F(UaXml, ElementsAttributesAndTexts)
{
    const UaXmlDocument document =
        parse("<?xml version='1.0'?>\n"
              "<d:Root xmlns:d='urn:d' xmlns:o='urn:o' Name='a&amp;b' o:Name='other'>\n"
              "  <!-- a comment --><Field Empty=''/>\n"
              "  <d:Field>one<b> two</b><![CDATA[<3>]]>&#x41;</d:Field>\n"
              "  <Last/>\n"
              "</d:Root>");
    ASSERT_FALSE(document.isNull()) << document.error().toUtf8();
    const UaXmlNode root = document.root();
    EXPECT_EQ(root.name(), UaString("Root"));
    EXPECT_TRUE(root.is("Root", "urn:d"));
    EXPECT_EQ(root.attribute("Name"), UaString("a&b"));
    EXPECT_EQ(root.attribute("Name", "urn:o"), UaString("other"));
    EXPECT_TRUE(root.attribute("Missing").isNull());
    EXPECT_TRUE(root.parent().isNull());
    ASSERT_EQ(root.children().size(), 3u);
    ASSERT_EQ(root.children("Field").size(), 2u);
    const UaXmlNode first = root.child("Field");
    EXPECT_TRUE(first.namespaceUri().isNull());
    EXPECT_TRUE(first.hasAttribute("Empty"));
    EXPECT_TRUE(first.attribute("Empty").isEmpty());
    EXPECT_EQ(first.line(), 3u);
    const UaXmlNode second = first.nextSibling();
    EXPECT_EQ(second.text(), UaString("one two<3>A"));
    EXPECT_EQ(second.child("b").parent().toXml(), second.toXml());
    EXPECT_EQ(second.child("b").toXml(), UaString("<b> two</b>"));
    EXPECT_TRUE(root.child("Missing").child("Deeper").nextSibling().text().isNull());
}

TEST_F(UaXml, NodesKeepTheirDocument)
{
    UaXmlNode node;
    {
        node = parse("<a><b>text</b></a>").root().firstChild();
    }
    EXPECT_EQ(node.text(), UaString("text"));
}

TEST_F(UaXml, EntitiesAreNeverExpanded)
{
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.file("secret"), "secret");
    std::string bomb = "<!DOCTYPE b [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int i = 1; i < 10; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        bomb +=
            "<!ENTITY a" + std::to_string(i) + " '" + inner + inner + inner + inner + inner + inner + "'>";
    }
    const std::string documents[] = {
        bomb + "]><b>&a9;</b>",
        "<!DOCTYPE b [<!ENTITY e SYSTEM 'file://" + folder.file("secret") + "'>]><b>&e;</b>",
        "<!DOCTYPE b [<!ENTITY % p SYSTEM 'file://" + folder.file("secret") + "'>%p;]><b/>",
        "<b>&undeclared;</b>"};
    for (const std::string& text : documents) {
        const UaXmlDocument document = parse(text);
        EXPECT_TRUE(document.isNull()) << text;
        EXPECT_EQ(document.error().toStdString().find("line 1: "), 0u) << document.error().toUtf8();
    }
    const UaXmlDocument external =
        parse("<!DOCTYPE b SYSTEM 'file://" + folder.file("secret") + "'><b a='1'>text</b>");
    ASSERT_FALSE(external.isNull()) << "the declaration alone loads nothing and harms nobody";
    EXPECT_EQ(external.root().text(), UaString("text"));
}

TEST_F(UaXml, SizeDepthAndNumberOfElementsAreBounded)
{
    EXPECT_FALSE(parse(nested(100)).isNull());
    EXPECT_EQ(parse(nested(101)).error(), UaString("line 1: elements are nested too deep"));
    EXPECT_TRUE(parse(nested(100000)).isNull());
    EXPECT_FALSE(parse("<a><b/><b/></a>", {1000, 10, 3}).isNull());
    EXPECT_EQ(parse("<a><b/>\n<b/><b/></a>", {1000, 10, 3}).error(), UaString("line 2: too many elements"));
    EXPECT_EQ(parse("<a>12345</a>", {11, 10, 10}).error(), UaString("the document is too large"));
    EXPECT_FALSE(parse("<a>12345</a>", {12, 10, 10}).isNull());
}

TEST_F(UaXml, WhatIsNoXmlIsRefusedWithItsLine)
{
    for (const std::string text :
         {"", " ", "<a>\n<b></a>", "<a/><b/>", "<a>\n\x01</a>", "<a>\xFF</a>", "garbage"}) {
        const UaXmlDocument document = parse(text);
        EXPECT_TRUE(document.isNull()) << text;
        EXPECT_FALSE(document.error().isEmpty()) << text;
        EXPECT_TRUE(document.root().isNull());
    }
    EXPECT_EQ(parse("<a>\n<b></a>").error().toStdString().find("line 2: "), 0u);
}

TEST_F(UaXml, FilesAreReadAndErrorsTold)
{
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.file("a.xml"), "<a>text</a>");
    EXPECT_EQ(UaXmlDocument::fromFile(UaString(folder.file("a.xml"))).root().text(), UaString("text"));
    EXPECT_EQ(UaXmlDocument::fromFile(UaString(folder.file("b.xml"))).error(),
              UaString("No such file or directory"));
}
