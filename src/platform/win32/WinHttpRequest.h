// One asynchronous request of WinHTTP: its operations begin here and end on a thread of WinHTTP, which signals an
// event.
#pragma once

#include <windows.h>
#include <winhttp.h>

#include <memory>

#include "base/text.h"
#include "platform/win32/Handle.h"

namespace tb {

struct InternetTrait {
    using Value = HINTERNET;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return WinHttpCloseHandle(value) != FALSE; }
};
using OwnedInternet = Handle<InternetTrait>;

// It may go at any time, in the midst of an operation too: what WinHTTP's threads use lives until they have let go.
class WinHttpRequest {
public:
    // Bytes that one Read or Write moves at most.
    static constexpr DWORD PieceSize = 65536;

    // Takes over a request handle of an asynchronous session. Error 51 when the system has no room.
    explicit WinHttpRequest(OwnedInternet request);
    WinHttpRequest(const WinHttpRequest&) = delete;
    WinHttpRequest& operator=(const WinHttpRequest&) = delete;
    ~WinHttpRequest() = default;

    HINTERNET Get() const { return m_Request.Get(); }

    // Begin an operation, one at a time; Changed is signalled when it is done, at once for one that cannot begin.
    void Send(DWORD bodyBytes);
    void Write(TextView piece);
    void Receive();
    void Query();
    // At most as many bytes as Query has found.
    void Read(DWORD count);

    // An event that resets itself, signalled also at each stage on the way to the server.
    HANDLE Changed() const;
    bool IsDone() const;
    // Of the operation that is done: its error code, 0 for none, and what it counted: bytes there are, or that were
    // read.
    DWORD ErrorCode() const;
    DWORD Count() const;
    // What was read.
    TextView Piece() const;

private:
    struct State;
    static void CALLBACK OnStatus(HINTERNET handle, DWORD_PTR context, DWORD status, void* information, DWORD length);
    void Begin();
    void Began(BOOL succeeded);

    std::shared_ptr<State> m_State;
    DWORD_PTR m_Context = 0;
    // Last, so that it is closed first.
    OwnedInternet m_Request;
};

}  // namespace tb
