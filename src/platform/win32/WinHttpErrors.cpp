#include "platform/win32/WinHttpErrors.h"

#include <winhttp.h>
#include <winsock2.h>

namespace tb {

namespace {

const char* Words(DWORD code) {
    switch (code) {
    case ERROR_WINHTTP_NAME_NOT_RESOLVED: return "no server of that name";
    case ERROR_WINHTTP_CANNOT_CONNECT:
    case WSAECONNREFUSED: return "no connection";
    case ERROR_WINHTTP_TIMEOUT:
    case WSAETIMEDOUT: return "no answer in time";
    case ERROR_WINHTTP_CONNECTION_ERROR:
    case WSAECONNABORTED:
    case WSAECONNRESET: return "the connection broke off";
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
    case ERROR_WINHTTP_HEADER_NOT_FOUND: return "the answer is not HTTP";
    case ERROR_WINHTTP_HEADER_COUNT_EXCEEDED:
    case ERROR_WINHTTP_HEADER_SIZE_OVERFLOW: return "the answer has too many headers";
    case ERROR_WINHTTP_SECURE_FAILURE:
    case ERROR_WINHTTP_SECURE_INVALID_CERT:
    case ERROR_WINHTTP_SECURE_CERT_CN_INVALID:
    case ERROR_WINHTTP_SECURE_INVALID_CA:
    case ERROR_WINHTTP_SECURE_CERT_DATE_INVALID:
    case ERROR_WINHTTP_SECURE_CHANNEL_ERROR: return "no secure connection";
    case ERROR_WINHTTP_INVALID_URL:
    case ERROR_WINHTTP_UNRECOGNIZED_SCHEME: return "no http or https address";
    default: return "network error";
    }
}

}  // namespace

Text NetworkErrorText(DWORD code) { return Text(Words(code)) + " (" + std::to_string(code) + ")"; }

}  // namespace tb
