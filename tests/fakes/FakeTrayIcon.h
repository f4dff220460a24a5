// A notification area that remembers what it was told.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/TrayIcon.h"

namespace tb {

class FakeTrayIcon : public TrayIcon {
public:
    struct Call {
        NotifyIconCall What;
        NotifyIconRecord Record;
    };
    std::vector<Call> Calls;
    // What the shell answers.
    bool Answer = true;
    // Null while nobody listens. A test sends mouse messages through it.
    TrayIconListener* Listener = nullptr;
    // What the program serves while the shell is told.
    std::function<void()> Meanwhile;

    void Listen(WindowHandle, TrayIconListener& listener) override { Listener = &listener; }
    void StopListening() noexcept override { Listener = nullptr; }
    bool Notify(NotifyIconCall call, const NotifyIconRecord& record) noexcept override {
        Calls.push_back({call, record});
        if (const auto meanwhile = std::exchange(Meanwhile, nullptr)) meanwhile();
        return Answer;
    }

    // The calls since the last time: "add 7, version 3".
    Text Take() {
        std::vector<Text> texts;
        for (const Call& call : Calls) texts.push_back(Describe(call));
        Calls.clear();
        return Join(texts, ", ");
    }

private:
    static Text Describe(const Call& call) {
        if (call.What == NotifyIconCall::Delete) return "delete";
        if (call.What == NotifyIconCall::SetVersion) return "version " + std::to_string(call.Record.Version);
        return (call.What == NotifyIconCall::Add ? "add " : "modify ") + std::to_string(call.Record.Flags);
    }
};

}  // namespace tb
