// The fixed names by which clients find the browser channel. They are a contract with browser helpers and with a second
// instance of the program: no skin, language or version changes them. Format: docs/formats/channel.md.
#pragma once

#include "base/text.h"

namespace tb {

inline constexpr const char* ChannelCaption = "Trawlbeam Tray";

struct ChannelClasses {
    const char* Window;
    const char* TextBox;
};

// A normal run has the first pair, a development run the second; clients try them in this order.
inline constexpr ChannelClasses NormalClasses{"ThunderRT6FormDC", "ThunderRT6TextBox"};
inline constexpr ChannelClasses DevelopmentClasses{"ThunderFormDC", "ThunderTextBox"};

// The whole text of a wake-up.
inline constexpr TextView WakeUpText = "TBWAKEUP";

inline constexpr char FieldSeparator = '\t';

}  // namespace tb
