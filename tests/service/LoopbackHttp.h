// The program's transport on this machine: plain HTTP, a connection for each exchange, no messages served meanwhile.
#pragma once

#include "platform/Http.h"

namespace tb {

class LoopbackHttp : public Http {
public:
    Text Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) override;
    bool IsConnected() override { return true; }
};

}  // namespace tb
