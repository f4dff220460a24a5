// The server's end of the browser channel, without its windows: what one text set into the text box means and what
// follows from it. The window layer moves text only. Format: docs/formats/channel.md.
#pragma once

#include "platform/WindowText.h"
#include "urlcheck/UrlVerdict.h"

namespace tb {

struct ChannelResult {
    enum class Kind {
        Nothing,  // the text was empty: the box has just been cleared
        WakeUp,   // another instance asks for the main window; no reply
        Reply,    // `Text` goes into `ReplyWindow`, the empty text too
        Broken,   // the first field is no 32-bit number: the process ends, after `Text` went into the log as a line
    };
    Kind What = Kind::Nothing;
    WindowHandle ReplyWindow = 0;
    tb::Text Text;
};

class BrowserChannel {
public:
    explicit BrowserChannel(std::shared_ptr<UrlVerdict> verdict) : m_Verdict(std::move(verdict)) {}

    // Handles one text of the box. CheckEvil runs inside, at most once, only for `Reply`; it may serve messages, so the
    // caller holds the channel.
    ChannelResult Handle(TextView line) const;
    // The same in the memory of a result before.
    void Handle(TextView line, ChannelResult& result) const;

private:
    std::shared_ptr<UrlVerdict> m_Verdict;
    // The fields of a request before, for their memory.
    mutable std::vector<Text> m_Fields;
};

}  // namespace tb
