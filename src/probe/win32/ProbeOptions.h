// The command line of the probe.
#pragma once

#include <vector>

#include "base/text.h"
#include "components/tbBHBridge/ChannelNames.h"

namespace tb {

struct ProbeOptions {
    enum class Action { Requests, Time, Wait, Close, Exit, RefuseExit, Help, Version };
    Action What = Action::Requests;
    Text Caption = ChannelCaption;
    // Time: requests in all, for each window; the other window's caption, or none; blocks for each window.
    std::int32_t Count = 0;
    Text Against;
    std::int32_t Blocks = 10;
    std::vector<Text> URLs;
    // Wait: at most so long.
    std::int32_t Seconds = 0;
};

// Error 5 for a word that is not known or out of place, for an option without its value and for a number that is none;
// its description says which.
ProbeOptions ParseProbeOptions(const std::vector<Text>& words);

}  // namespace tb
