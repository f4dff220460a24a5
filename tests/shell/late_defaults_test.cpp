// A start that got no defaults, and what becomes of it while the program runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/ShellRig.h"

namespace tb {
namespace {

constexpr const char* Head = "Last-Modified: Fri, 20 Nov 2026 08:49:37 GMT\r\n";
constexpr const char* Missing = "   defaults.bin is missing: nothing is updated until it comes, trying again";

Text DefaultsWith(const Text& groups) { return ShellRig::Defaults(groups, {"EVILDBSVR", "ReferenceSVR"}); }

// The first start of a program, whose gates ask the web for its data files.
class LateDefaultsTest : public ::testing::Test {
protected:
    void Start(const Text& interval = "0") {
        m_Rig = std::make_unique<ShellRig>(ShellRig::Section("Main", "AutoUpdate", "0") +
                                           ShellRig::Section("TIMERS", "EVILDB_INTERVAL", interval));
        m_Rig->Web.Online = m_IsOnline;
        m_Rig->System.Files.Present = m_Rig->System.Clock.Present;
        for (const char* name : {ShellRig::DefaultsFile, ShellRig::ReferenceFile})
            m_Rig->System.Files.Contents.erase(name);
        m_Rig->OnRequest = [this](const Text& request) {
            m_Asked.push_back(request);
            if (OnRequest) OnRequest(request);
        };
        ASSERT_TRUE(m_Rig->Chain->Main());
        m_Rig->System.TakeLog();
        m_Asked.clear();
    }
    frmController& Controller() { return m_Rig->Controller(); }
    Lines Take() { return std::exchange(m_Asked, {}); }
    // Some seconds pass, each with its tick. The log of the time.
    Lines Pass(int seconds = 1) {
        for (int second = 0; second < seconds; ++second) {
            m_Rig->System.Clock.Pass(1);
            Controller().tmUpdate.Tick();
        }
        return m_Rig->System.TakeLog();
    }
    void Offer(const Text& page, const Text& reply) {
        m_Rig->Web.Heads[page] = Head;
        m_Rig->Web.Replies[page] = reply;
    }
    void OfferAll(const Text& groups = {}) {
        Offer("defaults.bin", DefaultsWith(groups));
        Offer("reference.bin",
              EncryptStringChk("<B><CATEGORIES><C ID='3' "
                               "NAME='Third'/></CATEGORIES><SUBMISSIONS/><DISPOSITIONS/><EVILWORDS>x</EVILWORDS>"
                               "<COUNTRIES><C ALPHA2='AA' NAME='Aland' WEIGHT='50'/></COUNTRIES><GEOIP>"
                               "AQAAAAH///9BQf////7////+Wlo=</GEOIP></B>"));
        m_Rig->Web.Replies["MalDB.aspx"] = EncryptStringChk("202611220000\n1\n+\thttp://evil.example\t3\td");
    }
    Text Ask(const Text& url) {
        Text reply;
        Controller().CheckEvil({"1", "Check", url}, reply);
        return reply;
    }

    bool m_IsOnline = true;
    std::function<void(const Text& request)> OnRequest;
    Lines m_Asked;
    std::unique_ptr<ShellRig> m_Rig;
};

TEST_F(LateDefaultsTest, BringProtectionWithoutARestart) {
    Start();
    EXPECT_EQ(Pass(), (Lines{"   Error retrieving file head from defaults.bin", Missing}));
    EXPECT_EQ(Pass(60), Lines()) << "one state, one line";
    EXPECT_EQ(Take(), (Lines{"HEAD defaults.bin", "HEAD defaults.bin"}));
    EXPECT_EQ(Ask("http://evil.example/"), "OK");
    OfferAll(ShellRig::Group("TIMERS", "<E NAME='FREEMEM_INTERVAL'>7</E>"));
    EXPECT_EQ(Pass(120), (Lines{"   defaults.bin has come: updating", "   reference.bin has come"}));
    m_Asked.resize(5);
    EXPECT_EQ(Take(), (Lines{"HEAD defaults.bin", "POST defaults.bin", "HEAD reference.bin", "POST reference.bin",
                             "POST MalDB.aspx"}));
    EXPECT_EQ(Ask("http://evil.example/"), "Validated: d  (Category: Third)");
    double score = 0;
    Text country;
    m_Rig->Tables.Countries->ScoreURL("http://x/", "1.2.3.4", score, country);
    EXPECT_EQ(country, "Aland");
    const size_t trims = m_Rig->System.Processes.Trims.size();
    Pass(8);
    EXPECT_EQ(m_Rig->System.Processes.Trims.size(), trims + 1) << "by the new period";
    EXPECT_THAT(Take(), testing::Each("POST MalDB.aspx"));
}

TEST_F(LateDefaultsTest, AreTriedAfterGrowingPauses) {
    Start();
    std::vector<int> tries;
    for (int second = 0; second < 3600; ++second) {
        Pass();
        if (!Take().empty()) tries.push_back(second);
    }
    EXPECT_EQ(tries, (std::vector<int>{0, 60, 180, 420, 900, 1800, 2700}));
    // A clock that was set back does not make it wait for the time to come again.
    m_Rig->System.Clock.Pass(-Date::SecondsPerDay);
    Pass();
    EXPECT_EQ(Take().size(), 1U);
}

TEST_F(LateDefaultsTest, AreTriedAtOnceWhenTheMachineComesOnline) {
    m_IsOnline = false;
    Start("600");
    Pass(30);
    m_Rig->Web.Online = true;
    EXPECT_THAT(Pass(100), testing::Contains(Missing));
    EXPECT_EQ(Take().size(), 1U) << "online, and no server: as always";
    m_Rig->Web.Online = false;
    Pass(100);
    m_Rig->Web.Online = true;
    OfferAll();
    Pass();
    EXPECT_EQ(Ask("http://evil.example/"), "Validated: d  (Category: Third)");
}

// The built-in categories are two, and a site of another one is not blocked.
TEST_F(LateDefaultsTest, AreFollowedByReferenceDataUntilTheseHaveCome) {
    Start();
    OfferAll();
    m_Rig->Web.Errors["reference.bin"] = "no answer";
    EXPECT_THAT(Pass(), testing::Contains(testing::HasSubstr("reference.bin is missing: only sites")));
    EXPECT_EQ(Ask("http://evil.example/"), "OK");
    Pass(50);
    m_Rig->Web.Errors.clear();
    EXPECT_THAT(Pass(20), testing::Contains("   reference.bin has come"));
    EXPECT_EQ(Ask("http://evil.example/"), "Validated: d  (Category: Third)");
    Take();
    Pass(1000);
    EXPECT_THAT(Take(), testing::Each("POST MalDB.aspx"));
}

TEST_F(LateDefaultsTest, WithoutServersAreNone) {
    Start();
    Offer("defaults.bin", EncryptStringChk("<D/>"));
    EXPECT_THAT(Pass(), testing::Contains(testing::HasSubstr("defaults.bin names no servers: nothing is updated")));
    // By whatever way the file has come.
    m_Rig->System.Files.Contents["/app/Data/defaults.bin"] = DefaultsWith({});
    m_Rig->System.Files.Contents["/app/Data/reference.bin"];
    m_Rig->System.Files.Dates.erase("/app/Data/reference.bin");
    EXPECT_EQ(Pass(60),
              (Lines{"   defaults.bin has come: updating", "   Error retrieving file head from reference.bin"}));
    EXPECT_THAT(Take(), testing::Contains("POST MalDB.aspx"));
}

TEST_F(LateDefaultsTest, AskForAnUpdateOfAnOldProgramBehindTheList) {
    Start();
    OfferAll();
    m_Rig->System.Dialogs.Answer = 6;
    Offer("defaults.bin", ShellRig::Defaults(ShellRig::Group("MAIN", "<E NAME='WARNVER'>2.0</E>")));
    OnRequest = [this](const Text& request) {
        EXPECT_EQ(m_Rig->Program.NeedToUpdate, request == "POST Versions.aspx") << "asked between list and report";
    };
    Pass();
    EXPECT_EQ(m_Rig->System.Dialogs.Shown.size(), 1U);
    EXPECT_THAT(Take(), testing::Contains("POST Versions.aspx"));
    OnRequest = {};
    // One that has expired, and whose update waits, does not run on, as it would not start.
    Start();
    OfferAll(ShellRig::Group("MAIN", "<E NAME='EXPIREVER'>2.0</E>"));
    m_Rig->System.Files.Contents["/app/Updates/updates.xml"];
    m_Rig->System.Files.Folders.insert("/app/Updates");
    Pass();
    EXPECT_FALSE(Controller().IsLoaded());
    EXPECT_EQ(m_Rig->Program.Settings, nullptr);
}

// Wherever a wait serves messages, the program may be left: by the end of the session, or by the menu.
TEST_F(LateDefaultsTest, TheSessionMayEndInsideAnyOfTheirWaits) {
    for (const Text where :
         {"HEAD defaults.bin", "POST defaults.bin", "HEAD reference.bin", "POST reference.bin", "POST MalDB.aspx"}) {
        Start();
        OfferAll();
        OnRequest = [&](const Text& request) {
            if (request == where) Controller().Unload(UnloadMode::Session);
        };
        Pass();
        OnRequest = {};
        EXPECT_EQ(Take().back().substr(5), where.substr(5));
        EXPECT_EQ(m_Rig->Program.Settings, nullptr) << where;
        EXPECT_FALSE(Controller().tmUpdate.Enabled()) << where;
    }
    // A submission that a handler of the wait asks for is not lost to the new periods.
    Start();
    OfferAll();
    OnRequest = [&](const Text& request) {
        if (request == "POST defaults.bin") Controller().DoSubmission();
    };
    Pass();
    OnRequest = {};
    EXPECT_EQ(Controller().tmSub.Interval(), 1);
    Controller().tmSub.Tick();
    EXPECT_EQ(Controller().tmSub.Interval(), 1000);
}

}  // namespace
}  // namespace tb
