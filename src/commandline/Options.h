// What follows a command on the command line.
#pragma once

#include <map>
#include <vector>

#include "base/errors.h"

namespace tb {

// What is wrong with a command line; the program tells it and how the command is used.
inline constexpr std::int32_t UsageErrorNumber = 1101;
RuntimeError UsageError(Text description);

// Options with a value, flags, and other words.
class Options {
public:
    // `valued` and `flags` are the option names that the command knows, "--list" for one. Raises a UsageError for any
    // other word that begins with "--", for a missing value and for an option given twice.
    Options(const std::vector<Text>& words, const std::vector<Text>& valued, const std::vector<Text>& flags = {});

    bool Has(const Text& name) const { return m_Values.count(name) > 0; }
    // The value of an option; a UsageError when it was not given.
    const Text& Require(const Text& name) const;
    const std::vector<Text>& Words() const { return m_Words; }

private:
    std::map<Text, Text> m_Values;
    std::vector<Text> m_Words;
};

}  // namespace tb
