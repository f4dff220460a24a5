// The settings file: made, damaged, refused, saved under faults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/AtomicWrite.h"
#include "ui/SettingsRig.h"

namespace tb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Text Bad = Text(SettingsRig::File) + ".bad";
const Text Sample =
    "<INI DATE='01/01/2005 00:00:00'>\r\n<SECTION name='Main'>\r\n<ELEMENT NAME='Sound'>1</ELEMENT>\r\n"
    "<ELEMENT NAME='Splash'>\xE4&amp;0</ELEMENT>\r\n</SECTION>\r\n</INI>\r\n";

Text LoadMessage(const Text& description) {
    return "0|Trawlbeam|Error with INI File " + Text(SettingsRig::File) + ", " + description;
}

TEST(SettingsFile, IsMadeWhenItIsNotThere) {
    SettingsRig rig;
    rig.Separators = {'.', '-'};
    xmlINI settings = rig.Make();
    EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
    EXPECT_EQ(settings.INIFileName(), SettingsRig::File);
    EXPECT_EQ(rig.Content(), "<INI DATE='11.21.2026 10-11-12'>\r\n</INI>\r\n");
    EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
    EXPECT_THAT(rig.Shown(), IsEmpty());
    EXPECT_EQ(rig.Storage.Contents.size(), 1U);
}

TEST(SettingsFile, WhatCannotBeReachedIsTold) {
    SettingsRig rig;
    xmlINI settings = rig.Make();
    EXPECT_FALSE(settings.SaveXMLINI()) << "never loaded";
    EXPECT_EQ(rig.Shown().size(), 1U);
    EXPECT_FALSE(settings.LoadINI("absent/x.ini"));
    EXPECT_FALSE(settings.SaveXMLINI());
    EXPECT_THAT(rig.Shown(), ElementsAre("0|Trawlbeam|Error with INI File absent/x.ini, Path not found",
                                         "0|Trawlbeam|Error saving XML INI Path not found"));
    // Between the look for it and the read.
    rig.Content() = Sample;
    rig.Storage.FailAt(2, ErrorNumber::FileNotFound);
    EXPECT_FALSE(settings.LoadINI(SettingsRig::File));
    EXPECT_THAT(rig.Shown(), ElementsAre("48|Trawlbeam|INI File app/Trawlbeam.ini does not exist"));
}

TEST(SettingsFile, ADefectiveFileIsToldAndKeptBesideTheNewOne) {
    Text nested = "<INI>";
    while (nested.size() < 10 << 20) nested += "<SECTION name='Main'>";
    std::vector<Text> defective{nested,
                                nested + Text(10 << 20, '<'),
                                "[Main]\r\nSound=1\r\n",
                                "\xFF\xFE<INI/>",
                                Text("\0\0\0", 3),
                                "<INI>" + Text(3 << 20, ' ') + "</ini>"};
    // Cut anywhere; the last line end does not count.
    for (size_t length = 0; length < Sample.size() - 2; ++length) defective.emplace_back(Left(Sample, length));
    for (const Text& content : defective) {
        SettingsRig rig;
        xmlINI settings = rig.Loaded(content);
        EXPECT_THAT(rig.Shown(), ElementsAre(testing::StartsWith(LoadMessage("XML line "))));
        EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
        settings.WriteXMLString("Main", "Sound", "2");
        EXPECT_EQ(rig.Content(), content);
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], content);
        // Only the first save finds the defective file.
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], content);
        EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
        EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "2");
        EXPECT_THAT(rig.Shown(), IsEmpty());
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
        EXPECT_EQ(rig.Storage.Contents[Bad], one + other);
        EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
        EXPECT_EQ(settings.GetXMLString("One", "A", "d"), "1");
        EXPECT_THAT(rig.Shown(), IsEmpty());
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
                if (saved) {
                    // Opening, writing, flushing, replacing; to copy takes more.
                    EXPECT_GT(call, content == defective ? 10 : 4);
                    EXPECT_THAT(rig.Shown(), IsEmpty());
                    break;
                }
                EXPECT_THAT(rig.Shown(), ElementsAre("0|Trawlbeam|Error saving XML INI Disk full"));
                EXPECT_EQ(rig.Content(), content) << call;
                const auto copy = rig.Storage.Contents.find(Bad);
                EXPECT_TRUE(copy == rig.Storage.Contents.end() || copy->second == content) << call;
                // What is left over does no harm, and a start takes it away.
                xmlINI next = rig.Make();
                EXPECT_EQ(next.LoadINI(SettingsRig::File), content == Sample);
                for (const auto& [path, kept] : rig.Storage.Contents) EXPECT_NE(path.extension(), TemporarySuffix);
                EXPECT_EQ(rig.Shown().size(), content == Sample ? 0U : 1U);
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
