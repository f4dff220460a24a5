// What tbBHBridge.dll exports.
#include "components/tbBHBridge/ChannelClient.h"
#include "components/tbBHBridge/tbBHBridgeFace.h"
#include "components/tbBHBridge/win32/BoundedWindowText.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

// A window of the system's own class, so that no procedure of this library outlives it: it keeps a text by itself.
OwnedWindow MakeReplyWindow() {
    OwnedWindow window(CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr));
    if (!window) throw SystemError("CreateWindowEx", GetLastError());
    return window;
}

Text TextOf(const OwnedWindow& window) {
    Text text(static_cast<std::size_t>(GetWindowTextLengthA(window.Get())) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window.Get(), text.data(), static_cast<int>(text.size()))));
    return text;
}

void Locate(std::int32_t* found, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        Win32WindowText windows;
        *found = ChannelClient(windows).Locate() ? 1 : 0;
    });
}

void Ask(const char* fields, std::size_t size, std::uint32_t milliseconds, FaceTake take, void* target,
         std::int32_t* answered, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        *answered = 0;
        BoundedWindowText windows(milliseconds);
        ChannelClient client(windows);
        if (!client.Locate()) return;
        const OwnedWindow reply = MakeReplyWindow();
        client.Send(ToWindowHandle(reply.Get()), Text(fields, size));
        if (!windows.Delivered()) return;
        const Text text = TextOf(reply);
        take(target, text.data(), text.size());
        *answered = 1;
    });
}

void WakeUp(std::uint32_t milliseconds, std::int32_t* done, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        BoundedWindowText windows(milliseconds);
        ChannelClient client(windows);
        *done = client.Locate() && client.WakeUp() && windows.Delivered() ? 1 : 0;
    });
}

constexpr tbBHBridgeFace Face{&Locate, &Ask, &WakeUp};

}  // namespace

}  // namespace tb

extern "C" __declspec(dllexport) const void* tbBHBridge_Face(std::uint32_t version) {
    return version == tb::tbBHBridgeFace::Version ? &tb::Face : nullptr;
}
