// A drawing surface that notes what is drawn, and shows of it what is set pixel by pixel, filled or copied.
#pragma once

#include <functional>

#include "ui/window/Surface.h"

namespace tb {

inline Text InWords(const Text& text) { return text; }
inline Text InWords(std::int64_t number) { return std::to_string(number); }
inline Text InWords(Color color) { return std::to_string(color.Bits()); }
inline Text InWords(PixelPoint at) { return InWords(at.X) + "," + InWords(at.Y); }
inline Text InWords(const PixelRect& area) {
    return InWords(PixelPoint{area.Left, area.Top}) + "," + InWords(PixelPoint{area.Width, area.Height});
}
// With a blank between two: "line 1,1 9,1 255".
template <typename First, typename... Others>
requires(sizeof...(Others) > 0) Text InWords(const First& first, const Others&... others) {
    return (InWords(first) + ... + (" " + InWords(others)));
}

class RecordedSurface : public Surface {
public:
    // `note` gets a line for each call: "line 1,1 9,1 255".
    RecordedSurface(std::function<void(const Text&)> note, std::function<PixelSize()> size)
        : m_Note(std::move(note)), m_Size(std::move(size)) {}

    // What lies under all that is drawn.
    void SetGround(Color color, PictureRef picture) {
        m_Ground = color;
        m_GroundPicture = std::move(picture);
        ShowGround();
    }

    PixelSize Size() const override { return m_Size(); }
    void Clear() override {
        m_Note("clear");
        ShowGround();
    }
    void Fill(const PixelRect& area, Color color) override {
        m_Note(InWords("fill", area, color));
        ForEach(area, [&](PixelPoint at) { Put(at, color); });
    }
    void Line(PixelPoint from, PixelPoint to, Color color) override { m_Note(InWords("line", from, to, color)); }
    void RoundRect(PixelPoint from, PixelPoint to, std::int32_t corner, Color color) override {
        m_Note(InWords("round", from, to, corner, color));
    }
    void Print(PixelPoint at, const Text& text, const Font& font, Color color) override {
        m_Note(InWords("print", at, text, font.Name + (font.Bold ? " bold" : ""), color));
    }
    Color GetPixel(PixelPoint at) const override { return IsInside(at) ? m_Pixels[Place(at)] : Outside; }
    void SetPixel(PixelPoint at, Color color) override {
        if (IsInside(at)) m_Pixels[Place(at)] = color;
    }
    void DrawPicture(const Picture& picture, const PixelRect& area) override {
        m_Note(InWords("picture", area));
        Show(picture, {area.Left, area.Top});
    }
    void CopyFrom(const Surface& source, PixelPoint from, const PixelRect& to) override {
        m_Note(InWords("copy", from, to));
        ForEach(to, [&](PixelPoint at) {
            Put(at, source.GetPixel({from.X + at.X - to.Left, from.Y + at.Y - to.Top}));
        });
    }
    PictureRef Image() const override {
        Fit();
        Picture picture{{}, PictureKind::Bmp, m_Held, {}};
        for (const Color& color : m_Pixels) {
            const auto rgb = static_cast<std::uint32_t>(color.Red() << 16 | color.Green() << 8 | color.Blue());
            picture.Pixels.push_back(0xFF000000U | rgb);
        }
        return std::make_shared<Picture>(std::move(picture));
    }

private:
    template <typename Function>
    static void ForEach(const PixelRect& area, Function&& function) {
        for (std::int32_t y = area.Top; y < area.Top + area.Height; ++y) {
            for (std::int32_t x = area.Left; x < area.Left + area.Width; ++x) function(PixelPoint{x, y});
        }
    }
    // The pixels have the size that the window has now.
    void Fit() const {
        const PixelSize size = m_Size();
        if (size == m_Held) return;
        m_Held = size;
        m_Pixels.assign(static_cast<size_t>(std::max(0, size.Width) * std::max(0, size.Height)), m_Ground);
    }
    bool IsInside(PixelPoint at) const {
        Fit();
        return at.X >= 0 && at.Y >= 0 && at.X < m_Held.Width && at.Y < m_Held.Height;
    }
    size_t Place(PixelPoint at) const { return static_cast<size_t>(at.Y * m_Held.Width + at.X); }
    void Put(PixelPoint at, Color color) {
        if (IsInside(at)) m_Pixels[Place(at)] = color;
    }
    void ShowGround() {
        m_Held = {};
        Fit();
        if (m_GroundPicture) Show(*m_GroundPicture, {});
    }
    void Show(const Picture& picture, PixelPoint at) {
        size_t index = 0;
        ForEach({at.X, at.Y, picture.Size.Width, picture.Size.Height}, [&](PixelPoint place) {
            const std::uint32_t pixel = index < picture.Pixels.size() ? picture.Pixels[index++] : 0;
            if (pixel >> 24 == 0) return;
            Put(place, Color::FromChannels(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF));
        });
    }

    std::function<void(const Text&)> m_Note;
    std::function<PixelSize()> m_Size;
    Color m_Ground;
    PictureRef m_GroundPicture;
    mutable PixelSize m_Held;
    mutable std::vector<Color> m_Pixels;
};

}  // namespace tb
