// What follows a command on the command line.
#pragma once

#include <map>
#include <stdexcept>
#include <vector>

#include "base/errors.h"

namespace tb {

// A command line that cannot be carried out as it stands; the tool prints how it is used.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Input that is broken or cannot be read; the tool prints the one line.
class InputError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

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
