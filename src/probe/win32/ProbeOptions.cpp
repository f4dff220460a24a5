#include "probe/win32/ProbeOptions.h"

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

RuntimeError Wrong(const Text& why) { return {static_cast<std::int32_t>(ErrorNumber::InvalidCall), why}; }

std::int32_t Positive(const Text& option, const Text& word) {
    const std::int32_t value = TrapOr(
        0, [&] { return ToInt32(word); }, [](const RuntimeError&) { /* it is none */ });
    if (value < 1) throw Wrong(option + " takes a number from 1 on, not " + word);
    return value;
}

}  // namespace

ProbeOptions ParseProbeOptions(const std::vector<Text>& words) {
    using Action = ProbeOptions::Action;
    ProbeOptions options;
    for (size_t index = 0; index < words.size(); ++index) {
        const Text& word = words[index];
        const auto next = [&]() -> const Text& {
            if (++index == words.size()) throw Wrong(word + " needs a value");
            return words[index];
        };
        const auto positive = [&] { return Positive(word, next()); };
        if (word == "--caption") {
            options.Caption = next();
        } else if (word == "--time") {
            options.What = Action::Time;
            options.Count = positive();
        } else if (word == "--against") {
            options.Against = next();
        } else if (word == "--blocks") {
            options.Blocks = positive();
        } else if (word == "--wait") {
            options.What = Action::Wait;
            options.Seconds = positive();
        } else if (word == "--close") {
            options.What = Action::Close;
        } else if (word == "--exit") {
            options.What = Action::Exit;
        } else if (word == "--refuse-exit") {
            options.What = Action::RefuseExit;
        } else if (word == "--help") {
            options.What = Action::Help;
            return options;
        } else if (word == "--version") {
            options.What = Action::Version;
            return options;
        } else if (word.starts_with("-")) {
            throw Wrong("unknown option " + word);
        } else {
            options.URLs.push_back(word);
        }
    }
    if (options.What != Action::Time && (!options.URLs.empty() || !options.Against.empty())) {
        throw Wrong((options.URLs.empty() ? Text("--against") : options.URLs.front()) + " goes with --time only");
    }
    return options;
}

}  // namespace tb
