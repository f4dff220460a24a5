#include "platform/win32/WinHttpRequest.h"

#include <array>
#include <atomic>

#include "platform/win32/Win32Errors.h"

namespace tb {

// What both sides share. WinHTTP holds one reference as the handle's context, from the constructor until it reports
// that the handle is closed; the buffer is here because an operation that is given up may still fill it.
struct WinHttpRequest::State {
    OwnedObject Changed{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    std::atomic<bool> IsDone = false;
    std::atomic<DWORD> Error = 0;
    std::atomic<DWORD> Count = 0;
    std::array<char, PieceSize> Buffer;

    void Finish(DWORD error, DWORD count) {
        Error = error;
        Count = count;
        IsDone = true;
        SetEvent(Changed.Get());
    }
};

WinHttpRequest::WinHttpRequest(OwnedInternet request)
    : m_State(std::make_shared<State>()), m_Request(std::move(request)) {
    if (!m_State->Changed) throw SystemError("CreateEvent", GetLastError());
    if (WinHttpSetStatusCallback(Get(), &OnStatus, WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS, 0) ==
        WINHTTP_INVALID_STATUS_CALLBACK) {
        throw SystemError("WinHttpSetStatusCallback", GetLastError());
    }
    auto held = std::make_unique<std::shared_ptr<State>>(m_State);
    m_Context = reinterpret_cast<DWORD_PTR>(held.get());
    if (!WinHttpSetOption(Get(), WINHTTP_OPTION_CONTEXT_VALUE, &m_Context, sizeof m_Context)) {
        throw SystemError("WinHttpSetOption", GetLastError());
    }
    static_cast<void>(held.release());
}

void CALLBACK WinHttpRequest::OnStatus(HINTERNET /*handle*/, DWORD_PTR context, DWORD status, void* information,
                                       DWORD length) {
    auto* held = reinterpret_cast<std::shared_ptr<State>*>(context);
    if (held == nullptr) return;
    State& state = **held;
    switch (status) {
    case WINHTTP_CALLBACK_STATUS_NAME_RESOLVED:
    case WINHTTP_CALLBACK_STATUS_CONNECTED_TO_SERVER: SetEvent(state.Changed.Get()); break;
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
    case WINHTTP_CALLBACK_STATUS_WRITE_COMPLETE: state.Finish(0, 0); break;
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE: state.Finish(0, *static_cast<const DWORD*>(information)); break;
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE: state.Finish(0, length); break;
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
        state.Finish(static_cast<const WINHTTP_ASYNC_RESULT*>(information)->dwError, 0);
        break;
    case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING: delete held; break;
    default: break;
    }
}

void WinHttpRequest::Begin() {
    m_State->IsDone = false;
    ResetEvent(m_State->Changed.Get());
}

void WinHttpRequest::Began(BOOL succeeded) {
    if (succeeded) return;
    const DWORD error = GetLastError();
    if (error != ERROR_IO_PENDING) m_State->Finish(error == 0 ? ERROR_WINHTTP_INTERNAL_ERROR : error, 0);
}

void WinHttpRequest::Send(DWORD bodyBytes) {
    Begin();
    Began(
        WinHttpSendRequest(Get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, bodyBytes, m_Context));
}

void WinHttpRequest::Write(TextView piece) {
    Begin();
    const size_t count = piece.copy(m_State->Buffer.data(), m_State->Buffer.size());
    Began(WinHttpWriteData(Get(), m_State->Buffer.data(), static_cast<DWORD>(count), nullptr));
}

void WinHttpRequest::Receive() {
    Begin();
    Began(WinHttpReceiveResponse(Get(), nullptr));
}

void WinHttpRequest::Query() {
    Begin();
    Began(WinHttpQueryDataAvailable(Get(), nullptr));
}

void WinHttpRequest::Read(DWORD count) {
    Begin();
    Began(WinHttpReadData(Get(), m_State->Buffer.data(), count < PieceSize ? count : PieceSize, nullptr));
}

HANDLE WinHttpRequest::Changed() const { return m_State->Changed.Get(); }
bool WinHttpRequest::IsDone() const { return m_State->IsDone; }
DWORD WinHttpRequest::ErrorCode() const { return m_State->Error; }
DWORD WinHttpRequest::Count() const { return m_State->Count; }
TextView WinHttpRequest::Piece() const { return {m_State->Buffer.data(), Count()}; }

}  // namespace tb
