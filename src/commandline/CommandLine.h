// A program of an operator: a row of commands with their help. What the commands raise becomes a line and a status.
#pragma once

#include <functional>
#include <vector>

#include "base/text.h"

namespace tb {

using Words = std::vector<Text>;

struct Command {
    // One word, or two with a blank between.
    Text Name;
    // The words that may follow, a form a line; then, in lines of their own, what it does. For the help.
    Text Forms;
    Text Does;
    // Gets the words behind the name.
    std::function<void(const Words& words)> Run;
};

struct CommandLine {
    Text Program;
    Text Version;
    // What goes before every command, with a blank behind, or nothing.
    Text Before;
    std::vector<Command> Commands;
};

// Runs the command that `words` name and returns the program's exit status: 0 done, 1 broken input or a failure (one
// line on standard error), 2 a wrong command line (the line, and how the command is used). "--help" among the words
// prints the help of the commands before it, of all without any; "--version" alone, or alone behind a command, the
// version.
int RunCommandLine(const CommandLine& line, const Words& words);

// A line for the operator on standard error: the program's name and the message, Visible.
void WriteStandardError(const Text& program, const Text& message);

}  // namespace tb
