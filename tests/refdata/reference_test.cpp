#include <gtest/gtest.h>

#include "refdata/BuiltInReference.h"
#include "refdata/DailyFiles.h"
#include "refdata/RefDataRig.h"

namespace tb {
namespace {

const Text ThreeTables =
    "<CATEGORIES><C ID='1' NAME='General'/></CATEGORIES><SUBMISSIONS><S ID='0' NAME='NA'/></SUBMISSIONS>"
    "<DISPOSITIONS><D ID='0' NAME='x'/></DISPOSITIONS>";
const Text OneCountry = "<COUNTRIES><C ALPHA2='AA' NAME='Aland' WEIGHT='50'/></COUNTRIES>";
const Text NoCountries = "0 Error Load Reference Data: 91 Object variable or With block variable not set";

Text Document(const Text& content, const Text& version = " Version='7'") {
    return EncryptStringChk("<BEGIN" + version + ">" + content + "</BEGIN>");
}

struct ReferenceRig : RefDataRig {
    Text CountryOf(const Text& address) const {
        double score = 0;
        Text country;
        Countries.ScoreURL("http://x/", address, score, country);
        return country;
    }
    // The numbers of categories, statuses and dispositions.
    std::vector<std::int32_t> Counts() const {
        return {CountOf("CATEGORIES"), CountOf("SUBMISSIONS"), CountOf("DISPOSITIONS")};
    }
};

TEST(LoadReference, FillsGlobalsAndTables) {
    ReferenceRig rig;
    rig.Place(ReferencePath, Golden("tables"));
    EXPECT_EQ(Golden("tables").substr(0, 9) + std::to_string(Golden("tables").size()), "DD473038G511");
    EXPECT_TRUE(rig.ReferenceData.LoadReference(""));
    EXPECT_EQ(rig.Log.Take(), Lines());
    EXPECT_EQ(rig.Counts(), (std::vector<std::int32_t>{1, 1, 1}));
    EXPECT_EQ(rig.StringOf("REFERENCEVERSION"), "20261121");
    EXPECT_EQ(rig.StringOf("EVILWORDS"), "x,paypal,bank");
    EXPECT_EQ(rig.CountryOf("1.2.3.4") + rig.CountryOf("2.127.255.255"), "AlandBland");
    ASSERT_NE(rig.WhiteList, nullptr);
    EXPECT_EQ(rig.WhiteList->Count(), 2);
    EXPECT_TRUE(rig.WhiteList->isWhiteList("www.good.example"));

    // A second load replaces globals and white list, and fails at the country that is there.
    rig.Place(ReferencePath, Document(ThreeTables + "<WHITELIST>New.example,, b.example</WHITELIST>" + OneCountry));
    EXPECT_FALSE(rig.ReferenceData.LoadReference(""));
    EXPECT_EQ(rig.Log.Take().size(), 1U);
    EXPECT_EQ(rig.StringOf("EVILWORDS"), "x,paypal,bank") << "a section that is not there changes nothing";
    EXPECT_TRUE(rig.WhiteList->isWhiteList("new.example"));
    EXPECT_FALSE(rig.WhiteList->isWhiteList("b.example")) << "the blank is part of the domain";
}

// What is missing fails the load; it stops the start only when one of the three tables is missing.
TEST(LoadReferenceData, StopsTheStartOnlyWithoutTheThreeTables) {
    const Text without = "0 Error TrawlMain: LoadReferenceData 91 Object variable or With block variable not set";
    const Text noFrame = "0 Error TrawlMain: LoadReferenceData 0 ";
    const struct {
        Text Content;
        bool Stops;
        Lines Log;
    } cases[] = {{Document(ThreeTables + OneCountry, ""), false, {}},
                 {Document(ThreeTables), false, {NoCountries}},
                 {Document("<SUBMISSIONS/>" + OneCountry), true, {NoCountries, without}},
                 {Document("<CATEGORIES/><SUBMISSIONS/>" + OneCountry), true, {NoCountries, without}},
                 {Document(ThreeTables) + "x",
                  true,
                  {"0 Load reference data format error", "0 Error Load Reference Data: 0 ", noFrame}}};
    for (const auto& [content, stops, log] : cases) {
        ReferenceRig rig;
        rig.Place(ReferencePath, content);
        EXPECT_EQ(rig.ReferenceData.LoadReferenceData(), stops);
        EXPECT_EQ(rig.Log.Take(), log);
        EXPECT_EQ(rig.System.Dialogs.Shown, stops ? Lines{"16|Trawlbeam|" + log.back().substr(2)} : Lines());
    }
}

TEST(LoadReferenceData, WritesTheBuiltInDocumentThatAnyServersCopyReplaces) {
    const Lines offline{"0 Missing Reference File: reference.bin",
                        "0 Error Retrieving Reference Data: 5 Invalid procedure call or argument", NoCountries};
    ReferenceRig rig;
    rig.System.Files.Present = rig.System.Clock.Present;
    rig.System.Files.Zone = 2;
    EXPECT_FALSE(rig.ReferenceData.LoadReferenceData());
    EXPECT_EQ(rig.Log.Take(), offline);
    EXPECT_EQ(rig.Counts(), (std::vector<std::int32_t>{2, 6, 3}));
    EXPECT_EQ(rig.StringOf("REFERENCEVERSION"), "20050215");
    EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, EncryptStringChk(BuiltInReference())}}));
    const FileTimes times = rig.System.Files.Times(ReferencePath);
    for (const Date& date : {times.Created, times.Modified, times.Accessed}) {
        EXPECT_EQ(FormatDateTime(date), "01/01/2000 00:00:00");
    }
    rig.AddService("ReferenceSVR");
    rig.Offer("reference.bin", Document(ThreeTables + OneCountry));
    rig.Web.Heads["reference.bin"] = "Last-Modified: Sat, 01 Jan 2000 00:00:01 GMT";
    DailyFiles(rig.Access).GetDailyFiles("ReferenceSVR", "reference.bin", "reference.bin");
    EXPECT_TRUE(rig.ReferenceData.LoadReference(""));
    EXPECT_EQ(rig.Counts(), (std::vector<std::int32_t>{1, 1, 1}));
}

// Whatever step of writing and dating the built-in document fails, the start goes on with it, and no file is left that
// is not whole or looks new.
TEST(LoadReferenceData, GoesOnWithTheBuiltInDocumentWithoutADisk) {
    for (const bool forGood : {false, true}) {
        for (int step = 1; step <= 7; ++step) {
            ReferenceRig rig;
            rig.System.Files.Present = rig.System.Clock.Present;
            rig.System.Files.FailAt(step, ErrorNumber::DiskFull, forGood);
            EXPECT_FALSE(rig.ReferenceData.LoadReferenceData()) << step;
            EXPECT_EQ(rig.Counts(), (std::vector<std::int32_t>{2, 6, 3})) << step;
            // Opening, writing, flushing, replacing, and three steps of dating.
            const Lines log = rig.Log.Take();
            ASSERT_EQ(log.size(), 4U) << step;
            EXPECT_EQ(log[2], "0 Error TrawlMain: LoadReferenceData 61 Disk full") << step;
            EXPECT_EQ(log[3], NoCountries) << step;
            EXPECT_TRUE(forGood || rig.System.Files.Contents.empty()) << step;
        }
    }
}

// What lies in a data file may be anything. The program goes on with what it has, behind the line that says why, and
// leaves the file.
TEST(DataFiles, AreRefusedWhenTheyAreNotWholeOrNoDocument) {
    const Text good = EncryptStringChk("<B Version='1'><CATEGORIES/><SUBMISSIONS/><DISPOSITIONS/><COUNTRIES/></B>");
    const Text document = "0 Error Load Reference Data: -2147213504 XML line 1: ";
    for (const auto& [file, line] : std::vector<std::pair<Text, Text>>{
             {good.substr(0, good.size() - 1), "0 Error Load Reference Data: 0 "},
             {"00" + good, "0 Error Load Reference Data: 0 "},
             {EncryptStringChk(" "), document},
             {EncryptStringChk("<B></A>"), document},
             {EncryptStringChk("<!DOCTYPE b [<!ENTITY a 'aaaaaaaaaa'>]><B>&a;</B>"), document}}) {
        ReferenceRig rig;
        rig.Program.Settings->ReplaceGlobals("CATEGORIES", std::make_shared<Element>("OLD"));
        rig.Place(ReferencePath, file);
        EXPECT_FALSE(rig.ReferenceData.LoadReference("")) << Quoted(file);
        EXPECT_TRUE(rig.Log.Take().back().starts_with(line)) << Quoted(file);
        EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, file}}));
        EXPECT_EQ(rig.Program.Settings->TryGlobalsSection("CATEGORIES")->Name(), "OLD");
        for (int step = 1; step <= 2; ++step) {
            rig.System.Files.FailAt(step, ErrorNumber::DeviceIO);
            EXPECT_FALSE(rig.ReferenceData.LoadReference("")) << step;
            EXPECT_EQ(rig.Log.Take()[0], "0 Error Open Defaults File: 57 Device I/O error") << step;
        }
    }
}

}  // namespace
}  // namespace tb
