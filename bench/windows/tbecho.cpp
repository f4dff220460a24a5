// A bare echo server behind the same kind of text box as the program's channel: it answers every request with "OK" and
// judges nothing. What the program's round trip takes beyond this one's is the program's own share.
#include <windows.h>

#include <cstdlib>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/ChannelWindow.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32WindowText.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    tb::Win32WindowText windows;
    const tb::ChannelWindow channel(
        {tb::NormalClasses.Window, "Trawlbeam Echo", tb::NormalClasses.TextBox},
        {[&](const tb::Text& line) { windows.SendText(std::atoi(line.c_str()), "OK"); }, [] { tb::EndMessageLoop(0); },
         [](const tb::RuntimeError&) { tb::EndMessageLoop(1); }});
    return tb::RunMessageLoop();
}
