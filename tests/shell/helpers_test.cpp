#include <gtest/gtest.h>

#include "base/codepage.h"
#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "shell/helpers/GeneralHelpers.h"
#include "shell/helpers/SystemInfo.h"
#include "shell/helpers/Versions.h"
#include "shell/helpers/cRegistry.h"

namespace tb {
namespace {

class HelpersTest : public ::testing::Test {
protected:
    HelpersTest() {
        m_App.Settings = std::make_unique<xmlINI>(
            xmlINI::Surroundings{m_System.Files, m_System.Clock, m_System.Dialogs, {}, "Trawlbeam"});
    }
    void Set(const Text& section, const Text& key, const Text& value) {
        m_App.Settings->WriteXMLString(section, key, value);
    }
    void SetGlobal(const Text& name, const Text& xml) {
        Document document;
        document.LoadXML(xml);
        m_App.Settings->ReplaceGlobals(name, document.Root());
    }

    FakeSystem m_System;
    App m_App{m_System, TestDeployment()};
    RecordedLog m_Log;
};

TEST(CodePage, ConvertsEveryByteThereAndBack) {
    Text all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    EXPECT_EQ(FromWide(ToWide(all)), all);
    EXPECT_EQ(ToWide("\x80\xE9"), u"\u20AC\u00E9");
    EXPECT_EQ(FromWide(u"a\u0416\u0100b"), "a??b");
}

TEST(Versions, CompareByTheFirstTwoPartsThenTheThird) {
    EXPECT_FALSE(IsVersionNewerThan("1.2", "1.2.0", false));
    EXPECT_TRUE(IsVersionNewerThan("1.2", "1.2.0", true));
    EXPECT_TRUE(IsVersionNewerThan("1.2.3", "1.2", false));
    EXPECT_TRUE(IsVersionNewerThan("1.10.0", "1.9.9", false));
    EXPECT_FALSE(IsVersionNewerThan("1.2.3.9", "1.2.3.1", false));
    EXPECT_TRUE(IsVersionNewerThan("1.65536.1", "2.0.0", false));
    EXPECT_TRUE(IsVersionNewerThan("2", "1.65535.9", false));
    EXPECT_FALSE(IsVersionNewerThan("", "", false));
    EXPECT_EQ(Raised([] { IsVersionNewerThan("32768", "1", false); }), 6);
    EXPECT_EQ(Raised([] { IsVersionNewerThan("1.x", "1", false); }), 13);
}

TEST(Versions, HttpDatesReadByColumns) {
    EXPECT_EQ(ParseHttpDate("Sun, 06 Nov 1994 08:49:37 GMT"), Date(CivilDate{1994, 11, 6, 8, 49, 37}));
    const Text months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    for (int month = 1; month <= 12; ++month) {
        const Text text = "Sun, 06 " + months.substr(static_cast<size_t>(month - 1) * 3, 3) + " 1994 08:49:37";
        EXPECT_EQ(ParseHttpDate(text).Civil().Month, month);
    }
    for (const char* text :
         {"Sunday, 06-Nov-94 08:49:37 GMT", "", "Sun, 06 nov 1994 08:49:37", "Sun, 06 anF 1994 08:49:37"}) {
        EXPECT_EQ(Raised([&] { ParseHttpDate(text); }), 13) << text;
    }
}

TEST(WindowPosition, KeepsAPartOfTheWindowOnTheScreen) {
    const WindowExtent window{6000, 4000};
    const WindowExtent screen{15360, 11520};
    const WindowPosition far = KeptReachable({99999, 99999}, window, screen);
    EXPECT_EQ(far.Top, 10320);
    EXPECT_EQ(far.Left, 14160);
    const WindowPosition near = KeptReachable({-99999, -99999}, window, screen);
    EXPECT_EQ(near.Top, -2800);
    EXPECT_EQ(near.Left, -4800);
    EXPECT_EQ(Centred(window, screen).Left, 4680);
}

TEST_F(HelpersTest, TimersComeFromTheSettingsThenTheDefaultsThenTheCaller) {
    EXPECT_EQ(GetTimerInterval(m_App, "EvilDB_Interval", 60), 60000);
    SetGlobal("TIMERS", "<TIMERS><T NAME='EVILDB_INTERVAL'>7</T><T NAME='EMPTY'/></TIMERS>");
    EXPECT_EQ(GetTimerInterval(m_App, "EvilDB_Interval", 60), 7000);
    EXPECT_EQ(GetTimerInterval(m_App, "Empty", 60), 60000);
    for (const auto& [value, expected] : std::vector<std::pair<Text, std::int32_t>>{
             {"0", 0}, {"5", 5000}, {"-1", 7000}, {"abc", 60000}, {"2147484", 60000}, {"2147483", 2147483000}}) {
        Set("Timers", "EVILDB_INTERVAL", value);
        EXPECT_EQ(GetTimerInterval(m_App, "EvilDB_Interval", 60), expected) << value;
    }
    EXPECT_TRUE(IsTimerEnabled(m_App, "EvilDB_Enabled"));
    Set("TIMERS", "EVILDB_ENABLED", "yes");
    EXPECT_FALSE(IsTimerEnabled(m_App, "EvilDB_Enabled"));
}

TEST_F(HelpersTest, DefaultedValues) {
    EXPECT_EQ(GetDefaultedString(m_App, "MAIN", "x"), "");
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "x", 42), 42);
    SetGlobal("MAIN", "<MAIN><V NAME='X'>17</V><V NAME='WORD'>w</V></MAIN>");
    EXPECT_EQ(GetDefaultedString(m_App, "MAIN", "x"), "17");
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "x", 42), 17);
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "word", 42), 0);
    Set("MAIN", "X", "5");
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "x", 42), 5);
    EXPECT_EQ(GetGlobalBody(m_App, "NOWHERE", "NAME", "X"), "");
    Set("MAIN", "Key", "a b");
    EXPECT_EQ(GetClientKey(m_App), "a b");
    EXPECT_EQ(GetClientKey(m_App, true), "a+b");
    EXPECT_FALSE(IsSoundEnabled(m_App));
}

TEST_F(HelpersTest, MemoryIsTrimmedToTheLimitsUnlessBothAreNought) {
    FreeMemory(m_App, m_Log);
    Set("MAIN", "MINFREEMEM", "0");
    FreeMemory(m_App, m_Log);
    EXPECT_EQ(m_System.Processes.Trims, (std::vector<Text>{"3145728-6291456", "0-6291456"}));
    m_System.Processes.TrimFailure = 1314;
    FreeMemory(m_App, m_Log);
    EXPECT_EQ(m_Log.Take(), std::vector<Text>{"0 FreeMemory: system error 1314"});
    Set("MAIN", "MAXFREEMEM", "0");
    FreeMemory(m_App, m_Log);
    m_System.Machine.System.Platform = 1;
    FreeMemory(m_App, m_Log);
    EXPECT_EQ(m_System.Processes.Trims.size(), 3U);
}

TEST_F(HelpersTest, ComponentsAreOutOfDateByVersionElseByDate) {
    const Date date(CivilDate{2026, 1, 2, 3, 4, 5});
    EXPECT_TRUE(IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date));
    m_System.Files.Contents["/app/a.dll"] = "x";
    m_System.Files.Contents["/app/b.chm"] = "x";
    EXPECT_EQ(Raised([&] { IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date); }), 91);
    m_App.Components = std::make_unique<ComponentList>();
    EXPECT_EQ(Raised([&] { IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date); }), 5);
    m_App.Components->Add({"A.dll", "", "1.0.0", date, date, true, false});
    m_App.Components->Add({"b.chm", "", "0.0.0", date, date, true, false});
    EXPECT_FALSE(IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date.PlusSeconds(9)));
    EXPECT_TRUE(IsComponentOutOfDate(m_App, "a.dll", "1.0.1", date));
    EXPECT_FALSE(IsComponentOutOfDate(m_App, "b.chm", "9.9.9", date));
    EXPECT_TRUE(IsComponentOutOfDate(m_App, "b.chm", "9.9.9", date.PlusSeconds(1)));
}

TEST_F(HelpersTest, SystemInformation) {
    const SystemInfo info(m_System.Machine);
    EXPECT_EQ(info.GetWindowsVersion(), "6.1.7601.2");
    EXPECT_EQ(info.WindowsDir() + info.SystemDir(), "C:\\windows\\C:\\windows\\system32\\");
    EXPECT_EQ(info.PercentMemoryFree(), 38) << "37.5, halves to even";
    EXPECT_EQ(info.FreeMegaBytesOnDisk(), 5120);
    EXPECT_TRUE(IsWindowsNT("6.1.7601.2"));
    EXPECT_FALSE(IsWindowsNT("4.90.3000.1"));
    EXPECT_FALSE(IsWindows2000OrLater("4.90.3000.1"));
    EXPECT_FALSE(IsDevelopmentRun(m_App));
    EXPECT_EQ(GetFormBorderMetrics(m_App, 2).Width, 320);
    EXPECT_EQ(GetFormBorderMetrics(m_App, 4).CaptionHeight, 510);
    EXPECT_EQ(GetFormBorderMetrics(m_App, 0).Width, 0);
}

TEST_F(HelpersTest, TheRegistryCursorTellsWhatFailed) {
    cRegistry registry(m_System.Registry);
    registry.SectionKey = "Software\\Trawlbeam";
    registry.ValueKey = "Name";
    registry.Default = "d";
    EXPECT_EQ(registry.Value(), "d");
    EXPECT_FALSE(registry.KeyExists());
    registry.Value("v");
    EXPECT_EQ(registry.Value(), "v");
    registry.DeleteValue();
    EXPECT_EQ(registry.Value(), "d");
    m_System.Registry.Refuses = true;
    const auto description = [](auto body) {
        Text text;
        Trap([&] { body(); }, [&](const RuntimeError& error) { text = error.Source + "|" + error.Description; });
        return text;
    };
    EXPECT_EQ(description([&] { registry.Value("v"); }),
              ".cRegistry|Failed to set registry value Key: 'HKEY_LOCAL_MACHINE',Section: 'Software\\Trawlbeam',Key: "
              "'Name' to value: 'v");
    EXPECT_EQ(description([&] { registry.CreateKey(); }),
              ".cRegistry|Failed to create registry Key: 'HKEY_LOCAL_MACHINE',Section: 'Software\\Trawlbeam");
    EXPECT_EQ(
        description([&] { registry.DeleteKey(); }),
        ".cRegistry|Failed to delete registry Key: 'HKEY_LOCAL_MACHINE',Section: 'Software\\Trawlbeam',Key: 'Name");
    EXPECT_EQ(description([&] { registry.DeleteValue(); }),
              ".cRegistry|Failed to open key 'HKEY_LOCAL_MACHINE' for delete access");
}

}  // namespace
}  // namespace tb
