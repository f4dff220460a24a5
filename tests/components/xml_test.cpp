// The XML model and its round trip, what the parser refuses and tolerates, and what it costs.
#include <gtest/gtest.h>

#include <ctime>

#include "components/tbXML/Document.h"
#include "components/tbXML/XmlText.h"
#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"

namespace tb {
namespace {

TEST(Xml, IsReadAndWritten) {
    const std::pair<Text, Text> cases[] = {
        {"<a X='1' y=\"2\">t&amp;u<B/>v</a>", "<a X='1' y='2'>t&amp;uv<B></B>\r\n</a>"},
        // What is no content is read over.
        {"\r\n<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE a SYSTEM 'a.dtd'><!-- > -- ' --><a >x<!-- <y> -->z"
         "<?skip <this> ?><![CDATA[<&amp;]]></a \t><!-- end -->\n<?end?>",
         "<a>xz&lt;&amp;amp;</a>"},
        // The body of a leaf is exact, between children it is trimmed.
        {"<a> \r\n x\ty \n</a>", "<a> \r\n x\ty \n</a>"},
        {"<a>\r\n  QUJD\r\n  <b/>\r\n REVG \r\n<b/>\r\n</a>", "<a>QUJDREVG<b></b>\r\n<b></b>\r\n</a>"},
        {"<a> x <!-- no child --> y </a>", "<a> x  y </a>"},
        {"<a>&lt;&gt;&amp;&quot;&apos;&&amp;;</a>", "<a>&lt;&gt;&amp;\"'&amp;&amp;;</a>"},
        {"<a>&#65;&#x42;&#x6a;&#x6A;&#000065;&#255;</a>", "<a>ABjjA\xFF</a>"},
        {"<a b='&#39;&amp;lt;'/>", "<a b='&apos;&amp;lt;'></a>"},
        {"<\xC4\xF6-09.b:_ \xDF = 'x<y>z'/>", "<\xC4\xF6-09.b:_ \xDF='x&lt;y&gt;z'></\xC4\xF6-09.b:_>"},
        // A slip that is in use.
        {"<UI><BOX' Label='Sound'>x</BOX'></UI>", "<UI><BOX Label='Sound'>x</BOX>\r\n</UI>"},
    };
    for (const auto& [given, written] : cases) {
        EXPECT_EQ(ParseXml(given)->XML(), written + "\r\n");
        EXPECT_EQ(ParseXml(written)->XML(), written + "\r\n");
    }
}

TEST(Xml, WhatIsNoReferenceStays) {
    // Also a number that no byte stands for.
    for (const Text text :
         {"http://a.example/?x=1&y=2", "a & b", "&", "&;", "&copy;", "&AMP;", "&#;", "&#x;", "&#a;", "&#xg;", "&#-1;",
          "&#256;", "&#8364;", "&#99999999999999999999;", "&amp", "&#65", "&#X41;"}) {
        EXPECT_EQ(ParseXml("<a>" + text + "</a>")->Body(), text);
        EXPECT_EQ(ParseXml("<a b='" + text + "'/>")->FindAttributeValue("b"), text);
    }
}

TEST(Xml, EveryByteSurvivesTheRoundTrip) {
    Text all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    Element element("v", all);
    element.SetAttributeValue("x", all);
    const ElementPtr read = ParseXml(element.XML());
    EXPECT_EQ(read->Body(), all);
    EXPECT_EQ(read->FindAttributeValue("x"), all);
    EXPECT_EQ(ParseXml("<x n='" + EscapedValue(all) + "'/>")->FindAttributeValue("n"), all);
}

TEST(Xml, LookUpsDisregardCaseAndTakeTheFirst) {
    const ElementPtr root = ParseXml(
        "<r><Other/><Item Name='\xC4pfel' ID='1'/><ITEM ID='2'><deep/></ITEM><item NAME='\xE4pfel' ID=''/></r>");
    EXPECT_EQ(root->FindElement("item")->FindAttributeValue("id"), "1");
    EXPECT_EQ(root->FindElement("deep"), nullptr);
    EXPECT_EQ(root->FindElementAttribute2("name", "\xC4PFEL")->FindAttributeValue("id"), "1");
    EXPECT_EQ(root->FindElementAttribute2("Id", "2")->Name(), "ITEM");
    EXPECT_EQ(root->FindElementAttribute2("id", "22"), nullptr);
    EXPECT_EQ(root->FindElementAttribute2("id", "")->FindAttributeValue("name"), "\xE4pfel");
    EXPECT_EQ(root->FindElementAttribute2("colour", ""), nullptr);
}

TEST(Xml, AttributesKeepOrderAndSpelling) {
    const ElementPtr root = ParseXml("<a Zeta='1' alpha='2' zeta='3'/>");
    root->SetAttributeValue("ZETA", "4");
    root->SetAttributeValue("Beta", "5");
    root->AddAttribute({"ALPHA", "6"});
    root->Attribute(5).Value("7");
    root->Attribute(5).Name("Gamma");
    EXPECT_EQ(root->XML(), "<a Zeta='4' alpha='2' zeta='3' Beta='5' Gamma='7'></a>\r\n");
    EXPECT_EQ(root->Attribute(1).Name() + root->FindAttributeValue("none"), "Zeta");
    EXPECT_EQ(Raised([&] { root->Attribute(0); }), 9);
    EXPECT_EQ(Raised([&] { root->Attribute(6); }), 9);
}

TEST(Xml, ElementsStandAlone) {
    // Its tree has gone.
    const ElementPtr kept = ParseXml("<r><o><a k='1'>x<b>1</b><c/></a></o></r>")->FindElement("o")->FindElement("a");
    const auto made = std::make_shared<Element>();
    made->Name("Made");
    made->Body("text");
    made->AddElement(kept);
    EXPECT_EQ(made->XML(), "<Made>text<a k='1'>x<b>1</b>\r\n<c></c>\r\n</a>\r\n</Made>\r\n");
    EXPECT_EQ(Raised([&] { made->AddElement(nullptr); }), 91);
}

TEST(Xml, ADocumentGivesTheChildrenOfItsRootAndKeepsThemOnFailure) {
    FakeFiles files;
    files.Folders = {"dir"};
    files.Contents = {{"dir/good", Text("<r><b>\0\xFF</b>x<a/><b><c/></b></r>", 32)}, {"dir/bad", "<r>"}};
    Document document;
    EXPECT_EQ(document.Root(), nullptr);
    EXPECT_EQ(document.begin(), document.end());
    document.Load(files, "dir/good");
    EXPECT_EQ(Raised([&] { document.Load(files, "dir/bad"); }), XmlErrorNumber);
    EXPECT_EQ(Raised([&] { document.Load(files, "dir/none"); }), 53);
    Text children;
    for (const ElementPtr& child : document) children += child->Name() + child->Body();
    EXPECT_EQ(children, Text("b\0\xFF"
                             "ab",
                             5));
    EXPECT_EQ(files.OpenCount(), 0U);
}

// Far deeper than the parser goes; recursion would end the program.
TEST(Xml, ATreeOfAnyDepthIsWrittenAndDestroyed) {
    constexpr int depth = 300000;
    auto root = std::make_shared<Element>("r");
    ElementPtr innermost = root;
    for (int level = 1; level < depth; ++level) {
        const auto child = std::make_shared<Element>("c");
        innermost->AddElement(child);
        innermost = child;
    }
    EXPECT_EQ(root->XML().size(), Text("<r></r>\r\n").size() * depth);
    root.reset();
    EXPECT_EQ(innermost->XML(), "<c></c>\r\n");
}

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

TEST(XmlMalformed, SaysWhatAndWhere) {
    const std::vector<std::pair<Text, Text>> cases{
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
        {"<a></a b>", "1: tag </a> is not finished"},
        {"<a b='1'\n", "1: tag <a> is not finished"},
        {"<a /", "1: \"/\" is out of place in tag <a>"},
        {"<a\nb='1'c='2'/>", "2: \"c\" is out of place in tag <a>"},
        {Text("<a \0/>", 6), "1: \"\\x00\" is out of place in tag <a>"},
        {"<a b/>", "1: attribute b has no value"},
        {"<a b=1/>", "1: the value of attribute b is not in quotes"},
        {"<a\n b='1\"/>\n", "2: the value of attribute b is not closed"},
        {"<a>\n<!-- -- ></a>", "2: a comment is not closed"},
        {"<a><![CDATA[ ]] ></a>", "1: a CDATA section is not closed"},
        {"<?xml", "1: a processing instruction is not closed"},
        {"<!DOCTYPE a", "1: the document type is not closed"},
        {"<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "1: a document type with declarations of its own is not read"},
        {"<a>\n<!DOCTYPE b></a>", "2: a document type stands behind the beginning of the root element"},
        {Text(10 << 20, '<'), "1: \"<\" is followed by no tag name"},
    };
    for (const auto& [text, complaint] : cases) EXPECT_EQ(Complaint(text), "XML line " + complaint) << Left(text, 99);
}

TEST(XmlMalformed, NestingHasALimit) {
    Text text;
    while (text.size() < 3 * XmlDepthLimit) text += "<a>";
    for (size_t level = 0; level < XmlDepthLimit; ++level) text += "</a>";
    EXPECT_EQ(Complaint(text), "");
    EXPECT_EQ(Complaint("<b>" + text + "</b>"), "XML line 1: elements are nested more than 200 deep");
}

TEST(XmlMalformed, AnythingCutShortIsRefused) {
    const Text whole = "<?xml version='1.0'?><!-- c --><r a='&amp;'>t<b x=\"1\"/><c><![CDATA[d]]></c>&lt;<?p?></r>";
    ASSERT_EQ(Complaint(whole), "");
    for (size_t length = 0; length < whole.size(); ++length) EXPECT_NE(Complaint(Left(whole, length)), "") << length;
}

// The processor's seconds for reading a text of that many parts and writing it again, the best of three.
double Cost(const Text& begin, TextView part, const Text& end, size_t count) {
    Text text = begin;
    for (size_t index = 0; index < count; ++index) text += part;
    text += end;
    double best = 1e9;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::clock_t start = std::clock();
        Raised([&] { EXPECT_GT(ParseXml(text)->XML().size(), 3U); });
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

// Eight times the length would cost 64 times as much if anything were read or copied again and again; between that and
// 8 there is room for what else the machine does. What is refused must not cost more either.
TEST(Xml, CostsWhatItsLengthSays) {
    for (const char* part : {"<a/>\n",
                             "text<b>x</b>",
                             "<c d='1' e=\"&lt;\">&amp;</c>\r\n",
                             "word ",
                             "&",
                             "&#x1",
                             "]]",
                             "<!---->",
                             "<![CDATA[]]>",
                             "<?>?>",
                             "<!-",
                             "<a b='",
                             "<a>",
                             "<?",
                             "<![CDATA[",
                             "\n<",
                             "</",
                             "<a'",
                             " a='1'",
                             " "}) {
        for (const Text begin : {"<r>", "<r"}) {
            for (const Text end : {"</r>", "/>", ""})
                EXPECT_LT(Cost(begin, part, end, 1 << 15), 24 * Cost(begin, part, end, 1 << 12) + 0.002) << part;
        }
    }
}

}  // namespace
}  // namespace tb
