// What the parser refuses, what it says, and the slips that it tolerates.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/errors.h"
#include "components/tbXML/XmlParser.h"

namespace tb {
namespace {

// The parser's complaint, "" for none.
Text Complaint(TextView text) {
    Text complaint;
    Trap([&] { ParseXml(text); },
         [&](const RuntimeError& error) {
             EXPECT_EQ(error.Number, XmlErrorNumber);
             complaint = error.Description;
         });
    return complaint;
}

Text Nested(size_t depth) {
    Text text;
    for (size_t level = 0; level < depth; ++level) text += "<a>";
    for (size_t level = 0; level < depth; ++level) text += "</a>";
    return text;
}

TEST(XmlMalformed, SaysWhatAndWhere) {
    const std::vector<std::pair<Text, Text>> cases{
        {"", "1: there is no root element"},
        {" \r\n <!-- x --> <?y?>\n", "3: there is no root element"},
        {"\nplain", "2: text stands outside the root element"},
        {Text("\0<a/>", 5), "1: text stands outside the root element"},
        {"<![CDATA[x]]><a/>", "1: text stands outside the root element"},
        {"<a>\n<b>\n</b>\n", "1: <a> is not closed"},
        {"<a>\n<b>\n</a>", "3: </a> stands where </b> is due"},
        {"<a></A>", "1: </A> stands where </a> is due"},
        {"</a>", "1: </a> closes nothing"},
        {"<a/>\n<b/>", "2: a second root element <b> begins"},
        {"<a>\n<", "2: \"<\" is followed by no tag name"},
        {"<a></>", "1: \"<\" is followed by no tag name"},
        {"<a></a", "1: tag </a> is not finished"},
        {"<a></a b>", "1: tag </a> is not finished"},
        {"<a", "1: tag <a> is not finished"},
        {"<a b='1'\n", "1: tag <a> is not finished"},
        {"<a /", "1: \"/\" is out of place in tag <a>"},
        {"<a\nb='1'c='2'/>", "2: \"c\" is out of place in tag <a>"},
        {"<a <b/></a>", "1: \"<\" is out of place in tag <a>"},
        {Text("<a \0/>", 6), "1: \"\\x00\" is out of place in tag <a>"},
        {"<a b/>", "1: attribute b has no value"},
        {"<a b=1/>", "1: the value of attribute b is not in quotes"},
        {"<a b=", "1: the value of attribute b is not in quotes"},
        {"<a\n b='1/>\n", "2: the value of attribute b is not closed"},
        {"<a b='1\"/>", "1: the value of attribute b is not closed"},
        {"<a>\n<!-- -- ></a>", "2: a comment is not closed"},
        {"<a><![CDATA[ ]] ></a>", "1: a CDATA section is not closed"},
        {"<?xml", "1: a processing instruction is not closed"},
        {"<!DOCTYPE a", "1: the document type is not closed"},
        {"<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "1: a document type with declarations of its own is not read"},
        {"<a>\n<!DOCTYPE b></a>", "2: a document type stands behind the beginning of the root element"},
    };
    for (const auto& [text, complaint] : cases) EXPECT_EQ(Complaint(text), "XML line " + complaint) << text;
}

TEST(XmlMalformed, NestingHasALimit) {
    EXPECT_EQ(Complaint(Nested(XmlDepthLimit)), "");
    EXPECT_EQ(Complaint(Nested(XmlDepthLimit + 1)), "XML line 1: elements are nested more than 200 deep");
    EXPECT_EQ(Complaint(Text(10 << 20, '<')), "XML line 1: \"<\" is followed by no tag name");
    EXPECT_EQ(Complaint(Nested(10 << 17)), "XML line 1: elements are nested more than 200 deep");
}

TEST(XmlMalformed, AnythingCutShortIsRefused) {
    const Text whole = "<?xml version='1.0'?><!-- c --><r a='&amp;'>t<b x=\"1\"/><c><![CDATA[d]]></c>&lt;<?p?></r>";
    ASSERT_EQ(Complaint(whole), "");
    for (size_t length = 0; length < whole.size(); ++length) EXPECT_NE(Complaint(Left(whole, length)), "") << length;
}

TEST(XmlMalformed, SlipsInUseAreTolerated) {
    const ElementPtr box = ParseXml("<UI><CHECKBOX' Label='Action Sound' Enabled='T'>x</CHECKBOX></UI>");
    EXPECT_EQ(box->XML(), "<UI><CHECKBOX Label='Action Sound' Enabled='T'>x</CHECKBOX>\r\n</UI>\r\n");
    EXPECT_EQ(ParseXml("<a'/>")->Name(), "a");
    EXPECT_EQ(ParseXml("<a'></a'>")->Name(), "a");
    EXPECT_EQ(ParseXml("<a b = 'x<y>z'/>")->FindAttributeValue("b"), "x<y>z");
}

}  // namespace
}  // namespace tb
