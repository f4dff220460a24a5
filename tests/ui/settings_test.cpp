// Settings and globals as their callers see them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "ui/SettingsRig.h"

namespace tb {
namespace {

const Text Sample =
    "<INI DATE='01/01/2005 00:00:00'><SECTION name='Main'><ELEMENT NAME='Sound'>1</ELEMENT>"
    "<ELEMENT NAME='Splash'>0</ELEMENT></SECTION></INI>";

TEST(Settings, ReadDisregardsCaseAndTakesMissingAndEmptyForTheDefault) {
    SettingsRig rig;
    xmlINI settings = rig.Loaded(
        "<INI><Any name='MAIN'><x name='A'>1</x><ELEMENT NAME='Empty'></ELEMENT><y Name='Blank'> </y><z "
        "NAME='Tree'>t<b>1</b></z></Any>"
        "<SECTION NAME='\xC4'><ELEMENT NAME='\xF6'>umlaut</ELEMENT></SECTION></INI>");
    EXPECT_EQ(settings.GetXMLString("main", "a", "d"), "1");
    EXPECT_EQ(settings.GetXMLString("MAIN", "Empty", "d"), "d");
    EXPECT_EQ(settings.GetXMLString("Main", "Blank", "d"), " ");
    EXPECT_EQ(settings.GetXMLString("Main", "Tree", "d"), "<b>1</b>\r\n");
    EXPECT_EQ(settings.GetXMLString("Main", "B", "d"), "d");
    EXPECT_EQ(settings.GetXMLString("Desktop", "A", "d"), "d");
    EXPECT_EQ(settings.GetXMLString("\xE4", "\xD6", "d"), "umlaut");
}

TEST(Settings, WritesReplaceAtTheEndOfTheirSection) {
    SettingsRig rig;
    xmlINI settings = rig.Loaded(Sample);
    EXPECT_FALSE(settings.WriteXMLString("main", "sound", "0"));
    settings.WriteXMLString("Desktop", "Size", "Large");
    settings.WriteXMLString("Main", "Empty", "");
    EXPECT_EQ(rig.Content(), Sample);
    ASSERT_TRUE(settings.SaveXMLINI());
    EXPECT_EQ(rig.Content(),
              "<INI DATE='11/21/2026 10:11:12'>\r\n"
              "<SECTION name='MAIN'>\r\n"
              "<ELEMENT NAME='Splash'>0</ELEMENT>\r\n"
              "<ELEMENT NAME='sound'>0</ELEMENT>\r\n"
              "<ELEMENT NAME='Empty'></ELEMENT>\r\n"
              "</SECTION>\r\n"
              "<SECTION name='Desktop'>\r\n"
              "<ELEMENT NAME='Size'>Large</ELEMENT>\r\n"
              "</SECTION>\r\n"
              "</INI>\r\n");
    EXPECT_EQ(settings.GetXMLString("MAIN", "EMPTY", "x"), "x");
    EXPECT_EQ(settings.GetXMLString("Main", "Sound", "x"), "0");
    EXPECT_THAT(rig.Shown(), testing::IsEmpty());
}

TEST(Settings, DeletingNeverFails) {
    SettingsRig rig;
    xmlINI settings = rig.Loaded(Sample);
    for (const auto& [section, key] :
         std::vector<std::pair<Text, Text>>{{"", ""}, {"", "Sound"}, {"Main", "Absent"}, {"Absent", "Sound"}}) {
        EXPECT_TRUE(settings.DeleteXMLString(section, key));
    }
    EXPECT_EQ(settings.GetXMLString("Main", "Sound", ""), "1");
    settings.WriteXMLString("", "Sound", "2");
    settings.DeleteXMLString("", "");
    EXPECT_EQ(settings.GetXMLString("", "Sound", ""), "2");
    settings.DeleteXMLString("", "Sound");
    EXPECT_EQ(settings.GetXMLString("", "Sound", ""), "");
    // Who keeps something made of values sees each change by the revision.
    auto changes = [&, last = settings.Revision()]() mutable {
        return std::exchange(last, settings.Revision()) < settings.Revision();
    };
    EXPECT_TRUE(settings.DeleteXMLString("main", "SOUND"));
    EXPECT_TRUE(changes());
    EXPECT_EQ(settings.GetXMLString("Main", "Sound", ""), "");
    EXPECT_EQ(settings.GetXMLString("Main", "Splash", ""), "0");
    EXPECT_TRUE(settings.DeleteXMLString("MAIN", ""));
    EXPECT_TRUE(changes());
    EXPECT_EQ(settings.GetXMLString("Main", "Splash", ""), "");
    EXPECT_FALSE(changes());
    settings.WriteXMLString("Main", "Sound", "1");
    EXPECT_TRUE(changes());
    settings.LoadINI(SettingsRig::File);
    EXPECT_TRUE(changes());
}

TEST(Settings, WhateverIsWrittenComesBack) {
    Text all;
    for (int code = 255; code >= 0; --code) all += static_cast<char>(code);
    SettingsRig rig;
    xmlINI settings = rig.Loaded("<INI/>");
    settings.WriteXMLString("it's <A> & \"B\"", all, all);
    settings.WriteXMLString("Main", "Markup", "<A>&lt;</A>");
    ASSERT_TRUE(settings.SaveXMLINI());
    xmlINI next = rig.Loaded(Text(rig.Content()));
    EXPECT_EQ(next.GetXMLString("IT'S <a> & \"b\"", all, "d"), all);
    EXPECT_EQ(next.GetXMLString("Main", "Markup", "d"), "<A>&lt;</A>");
    EXPECT_THAT(rig.Shown(), testing::IsEmpty());
}

TEST(Globals, TheSetFormsAreStrictAndReplacingIsNot) {
    SettingsRig rig;
    xmlINI settings = rig.Make();
    Document document;
    document.LoadXML("<SERVERS><S NAME='EvilDBSvr'/><S NAME='SUBDBSVR'/></SERVERS>");
    settings.SetGlobals("SERVERS", document.Root());
    settings.SetGlobals("DefaultVersion", "1.2");
    EXPECT_EQ(Raised([&] { settings.SetGlobals("servers", "x"); }), 457);
    EXPECT_EQ(Raised([&] { settings.SetGlobals("DEFAULTVERSION", document.Root()); }), 457);
    EXPECT_EQ(std::get<Text>(settings.Globals("DEFAULTVERSION")), "1.2");
    EXPECT_EQ(settings.GlobalsFindXMLSection("Servers"), document.Root());
    EXPECT_EQ(settings.GlobalsFindXMLElement("SERVERS", "name", "EVILDBSVR"), *document.begin());
    EXPECT_EQ(settings.GlobalsFindXMLElement("SERVERS", "NAME", "absent"), nullptr);
    settings.ReplaceGlobals("DefaultVersion", "1.3");
    settings.ReplaceGlobals("SERVERS", *document.begin());
    EXPECT_EQ(settings.GlobalsFindString("DEFAULTVERSION"), "1.3");
    EXPECT_EQ(settings.TryGlobalsSection("SERVERS"), *document.begin());
    EXPECT_EQ(xmlINI::GlobalsFind("SERVERS", "NAME", "EVILDBSVR"), nullptr);
    EXPECT_EQ(Raised([&] { settings.GlobalsFindString("none"); }), 5);
    EXPECT_EQ(Raised([&] { settings.GlobalsFindString("SERVERS"); }), 13);
    EXPECT_EQ(Raised([&] { settings.GlobalsFindXMLElement("DefaultVersion", "NAME", "x"); }), 13);
    EXPECT_EQ(settings.TryGlobalsElement("none", "NAME", "x"), nullptr);
    EXPECT_FALSE(settings.HasGlobals("none"));
    // They come from data files: a load of the settings does not drop them, a save does not write them.
    ASSERT_TRUE(settings.LoadINI(SettingsRig::File) && settings.SaveXMLINI());
    EXPECT_EQ(settings.GlobalsFindString("defaultversion"), "1.3");
    EXPECT_THAT(rig.Content(), testing::Not(testing::HasSubstr("1.3")));
}

}  // namespace
}  // namespace tb
