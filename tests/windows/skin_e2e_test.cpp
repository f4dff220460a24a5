// The server's skin on the real program: what it names is another look, what it must not do it cannot.
#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "base/numbers.h"
#include "components/tbXML/XmlParser.h"
#include "windows/RunningProgram.h"
#include "windows/ScreenPixels.h"

namespace tb {
namespace {

// A program folder whose defaults are these bytes.
std::shared_ptr<ProgramFolder> FolderWith(const Text& defaults) {
    const auto folder = std::make_shared<ProgramFolder>();
    std::ofstream(folder->Path() / "Data" / "defaults.bin", std::ios::binary) << defaults;
    return folder;
}

// A part of a window, at its place in that.
struct Part {
    RECT Place;
    Text Caption;
};

struct SeenDialog {
    std::vector<Part> Parts;
    // At a free place of the ground, and of the corner below the bar.
    DWORD Ground = 0;
    DWORD Corner = 0;
};

constexpr POINT CornerPlace{11, 34};

// Drops a mail on the program and looks at the dialog that asks what it is, once its ground has that colour.
SeenDialog SeeDialog(const std::shared_ptr<ProgramFolder>& folder, DWORD ground) {
    const RunningProgram program(folder);
    const ScratchFolder scratch;
    const std::filesystem::path mail = scratch.Path() / "mail.eml";
    std::ofstream(mail, std::ios::binary) << "From: a@b.example\r\nSubject: one\r\n\r\nBody\r\n";
    const auto tool = BuiltProgram("dragsource.exe");
    EXPECT_EQ(ProgramProcess(tool, L"--choose s").WaitForEnd(), 0U);
    const ProgramProcess drag(tool, L"--onto \"Trawlbeam - Submissions\" --mail \"" + mail.wstring() + L"\"");
    HWND dialog = nullptr;
    SeenDialog seen;
    EXPECT_TRUE(Eventually([&] {
        dialog = GetAncestor(FindBoxButton(program.ProcessId(), "Assign Submission Category", "OK"), GA_ROOT);
        if (dialog == nullptr) return false;
        const ScreenPixels pixels = SeenOf(dialog);
        seen.Ground = pixels.At(6, pixels.Height - 6);
        seen.Corner = pixels.At(CornerPlace.x, CornerPlace.y);
        // The bar tells that the whole is there.
        return seen.Ground == ground && pixels.At(20, 10) != 0;
    })) << std::hex
        << seen.Ground;
    RECT whole{};
    GetWindowRect(dialog, &whole);
    for (const char* className : {"STATIC", "BUTTON", "TrawlbeamBox"}) {
        for (const auto& [window, text] : PartsOf(dialog, className)) {
            Part part{{}, text};
            GetWindowRect(window, &part.Place);
            OffsetRect(&part.Place, -static_cast<int>(whole.left), -static_cast<int>(whole.top));
            seen.Parts.push_back(part);
        }
    }
    return seen;
}

// The defaults come from the service, as it hands them out; whoever runs the test publishes them.
TEST(ServersSkin, ChangesWhatItNames) {
    const char* const served = std::getenv("TRAWLBEAM_SERVED_DEFAULTS");
    ASSERT_NE(served, nullptr);
    Win32Files disk;
    const ElementPtr built = ParseXml(ReadWholeFile(disk, TRAWLBEAM_SKIN))->FindElementAttribute2("Name", "frmSubCat");
    const auto bits = static_cast<DWORD>(ToInt32(built->FindAttributeValue("FormBackColor")));
    const DWORD paper = RGB(GetBValue(bits), GetGValue(bits), GetRValue(bits));
    const SeenDialog before = SeeDialog(std::make_shared<ProgramFolder>(), paper);
    const SeenDialog after = SeeDialog(FolderWith(ReadWholeFile(disk, served)), 0xFFEEDD);
    EXPECT_EQ(before.Corner, paper);
    EXPECT_EQ(after.Corner, 0xFF0000U) << "the picture";
    ASSERT_EQ(before.Parts.size(), after.Parts.size());
    Text changes;
    for (size_t index = 0; index < before.Parts.size(); ++index) {
        const Part& old = before.Parts[index];
        const Part& now = after.Parts[index];
        if (now.Caption != old.Caption) changes += old.Caption + " -> " + now.Caption + "\n";
        if (EqualRect(&now.Place, &old.Place)) continue;
        changes += now.Caption + " is " + std::to_string(now.Place.right - now.Place.left) + " wide\n";
        RECT place = old.Place;
        place.right = now.Place.right;
        EXPECT_TRUE(EqualRect(&now.Place, &place));
    }
    EXPECT_EQ(changes, "Category -> What is it?\nHelp is 67 wide\n");
}

// Sizes, places and colours that no window can have, parts that cannot be used, and more pictures than there is room.
Text HostileSkin() {
    const Text sizes = " Left='-2147483648' Top='2147483647' Width='2147483648' Height='-1' FontSize='1e300'";
    Text parts;
    for (const char* part : {"cmdButton", "picButtons", "lblMessage", "picIcon", "tbSkin1"}) {
        parts +=
            "<C Name='" + Text(part) + "' Visible='False' Enabled='False' ForeColor='0' BackColor='0'" + sizes + "/>";
    }
    return "<D><G NAME='Skin' EdgeRadius='2147483647' CaptionHeight='-1' CaptionFontSize='-1'><W Name='frmMessage'" +
           sizes +
           " FormBackColor='0' Visible='False' Enabled='False'><Caption CaptionHeight='2147483647' Close='0'/>"
           "<Graphics><Image Left='-1' Top='2147483648'>" +
           Text(10 << 20, 'R') + "</Image></Graphics><Components>" + parts + "</Components></W></G></D>";
}

void Press(WORD with, WORD key) {
    INPUT input[4]{};
    for (INPUT& one : input) one.type = INPUT_KEYBOARD;
    input[0].ki.wVk = input[3].ki.wVk = with;
    input[1].ki.wVk = input[2].ki.wVk = key;
    input[2].ki.dwFlags = input[3].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(with != 0 ? 4 : 2, with != 0 ? input : input + 1, sizeof *input);
}

TEST(HostileSkin, NeitherStopsTheProgramNorKeepsAWindowOpen) {
    const RunningProgram program(FolderWith(EncryptStringChk(HostileSkin())));
    for (const auto& [with, key] : {std::pair(0, VK_ESCAPE), std::pair(VK_MENU, VK_F4)}) {
        Text reply = "not yet";
        std::thread asker([&] { reply = Browser().Ask("Nope\tx"); });
        HWND box = nullptr;
        EXPECT_TRUE(Eventually([&] {
            box = FindWindowOf(program.ProcessId(), NormalClasses.Window, "Trawlbeam");
            return box != nullptr && GetForegroundWindow() == box;
        }));
        EXPECT_EQ(Browser().Ask("Check\thttps://phish.test"), RunningProgram::Blocked);
        EXPECT_FALSE(IsWindowVisible(FindBoxButton(program.ProcessId(), "Trawlbeam", "OK"))) << "the skin is in use";
        RECT place{};
        RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        GetWindowRect(box, &place);
        EXPECT_TRUE(UnionRect(&place, &place, &screen) && EqualRect(&place, &screen)) << "on the screen";
        Press(static_cast<WORD>(with), static_cast<WORD>(key));
        EXPECT_TRUE(Eventually([&] { return !IsWindowVisible(box); })) << key;
        if (IsWindow(box)) PostMessageW(box, WM_CLOSE, 0, 0);
        asker.join();
        EXPECT_EQ(reply, "");
    }
}

}  // namespace
}  // namespace tb
