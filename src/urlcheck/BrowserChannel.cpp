#include "urlcheck/BrowserChannel.h"

#include <utility>

#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbBHBridge/ChannelNames.h"

namespace tb {

ChannelResult BrowserChannel::Handle(TextView line) const {
    ChannelResult result;
    Handle(line, result);
    return result;
}

void BrowserChannel::Handle(TextView line, ChannelResult& result) const {
    result.What = ChannelResult::Kind::Nothing;
    result.ReplyWindow = 0;
    result.Text.clear();
    if (line.empty()) return;
    if (line == WakeUpText) {
        result.What = ChannelResult::Kind::WakeUp;
        return;
    }
    // Taken out while in use: a request may come while the judgement of another shows a message.
    std::vector<Text> args = std::exchange(m_Fields, {});
    Split(line, FieldSeparator, args);
    result.What = ChannelResult::Kind::Reply;
    Trap([&] { result.ReplyWindow = ToInt32(args.front()); },
         [&](const RuntimeError& error) {
             result.What = ChannelResult::Kind::Broken;
             result.Text = "Browser channel: \"" + Quoted(args.front()) + "\" is no reply window: " + error.Line();
         });
    if (result.What == ChannelResult::Kind::Reply) m_Verdict->CheckEvil(args, result.Text);
    m_Fields = std::move(args);
}

}  // namespace tb
