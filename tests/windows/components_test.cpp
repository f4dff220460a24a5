// The components as the files that they are, through their faces.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include "components/MBListEx/MBListEx.h"
#include "components/tbBHBridge/tbBHBridge.h"
#include "components/tbBHOCfg/tbBHOCfg.h"
#include "components/tbDTab6/tbDTab6.h"
#include "fakes/Raised.h"
#include "platform/win32/ComponentLibrary.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32FileVersions.h"
#include "windows/FakeChannel.h"
#include "windows/ProgramProcess.h"

namespace tb {
namespace {

// Stays loaded until the process ends.
template <typename Face>
const Face& Built() {
    return FaceOf<Face>(ComponentLibrary(BuiltProgram(Face::File)).Function(Face::Entry));
}

template <typename Face>
struct Newer : Face {
    static constexpr std::uint32_t Version = Face::Version + 1;
};

template <typename Face>
void ExpectOneFace() {
    void* const entry = ComponentLibrary(BuiltProgram(Face::File)).Function(Face::Entry);
    EXPECT_EQ(Raised([&] { FaceOf<Face>(entry); }), 0);
    EXPECT_EQ(Raised([&] { FaceOf<Newer<Face>>(entry); }), 429) << "another version";
    EXPECT_EQ(Raised([&] { FaceOf<Face>(nullptr); }), 429) << "no file";
}

TEST(Components, HaveAVersionAndOneFace) {
    ExpectOneFace<tbBHOCfgFace>();
    ExpectOneFace<tbBHBridgeFace>();
    ExpectOneFace<tbDTab6Face>();
    ExpectOneFace<MBListExFace>();
    for (const char* file : {"tbBHOCfg.dll", "tbBHBridge.dll", "tbDTab6.ocx", "MBListEx.ocx", "TrawlbeamHelper.dll"}) {
        EXPECT_EQ(Win32FileVersions().Strings(BuiltProgram(file), {"FileVersion"}),
                  std::vector<Text>{TRAWLBEAM_VERSION});
    }
}

TEST(Components, BridgeAsksTheProgramAndWaitsForItABoundedTime) {
    const tbBHBridge bridge(Built<tbBHBridgeFace>());
    {
        const OnlyProgram nobody;
        EXPECT_FALSE(bridge.Locate());
        EXPECT_EQ(bridge.Ask("Check\thttp://a", 1000), std::nullopt);
        EXPECT_FALSE(bridge.WakeUp(1000));
    }
    FakeChannel program;
    EXPECT_TRUE(bridge.Locate());
    program.Reply = Text(5000, '\xe9');
    EXPECT_EQ(bridge.Ask("Check\thttp://a\t192.0.2.1", DeadlineMs), program.Reply);
    EXPECT_EQ(program.Request().substr(program.Request().find('\t')), "\tCheck\thttp://a\t192.0.2.1");
    program.Reply.clear();
    EXPECT_EQ(bridge.Ask("Allow\thttp://a", DeadlineMs), "") << "an empty reply is one";
    EXPECT_TRUE(bridge.WakeUp(DeadlineMs));
    EXPECT_EQ(program.Request(), WakeUpText);
    EXPECT_EQ(Raised([&] { bridge.Ask("x", 0); }), 5);

    program.Hang();
    EXPECT_EQ(bridge.Ask("Check\thttp://a", 200), std::nullopt);
}

class Controls : public testing::Test {
protected:
    OwnedWindow Parent{CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 500, 400, nullptr,
                                       nullptr, nullptr, nullptr)};

    static HWND Inside(void* control) { return GetWindow(static_cast<HWND>(control), GW_CHILD); }
    static void Click(HWND window, LONG x, LONG y) {
        PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        PostMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        ServeWaitingMessages();
    }
};

TEST_F(Controls, TabsAreTheSystemsAndTellWhatTheUserSelects) {
    std::vector<std::int32_t> told;
    tbDTab6 strip(Built<tbDTab6Face>(), Parent.Get(), 10, 20, 300, 200, [&](std::int32_t tab) { told.push_back(tab); });
    const HWND tabs = Inside(strip.Window());
    strip.Add("m", "Main");
    EXPECT_EQ(strip.Add("d", "Develop\xe9"), 1);
    strip.Add("", "Third");
    char caption[64] = "";
    TCITEMA item{TCIF_TEXT, 0, 0, caption, sizeof caption, 0, 0};
    ASSERT_TRUE(TabCtrl_GetItem(tabs, 1, &item));
    EXPECT_EQ(Text(caption), "Develop\xe9");
    EXPECT_EQ(strip.Caption(1), "Develop\xe9");

    RECT second{};
    TabCtrl_GetItemRect(tabs, 1, &second);
    Click(tabs, second.left + 5, second.top + 5);
    EXPECT_EQ(told, std::vector<std::int32_t>{1});
    EXPECT_EQ(strip.Selected(), 1);
    strip.Select(2);
    EXPECT_EQ(TabCtrl_GetCurSel(tabs), 2);
    strip.Remove(0);
    EXPECT_EQ(TabCtrl_GetCurSel(tabs), 1) << "the same tab";
    EXPECT_EQ(TabCtrl_GetItemCount(tabs), 2);
    EXPECT_EQ(told.size(), 1U) << "what the program does is not told";
    EXPECT_EQ(Raised([&] { strip.Select(2); }), 9);

    strip.Move(0, 0, 400, 300);
    RECT place{};
    GetClientRect(tabs, &place);
    EXPECT_EQ(place.right, 400);
    const auto [left, top, width, height] = strip.Interior();
    EXPECT_GT(top, 10) << "below the captions";
    EXPECT_GT(width, 300);
    EXPECT_LE(left + width, 400);
    EXPECT_LE(top + height, 300);
}

TEST_F(Controls, ListIsTheSystemsAndTellsWhatTheUserDoes) {
    MBListEx list(Built<MBListExFace>(), Parent.Get(), 0, 0, 400, 300);
    const HWND view = Inside(list.Window());
    list.AddColumn("Name", 150);
    list.AddColumn("Size", 100);
    for (const auto& [name, size] : {std::pair("beta", "9"), std::pair("Alpha", "10"), std::pair("caf\xe9", "x")}) {
        const std::int32_t row = list.Add();
        list.Set(row, 0, name);
        list.Set(row, 1, size);
    }
    // As the view shows them.
    const auto shown = [&](std::int32_t column) {
        Text cells;
        for (int row = 0; row < ListView_GetItemCount(view); ++row) {
            char cell[64] = "";
            ListView_GetItemText(view, row, column, cell, sizeof cell);
            cells += Text(cell) + '|';
        }
        return cells;
    };
    const auto marked = [&] { return ListView_GetNextItem(view, -1, LVNI_SELECTED); };
    Text told;
    list.Selection = [&](std::int32_t row) { told += "row " + std::to_string(row) + ' '; };
    list.DoubleClick = [&](std::int32_t row) { told += "double " + std::to_string(row) + ' '; };
    list.ColumnClick = [&](std::int32_t column) { told += "column " + std::to_string(column) + ' '; };
    list.Select(0);
    list.Sort(1, ListOrder::ByNumber, true);
    EXPECT_EQ(shown(1), "x|10|9|");
    EXPECT_EQ(marked(), 2) << "the selection stays with its row";
    list.Select(1);
    EXPECT_EQ(list.Get(marked(), 0), "Alpha");
    EXPECT_EQ(told, "") << "what the program does is not told";

    SendMessageA(view, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(told, "row -1 row 2 ") << "the view takes the selection away first";
    told.clear();
    RECT first{};
    ListView_GetItemRect(view, 0, &first, LVIR_LABEL);
    SendMessageA(view, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(first.left + 5, first.top + 5));
    EXPECT_NE(told.find("double 0 "), Text::npos) << told;
    told.clear();
    Click(reinterpret_cast<HWND>(SendMessageA(view, LVM_GETHEADER, 0, 0)), 200, 5);
    EXPECT_EQ(told, "column 1 ");

    list.Remove(list.Find(0, "ALPHA"));
    EXPECT_EQ(shown(0), "caf\xe9|beta|");
    list.Clear();
    EXPECT_EQ(shown(0), "");
    EXPECT_EQ(Raised([&] { list.Get(0, 0); }), 9);
}

TEST_F(Controls, OutliveTheirParentAsHandles) {
    EXPECT_EQ(Raised([] { MBListEx(Built<MBListExFace>(), nullptr, 0, 0, 1, 1); }), 5);
    tbDTab6 strip(Built<tbDTab6Face>(), Parent.Get(), 0, 0, 100, 100, {});
    MBListEx list(Built<MBListExFace>(), Parent.Get(), 0, 0, 100, 100);
    list.Add();
    Parent.Close();
    EXPECT_EQ(Raised([&] { strip.Add("", ""); }), 91);
    EXPECT_EQ(Raised([&] { list.Add(); }), 91);
    EXPECT_EQ(list.Count(), 1);
}

}  // namespace
}  // namespace tb
