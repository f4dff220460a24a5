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
#include "platform/win32/Win32FileVersions.h"
#include "platform/win32/Win32Files.h"
#include "windows/FakeChannel.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

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
void ExpectVersions() {
    const auto strings = Win32FileVersions().Strings(BuiltProgram(Face::File), {"FileVersion"});
    ASSERT_TRUE(strings) << Face::File;
    EXPECT_EQ(strings->at(0), TRAWLBEAM_VERSION);
    void* const entry = ComponentLibrary(BuiltProgram(Face::File)).Function(Face::Entry);
    EXPECT_NE(&FaceOf<Face>(entry), nullptr);
    EXPECT_EQ(Raised([&] { FaceOf<Newer<Face>>(entry); }), 429) << "another version";
    EXPECT_EQ(Raised([&] { FaceOf<Face>(nullptr); }), 429) << "no file";
}

TEST(Components, HaveAVersionAndOneFace) {
    ExpectVersions<tbBHOCfgFace>();
    ExpectVersions<tbBHBridgeFace>();
    ExpectVersions<tbDTab6Face>();
    ExpectVersions<MBListExFace>();
    EXPECT_TRUE(Win32FileVersions().Strings(BuiltProgram("TrawlbeamHelper.dll"), {"FileVersion"}));
}

TEST(Components, ConfigurationIsSavedAndLoadedBack) {
    const ScratchFolder folder;
    const auto file = folder.Path() / "TB.BIN";
    tbBHOCfg saved(Built<tbBHOCfgFace>());
    EXPECT_FALSE(saved.Flag(BHOOption::AutoLaunch));
    saved.SetFlag(BHOOption::AutoLaunch, true);
    const std::uint32_t picture = saved.Add(BHOSection::Graphics);
    saved.Set(BHOSection::Graphics, picture, "Text", Text("\0\xff picture", 10));
    saved.Save(file);

    tbBHOCfg loaded(Built<tbBHOCfgFace>());
    loaded.Load(file);
    EXPECT_TRUE(loaded.Flag(BHOOption::AutoLaunch));
    ASSERT_EQ(loaded.Count(BHOSection::Graphics), 1U);
    EXPECT_EQ(loaded.Get(BHOSection::Graphics, 0, "text"), Text("\0\xff picture", 10));
    Win32Files().Append(file, "x");
    Text reason;
    Trap([&] { loaded.Load(file); }, [&](const RuntimeError& error) { reason = error.Line(); });
    EXPECT_EQ(reason, "321 Invalid file format: the file goes on behind its end");
    EXPECT_EQ(loaded.Count(BHOSection::Graphics), 1U);
    EXPECT_EQ(Raised([&] { loaded.Get(static_cast<BHOSection>(9), 0, "x"); }), 5);
    EXPECT_EQ(Raised([&] { loaded.Load(folder.Path() / "none"); }), 53);
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
    const int before = program.Handled();
    const ULONGLONG start = GetTickCount64();
    EXPECT_EQ(bridge.Ask("Check\thttp://a", 200), std::nullopt);
    EXPECT_GE(GetTickCount64() - start, 150U);
    EXPECT_EQ(program.Handled(), before);
}

class Controls : public testing::Test {
protected:
    OwnedWindow Parent{CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 500, 400, nullptr,
                                       nullptr, nullptr, nullptr)};

    static HWND Inside(void* control) { return GetWindow(static_cast<HWND>(control), GW_CHILD); }
    static void Click(HWND window, LONG x, LONG y) {
        PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        PostMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        Serve();
    }
    static void Serve() {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    }
    static Text ClassOf(HWND window) {
        char name[64] = "";
        GetClassNameA(window, name, sizeof name);
        return name;
    }
    static RECT Place(HWND window) {
        RECT place{};
        GetWindowRect(window, &place);
        MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
};

TEST_F(Controls, TabsAreTheSystemsAndTellWhatTheUserSelects) {
    std::vector<std::int32_t> told;
    tbDTab6 strip(Built<tbDTab6Face>(), Parent.Get(), 10, 20, 300, 200, [&](std::int32_t tab) { told.push_back(tab); });
    const HWND tabs = Inside(strip.Window());
    EXPECT_EQ(ClassOf(tabs), WC_TABCONTROLA);
    EXPECT_EQ(strip.Add("m", "Main"), 0);
    EXPECT_EQ(strip.Add("d", "Develop\xe9"), 1);
    EXPECT_EQ(strip.Add("", "Third"), 2);
    char caption[64] = "";
    TCITEMA item{TCIF_TEXT, 0, 0, caption, sizeof caption, 0, 0};
    ASSERT_TRUE(SendMessageA(tabs, TCM_GETITEMA, 1, reinterpret_cast<LPARAM>(&item)));
    EXPECT_EQ(Text(item.pszText), "Develop\xe9");
    EXPECT_EQ(strip.Caption(1), "Develop\xe9");
    EXPECT_EQ(strip.Selected(), 0);

    RECT second{};
    SendMessageA(tabs, TCM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
    Click(tabs, second.left + 5, second.top + 5);
    EXPECT_EQ(told, std::vector<std::int32_t>{1});
    EXPECT_EQ(strip.Selected(), 1);
    strip.Select(2);
    EXPECT_EQ(SendMessageA(tabs, TCM_GETCURSEL, 0, 0), 2);
    strip.Remove(0);
    EXPECT_EQ(SendMessageA(tabs, TCM_GETCURSEL, 0, 0), 1) << "the same tab";
    EXPECT_EQ(SendMessageA(tabs, TCM_GETITEMCOUNT, 0, 0), strip.Count());
    EXPECT_EQ(strip.Find("D"), 0);
    EXPECT_EQ(told.size(), 1U) << "what the program does is not told";
    EXPECT_EQ(Raised([&] { strip.Select(2); }), 9);

    strip.Move(0, 0, 400, 300);
    EXPECT_EQ(Place(tabs).right, 400);
    const auto [left, top, width, height] = strip.Interior();
    EXPECT_GT(top, 10) << "below the captions";
    EXPECT_GT(width, 300);
    EXPECT_LE(left + width, 400);
    EXPECT_LE(top + height, 300);
}

TEST_F(Controls, ListIsTheSystemsAndTellsWhatTheUserDoes) {
    MBListEx list(Built<MBListExFace>(), Parent.Get(), 0, 0, 400, 300);
    const HWND view = Inside(list.Window());
    EXPECT_EQ(ClassOf(view), WC_LISTVIEWA);
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
        for (int row = 0; row < static_cast<int>(SendMessageA(view, LVM_GETITEMCOUNT, 0, 0)); ++row) {
            char cell[64] = "";
            LVITEMA item{};
            item.iSubItem = column;
            item.pszText = cell;
            item.cchTextMax = sizeof cell;
            SendMessageA(view, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
            cells += Text(cell) + '|';
        }
        return cells;
    };
    const auto marked = [&] {
        return static_cast<std::int32_t>(SendMessageA(view, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    };
    EXPECT_EQ(shown(0), "beta|Alpha|caf\xe9|");
    Text told;
    list.Selection = [&](std::int32_t row) { told += "row " + std::to_string(row) + ' '; };
    list.DoubleClick = [&](std::int32_t row) { told += "double " + std::to_string(row) + ' '; };
    list.ColumnClick = [&](std::int32_t column) { told += "column " + std::to_string(column) + ' '; };
    list.Select(1);
    list.Sort(0);
    EXPECT_EQ(shown(0), "Alpha|beta|caf\xe9|");
    EXPECT_EQ(marked(), 0) << "the selection stays with its row";
    list.Sort(1, ListOrder::ByNumber, true);
    EXPECT_EQ(shown(1), "x|10|9|");
    EXPECT_EQ(marked(), list.Selected());
    EXPECT_EQ(list.Get(list.Selected(), 0), "Alpha");
    EXPECT_EQ(told, "") << "what the program does is not told";

    SendMessageA(view, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(told, "row -1 row 2 ") << "the view takes the selection away first";
    told.clear();
    RECT first{LVIR_LABEL, 0, 0, 0};
    SendMessageA(view, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
    SendMessageA(view, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(first.left + 5, first.top + 5));
    EXPECT_NE(told.find("double 0 "), Text::npos) << told;
    told.clear();
    Click(reinterpret_cast<HWND>(SendMessageA(view, LVM_GETHEADER, 0, 0)), 200, 5);
    EXPECT_EQ(told, "column 1 ");

    list.Remove(list.Find(0, "ALPHA"));
    EXPECT_EQ(shown(0), "caf\xe9|beta|");
    list.Clear();
    EXPECT_EQ(SendMessageA(view, LVM_GETITEMCOUNT, 0, 0), 0);
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
