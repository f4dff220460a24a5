#include "ui/dialogs/MessageFlags.h"

#include "platform/Dialogs.h"

namespace tb {

namespace {

constexpr std::int32_t RowBits = 7;
constexpr std::int32_t IconBits = 112;
constexpr std::int32_t DefaultBits = 0x300;
constexpr const char* Cancel = "Cancel";

struct Button {
    const char* Caption;
    std::int32_t Answer;
};

std::vector<Button> StandardRow(std::int32_t flags) {
    constexpr Button OK{"OK", AnswerOK};
    constexpr Button CancelButton{Cancel, AnswerCancel};
    constexpr Button Retry{"&Retry", AnswerRetry};
    constexpr Button Yes{"&Yes", AnswerYes};
    constexpr Button No{"&No", AnswerNo};
    switch (flags & RowBits) {
    case MessageButtons::OKCancel: return {OK, CancelButton};
    case MessageButtons::AbortRetryIgnore: return {{"&Abort", AnswerAbort}, Retry, {"&Ignore", AnswerIgnore}};
    case MessageButtons::YesNoCancel: return {Yes, No, CancelButton};
    case MessageButtons::YesNo: return {Yes, No};
    case MessageButtons::RetryCancel: return {Retry, CancelButton};
    default: return {OK};
    }
}

// Compared as a value: 48 is not 16 and 32.
std::int32_t IconOf(std::int32_t flags) {
    const std::int32_t icon = flags & IconBits;
    return icon <= MessageButtons::Information ? icon : 0;
}

}  // namespace

MessageFlags ReadMessageFlags(std::int32_t flags) {
    MessageFlags read;
    const auto add = [&](const char* caption, std::int32_t answer) {
        read.Captions.emplace_back(caption);
        read.Unload.push_back(answer != 0);
        read.Answers.push_back(answer);
    };
    for (const Button& button : StandardRow(flags)) add(button.Caption, button.Answer);
    if ((flags & MessageButtons::Help) != 0) add(HelpCaption, 0);
    read.Icon = IconOf(flags);
    const std::int32_t wanted = (flags & DefaultBits) / MessageButtons::Default2 + 1;
    read.Default = wanted <= static_cast<std::int32_t>(read.Captions.size()) ? wanted : 1;
    read.TopMost = (flags & MessageButtons::TopMost) != 0;
    return read;
}

Text PlainCaption(const Text& caption) { return RemoveAll(caption, "&"); }

std::int32_t EscapeButton(const std::vector<Text>& captions, const std::vector<bool>& unload) {
    std::int32_t last = 0;
    for (size_t index = 0; index < captions.size(); ++index) {
        if (index < unload.size() && !unload[index]) continue;
        last = static_cast<std::int32_t>(index) + 1;
        if (PlainCaption(captions[index]) == Cancel) break;
    }
    return last;
}

Text MessageAsText(const Text& title, const Text& prompt, const std::vector<Text>& captions) {
    const Text line = Text(27, '-') + "\r\n";
    Text buttons;
    for (const Text& caption : captions) buttons += PlainCaption(caption) + "   ";
    return line + title + "\r\n" + line + prompt + "\r\n" + line + buttons + "\r\n" + line;
}

}  // namespace tb
