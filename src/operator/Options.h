// The command line of the operator's tool.
#pragma once

#include <map>
#include <stdexcept>
#include <vector>

#include "base/errors.h"
#include "platform/Files.h"

namespace tb {

// A command line that cannot be carried out as it stands; the tool prints how it is used.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Input that is broken or cannot be read; the tool prints the one line.
class InputError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The InputError of a file that cannot be read: `expected` says what it should be, "a list of sites" for one.
InputError UnreadableFile(const Text& path, const RuntimeError& error, const char* expected);
// The whole file, or that error.
Text ReadInputFile(Files& files, const Text& path, const char* expected);

// What follows a command: options with a value, flags, and other words.
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
