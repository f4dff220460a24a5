#include <gtest/gtest.h>

#include "refdata/BuiltInReference.h"
#include "refdata/RefDataRig.h"

namespace tb {
namespace {

const Text ThreeTables =
    "<CATEGORIES><C ID='1' NAME='General'/></CATEGORIES><SUBMISSIONS><S ID='0' NAME='NA'/></SUBMISSIONS>"
    "<DISPOSITIONS><D ID='0' NAME='x'/></DISPOSITIONS>";
const Text OneCountry = "<COUNTRIES><C ALPHA2='AA' NAME='Aland' WEIGHT='50'/></COUNTRIES>";
const Text NoCountries = "0 Error Load Reference Data: 91 Object variable or With block variable not set";

Text Document(const Text& content) { return EncryptStringChk("<BEGIN Version='7'>" + content + "</BEGIN>"); }

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
    const Text golden = Golden("tables");
    rig.Place(ReferencePath, golden);
    EXPECT_EQ(golden.substr(0, 9) + std::to_string(golden.size()), "DD473038G511");
    EXPECT_TRUE(rig.ReferenceData.LoadReference(""));
    EXPECT_EQ(rig.Log.Take(), Lines());
    EXPECT_EQ(rig.Counts(), (std::vector<std::int32_t>{1, 1, 1}));
    EXPECT_EQ(rig.StringOf("REFERENCEVERSION"), "20261121");
    EXPECT_EQ(rig.StringOf("EVILWORDS"), "x,paypal,bank");
    EXPECT_EQ(rig.CountryOf("1.2.3.4") + rig.CountryOf("2.127.255.255"), "AlandBland");
    EXPECT_TRUE(rig.WhiteList->isWhiteList("www.good.example"));
    // A second load replaces globals and white list, and fails at the country that is there.
    rig.Place(ReferencePath, Document(ThreeTables + "<WHITELIST>New.example,, b.example</WHITELIST>" + OneCountry));
    EXPECT_FALSE(rig.ReferenceData.LoadReference(""));
    EXPECT_EQ(rig.StringOf("EVILWORDS"), "x,paypal,bank") << "a section that is not there changes nothing";
    EXPECT_TRUE(rig.WhiteList->isWhiteList("new.example"));
    EXPECT_FALSE(rig.WhiteList->isWhiteList("www.good.example"));
    EXPECT_FALSE(rig.WhiteList->isWhiteList("b.example")) << "the blank is part of the domain";
}

// What lies in the file may be anything. The program goes on with what it has, behind the line that says why, and
// leaves the file; the start stops only when one of the three tables is missing.
TEST(LoadReferenceData, StopsTheStartOnlyWithoutTheThreeTables) {
    const Text whole = Document(ThreeTables);
    const Text notSet = "91 Object variable or With block variable not set";
    const Text noDocument = "-2147213504 XML line 1: ";
    for (const auto& [content, error] : std::vector<std::pair<Text, Text>>{
             {whole, notSet},
             {Document("<CATEGORIES/><SUBMISSIONS/>" + OneCountry), notSet},
             {whole + "x", "0 "},
             {whole.substr(0, whole.size() - 1), "0 "},
             {EncryptStringChk(" "), noDocument},
             {EncryptStringChk("<!DOCTYPE b [<!ENTITY a 'aaaaaaaaaa'>]><B>&a;</B>"), noDocument}}) {
        ReferenceRig rig;
        rig.Place(ReferencePath, content);
        const bool stops = content != whole;
        EXPECT_EQ(rig.ReferenceData.LoadReferenceData(), stops) << Quoted(content);
        const Lines log = rig.Log.Take();
        EXPECT_TRUE(log.at(log.size() - (stops ? 2 : 1)).starts_with("0 Error Load Reference Data: " + error));
        EXPECT_EQ(log.back().starts_with("0 Error TrawlMain: LoadReferenceData " + error), stops);
        EXPECT_EQ(rig.System.Dialogs.Shown, stops ? Lines{"16|Trawlbeam|" + log.back().substr(2)} : Lines());
        EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, content}}));
        rig.System.Files.FailAt(1, ErrorNumber::DeviceIO);
        EXPECT_FALSE(rig.ReferenceData.LoadReference(""));
        EXPECT_EQ(rig.Log.Take(),
                  (Lines{"0 Error Open Defaults File: 57 Device I/O error", "0 Load reference data format error",
                         "0 Error Load Reference Data: 57 Device I/O error"}));
    }
}

TEST(LoadReferenceData, WritesTheBuiltInDocumentThatAnyServersCopyReplaces) {
    ReferenceRig rig;
    rig.System.Files.Present = rig.System.Clock.Present;
    rig.System.Files.Zone = 2;
    EXPECT_FALSE(rig.ReferenceData.LoadReferenceData());
    EXPECT_EQ(rig.Log.Take(),
              (Lines{"0 Missing Reference File: reference.bin",
                     "0 Error Retrieving Reference Data: 5 Invalid procedure call or argument", NoCountries}));
    EXPECT_EQ(rig.Counts(), (std::vector<std::int32_t>{2, 6, 3}));
    EXPECT_EQ(rig.StringOf("REFERENCEVERSION"), "20050215");
    EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, EncryptStringChk(BuiltInReference())}}));
    EXPECT_EQ(FormatDateTime(rig.System.Files.Dates[ReferencePath].Modified), "01/01/2000 00:00:00");
    rig.AddService("ReferenceSVR");
    rig.Offer("reference.bin", Document(ThreeTables + OneCountry));
    rig.Web.Heads["reference.bin"] = "Last-Modified: Sat, 01 Jan 2000 00:00:01 GMT";
    rig.Look("reference.bin");
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

}  // namespace
}  // namespace tb
