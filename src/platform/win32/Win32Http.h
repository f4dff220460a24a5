// Exchanges by WinHTTP: its own threads wait for the server, the calling thread serves messages meanwhile.
#pragma once

#include "platform/Http.h"
#include "platform/win32/WinHttpRequest.h"

namespace tb {

// Each exchange has a connection of its own, through the proxy that the system is set to, and https only with a
// certificate that the system trusts. When the end of the message loop is due, an exchange ends as a failure and the
// loop's end stays due. Error 51 when the system has no room for another exchange.
class Win32Http : public Http {
public:
    // What the requests bear as User-Agent.
    explicit Win32Http(Text userAgent) : m_UserAgent(std::move(userAgent)) {}

    Text Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) override;
    bool IsConnected() override;

private:
    HINTERNET Session();

    Text m_UserAgent;
    // Made for the first exchange.
    OwnedInternet m_Session;
};

}  // namespace tb
