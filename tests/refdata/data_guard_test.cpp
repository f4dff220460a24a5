// What a deployment with the guard does with documents that a server should not have published.
#include <gtest/gtest.h>

#include "refdata/RefDataRig.h"

namespace tb {
namespace {

const Text Servers = "<G NAME='SERVERS'><E NAME='ReferenceSVR'><Server ACTIVE='Y'>http://s</Server></E></G>";
const Text Tables = "<CATEGORIES/><SUBMISSIONS/><DISPOSITIONS/>";
constexpr const char* JustLater = "Last-Modified: Sat, 01 Jan 2000 00:00:01 GMT\r\n\r\n";

Text DefaultsOf(const Text& version) { return EncryptStringChk("<D Version='" + version + "'>" + Servers + "</D>"); }
Text ReferenceOf(const Text& version) {
    return EncryptStringChk("<B Version='" + version + "'>" + Tables + "<COUNTRIES/></B>");
}
Text OfReference(const Text& content) { return EncryptStringChk("<B>" + content + "</B>"); }
Text Changed(Text frame) {
    frame.back() = static_cast<char>(frame.back() ^ 1);
    return frame;
}

// Both documents are guarded in the same way.
struct Kind {
    Text File;
    std::filesystem::path Path;
    std::filesystem::path Last;
    Text (*Of)(const Text& version);
    // What the start does, and the global that tells the version of what was loaded.
    bool (*Start)(RefDataRig& rig);
    Text Version;
};

const Kind Kinds[] = {{"defaults.bin", DefaultsPath, "/app/Data/defaults.bin.last", DefaultsOf,
                       [](RefDataRig& rig) { return rig.DefaultsData.CheckLoadDefaults(); }, "DEFAULTVERSION"},
                      {"reference.bin", ReferencePath, "/app/Data/reference.bin.last", ReferenceOf,
                       [](RefDataRig& rig) { return rig.ReferenceData.LoadReferenceData(); }, "REFERENCEVERSION"}};

Deployment Guarded(bool isOn = true) {
    Deployment deployment = TestDeployment();
    deployment.ListGuard = isOn;
    return deployment;
}

struct GuardRig : RefDataRig {
    explicit GuardRig(bool isOn = true) : RefDataRig(Guarded(isOn)) {
        System.Files.Present = System.Clock.Present;
        AddService("ReferenceSVR");
    }
};

TEST(DataGuard, RefusesWhatCouldNotBeLoaded) {
    const std::tuple<const Kind&, Text, Text> cases[] = {
        {Kinds[0], EncryptStringChk("<html>no</p>"), "XML line 1: "},
        {Kinds[0], EncryptStringChk("<D/>"), "it names no server in use"},
        {Kinds[0], EncryptStringChk("<D><G NAME='SERVERS'><E><Server ACTIVE='N'>http://s</Server></E></G></D>"),
         "it names no server in use"},
        // Of two groups of one name the last one counts.
        {Kinds[0], EncryptStringChk("<D>" + Servers + "<G NAME='servers'/></D>"), "it names no server in use"},
        {Kinds[1], OfReference("<SUBMISSIONS/><DISPOSITIONS/><COUNTRIES/>"), "there is no section CATEGORIES"},
        {Kinds[1], OfReference(Tables), "there is no section COUNTRIES"},
        {Kinds[1], OfReference(Tables + "<COUNTRIES><C ALPHA2='A'/><C ALPHA2='a'/></COUNTRIES>"),
         "This key is already"},
        {Kinds[1], OfReference(Tables + "<COUNTRIES/><GEOIP>QUJD</GEOIP>"), "its address table is defective"},
        {Kinds[1], OfReference(Tables + "<COUNTRIES/><GEOIP>AgAAAAL///9BQQEAAAAB////QkI=</GEOIP>"),
         "its address table is defective"}};
    for (const auto& [kind, reply, reason] : cases) {
        GuardRig rig;
        rig.Place(kind.Path, kind.Of("1"));
        rig.Offer(kind.File, reply);
        const Text fetch = "POST " + kind.File;
        EXPECT_EQ(rig.Look(kind.File).back(), fetch);
        EXPECT_EQ(rig.System.Files.Contents, (World{{kind.Path, kind.Of("1")}})) << reason;
        const Text line = rig.Log.Take().back();
        EXPECT_TRUE(line.starts_with("0 Refused the servers' " + kind.File + ": " + reason)) << line;
        // That copy is not fetched again, the next one is.
        EXPECT_EQ(rig.Look(kind.File), Lines{"HEAD " + kind.File});
        rig.Offer(kind.File, kind.Of("2"));
        rig.Web.Heads[kind.File] = "Last-Modified: Sun, 06 Nov 1994 08:49:38 GMT\r\n\r\n";
        EXPECT_EQ(rig.Look(kind.File).back(), fetch);
        EXPECT_EQ(rig.System.Files.Contents, (World{{kind.Path, kind.Of("2")}, {kind.Last, kind.Of("1")}}));

        GuardRig unguarded(false);
        unguarded.Place(kind.Path, kind.Of("1"));
        unguarded.Offer(kind.File, reply);
        unguarded.Look(kind.File);
        EXPECT_EQ(unguarded.System.Files.Contents, (World{{kind.Path, reply}})) << reason;
    }
}

// A start with each kind of bad file beside a good one before it.
TEST(DataGuard, AStartTakesTheFileBeforeABadOne) {
    for (const Kind& kind : Kinds) {
        const Text good = kind.Of("2");
        for (const Text& bad : {good.substr(0, good.size() / 2), Changed(good), Text(), EncryptStringChk("<html>"),
                                EncryptStringChk("<B/>"), Text("none")}) {
            GuardRig rig;
            if (bad != "none") rig.Place(kind.Path, bad);
            if (bad != "none") rig.System.Files.Dates[kind.Path].Modified = rig.System.Clock.Present;
            rig.Place(kind.Last, kind.Of("1"));
            EXPECT_FALSE(kind.Start(rig)) << kind.File << Quoted(bad);
            EXPECT_EQ(rig.StringOf(kind.Version), "1");
            const Text line = rig.Log.Take().back();
            EXPECT_TRUE(line.starts_with("0 " + kind.File + " cannot be used (")) << line;
            EXPECT_TRUE(line.ends_with("), taking " + kind.File + ".last")) << line;
            // The next check does not take the bad one for current, and what it replaces is not kept.
            rig.Offer(kind.File, kind.Of("3"));
            rig.Web.Heads[kind.File] = JustLater;
            rig.Look(kind.File);
            EXPECT_EQ(rig.System.Files.Contents, (World{{kind.Path, kind.Of("3")}, {kind.Last, kind.Of("1")}}));
        }
    }
}

// Whatever step of a replacement fails, or is the last one, a start finds one of the two documents.
TEST(DataGuard, LeavesAPairThatStartsWhateverStepFails) {
    for (const Kind& kind : Kinds) {
        for (const bool forGood : {false, true}) {
            for (int step = 1; step <= 16; ++step) {
                GuardRig rig;
                rig.Place(kind.Path, kind.Of("1"));
                rig.Offer(kind.File, kind.Of("2"));
                rig.System.Files.FailAt(step, ErrorNumber::DiskFull, forGood);
                rig.Look(kind.File);
                rig.System.Files.FailNoMore();
                EXPECT_FALSE(kind.Start(rig)) << step;
                EXPECT_EQ(rig.StringOf(kind.Version), rig.ContentOf(kind.Path) == kind.Of("1") ? "1" : "2") << step;
                EXPECT_TRUE(rig.ContentOf(kind.Last) == "none" || rig.ContentOf(kind.Last) == kind.Of("1")) << step;
                EXPECT_TRUE(step < 16 || rig.ContentOf(kind.Path) == kind.Of("2")) << "there are no more steps";
            }
        }
    }
}

}  // namespace
}  // namespace tb
