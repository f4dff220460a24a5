// The XML model and its round trip.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/tbXML/Document.h"
#include "components/tbXML/XmlText.h"
#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"

namespace tb {
namespace {

ElementPtr Parsed(TextView text) {
    Document document;
    document.LoadXML(text);
    return document.Root();
}

Text Body(TextView text) { return Parsed(text)->Body(); }

TEST(Xml, ReadsBothQuotesEntitiesAndSelfClosingTags) {
    const ElementPtr root = Parsed("<a X='1' y=\"2\">t&amp;u<B/>v</a>");
    EXPECT_EQ(root->Name(), "a");
    EXPECT_EQ(root->Body(), "t&uv");
    EXPECT_EQ(root->FindAttributeValue("X"), "1");
    EXPECT_EQ(root->FindAttributeValue("x"), "1");
    EXPECT_EQ(root->FindAttributeValue("z"), "");
    EXPECT_EQ(root->Count(), 1);
    const Text text = "<a X='1' y='2'>t&amp;uv<B></B>\r\n</a>\r\n";
    EXPECT_EQ(root->XML(), text);
    EXPECT_EQ(Parsed(text)->XML(), text);
    EXPECT_EQ(Body(text), "t&uv");
}

TEST(Xml, ReadsOverWhatIsNoContent) {
    const ElementPtr root = Parsed(
        "\r\n<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE a SYSTEM 'a.dtd'><!-- > -- ' --><a >x<!-- <y> -->z"
        "<?skip <this> ?><![CDATA[<&amp;]]></a \t><!-- end -->\n<?end?>");
    EXPECT_EQ(root->XML(), "<a>xz&lt;&amp;amp;</a>\r\n");
}

TEST(Xml, References) {
    EXPECT_EQ(Body("<a>&lt;&gt;&amp;&quot;&apos;</a>"), "<>&\"'");
    EXPECT_EQ(Body("<a>&#65;&#x42;&#x6a;&#x6A;&#000065;&#255;&#0;</a>"), Text("ABjjA\xFF\0", 7));
    EXPECT_EQ(Parsed("<a b='&#39;&amp;lt;'/>")->FindAttributeValue("b"), "'&lt;");
    // What is no reference stays, also a number that no byte stands for.
    for (const Text text :
         {"http://a.example/?x=1&y=2", "a & b", "&", "&;", "&copy;", "&AMP;", "&#;", "&#x;", "&#a;", "&#xg;", "&#-1;",
          "&#256;", "&#8364;", "&#99999999999999999999;", "&amp", "&#65", "&#X41;"}) {
        EXPECT_EQ(Body("<a>" + text + "</a>"), text);
        EXPECT_EQ(Parsed("<a b='" + text + "'/>")->FindAttributeValue("b"), text);
    }
    EXPECT_EQ(Body("<a>&&amp;;</a>"), "&&;");
}

TEST(Xml, TheBodyOfALeafIsExactAndBetweenChildrenTrimmed) {
    EXPECT_EQ(Body("<a> \r\n x\ty \n</a>"), " \r\n x\ty \n");
    EXPECT_EQ(Body("<a>\r\n  QUJD\r\n  <b/>\r\n REVG \r\n<b/>\r\n</a>"), "QUJDREVG");
    EXPECT_EQ(Body("<a>  <b/>  </a>"), "");
    EXPECT_EQ(Body("<a> x <!-- no child --> y </a>"), " x  y ");
}

TEST(Xml, EveryByteSurvivesTheRoundTrip) {
    Text all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    Element element("v", all);
    element.SetAttributeValue("x", all);
    const ElementPtr read = Parsed(element.XML());
    EXPECT_EQ(read->Body(), all);
    EXPECT_EQ(read->FindAttributeValue("x"), all);
    EXPECT_EQ(Parsed("<x n='" + EscapedValue("it's <\"&'>") + "'/>")->FindAttributeValue("n"), "it's <\"&'>");
    const Text named = "<\xC4\xF6-1.b:_ \xDF='1'></\xC4\xF6-1.b:_>\r\n";
    EXPECT_EQ(Parsed(named)->XML(), named);
}

TEST(Xml, LookUpsDisregardCaseAndTakeTheFirst) {
    const ElementPtr root =
        Parsed("<r><Other/><Item Name='\xC4pfel' ID='1'/><ITEM ID='2'><deep/></ITEM><item NAME='\xE4pfel' ID=''/></r>");
    EXPECT_EQ(root->FindElement("item")->FindAttributeValue("id"), "1");
    EXPECT_EQ(root->FindElement("deep"), nullptr);
    EXPECT_EQ(root->FindElementAttribute2("name", "\xC4PFEL")->FindAttributeValue("id"), "1");
    EXPECT_EQ(root->FindElementAttribute2("Id", "2")->Name(), "ITEM");
    EXPECT_EQ(root->FindElementAttribute2("id", "22"), nullptr);
    EXPECT_EQ(root->FindElementAttribute2("id", "")->FindAttributeValue("name"), "\xE4pfel");
    EXPECT_EQ(root->FindElementAttribute2("colour", ""), nullptr);
}

TEST(Xml, AttributesKeepOrderAndSpelling) {
    const ElementPtr root = Parsed("<a Zeta='1' alpha='2' zeta='3'/>");
    root->SetAttributeValue("ZETA", "4");
    root->SetAttributeValue("Beta", "5");
    root->AddAttribute({"ALPHA", "6"});
    EXPECT_EQ(root->XML(), "<a Zeta='4' alpha='2' zeta='3' Beta='5' ALPHA='6'></a>\r\n");
    EXPECT_EQ(root->AttributeCount(), 5);
    EXPECT_EQ(root->Attribute(1).Name(), "Zeta");
    root->Attribute(5).Value("7");
    root->Attribute(5).Name("Gamma");
    EXPECT_EQ(root->FindAttributeValue("gamma"), "7");
    EXPECT_EQ(Raised([&] { root->Attribute(0); }), 9);
    EXPECT_EQ(Raised([&] { root->Attribute(6); }), 9);
    EXPECT_EQ(Parsed(root->XML())->XML(), root->XML());
}

TEST(Xml, ElementsStandAloneAndOutliveTheirDocument) {
    ElementPtr kept;
    {
        Document document;
        document.LoadXML("<r><o><a k='1'>x<b>1</b><c/></a></o><e/></r>");
        kept = document.Root()->FindElement("o")->FindElement("a");
    }
    EXPECT_EQ(kept->XML(), "<a k='1'>x<b>1</b>\r\n<c></c>\r\n</a>\r\n");
    const auto made = std::make_shared<Element>();
    made->Name("Made");
    made->Body("text");
    made->AddElement(kept);
    EXPECT_EQ(made->XML(), "<Made>text" + kept->XML() + "</Made>\r\n");
    EXPECT_EQ(Raised([&] { made->AddElement(nullptr); }), 91);
}

TEST(Xml, ADocumentEnumeratesTheChildrenOfItsRoot) {
    Document document;
    EXPECT_EQ(document.Root(), nullptr);
    EXPECT_EQ(document.begin(), document.end());
    document.LoadXML("<r/>");
    EXPECT_EQ(document.begin(), document.end());
    document.LoadXML("<r><b/>x<a/><b><c/></b></r>");
    Text names;
    for (const ElementPtr& child : document) names += child->Name();
    EXPECT_EQ(names, "bab");
}

TEST(Xml, LoadReadsAFileAndKeepsTheOldTreeOnFailure) {
    FakeFiles files;
    files.Folders = {"dir"};
    files.Contents["dir/good"] = Text("<r>\0\xFF</r>", 9);
    files.Contents["dir/bad"] = "<r>";
    Document document;
    document.Load(files, "dir/good");
    EXPECT_EQ(document.Root()->Body(), Text("\0\xFF", 2));
    EXPECT_NE(Raised([&] { document.Load(files, "dir/bad"); }), 0);
    EXPECT_EQ(Raised([&] { document.Load(files, "dir/none"); }), 53);
    EXPECT_EQ(document.Root()->Body(), Text("\0\xFF", 2));
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
    innermost->Body("kept");
    root.reset();
    EXPECT_EQ(innermost->XML(), "<c>kept</c>\r\n");
}

}  // namespace
}  // namespace tb
