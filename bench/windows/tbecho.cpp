// A bare echo server behind the same kind of text box as the program's channel: it answers every request with "OK" and
// judges nothing. What the program's round trip takes beyond this one's is the program's own share.
#include <windows.h>

#include <cstdlib>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/Form.h"
#include "ui/window/TextBox.h"
#include "ui/window/win32/Win32WindowSystem.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    tb::Win32WindowText windows;
    tb::Win32WindowSystem system({tb::NormalClasses.Window, tb::NormalClasses.TextBox},
                                 [](const tb::RuntimeError&) { tb::EndMessageLoop(1); });
    tb::Forms forms(&system);
    forms.LastUnloadedEvent.Connect([] { tb::EndMessageLoop(0); });
    tb::Form form(forms, "frmEcho");
    form.SetCaption("Trawlbeam Echo");
    tb::TextBox& box = form.Add<tb::TextBox>("txtMessage");
    box.SetVisible(false);
    box.ChangeEvent.Connect([&] {
        const tb::Text line = box.GetText();
        if (line.empty()) return;
        windows.SendText(std::atoi(line.c_str()), "OK");
        box.SetText("");
    });
    form.Load();
    return tb::RunMessageLoop();
}
