#include "platform/win32/Win32Http.h"

#include <algorithm>
#include <optional>

#include "base/errors.h"
#include "base/numbers.h"
#include "platform/win32/NetworkState.h"
#include "platform/win32/ServedWait.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/WinHttpErrors.h"

namespace tb {

namespace {

constexpr std::int32_t Grace = 1000;

// What ends an exchange.
struct ExchangeFailure {
    Text Reason;
};

[[noreturn]] void FailWithLastError() { throw ExchangeFailure{NetworkErrorText(GetLastError())}; }

OwnedInternet Owned(HINTERNET handle) {
    if (handle == nullptr) FailWithLastError();
    return OwnedInternet(handle);
}

// One that is refused leaves the system's own value, or is caught by the limits of the waits.
void SetNumber(HINTERNET handle, DWORD option, DWORD value) { WinHttpSetOption(handle, option, &value, sizeof value); }

bool HasControls(TextView text) {
    return std::any_of(text.begin(), text.end(), [](char one) { return (one >= 0 && one < ' ') || one == '\x7f'; });
}

// The parts of an address as the system reads them, which connects to it, as wide text.
struct Address {
    explicit Address(const Text& url) {
        const std::wstring wide = ToSystem(url);
        URL_COMPONENTSW parts{};
        parts.dwStructSize = sizeof parts;
        parts.dwHostNameLength = parts.dwUserNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = DWORD(-1);
        if (!WinHttpCrackUrl(wide.c_str(), static_cast<DWORD>(wide.size()), 0, &parts)) FailWithLastError();
        if (HasControls(url) || url.find(' ') != Text::npos || parts.dwUserNameLength > 0) {
            throw ExchangeFailure{NetworkErrorText(ERROR_WINHTTP_INVALID_URL)};
        }
        IsSecure = parts.nScheme == INTERNET_SCHEME_HTTPS;
        Host.assign(parts.lpszHostName, parts.dwHostNameLength);
        Port = parts.nPort;
        Path.assign(parts.lpszUrlPath, parts.dwUrlPathLength);
        Path.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
        if (!Path.starts_with(L'/')) Path.insert(0, 1, L'/');
    }
    bool IsSecure = false;
    std::wstring Host;
    INTERNET_PORT Port = 0;
    std::wstring Path;
};

// One exchange.
class Conversation {
public:
    Conversation(HINTERNET session, const HttpRequest& request)
        : m_Asked(request),
          m_Wait(request.WholeMilliseconds, request.IsCancelled),
          m_Address(request.Url),
          m_Connection(Owned(WinHttpConnect(session, m_Address.Host.c_str(), m_Address.Port, 0))),
          m_Request(Open()) {}

    void Send() {
        if (m_Asked.Body.size() > MAXDWORD) throw ExchangeFailure{"the request is too long"};
        m_Request.Send(static_cast<DWORD>(m_Asked.Body.size()));
        Finish();
        for (TextView rest = m_Asked.Body; !rest.empty();
             rest.remove_prefix(std::min<size_t>(rest.size(), PieceSize))) {
            m_Request.Write(Left(rest, PieceSize));
            Finish();
        }
    }

    void TakeHead(HttpResponse& response) {
        m_Request.Receive();
        Finish();
        response.Head = Header(WINHTTP_QUERY_RAW_HEADERS_CRLF).value_or(Text());
        if (response.Head.ends_with("\r\n\r\n")) response.Head.resize(response.Head.size() - 2);
        const Text status = Header(WINHTTP_QUERY_STATUS_CODE).value_or(Text());
        response.Status = TrapOr(
            0, [&] { return ToInt32(status); }, [](const RuntimeError&) { /* as without one */ });
    }

    void TakeBody(const Http::BodySink& body) {
        const std::optional<std::uint64_t> told = ToldLength();
        if (told.value_or(0) > m_Asked.BodyLimit) FailAsTooLong();
        std::uint64_t taken = 0;
        for (;;) {
            m_Request.Query();
            Finish();
            if (m_Request.Count() == 0) break;
            m_Request.Read(m_Request.Count());
            Finish();
            const TextView piece = m_Request.Piece();
            if (piece.empty()) break;
            taken += piece.size();
            if (taken > m_Asked.BodyLimit) FailAsTooLong();
            body(piece);
        }
        // Not every version of the system takes a connection that ends early for a failure.
        if (taken < told.value_or(0)) throw ExchangeFailure{NetworkErrorText(ERROR_WINHTTP_CONNECTION_ERROR)};
    }

private:
    static constexpr DWORD PieceSize = WinHttpRequest::PieceSize;

    OwnedInternet Open() {
        // The address is written by those who know what it may hold: nothing is to be escaped a second time.
        const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | (m_Address.IsSecure ? WINHTTP_FLAG_SECURE : 0);
        OwnedInternet request =
            Owned(WinHttpOpenRequest(m_Connection.Get(), ToSystem(m_Asked.Method).c_str(), m_Address.Path.c_str(),
                                     nullptr, WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, flags));
        const HINTERNET handle = request.Get();
        SetNumber(handle, WINHTTP_OPTION_DISABLE_FEATURE,
                  WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION |
                      WINHTTP_DISABLE_KEEP_ALIVE);
        // The limits of the waits come first; these only let WinHTTP's threads go, should one be stuck.
        const std::int32_t limit = std::min(m_Asked.WaitMilliseconds, INT32_MAX / 2) + Grace;
        WinHttpSetTimeouts(handle, limit, limit, limit, limit);
        SetNumber(handle, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, static_cast<DWORD>(limit));
        AddHeaders(handle);
        return request;
    }

    void AddHeaders(HINTERNET handle) const {
        for (const auto& [name, value] : m_Asked.Headers) {
            if (HasControls(name) || HasControls(value)) throw ExchangeFailure{"a header with control characters"};
            const std::wstring line = ToSystem(name + ": " + value + "\r\n");
            if (!WinHttpAddRequestHeaders(handle, line.c_str(), static_cast<DWORD>(line.size()),
                                          WINHTTP_ADDREQ_FLAG_ADD)) {
                FailWithLastError();
            }
        }
    }

    // Waits until the operation that has begun is done.
    void Finish() {
        while (!m_Request.IsDone()) {
            const auto limit = [](std::int32_t milliseconds) {
                return " within " + std::to_string(milliseconds) + " ms";
            };
            switch (m_Wait.For(m_Request.Changed(), m_Asked.WaitMilliseconds)) {
            // On the way to the server each stage has a wait of its own.
            case ServedWait::End::Signalled: break;
            case ServedWait::End::TimedOut: throw ExchangeFailure{"no answer" + limit(m_Asked.WaitMilliseconds)};
            case ServedWait::End::WholeTimedOut: throw ExchangeFailure{"not done" + limit(m_Asked.WholeMilliseconds)};
            case ServedWait::End::Cancelled: throw ExchangeFailure{"cancelled"};
            case ServedWait::End::Quit: throw ExchangeFailure{"the program ends"};
            }
        }
        if (m_Request.ErrorCode() != 0) throw ExchangeFailure{NetworkErrorText(m_Request.ErrorCode())};
    }

    std::optional<Text> Header(DWORD which) const {
        DWORD bytes = 0;
        WinHttpQueryHeaders(m_Request.Get(), which, WINHTTP_HEADER_NAME_BY_INDEX, nullptr, &bytes,
                            WINHTTP_NO_HEADER_INDEX);
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return std::nullopt;
        std::wstring value(bytes / sizeof(wchar_t), L'\0');
        if (!WinHttpQueryHeaders(m_Request.Get(), which, WINHTTP_HEADER_NAME_BY_INDEX, value.data(), &bytes,
                                 WINHTTP_NO_HEADER_INDEX)) {
            return std::nullopt;
        }
        value.resize(bytes / sizeof(wchar_t));
        return FromSystem(value);
    }

    // Of the body, if it has one and the server tells it.
    std::optional<std::uint64_t> ToldLength() const {
        if (m_Asked.Method == "HEAD" || Header(WINHTTP_QUERY_TRANSFER_ENCODING)) return std::nullopt;
        const std::optional<Text> told = Header(WINHTTP_QUERY_CONTENT_LENGTH);
        if (!told || told->empty() || told->find_first_not_of("0123456789") != Text::npos) return std::nullopt;
        // Longer than any number of 64 bits: more than any limit.
        return told->size() > 19 ? UINT64_MAX : std::stoull(*told);
    }

    [[noreturn]] void FailAsTooLong() const {
        throw ExchangeFailure{"the reply is longer than " + std::to_string(m_Asked.BodyLimit) + " bytes"};
    }

    const HttpRequest& m_Asked;
    ServedWait m_Wait;
    Address m_Address;
    OwnedInternet m_Connection;
    WinHttpRequest m_Request;
};

}  // namespace

Text Win32Http::Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) {
    response = {};
    try {
        Conversation conversation(Session(), request);
        conversation.Send();
        conversation.TakeHead(response);
        if (request.Method != "HEAD") conversation.TakeBody(body);
        return {};
    } catch (const ExchangeFailure& failure) {
        return failure.Reason;
    }
}

HINTERNET Win32Http::Session() {
    if (m_Session) return m_Session.Get();
    const std::wstring agent = ToSystem(m_UserAgent);
    const auto open = [&](DWORD proxy) {
        return OwnedInternet(
            WinHttpOpen(agent.c_str(), proxy, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
    };
    m_Session = open(WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY);
    // Windows 7 does not know the user's own settings here.
    if (!m_Session) m_Session = open(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY);
    if (!m_Session) FailWithLastError();
    DWORD protocols = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2 | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3;
    if (!WinHttpSetOption(m_Session.Get(), WINHTTP_OPTION_SECURE_PROTOCOLS, &protocols, sizeof protocols)) {
        SetNumber(m_Session.Get(), WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
    }
    return m_Session.Get();
}

bool Win32Http::IsConnected() { return HasNetwork(); }

}  // namespace tb
