// Forms and controls that are drawn, as real windows: what is seen of them.
#include "windows/RealForm.h"

#include "ui/window/Image.h"
#include "ui/window/Label.h"
#include "ui/window/Line.h"
#include "ui/window/PictureBox.h"

namespace tb {
namespace {

using DrawnWindowTest = RealForm;

// 3 by 2 pixels: red, green, clear; clear, green, red.
const Text SmallGif(
    "GIF89a\3\0\2\0\x81\0\0\xFF\0\0\0\xFF\0\0\0\xFF\0\0\0\x21\xF9\4\1\0\0\2\0\x2C\0\0\0\0\3\0\2\0\0\2\5\4\x43\x51\x0C"
    "\x51"
    "\0\x3B",
    52);

TEST_F(DrawnWindowTest, ASurfaceIsDrawnOnByPixelsAndKeepsThem) {
    m_Form.Load();
    Surface& surface = *m_Form.Surface();
    EXPECT_EQ(surface.Size(), (PixelSize{200, 150}));
    surface.Line({10, 10}, {20, 10}, Red);
    surface.RoundRect({30, 30}, {60, 50}, 8, Green);
    surface.Fill({70, 10, 5, 5}, Red);
    surface.SetPixel({199, 149}, Red);
    surface.SetPixel({200, 0}, Red);
    surface.Fill({-9, -9, INT32_MAX, 10}, Green);
    const std::pair<Color, std::vector<PixelPoint>> pixels[] = {
        {Red, {{10, 10}, {19, 10}, {74, 14}, {199, 149}}},
        {Green, {{30, 40}, {59, 40}, {0, 0}}},
        {Blue, {{20, 10}, {30, 30}, {40, 40}, {60, 40}, {75, 15}}},
        {Surface::Outside, {{200, 0}, {0, -1}}}};
    for (const auto& [color, places] : pixels) {
        for (const PixelPoint at : places) EXPECT_EQ(surface.GetPixel(at), color) << at.X << " " << at.Y;
    }

    m_Form.Show();
    EXPECT_EQ(SeenNow(Window(), 19, 10), Red);
    m_Form.Hide();
    m_Form.Show();
    m_Form.SetBackColor(Blue);
    m_Form.Move(0, 0, Of(300), Of(250));
    EXPECT_EQ(Seen(19, 10), Red);
    EXPECT_EQ(Seen(299, 249), Blue);
    EXPECT_EQ(surface.Size(), (PixelSize{300, 250}));
    surface.SetPixel({299, 249}, Red);
    EXPECT_EQ(Seen(299, 249), Red);
    EXPECT_EQ(surface.Image()->Pixels.at(10 * 300 + 19), 0xFFFF0000U);
    m_Form.SetPicture(Plain(20, 20, 0xFF00FF00));
    EXPECT_EQ(Seen(19, 10), Green);
    EXPECT_EQ(Seen(20, 10), Blue);
    m_Form.SetBackColor(Red);
    EXPECT_EQ(Seen(299, 249), Red);
    m_Form.SetWindowState(1);
    ASSERT_TRUE(Served([&] { return IsIconic(Window()) != FALSE; }));
    EXPECT_EQ(surface.Size(), (PixelSize{300, 250})) << "what it shows waits for it";
}

TEST_F(DrawnWindowTest, ImageFilesAreDecodedOrRefused) {
    const Text bmp(
        "BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\4\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x80\0\xFF\0",
        58);
    const Text table = Text("\0\x14", 2);
    const Text codes = Text("\1", 1) + Text(16, '\0');
    const Text jpeg = Text("\xFF\xD8\xFF\xDB\0\x43\0", 7) + Text(64, '\1') +
                      Text("\xFF\xC0\0\x0B\x08\0\x08\0\x08\1\1\x11\0", 13) + "\xFF\xC4" + table + Text(1, '\0') +
                      codes + "\xFF\xC4" + table + '\x10' + codes +
                      Text("\xFF\xDA\0\x08\1\1\0\0\x3F\0\x3F\xFF\xD9", 13);
    struct Row {
        const Text& File;
        PixelSize Size;
        std::uint32_t First;
        std::uint32_t Last;
    };
    for (const Row& row : {Row{SmallGif, {3, 2}, 0xFFFF0000, 0xFFFF0000}, Row{bmp, {1, 1}, 0xFFFF0080, 0xFFFF0080},
                           Row{jpeg, {8, 8}, 0xFF808080, 0xFF808080}, Row{SmallIcon, {16, 16}, 0, 0xFFFFFFFF}}) {
        const PictureRef picture = m_System.Decode(row.File);
        ASSERT_TRUE(picture) << row.File.substr(0, 6);
        EXPECT_EQ(picture->Size, (PixelSize{AtThisScreen(row.Size.Width), AtThisScreen(row.Size.Height)}));
        EXPECT_EQ(picture->Pixels.front(), row.First) << row.File.substr(0, 6);
        EXPECT_EQ(picture->Pixels.back(), row.Last) << row.File.substr(0, 6);
        for (size_t length = 0; length < row.File.size(); length += 5) {
            const PictureRef part = m_System.Decode(row.File.substr(0, length));
            EXPECT_TRUE(!part || part->Size == picture->Size);
        }
    }
    EXPECT_EQ(m_System.Decode("\x89PNG\r\n\x1A\n"), nullptr);
    Text lies = SmallGif;
    lies[6] = lies[8] = '\x70';
    lies[7] = lies[9] = '\x70';
    EXPECT_EQ(m_System.Decode(lies), nullptr);
}

TEST_F(DrawnWindowTest, ImagesLinesAndLabelsShowWhatLiesBeneath) {
    auto& box = m_Form.Add<PictureBox>("pic");
    Place(box, 20, 20, 100, 80);
    box.SetBackColor(Blue);
    auto& below = m_Form.Add<Image>("img", 1, &box);
    auto& above = m_Form.Add<Image>("img", 0, &box);
    auto& line = m_Form.Add<Line>("lin", NoIndex, &box);
    auto& label = m_Form.Add<Label>("lbl", NoIndex, &box);
    below.SetPicture(Plain(40, 40, 0xFFFF0000));
    above.SetPicture(std::make_shared<Picture>(Picture{{}, PictureKind::Gif, {3, 1}, {0xFFFF0000, 0xFF00FF00, 0}}));
    below.ZOrder(0);
    line.SetEnds({0, Of(50)}, {Of(100), Of(50)});
    line.SetBorderColor(Green);
    Place(label, 0, 0, 30, 60);
    label.SetBackStyle(0);
    label.SetCaption("");
    m_Form.Show();
    const auto seen = [&](std::int32_t x, std::int32_t y) { return Seen(x + 20, y + 20); };
    EXPECT_EQ(SeenNow(Window(), 22, 22), Red) << "the label too is painted when the window is";
    EXPECT_EQ(seen(35, 0), Red);
    EXPECT_EQ(seen(1, 0), Red) << "made first, so in front, beneath a label that shows it";
    below.ZOrder(1);
    EXPECT_EQ(seen(1, 0), Green) << "the label follows what lies beneath it";
    EXPECT_EQ(seen(2, 0), Red) << "clear";
    EXPECT_EQ(seen(5, 50), Green);
    EXPECT_EQ(seen(41, 0), Blue);
    label.Move(Of(60));
    EXPECT_EQ(seen(65, 0), Blue);
    EXPECT_EQ(seen(65, 50), Green) << "nothing was carried along";
    label.SetBackStyle(1);
    label.SetBackColor(Red);
    EXPECT_EQ(seen(65, 50), Red);
    below.SetVisible(false);
    EXPECT_EQ(seen(35, 0), Blue);
    EXPECT_EQ(seen(0, 0), Red);
    below.SetStretch(true);
    below.SetVisible(true);
    Place(below, 0, 60, 90, 20);
    EXPECT_EQ(seen(55, 70), Red);
    Place(below, INT32_MIN / 32, -5, INT32_MAX / 32, 1000000);
    EXPECT_EQ(seen(55, 79), Blue) << "ends left of it";
}

TEST_F(DrawnWindowTest, ALabelBreaksCutsAndGreysItsText) {
    auto& label = m_Form.Add<Label>("lbl");
    Place(label, 0, 0, 60, 60);
    label.SetBackColor(Red);
    label.SetForeColor(0);
    label.SetAlignment(1);
    label.SetCaption(Text(300000, 'M'));
    m_Form.Show();
    const auto dark = [&](std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        int found = 0;
        for (std::int32_t y = top; y < top + height; ++y) {
            for (std::int32_t x = left; x < left + width; ++x) found += Seen(x, y).Red() < 100 ? 1 : 0;
        }
        return found;
    };
    const std::int32_t height = Pixels(m_System.MeasureText("M", label.Font(), 0).Height);
    EXPECT_GT(dark(0, height, 60, height), 20) << "a word of that length goes on in the next line";
    label.SetCaption("i");
    EXPECT_EQ(dark(0, 0, 40, 60), 0);
    EXPECT_GT(dark(40, 0, 20, 60), 3);
    EXPECT_EQ(GetWindowTextLengthW(Child("STATIC")), 1);
    label.SetEnabled(false);
    EXPECT_EQ(dark(0, 0, 60, 60), 0);
    const Text words = "one two three";
    const TwipSize all = m_System.MeasureText(words, {}, 0);
    const TwipSize narrow = m_System.MeasureText(words, {}, all.Width / 2);
    EXPECT_GE(narrow.Height, 2 * all.Height);
    EXPECT_LE(m_System.MeasureText(Text(200, 'M'), {}, all.Width).Width, all.Width);
    EXPECT_GT(m_System.MeasureText(words, {"Tahoma", 16, true, false, false}, 0).Width, all.Width);
}

}  // namespace
}  // namespace tb
