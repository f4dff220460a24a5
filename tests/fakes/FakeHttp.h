// A net whose servers are a table: answers by method and address, every request kept.
#pragma once

#include <map>
#include <vector>

#include "platform/Http.h"

namespace tb {

class FakeHttp : public Http {
public:
    struct Answer {
        std::int32_t Status = 200;
        Text Body = {};
        Text Head = "HTTP/1.1 200 OK\r\n";
        // What the exchange ends with once the body is through; empty when all is well.
        Text Failure = {};
    };
    // By method, blank and address. What is not there refuses the connection.
    std::map<Text, Answer> Answers;
    std::vector<HttpRequest> Requests;
    bool IsThereNetwork = true;
    // Runs inside each exchange before the answer comes, as handlers do that a real one serves while it waits.
    std::function<void()> Meanwhile;

    // The requests since the last call: method, blank, address.
    std::vector<Text> Take() {
        std::vector<Text> taken;
        for (const HttpRequest& request : Requests) taken.push_back(request.Method + " " + request.Url);
        Requests.clear();
        return taken;
    }

    Text Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) override {
        Requests.push_back(request);
        if (Meanwhile) Meanwhile();
        const auto found = Answers.find(request.Method + " " + request.Url);
        if (found == Answers.end()) return "refused";
        const Answer& answer = found->second;
        response = {answer.Status, answer.Head};
        constexpr size_t Piece = 5;
        for (size_t taken = 0; taken < answer.Body.size(); taken += Piece) {
            if (request.IsCancelled && request.IsCancelled()) return "cancelled";
            const TextView piece = TextView(answer.Body).substr(taken, Piece);
            if (taken + piece.size() > request.BodyLimit) return "too long";
            body(piece);
        }
        return answer.Failure;
    }
    bool IsConnected() override { return IsThereNetwork; }
};

}  // namespace tb
