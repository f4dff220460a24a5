#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "fakes/FakeSound.h"
#include "fakes/FakeTrayIcon.h"
#include "fakes/FakeWindowSystem.h"
#include "fakes/RecordedLog.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/sounds/Sounds.h"
#include "urlcheck/sounds/WaveFile.h"
#include "urlcheck/tray/frmSysTray.h"

namespace tb {
namespace {

constexpr WindowsVersion Windows2000{2, 5, 0};
constexpr WindowsVersion NT4{2, 4, 0};
constexpr WindowsVersion Windows98{1, 4, 10};
constexpr WindowsVersion WindowsMe{1, 4, 90};

class TrayTest : public ::testing::Test {
protected:
    std::unique_ptr<frmSysTray> Make(const WindowsVersion& version) {
        auto tray = std::make_unique<frmSysTray>(
            m_Forms, frmSysTray::Environment{m_Icon, m_Windows, version, m_Channel,
                                             [this](const Text& line) { m_Broken.push_back(line); }});
        tray->SysTrayMouseDown.Connect([this](std::int32_t button) { Note("down " + std::to_string(button)); });
        tray->SysTrayMouseUp.Connect([this](std::int32_t button) { Note("up " + std::to_string(button)); });
        tray->SysTrayMouseMove.Connect([this] { Note("move"); });
        tray->SysTrayDoubleClick.Connect([this](std::int32_t button) { Note("double " + std::to_string(button)); });
        tray->MenuClick.Connect(
            [this](std::int32_t index, const Text& key) { Note(std::to_string(index) + " " + key); });
        tray->BalloonShow.Connect([this] { Note("balloon"); });
        tray->BalloonHide.Connect([this] { Note("hidden"); });
        tray->BalloonTimeout.Connect([this] { Note("timeout"); });
        tray->BalloonClicked.Connect([this] { Note("clicked"); });
        return tray;
    }
    void Note(const Text& event) { m_Events.push_back(event); }
    Text Events() { return Join(std::exchange(m_Events, {}), ", "); }
    // Another process sets a text into the box.
    void Set(const Text& line) { m_System.Boxes.at("form1.box1")->TextChanged(line); }

    FakeWindowSystem m_System;
    Forms m_Forms{&m_System};
    FakeTrayIcon m_Icon;
    FakeWindowText m_Windows;
    std::vector<Text> m_Events;
    std::vector<Text> m_Broken;
    FakeFiles m_Files;
    RecordedLog m_Log;
    StandaloneVerdictHost m_Host{m_Log};
    const std::shared_ptr<const BrowserChannel> m_Channel = std::make_shared<BrowserChannel>(
        std::make_shared<UrlVerdict>(std::make_shared<EvilDB>(m_Files, m_Host, std::filesystem::path()), m_Host));
    std::unique_ptr<frmSysTray> m_Tray = Make(Windows2000);
};

TEST_F(TrayTest, TheIconComesAndGoesWithTheWindowWhateverTheShellAnswers) {
    m_Icon.Answer = false;
    m_Tray->SetTooltip("early");
    m_Tray->Load();
    const NotifyIconRecord& record = m_Icon.Calls.at(0).Record;
    EXPECT_EQ(record.Window, 4711);
    EXPECT_EQ(record.Icon, 77) << "the window's own";
    EXPECT_EQ(record.Tip, "early");
    EXPECT_EQ(m_Icon.Take(), "add 7, version 3");
    m_System.FormsByName.at("form1")->CloseAsked();
    EXPECT_TRUE(m_Tray->IsLoaded()) << "the channel stays";
    m_Icon.Listener->TaskbarCreated();
    EXPECT_EQ(m_Icon.Take(), "add 7, version 3");
    m_Tray->SetIconHandle(77);
    m_Tray->SetIconHandle(78);
    EXPECT_EQ(m_Icon.Take(), "modify 2");
    m_Tray->Unload();
    EXPECT_EQ(m_Icon.Take(), "delete");
    m_Tray.reset();
    EXPECT_EQ(m_Icon.Take(), "") << "taken away once";
}

TEST_F(TrayTest, MouseMessagesBecomeEventsByTheTable) {
    m_Tray->Load();
    for (std::uint32_t message = 500; message < 1100; ++message) m_Icon.Listener->TrayMessage(message);
    EXPECT_EQ(Events(), "move, down 1, double 1, down 2, up 2, double 2, balloon, hidden, timeout, clicked");
}

TEST_F(TrayTest, TheVersionDecidesTheRecordAndTheBalloons) {
    const auto describe = [this](const WindowsVersion& version) {
        m_Icon.Take();
        const auto tray = Make(version);
        tray->Load();
        tray->SetTooltip(Text(200, 't'));
        tray->SetTooltip(Text(200, 't'));
        const size_t tip = tray->Tooltip().size();
        tray->ShowBalloonTip(Text(300, 'i'), Text(100, 'h'), 1, 5000);
        const NotifyIconRecord& record = m_Icon.Calls.back().Record;
        EXPECT_TRUE(record.Info.empty() || (record.Info.size() == 255 && record.InfoTitle.size() == 63));
        return Text(tray->IsWide() ? "wide" : "ansi") + " " + std::to_string(tip) + ": " + m_Icon.Take();
    };
    EXPECT_EQ(describe(Windows2000), "wide 127: add 7, version 3, modify 4, modify 4, modify 16");
    EXPECT_EQ(describe(NT4), "wide 63: add 7, modify 4, modify 4");
    EXPECT_EQ(describe(Windows98), "ansi 63: add 7, modify 4") << "an unchanged tip is not told again";
    EXPECT_EQ(describe(WindowsMe), "ansi 127: add 7, version 3, modify 4, modify 16");
}

TEST_F(TrayTest, TheMenuIsBuiltChangedAndChosenFrom) {
    m_Tray->Load();
    m_Tray->AddMenuItem("Anti-Scam", "dblclick", true);
    m_Tray->AddMenuItem("-", "");
    m_Tray->AddMenuItem("&Main", "menu1");
    EXPECT_EQ(m_Tray->AddMenuItem("&Exit", "exit"), 3);
    EXPECT_EQ(m_Tray->ChangeMenuItem("&Leave", "exit"), 3);
    EXPECT_EQ(m_Tray->ChangeMenuItem("x", "EXIT"), -1) << "keys are compared exactly";
    for (const std::int32_t index : {2, 9}) m_Tray->EnableMenuItem(index, false);
    m_System.MenuAnswer = 4;
    m_System.Take();
    EXPECT_TRUE(m_Tray->ShowMenu());
    EXPECT_EQ(m_System.Take(), "form1.foreground, form1.menu 2");
    EXPECT_EQ(Events(), "3 exit");
    EXPECT_TRUE(m_System.MenuRows.at(0).IsDefault);
    EXPECT_FALSE(m_System.MenuRows.at(2).IsEnabled);
    EXPECT_EQ(m_System.MenuRows.at(3).Caption, "&Leave");
    for (const std::int32_t index : {2, -1}) m_Tray->RemoveMenuItem(index);
    EXPECT_EQ(m_Tray->DefaultMenuIndex(), 0);
    for (int time = 0; time < 2; ++time) m_Tray->RemoveMenuItem(0);
    EXPECT_EQ(m_Tray->DefaultMenuIndex(), -1);
    EXPECT_EQ(m_Tray->AddMenuItem("again", "a"), 0) << "the item that was there at load";
    EXPECT_EQ(m_Tray->AddMenuItem("next", "b"), 4);
    // An item may go while its click is handled.
    m_Tray->MenuClick.Connect([this](std::int32_t index, const Text& key) {
        m_Tray->RemoveMenuItem(index);
        Note("still " + key);
    });
    m_System.MenuAnswer = 4;
    m_Tray->ShowMenu();
    EXPECT_EQ(Events(), "4 b, still b");
    EXPECT_EQ(m_Tray->MenuItem(4), nullptr);
}

TEST_F(TrayTest, ATextInTheBoxIsAnsweredAndTheBoxCleared) {
    m_Tray->Load();
    // Another one comes inside the reply; it is the very same line, so the box holds it twice in a row.
    m_Windows.Meanwhile = [this] { Set("17\tCheck\thttp://x/\t"); };
    Set("17\tCheck\thttp://x/\t");
    EXPECT_EQ(m_Log.Take(), std::vector<Text>(2, "1 Checking: http://x (OK)")) << "judged once each";
    EXPECT_EQ(m_Tray->txtBHOMessage.GetText(), "");
    Set("TBWAKEUP");
    EXPECT_EQ(Events(), "double 1");
    Set("no window\tCheck");
    EXPECT_TRUE(m_Broken.at(0).starts_with("Browser channel: "));
    EXPECT_EQ(m_Tray->txtBHOMessage.GetText(), "");
    EXPECT_EQ(m_Windows.Sent, std::vector<Text>(2, "17: OK"));
    // The box is cleared also when a handler fails.
    m_Tray->SysTrayDoubleClick.Connect([](std::int32_t) { throw Error(ErrorNumber::Internal); });
    EXPECT_THROW(Set("TBWAKEUP"), RuntimeError);
    EXPECT_EQ(m_Tray->txtBHOMessage.GetText(), "");
}

Text Chunk(const Text& name, const Text& content) {
    return name + Text(1, static_cast<char>(content.size())) + Text(3, '\0') + content + Text(content.size() % 2, '\0');
}

Text Wave(const Text& chunks) { return Chunk("RIFF", "WAVE" + chunks); }

const Text Format = Chunk("fmt ", Text(16, '\1'));

TEST(Sounds, ArePlayedWithoutBlockingAndWithoutCuttingOffAnother) {
    FakeSound device;
    const Text click = Wave(Format + Chunk("data", "click"));
    const Text alert = Wave(Format + Chunk("LIST", "odd") + Chunk("data", "alert!"));
    Sounds sounds(device, click, alert);
    sounds.PlayAlertSound(false);
    sounds.PlayClickSound(false);
    sounds.PlayAlertSound(true);
    sounds.PlayClickSound(true);
    ASSERT_EQ(device.Played.size(), 2U);
    EXPECT_EQ(*device.Played[0].Wave, alert);
    EXPECT_EQ(*device.Played[1].Wave, click);
    EXPECT_EQ(device.Played[0].Flags, 8215U);
}

TEST(Sounds, WhatIsNoWholeWaveFileIsNeverPlayed) {
    const Text whole = Wave(Format + Chunk("data", "samples!"));
    ASSERT_TRUE(IsWaveFile(whole));
    EXPECT_TRUE(IsWaveFile(whole + "behind it"));
    for (size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(IsWaveFile(TextView(whole).substr(0, length))) << length;
    }
    for (const Text& chunks : {Format, Chunk("data", "no format"), Chunk("fmt ", "short") + Chunk("data", "x"),
                               Format + "data\xFF\xFF\xFF\xFF"}) {
        EXPECT_FALSE(IsWaveFile(Wave(chunks)));
    }
    FakeSound device;
    Sounds sounds(device, "", "not a wave");
    sounds.PlayAlertSound(true);
    sounds.PlayClickSound(true);
    EXPECT_TRUE(device.Played.empty());
}

}  // namespace
}  // namespace tb
