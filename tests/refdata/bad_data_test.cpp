// What lies in a data file may be anything. The program goes on with what it has, behind the lines that say why, and
// never writes the file.
#include <gtest/gtest.h>

#include "refdata/RefDataRig.h"

namespace tb {
namespace {

// Both loaders, tried over the same bad files.
struct Loader {
    const char* Name;
    std::filesystem::path Path;
    Text Good;
    std::function<bool(RefDataRig&)> Load;
    // The last line for a file that is no frame, and what begins the line for a text that is no document.
    Text FormatLine;
    Text DocumentLine;
};

const std::vector<Loader>& Loaders() {
    static const std::vector<Loader> loaders{
        {"defaults", DefaultsPath, "<D Version='1'><E NAME='CATEGORIES'/></D>",
         [](RefDataRig& rig) { return rig.DefaultsData.LoadDefaults(""); }, "0 Load defaults format error",
         "0 Error Load Defaults: "},
        {"reference", ReferencePath, "<B Version='1'><CATEGORIES/><SUBMISSIONS/><DISPOSITIONS/><COUNTRIES/></B>",
         [](RefDataRig& rig) { return rig.ReferenceData.LoadReference(""); }, "0 Error Load Reference Data: 0 ",
         "0 Error Load Reference Data: "}};
    return loaders;
}

// A program that has loaded data already, which a bad file must not hurt.
struct BadDataRig : RefDataRig {
    BadDataRig() { Program.Settings->ReplaceGlobals("CATEGORIES", std::make_shared<Element>("OLD")); }
    bool HasOldData() const { return Program.Settings->TryGlobalsSection("CATEGORIES")->Name() == "OLD"; }
};

TEST(DataFiles, AreRefusedWhenTheyAreNotWhole) {
    for (const Loader& loader : Loaders()) {
        const Text good = EncryptStringChk(loader.Good);
        std::vector<Text> files{good.substr(good.find('G') + 1), "00" + good,
                                LowerCase(good.substr(0, 8)) + good.substr(8)};
        for (size_t length = 0; length < good.size(); ++length) files.push_back(good.substr(0, length));
        for (size_t bit = 0; bit < good.size() * 8; ++bit) {
            files.push_back(good);
            files.back()[bit / 8] ^= static_cast<char>(1 << bit % 8);
        }
        BadDataRig rig;
        for (const Text& file : files) {
            rig.Place(loader.Path, file);
            EXPECT_FALSE(loader.Load(rig)) << loader.Name << Quoted(file);
            EXPECT_EQ(rig.Log.Take().back(), loader.FormatLine) << loader.Name << Quoted(file);
            EXPECT_EQ(rig.System.Files.Contents, (World{{loader.Path, file}}));
        }
        EXPECT_TRUE(rig.HasOldData());
        rig.Place(loader.Path, good);
        EXPECT_TRUE(loader.Load(rig)) << loader.Name;
        EXPECT_FALSE(rig.HasOldData());
    }
}

TEST(DataFiles, AreRefusedWhenTheyHoldNoDocument) {
    Text deep;
    for (int depth = 0; depth < 300; ++depth) deep += "<A>";
    const Text documents[] = {" ", "<B></A>", "<!DOCTYPE b [<!ENTITY a 'aaaaaaaaaa'>]><B>&a;</B>", deep};
    for (const Loader& loader : Loaders()) {
        BadDataRig rig;
        for (const Text& document : documents) {
            rig.Place(loader.Path, EncryptStringChk(document));
            EXPECT_FALSE(loader.Load(rig)) << loader.Name << Quoted(document);
            const Lines log = rig.Log.Take();
            ASSERT_EQ(log.size(), 1U) << loader.Name << Quoted(document);
            EXPECT_EQ(log[0].rfind(loader.DocumentLine + "-2147213504 XML line 1: ", 0), 0U) << log[0];
        }
        EXPECT_TRUE(rig.HasOldData());
    }
}

TEST(DataFiles, AreRefusedWhenTheyCannotBeRead) {
    for (const Loader& loader : Loaders()) {
        BadDataRig rig;
        rig.Place(loader.Path, EncryptStringChk(loader.Good));
        for (int step = 1; step <= 4; ++step) {
            // Opening, the size, and the two reads.
            rig.System.Files.FailAt(step, ErrorNumber::DeviceIO);
            EXPECT_FALSE(loader.Load(rig)) << step;
            EXPECT_EQ(rig.Log.Take()[0], "0 Error Open Defaults File: 57 Device I/O error") << step;
            EXPECT_EQ(rig.System.Files.OpenCount(), 0U);
        }
        EXPECT_TRUE(rig.HasOldData());
    }
}

}  // namespace
}  // namespace tb
