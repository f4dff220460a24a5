#include "ui/dialogs/MessageLayout.h"

#include <algorithm>

#include "base/numbers.h"

namespace tb {

namespace {

constexpr Twips Narrowest = 5145;
constexpr Twips Widest = 8715;
constexpr Twips Margin = 120;
constexpr Twips BesideIcon = 180;
// Between text and buttons.
constexpr Twips LeastGap = 135;
constexpr Twips BetweenButtons = 105;
constexpr Twips SkinExtraPixels = 4;
constexpr size_t Measured = 600;
// No screen shows more.
constexpr size_t LongestPrompt = 65536;
constexpr const char* Ellipsis = "...";

// The largest number from `least` to `most` that fits; `least` if none does.
template <typename Fits>
size_t LargestFitting(size_t least, size_t most, Fits fits) {
    while (least < most) {
        const size_t middle = least + (most - least + 1) / 2;
        if (fits(middle)) {
            least = middle;
        } else {
            most = middle - 1;
        }
    }
    return least;
}

// The first characters, with a sign that there were more.
Text Cut(const Text& text, size_t count) { return text.substr(0, count) + Ellipsis; }

Text CutToHeight(const Text& text, Twips width, Twips height, const TextMeasure& measure) {
    const auto fits = [&](const Text& shown) { return measure(shown, width).Height <= height; };
    if (fits(text)) return text;
    return Cut(text, LargestFitting(0, text.size(), [&](size_t count) { return fits(Cut(text, count)); }));
}

std::vector<TwipRect> PlaceRow(const TwipRect& area, const TwipSize& button, size_t buttons) {
    const auto count = static_cast<Twips>(buttons);
    const Twips taken = count * button.Width + (count - 1) * BetweenButtons;
    Twips left = (area.Width - taken) / 2;
    std::vector<TwipRect> row;
    for (size_t index = 0; index < buttons; ++index) {
        row.push_back({left, (area.Height - button.Height) / 2, button.Width, button.Height});
        left += button.Width + BetweenButtons;
    }
    return row;
}

}  // namespace

MessageLayout LayOutMessage(const MessageDesign& design, const MessageSurroundings& around, const Text& prompt,
                            bool hasIcon, size_t buttons, const TextMeasure& measure) {
    const Text text = prompt.size() > LongestPrompt ? Cut(prompt, LongestPrompt) : prompt;
    const Twips textWidth = measure(Text(Left(text, Measured)), 0).Width;
    const Twips behindIcon = design.Icon.Left + design.Icon.Width;
    const Twips wanted = (hasIcon ? behindIcon + 3 * Margin : 2 * Margin) + textWidth + around.FrameX;
    MessageLayout layout;
    layout.Window.Width = std::clamp(wanted, Narrowest, Widest);
    const Twips inner = layout.Window.Width - design.Frame.Width;
    layout.SkinWidth = inner + SkinExtraPixels * around.Pixel;
    layout.Label.Left = hasIcon ? behindIcon + BesideIcon : Margin;
    layout.Label.Top = design.Label.Top;
    layout.Label.Width = inner - (hasIcon ? behindIcon + 3 * Margin : 2 * Margin);

    const Twips belowText = LeastGap + design.Inner.Height - design.Buttons.Top;
    const Twips room = around.Highest - design.Frame.Height - belowText - design.Label.Top;
    layout.Prompt = CutToHeight(text, layout.Label.Width, room, measure);
    layout.Label.Height = measure(layout.Prompt, layout.Label.Width).Height;

    const Twips gap = design.Buttons.Top - (layout.Label.Top + layout.Label.Height);
    const Twips growth = std::max(LeastGap - gap, 0);
    layout.Window.Height = design.Inner.Height + design.Frame.Height + growth;
    // Held by the bottom of the window.
    const Twips left = design.Buttons.Left;
    layout.Buttons = {left, design.Buttons.Top + growth, std::max(inner - 2 * left, 0), design.Buttons.Height};
    layout.Row = PlaceRow(layout.Buttons, design.Button, buttons);
    return layout;
}

TwipPoint InTheMiddle(const TwipRect& screen, const TwipSize& window) {
    const auto place = [](Twips from, Twips room, Twips size) {
        return from + RoundToInt32(std::max(room - size, 0) / 2.0);
    };
    return {place(screen.Left, screen.Width, window.Width), place(screen.Top, screen.Height, window.Height)};
}

}  // namespace tb
