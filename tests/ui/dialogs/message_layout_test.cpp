// What flags ask for, and where the parts of a message box stand.
#include <gtest/gtest.h>

#include "platform/Dialogs.h"
#include "ui/dialogs/MessageFlags.h"
#include "ui/dialogs/MessageLayout.h"

namespace tb {
namespace {

// Letters of 100 by 195 twips.
TwipSize Measure(const Text& text, Twips width) {
    Twips widest = 0;
    Twips lines = 0;
    for (const Text& line : Split(text, '\n')) {
        const auto length = static_cast<Twips>(line.size()) * 100;
        const Twips most = width > 0 ? width : std::max(length, 1);
        widest = std::max(widest, std::min(length, most));
        lines += std::max(1, (length + most - 1) / most);
    }
    return {widest, lines * 195};
}

constexpr MessageDesign Design{{5145, 1500},        {0, 0},     {180, 240, 480, 480}, {120, 240, 4905, 195},
                               {0, 900, 5145, 600}, {1095, 375}};

MessageLayout LayOut(Twips textWidth, bool hasIcon, size_t buttons = 1, Twips textHeight = 195) {
    return LayOutMessage(Design, {60, 11520}, "x", hasIcon, buttons, [=](const Text&, Twips) {
        return TwipSize{textWidth, textHeight};
    });
}

Text Row(const MessageFlags& flags) {
    Text row;
    for (size_t index = 0; index < flags.Captions.size(); ++index) {
        row += flags.Captions[index] + (flags.Unload[index] ? "=" + std::to_string(flags.Answers[index]) + " " : " ");
    }
    return row + "icon " + std::to_string(flags.Icon) + " default " + std::to_string(flags.Default) + " escape " +
           std::to_string(EscapeButton(flags.Captions, flags.Unload)) + (flags.TopMost ? " top" : "");
}

TEST(MessageFlags, AskForButtonsAndIcon) {
    const std::pair<std::int32_t, const char*> cases[] = {
        {0, "OK=1 icon 0 default 1 escape 1"},
        {1 | 16, "OK=1 Cancel=2 icon 16 default 1 escape 2"},
        {2 | 0x200, "&Abort=3 &Retry=4 &Ignore=5 icon 0 default 3 escape 3"},
        {3 | 0x10000, "&Yes=6 &No=7 Cancel=2 icon 0 default 1 escape 3 top"},
        {36, "&Yes=6 &No=7 icon 32 default 1 escape 2"},
        {0x134, "&Yes=6 &No=7 icon 48 default 2 escape 2"},
        {5 | 64, "&Retry=4 Cancel=2 icon 64 default 1 escape 2"},
        {0x4004, "&Yes=6 &No=7 &Help icon 0 default 1 escape 2"},
        {0x4303, "&Yes=6 &No=7 Cancel=2 &Help icon 0 default 4 escape 3"},
    };
    for (const auto& [flags, row] : cases) EXPECT_EQ(Row(ReadMessageFlags(flags)), row) << flags;
    for (const std::int32_t none : {6, 7 | 0x300, 80, 112}) EXPECT_EQ(Row(ReadMessageFlags(none)), cases[0].second);
    EXPECT_EQ(EscapeButton({"A", "B"}, {false, false}), 0);
}

TEST(MessageLayout, FollowsTheWidthOfTheText) {
    struct Case {
        Twips Text;
        bool HasIcon;
        Twips Window, Left, Width;
    };
    for (const Case& given : {Case{900, false, 5145, 120, 4905}, Case{6000, true, 7080, 840, 6060},
                              Case{20000, true, 8715, 840, 7695}, Case{20000, false, 8715, 120, 8475}}) {
        const MessageLayout layout = LayOut(given.Text, given.HasIcon);
        EXPECT_EQ(layout.Window, (TwipSize{given.Window, 1500})) << given.Text;
        EXPECT_EQ(layout.Label, (TwipRect{given.Left, 240, given.Width, 195})) << given.Text;
        EXPECT_EQ(layout.Buttons.Width, given.Window);
    }
    // What lies behind 600 characters does not widen it.
    EXPECT_EQ(LayOutMessage(Design, {60, 11520}, Text(600, '\n') + Text(80, 'x'), false, 1, Measure).Window.Width,
              5145);
}

TEST(MessageLayout, PlacesTheButtonsBelowTheText) {
    const std::vector<Twips> lefts[] = {{2025}, {1425, 2625}, {825, 2025, 3225}, {225, 1425, 2625, 3825}};
    for (const auto& expected : lefts) {
        std::vector<Twips> found;
        for (const TwipRect& button : LayOut(900, false, expected.size()).Row) found.push_back(button.Left);
        EXPECT_EQ(found, expected);
    }
    for (const auto& [height, growth] : {std::pair{780, 255}, {526, 1}, {525, 0}, {195, 0}}) {
        const MessageLayout layout = LayOut(900, false, 1, height);
        EXPECT_EQ(layout.Window.Height, 1500 + growth) << height;
        EXPECT_EQ(layout.Buttons.Top, 900 + growth) << "at the bottom";
    }
}

TEST(MessageLayout, KeepsTheWindowOnTheScreen) {
    for (const Text& prompt : {Text(20000, 'x'), Text(200000, '\n')}) {
        const MessageLayout layout = LayOutMessage(Design, {60, 11520}, prompt, true, 2, Measure);
        EXPECT_LE(layout.Window.Height, 11520);
        EXPECT_GT(layout.Window.Height, 11520 - 195) << "as much as there is room for";
        EXPECT_TRUE(layout.Prompt.ends_with("..."));
        EXPECT_GE(layout.Buttons.Top, layout.Label.Top + layout.Label.Height + 135);
    }
}

}  // namespace
}  // namespace tb
