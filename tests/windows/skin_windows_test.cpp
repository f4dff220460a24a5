// Windows in the built skin as the user sees them: read from the screen pixel by pixel and beside what the skin
// document says, at whatever dots an inch the screen has.
#include <cmath>

#include "base/numbers.h"
#include "ui/skin/SkinPictures.h"
#include "windows/ScreenPixels.h"
#include "windows/SkinnedWindows.h"

namespace tb {
namespace {

class SkinWindowsTest : public SkinnedWindows {
protected:
    // The nearest value of an attribute around the bar of a window: there, at the window, at the root.
    Text Said(const Text& window, const char* name) const {
        const ElementPtr element = Program.SkinRoot->FindElementAttribute2("Name", window);
        for (const ElementPtr& level : {element->FindElement("Caption"), element, Program.SkinRoot}) {
            if (level && !level->FindAttributeValue(name).empty()) return level->FindAttributeValue(name);
        }
        return "0";
    }
    std::int32_t Number(const Text& window, const char* name) const { return ToInt32(Said(window, name)); }
    PictureRef PictureOf(const ElementPtr& element) const { return m_System.Decode(PictureBytes(element->Body())); }

    static void Put(HDC paper, const Picture& picture, int left, int top) {
        for (int y = 0; y < picture.Size.Height; ++y) {
            for (int x = 0; x < picture.Size.Width; ++x) {
                const std::uint32_t pixel = picture.Pixels.at(static_cast<size_t>(y * picture.Size.Width + x));
                const int alpha = static_cast<int>(pixel >> 24);
                if (alpha == 0) continue;
                const COLORREF below = GetPixel(paper, left + x, top + y);
                const auto mixed = [&](int shift, BYTE under) {
                    return (static_cast<int>(pixel >> shift & 0xFF) * alpha + under * (255 - alpha)) / 255;
                };
                SetPixel(paper, left + x, top + y,
                         RGB(mixed(16, GetRValue(below)), mixed(8, GetGValue(below)), mixed(0, GetBValue(below))));
            }
        }
    }
    static void Line(HDC paper, std::int32_t color, int left, int top, int right, int bottom) {
        SetDCPenColor(paper, static_cast<COLORREF>(color));
        MoveToEx(paper, left, top, nullptr);
        LineTo(paper, right, bottom);
    }
    static void Fill(HDC paper, std::int32_t color, int width, int height) {
        const RECT area{0, 0, width, height};
        SetDCBrushColor(paper, static_cast<COLORREF>(color));
        FillRect(paper, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
    static BYTE Lighter(BYTE channel, int percent) {
        return static_cast<BYTE>(std::min(255.0, std::nearbyint(channel * (100 + percent) / 100.0)));
    }

    // The bar that the document tells, without a title.
    void DrawBar(HDC paper, const Text& window, int width, bool active) const {
        const ElementPtr bar = Program.SkinRoot->FindElementAttribute2("Name", window)->FindElement("Caption");
        const int height = Pixels(Number(window, "CaptionHeight"));
        Fill(paper, Number(window, "CaptionBackColor"), width, height);
        Put(paper, *PictureOf(bar), 0, 0);
        const int factor = Number(window, "CaptionNonFocusFactor");
        for (int y = 0; y < height && !active; ++y) {
            for (int x = 0; x < width; ++x) {
                const COLORREF was = GetPixel(paper, x, y);
                if (was == 0xFFFFFF) continue;
                SetPixel(paper, x, y,
                         RGB(Lighter(GetRValue(was), factor), Lighter(GetGValue(was), factor),
                             Lighter(GetBValue(was), factor)));
            }
        }
        if (bar->FindAttributeValue("Close") == "1") {
            const ElementPtr globals = Program.SkinRoot->FindElementAttribute2("Name", "Globals");
            const PictureRef box = PictureOf(globals->FindElementAttribute2("Name", active ? "X" : "XInactive"));
            Put(paper, *box, width - box->Size.Width - 8, (height - 2 - box->Size.Height) / 2);
        }
        Line(paper, Number(window, "CaptionLineColor1"), 0, height - 2, width, height - 2);
        Line(paper, Number(window, "CaptionLineColor2"), 0, height - 1, width, height - 1);
    }

    // The whole window that the document tells, at the size that it has.
    ScreenPixels Told(const Form& form, bool active) const {
        const Text window = form.Name();
        const ElementPtr element = Program.SkinRoot->FindElementAttribute2("Name", window);
        const int width = Pixels(form.Width());
        const int height = Pixels(form.Height());
        const int corner = Number(window, "EdgeRadius");
        const pcMemDC surface(width, height);
        const HDC paper = surface.hDC();
        Fill(paper, Number(window, "FormBackColor"), width, height);
        if (const ElementPtr graphics = element->FindElement("Graphics")) {
            for (const ElementPtr& image : *graphics) {
                Put(paper, *PictureOf(image), Pixels(ToInt32(image->FindAttributeValue("Left"))),
                    Pixels(ToInt32(image->FindAttributeValue("Top"))));
            }
        }
        const Selected pen(paper, GetStockObject(DC_PEN));
        const Selected brush(paper, GetStockObject(NULL_BRUSH));
        SetDCPenColor(paper, static_cast<COLORREF>(Number(window, "Border2")));
        RoundRect(paper, 1, 1, width - 2, height - 2, corner - 1, corner - 1);
        Line(paper, Number(window, "CaptionTopColor2"), 1, 1, width - 2, 1);
        Line(paper, Number(window, "CaptionTopColor3"), 2, 2, width - 3, 2);
        SetDCPenColor(paper, static_cast<COLORREF>(Number(window, "Border1")));
        RoundRect(paper, 0, 0, width - 1, height - 1, corner, corner);
        Line(paper, Number(window, "CaptionTopColor1"), 0, 0, width - 1, 0);
        if (element->FindElement("Caption")) {
            const pcMemDC bar(width - 5, Pixels(Number(window, "CaptionHeight")));
            const Selected barPen(bar.hDC(), GetStockObject(DC_PEN));
            DrawBar(bar.hDC(), window, width - 5, active);
            bar.Draw(paper, 0, 0, 0, 0, 2, 3);
        }
        return ReadPixels(paper, {0, 0, width, height});
    }
    // Where pictures are scaled, half clear pixels are mixed with what lies beneath, and roundings add up.
    bool Agree(DWORD seen, DWORD told) const {
        const int most = Pixels(1440) == 96 ? 0 : 3;
        for (const int shift : {0, 8, 16}) {
            const int difference = static_cast<int>(seen >> shift & 0xFF) - static_cast<int>(told >> shift & 0xFF);
            if (std::abs(difference) > most) return false;
        }
        return true;
    }
    // The first pixel inside the outline that is not as told; empty when all are.
    Text FirstDifference(HWND window, const ScreenPixels& told, const OwnedRegion& outline) const {
        const ScreenPixels seen = SeenOf(window);
        for (LONG y = 0; y < told.Height; ++y) {
            for (LONG x = 0; x < told.Width; ++x) {
                if (Agree(seen.At(x, y), told.At(x, y))) continue;
                if (!PtInRegion(outline.Get(), static_cast<int>(x), static_cast<int>(y))) continue;
                char line[64];
                std::snprintf(line, sizeof line, "%ld, %ld: %06lX, told %06lX", x, y, seen.At(x, y), told.At(x, y));
                return line;
            }
        }
        return {};
    }
    void ExpectAsTold(Form& form, bool active) const {
        const ScreenPixels told = Told(form, active);
        const int corner = Number(form.Name(), "EdgeRadius");
        const OwnedRegion outline(
            CreateRoundRectRgn(0, 0, static_cast<int>(told.Width), static_cast<int>(told.Height), corner, corner));
        const OwnedRegion has(CreateRectRgn(0, 0, 1, 1));
        EXPECT_EQ(GetWindowRgn(WindowOf(form), has.Get()), COMPLEXREGION);
        // Equal regions may be made of other rectangles.
        EXPECT_EQ(CombineRgn(has.Get(), has.Get(), outline.Get(), RGN_XOR), NULLREGION) << form.Name();
        // What was drawn last may not have reached the screen.
        Served([&] {
            PutBack(form);
            return FirstDifference(WindowOf(form), told, outline).empty();
        });
        EXPECT_EQ(FirstDifference(WindowOf(form), told, outline), "") << form.Name() << " " << active;
    }
};

TEST_F(SkinWindowsTest, OutlineBorderAndBarAreAsTold) {
    for (const char* name : {"frmAbout", "frmNotify", "frmSplash"}) {
        const auto form = Made(name);
        Show(*form);
        ExpectAsTold(*form, true);
        Show(m_Other);
        ASSERT_TRUE(Served([&] { return form->tbSkin1.CaptionState() != 1; }));
        ExpectAsTold(*form, false);
        form->Unload();
    }
}

// A skin of another deployment or of the server: one colour, size, text and picture are other ones, and nothing else.
TEST_F(SkinWindowsTest, AnotherSkinChangesWhatItNames) {
    ElementPtr& skin = Program.SkinRoot;
    const auto see = [&](const Text& text) {
        SkinnedForm form(m_Forms, Program, Log, "frmAbout");
        auto& title = form.Add<Label>("Title");
        title.SetBackStyle(0);
        title.Move(300, 900, 3000, 300);
        auto& box = form.Add<PictureBox>("pic1");
        box.SetBackColor(0x2040C0);
        box.Move(300, 1500, 600, 600);
        Show(form);
        form.tbSkin1.SetCaption("About");
        ServeWaitingMessages();
        EXPECT_EQ(PartsOf(WindowOf(form), "STATIC").front().second, text);
        const HDC context = GetDC(WindowOf(form));
        const ScreenPixels seen = ReadPixels(context, {0, 0, Pixels(form.Width()), Pixels(form.Height())});
        ReleaseDC(WindowOf(form), context);
        return seen;
    };
    const ScreenPixels before = see("Trawlbeam");
    const Text logo =
        skin->FindElementAttribute2("Name", "Globals")->FindElementAttribute2("Name", "TrawlLogo")->Body();
    const Text graphics = "<Graphics><Image Left='3000' Top='1500'>" + logo + "</Image></Graphics>";
    const Text width = "<Component Name='pic1' Width='900'></Component>";

    skin->SetAttributeValue("CaptionLineColor1", "255");
    const ElementPtr about = skin->FindElementAttribute2("Name", "frmAbout");
    about->AddElement(ParseXml(graphics));
    about->FindElement("Components")->AddElement(ParseXml(width));
    about->FindElement("Components")->FindElementAttribute2("Name", "Title")->SetAttributeValue("Caption", "Another");
    const ScreenPixels after = see("Another");
    const LONG line = 3 + Pixels(Number("frmAbout", "CaptionHeight")) - 2;
    ScreenPixels rest = before;
    for (const RECT& area :
         {RECT{2, line, before.Width - 3, line + 1}, RECT{Pixels(300), Pixels(900), Pixels(3300), Pixels(1200)},
          RECT{Pixels(900), Pixels(1500), Pixels(1200), Pixels(2100)},
          RECT{Pixels(3000), Pixels(1500), Pixels(3960), Pixels(2460)}}) {
        EXPECT_TRUE(after.DiffersIn(before, area)) << area.left << " " << area.top;
        rest.TakeFrom(after, area);
    }
    EXPECT_TRUE(rest == after) << "something else changed";

    skin = ParseXml(m_Document);
    Program.Settings->ReplaceGlobals(
        "SKIN", ParseXml("<G CaptionLineColor1='255'><W Name='frmAbout'>" + graphics + "<Components>" + width +
                         "<Component Name='Title' Caption='Another'></Component></Components></W></G>"));
    EXPECT_TRUE(see("Another") == after) << "the server's skin does as the built-in one";
}

}  // namespace
}  // namespace tb
