#include "commandline/Options.h"

#include <algorithm>

namespace tb {

RuntimeError UsageError(Text description) { return {UsageErrorNumber, std::move(description)}; }

Options::Options(const std::vector<Text>& words, const std::vector<Text>& valued, const std::vector<Text>& flags) {
    const auto knows = [](const std::vector<Text>& names, const Text& name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    for (size_t index = 0; index < words.size(); ++index) {
        const Text& word = words[index];
        Text value;
        if (!word.starts_with("--")) {
            m_Words.push_back(word);
            continue;
        }
        if (knows(valued, word)) {
            if (++index == words.size()) throw UsageError(word + " needs a value");
            value = words[index];
        } else if (!knows(flags, word)) {
            throw UsageError("unknown option " + word);
        }
        if (!m_Values.emplace(word, value).second) throw UsageError(word + " is given twice");
    }
}

const Text& Options::Require(const Text& name) const {
    const auto found = m_Values.find(name);
    if (found == m_Values.end()) throw UsageError(name + " is missing");
    return found->second;
}

}  // namespace tb
