#include <gtest/gtest.h>

#include <tuple>

#include "base/codepage.h"
#include "base/numbers.h"
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
    struct Row {
        const char* A;
        const char* B;
        bool Newer;
        bool OrEqual;
    };
    for (const Row& row :
         {Row{"1.2", "1.2.0", false, true}, Row{"1.2.3", "1.2", true, true}, Row{"1.2.3", "1.2.3", false, true},
          Row{"1.10.0", "1.9.9", true, true}, Row{"1.2.3.9", "1.2.3.1", false, true},
          Row{"1.65536.1", "2.0.0", true, true}, Row{"2", "1.65535.9", true, true}, Row{"1.2.9", "1.3", false, false},
          Row{"", "..", false, true}, Row{"1..3", "1.0.2", true, true}}) {
        EXPECT_EQ(IsVersionNewerThan(row.A, row.B, false), row.Newer) << row.A << " " << row.B;
        EXPECT_EQ(IsVersionNewerThan(row.A, row.B, true), row.OrEqual) << row.A << " " << row.B;
    }
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

// A window of 6000 by 4000 on a screen of 15360 by 11520.
TEST_F(HelpersTest, AWindowComesBackWhereItCanBeReached) {
    const auto restored = [&](std::optional<double> top = {}, std::optional<double> left = {}) {
        const WindowPosition position = RestoreWindowPosition(m_App, "Main", {6000, 4000}, top, left);
        return ToText(position.Top) + " " + ToText(position.Left);
    };
    EXPECT_EQ(restored(), "3760 4680");
    EXPECT_EQ(restored(100, 20000), "100 14160");
    for (const auto& [top, left, expected] :
         std::vector<std::tuple<Text, Text, Text>>{{"99999", "99999", "10320 14160"},
                                                   {"-99999", "-99999", "-2800 -4800"},
                                                   {"-7", "7.5", "-7 7.5"},
                                                   {"", "0", "3760 0"}}) {
        Set("MAIN", "LASTTOP", top);
        Set("Main", "LastLeft", left);
        EXPECT_EQ(restored(), expected);
    }
    Set("Main", "LastTop", "high");
    EXPECT_EQ(Raised([&] { restored(); }), 13);
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
    m_System.Files.Contents["/app/c.bin"] = "x";
    EXPECT_EQ(Raised([&] { IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date); }), 91);
    m_App.Components = std::make_unique<ComponentList>();
    EXPECT_EQ(Raised([&] { IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date); }), 5);
    m_App.Components->Add({"A.dll", "", "1.0.0", date, date, true, false});
    m_App.Components->Add({"b.chm", "", "0.0.0", date, date, true, false});
    m_App.Components->Add({"c.bin", "", "", {}, {}, true, false});
    EXPECT_FALSE(IsComponentOutOfDate(m_App, "a.dll", "1.0.0", date.PlusSeconds(9)));
    EXPECT_TRUE(IsComponentOutOfDate(m_App, "a.dll", "1.0.1", date));
    EXPECT_FALSE(IsComponentOutOfDate(m_App, "b.chm", "9.9.9", date));
    EXPECT_TRUE(IsComponentOutOfDate(m_App, "b.chm", "9.9.9", date.PlusSeconds(1)));
    EXPECT_TRUE(IsComponentOutOfDate(m_App, "c.bin", "0.0.1", date)) << "a record without a date is the oldest";
}

TEST_F(HelpersTest, SystemInformation) {
    const SystemInfo info(m_System.Machine);
    EXPECT_EQ(info.GetWindowsVersion(), "6.1.7601.2");
    EXPECT_EQ(info.WindowsDir() + info.SystemDir(), "C:\\windows\\C:\\windows\\system32\\");
    EXPECT_EQ(info.PercentMemoryFree(), 38) << "37.5, halves to even";
    EXPECT_EQ(info.FreeMegaBytesOnDisk(), 5120);
    EXPECT_TRUE(IsWindowsNT("6.1.7601.2"));
    EXPECT_TRUE(IsWindows2000OrLater(m_App));
    EXPECT_FALSE(IsWindowsNT("4.90.3000.1"));
    EXPECT_FALSE(IsWindows2000OrLater("4.90.3000.1"));
    EXPECT_FALSE(IsDevelopmentRun(m_App));
    // The metric by its number times 10 pixels of 15 twips: dialog frame 7 and frame 32, caption 4 and small
    // caption 51.
    Text metrics;
    for (std::int32_t style = 0; style <= 5; ++style) {
        const FormBorderMetrics border = GetFormBorderMetrics(m_App, style);
        metrics += std::to_string(border.Width / 150) + "/" + std::to_string(border.CaptionHeight / 150) + " ";
    }
    EXPECT_EQ(metrics, "0/0 7/4 32/4 7/4 7/51 32/51 ");
    EXPECT_EQ(GetBrowserVersion(m_App), "");
    m_System.Registry.WriteText(RegistryRoot::LocalMachine, "Software\\Microsoft\\Internet Explorer", "Version", "8.0");
    EXPECT_EQ(GetBrowserVersion(m_App), "8.0");
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
