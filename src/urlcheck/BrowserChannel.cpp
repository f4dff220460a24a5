#include "urlcheck/BrowserChannel.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbBHBridge/ChannelNames.h"

namespace tb {

ChannelResult BrowserChannel::Handle(const Text& line) const {
    ChannelResult result;
    if (line.empty()) return result;
    if (line == WakeUpText) {
        result.What = ChannelResult::Kind::WakeUp;
        return result;
    }
    const std::vector<Text> args = Split(line, FieldSeparator);
    result.What = ChannelResult::Kind::Reply;
    Trap([&] { result.ReplyWindow = ToInt32(args.front()); },
         [&](const RuntimeError& error) {
             result.What = ChannelResult::Kind::Broken;
             result.Text = "Browser channel: \"" + Quoted(args.front()) + "\" is no reply window: " + error.Line();
         });
    if (result.What == ChannelResult::Kind::Reply) m_CheckEvil(args, result.Text);
    return result;
}

}  // namespace tb
