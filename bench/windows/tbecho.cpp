// A bare echo server behind the same kind of text box as the program's channel: it answers every request with "OK" and
// judges nothing. What the program's round trip takes beyond this one's is the program's own share.
//   tbecho        under the caption "Trawlbeam Echo"
//   tbecho URL    under the caption "Trawlbeam Waiting", in the wait of one POST to that address after the other;
//   prints
//                 how each has ended
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32Http.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/Form.h"
#include "ui/window/TextBox.h"
#include "ui/window/win32/Win32WindowSystem.h"

namespace {

void KeepWaiting(const tb::Text& url) {
    tb::Win32Http http("tbecho");
    tb::HttpRequest request;
    request.Method = "POST";
    request.Url = url;
    // As the program's: each wait, the whole, the reply.
    request.WaitMilliseconds = 3000;
    request.WholeMilliseconds = 600'000;
    request.BodyLimit = 256u << 20;
    while (tb::ServeWaitingMessages()) {
        tb::HttpResponse response;
        const tb::Text failure = http.Exchange(request, response, [](tb::TextView) {});
        std::printf("status %d %s\n", response.Status, failure.c_str());
        std::fflush(stdout);
    }
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR url, int) {
    tb::Win32WindowText windows;
    tb::Win32WindowSystem system({tb::NormalClasses.Window, tb::NormalClasses.TextBox},
                                 [](const tb::RuntimeError&) { tb::EndMessageLoop(1); });
    tb::Forms forms(&system);
    forms.LastUnloadedEvent.Connect([] { tb::EndMessageLoop(0); });
    tb::Form form(forms, "frmEcho");
    form.SetCaption(*url == '\0' ? "Trawlbeam Echo" : "Trawlbeam Waiting");
    tb::TextBox& box = form.Add<tb::TextBox>("txtMessage");
    box.SetVisible(false);
    box.ChangeEvent.Connect([&] {
        const tb::Text line = box.GetText();
        if (line.empty()) return;
        windows.SendText(std::atoi(line.c_str()), "OK");
        box.SetText("");
    });
    form.Load();
    if (*url != '\0') KeepWaiting(url);
    return tb::RunMessageLoop();
}
