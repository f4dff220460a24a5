#include "programs/tbprobe/Options.h"

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

// A number from 1 on.
std::int32_t Positive(const Text& word) {
    const std::int32_t value = ToInt32(word);
    if (value < 1) throw Error(ErrorNumber::InvalidCall);
    return value;
}

}  // namespace

ProbeOptions ParseProbeOptions(const std::vector<Text>& words) {
    using Action = ProbeOptions::Action;
    ProbeOptions options;
    for (size_t index = 0; index < words.size(); ++index) {
        const auto next = [&]() -> const Text& { return At(words, ++index); };
        const Text& word = words[index];
        if (word == "--caption") {
            options.Caption = next();
        } else if (word == "--time") {
            options.What = Action::Time;
            options.Count = Positive(next());
        } else if (word == "--against") {
            options.Against = next();
        } else if (word == "--blocks") {
            options.Blocks = Positive(next());
        } else if (word == "--wait") {
            options.What = Action::Wait;
            options.Seconds = Positive(next());
        } else if (word == "--close") {
            options.What = Action::Close;
        } else if (word == "--exit") {
            options.What = Action::Exit;
        } else if (word == "--refuse-exit") {
            options.What = Action::RefuseExit;
        } else if (word.starts_with("-")) {
            throw Error(ErrorNumber::InvalidCall);
        } else {
            options.URLs.push_back(word);
        }
    }
    if (options.What != Action::Time && (!options.URLs.empty() || !options.Against.empty())) {
        throw Error(ErrorNumber::InvalidCall);
    }
    return options;
}

}  // namespace tb
