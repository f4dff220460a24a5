// Settings and globals as their callers see them; the settings file: made, damaged, refused, saved under faults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "platform/AtomicWrite.h"
#include "ui/settings/xmlINI.h"

namespace tb {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Settings over files in memory, a clock that stands, and message boxes that are kept.
struct SettingsRig {
    static constexpr const char* File = "app/Trawlbeam.ini";

    FakeFiles Storage;
    FakeClock Time;
    FakeDialogs Messages;
    DateSeparators Separators;

    SettingsRig() {
        Storage.Folders = {"app"};
        Time.Present = Date(CivilDate{2026, 11, 21, 10, 11, 12});
    }

    xmlINI Make() { return xmlINI({Storage, Time, Messages, Separators, "Trawlbeam"}); }
    // Settings that have loaded `content`.
    xmlINI Loaded(const Text& content) {
        Storage.Contents[File] = content;
        xmlINI settings = Make();
        settings.LoadINI(File);
        return settings;
    }
    Text& Content() { return Storage.Contents[File]; }
    // What came since the last call, "buttons|title|prompt".
    std::vector<Text> Shown() { return std::exchange(Messages.Shown, {}); }
};

const Text Bad = Text(SettingsRig::File) + ".bad";
const Text Sample =
    "<INI DATE='01/01/2005 00:00:00'>\r\n<SECTION name='Main'>\r\n<ELEMENT NAME='Sound'>1</ELEMENT>\r\n"
    "<ELEMENT NAME='Splash'>\xE4&amp;0</ELEMENT>\r\n</SECTION>\r\n</INI>\r\n";

Text LoadMessage(const Text& description) {
    return "0|Trawlbeam|Error with INI File " + Text(SettingsRig::File) + ", " + description;
}

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
              "<ELEMENT NAME='Splash'>\xE4&amp;0</ELEMENT>\r\n"
              "<ELEMENT NAME='sound'>0</ELEMENT>\r\n"
              "<ELEMENT NAME='Empty'></ELEMENT>\r\n"
              "</SECTION>\r\n"
              "<SECTION name='Desktop'>\r\n"
              "<ELEMENT NAME='Size'>Large</ELEMENT>\r\n"
              "</SECTION>\r\n"
              "</INI>\r\n");
    EXPECT_EQ(settings.GetXMLString("MAIN", "EMPTY", "x"), "x");
}

TEST(Settings, DeletingNeverFailsAndEachChangeIsSeenByTheRevision) {
    SettingsRig rig;
    xmlINI settings = rig.Loaded(Sample);
    EXPECT_TRUE(settings.DeleteXMLString("Main", "Absent") && settings.DeleteXMLString("Absent", "Sound"));
    settings.WriteXMLString("", "Sound", "2");
    settings.DeleteXMLString("", "");
    EXPECT_EQ(settings.GetXMLString("", "Sound", ""), "2");
    auto changes = [&, last = settings.Revision()]() mutable {
        return std::exchange(last, settings.Revision()) < settings.Revision();
    };
    const auto values = [&] {
        return settings.GetXMLString("Main", "Sound", "-") + " " + settings.GetXMLString("Main", "Splash", "-");
    };
    EXPECT_TRUE(settings.DeleteXMLString("main", "SOUND") && changes());
    EXPECT_EQ(values(), "- \xE4&0");
    EXPECT_TRUE(settings.DeleteXMLString("MAIN", "") && changes());
    EXPECT_EQ(values(), "- -");
    EXPECT_FALSE(changes());
    settings.WriteXMLString("Main", "Sound", "1");
    EXPECT_TRUE(changes());
    EXPECT_TRUE(settings.LoadINI(SettingsRig::File) && changes());
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
    EXPECT_EQ(settings.GlobalsFindString("DEFAULTVERSION"), "1.2");
    EXPECT_EQ(settings.GlobalsFindXMLElement("SERVERS", "name", "EVILDBSVR"), *document.begin());
    settings.ReplaceGlobals("DefaultVersion", "1.3");
    settings.ReplaceGlobals("SERVERS", *document.begin());
    EXPECT_EQ(settings.GlobalsFindString("DEFAULTVERSION"), "1.3");
    EXPECT_EQ(settings.TryGlobalsSection("SERVERS"), *document.begin());
    EXPECT_EQ(Raised([&] { settings.GlobalsFindString("none"); }), 5);
    EXPECT_EQ(Raised([&] { settings.GlobalsFindString("SERVERS"); }), 13);
    EXPECT_EQ(settings.TryGlobalsElement("none", "NAME", "x"), nullptr);
    EXPECT_FALSE(settings.HasGlobals("none"));
    // They come from data files: a load of the settings does not drop them, a save does not write them.
    ASSERT_TRUE(settings.LoadINI(SettingsRig::File) && settings.SaveXMLINI());
    EXPECT_EQ(settings.GlobalsFindString("defaultversion"), "1.3");
    EXPECT_THAT(rig.Content(), testing::Not(testing::HasSubstr("1.3")));
}

TEST(SettingsFile, IsMadeWhereItCanBeAndToldWhereNot) {
    SettingsRig rig;
    rig.Separators = {'.', '-'};
    xmlINI settings = rig.Make();
    EXPECT_FALSE(settings.SaveXMLINI()) << "never loaded";
    EXPECT_EQ(rig.Shown().size(), 1U);
    EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
    EXPECT_EQ(rig.Content(), "<INI DATE='11.21.2026 10-11-12'>\r\n</INI>\r\n");
    EXPECT_THAT(rig.Shown(), IsEmpty());
    EXPECT_FALSE(settings.LoadINI("absent/x.ini"));
    EXPECT_FALSE(settings.SaveXMLINI());
    EXPECT_THAT(rig.Shown(), ElementsAre("0|Trawlbeam|Error with INI File absent/x.ini, Path not found",
                                         "0|Trawlbeam|Error saving XML INI Path not found"));
    // Between the look for it and the read.
    rig.Storage.FailAt(2, ErrorNumber::FileNotFound);
    EXPECT_FALSE(settings.LoadINI(SettingsRig::File));
    EXPECT_THAT(rig.Shown(), ElementsAre("48|Trawlbeam|INI File app/Trawlbeam.ini does not exist"));
}

TEST(SettingsFile, ADefectiveFileIsToldAndKeptBesideTheNewOne) {
    Text nested = "<INI>";
    while (nested.size() < 10 << 20) nested += "<SECTION name='Main'>";
    // The last line end does not count.
    for (const Text& content : {nested, Text("[Main]\r\nSound=1\r\n"), Text("\xFF\xFE<INI/>"), Text("\0\0\0", 3),
                                Text(), Text(Left(Sample, Sample.size() - 3))}) {
        SettingsRig rig;
        xmlINI settings = rig.Loaded(content);
        EXPECT_THAT(rig.Shown(), ElementsAre(testing::StartsWith(LoadMessage("XML line "))));
        EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
        settings.WriteXMLString("Main", "Sound", "2");
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], content);
        // Only the first save finds the defective file.
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], content);
        EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
        EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "2");
        EXPECT_EQ(rig.Storage.Contents.size(), 2U);
    }
}

TEST(SettingsFile, DuplicatesEndTheLoadWhereTheyStand) {
    const Text one = "<INI><S name='One'><E name='A'>1</E></S>";
    for (const Text other : {"<S name='Two'><E name='B'>1</E><E NAME='b'>2</E></S><S name='Three'/></INI>",
                             "<S name='ONE'><E name='A'>2</E></S><S name='Three'><E name='C'>3</E></S></INI>"}) {
        SettingsRig rig;
        xmlINI settings = rig.Loaded(one + other);
        EXPECT_THAT(rig.Shown(),
                    ElementsAre(LoadMessage("This key is already associated with an element of this collection")));
        EXPECT_EQ(settings.GetXMLString("Two", "B", "d"), "d");
        EXPECT_EQ(settings.GetXMLString("Three", "C", "d"), "d");
        // The file that replaces it loads again.
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
        EXPECT_EQ(settings.GetXMLString("One", "A", "d"), "1");
    }
}

// Each call of a save fails once, and then with all that follow, as when the program is killed there: the old file or
// the new one is found, and one that did not load is not replaced while there is no copy of it.
TEST(SettingsFile, ASaveThatFailsAnywhereLosesNothing) {
    const Text defective = "<INI><SECTION name='Main'>";
    for (const Text& content : {Sample, defective}) {
        for (const bool forGood : {false, true}) {
            for (int call = 1;; ++call) {
                SettingsRig rig;
                xmlINI settings = rig.Loaded(content);
                settings.WriteXMLString("Main", "Sound", "0");
                rig.Shown();
                rig.Storage.FailAt(call, ErrorNumber::DiskFull, forGood);
                const bool saved = settings.SaveXMLINI();
                rig.Storage.FailNoMore();
                // Opening, writing, flushing, replacing; to copy takes more.
                EXPECT_TRUE(!saved || call > (content == defective ? 10 : 4));
                if (saved) break;
                EXPECT_THAT(rig.Shown(), ElementsAre("0|Trawlbeam|Error saving XML INI Disk full"));
                EXPECT_EQ(rig.Content(), content) << call;
                const auto copy = rig.Storage.Contents.find(Bad);
                EXPECT_TRUE(copy == rig.Storage.Contents.end() || copy->second == content) << call;
                // What is left over does no harm, and a start takes it away.
                xmlINI next = rig.Make();
                EXPECT_EQ(next.LoadINI(SettingsRig::File), content == Sample);
                for (const auto& [path, kept] : rig.Storage.Contents) EXPECT_NE(path.extension(), TemporarySuffix);
                EXPECT_TRUE(settings.SaveXMLINI());
                EXPECT_EQ(rig.Storage.Contents.count(Bad) == 1, content == defective);
                EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
                EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "0");
            }
        }
    }
}

}  // namespace
}  // namespace tb
