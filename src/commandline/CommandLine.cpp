#include "commandline/CommandLine.h"

#include <algorithm>
#include <cstdio>

#include "commandline/Options.h"
#include "commandline/StandardStreams.h"

namespace tb {

namespace {

constexpr TextView StatusHelp = "Exit status: 0 done, 1 broken input or a failure, 2 wrong command line.\n";

Text Indented(TextView lines, TextView indent) {
    Text result;
    for (const TextView line : SplitViews(lines, '\n')) result.append(indent).append(line) += '\n';
    return result;
}

Text CallsOf(const Command& command, const Text& before) {
    if (command.Forms.empty()) return before + command.Name + "\n";
    return Indented(command.Forms, before + command.Name + " ");
}

Text HelpOf(const CommandLine& line, const std::vector<const Command*>& commands) {
    const Text call = line.Program + " " + line.Before;
    Text help;
    for (const Command* command : commands) {
        help += CallsOf(*command, "usage: " + call) + Indented(command->Does, "    ");
    }
    return help;
}

Text WholeHelp(const CommandLine& line) {
    Text help = "usage: " + line.Program + " " + line.Before + "COMMAND\n";
    for (const Command& command : line.Commands) {
        help += CallsOf(command, "  ") + Indented(command.Does, "      ");
    }
    return help + line.Program + " COMMAND --help tells about one command, " + line.Program +
           " --version the version.\n" + Text(StatusHelp);
}

// Those that begin with the words, or the one that the words begin with.
std::vector<const Command*> Meant(const CommandLine& line, const Words& words) {
    std::vector<const Command*> meant;
    for (const Command& command : line.Commands) {
        const Words name = Split(command.Name, ' ');
        const size_t common = std::min(name.size(), words.size());
        if (common > 0 && std::equal(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(common), words.begin())) {
            meant.push_back(&command);
        }
    }
    return meant;
}

Text HelpFor(const CommandLine& line, const Words& words) {
    std::vector<const Command*> meant = Meant(line, words);
    if (meant.empty() && !words.empty()) meant = Meant(line, {words.front()});
    return meant.empty() ? WholeHelp(line) : HelpOf(line, meant);
}

// Takes the name off the words.
const Command& Take(const CommandLine& line, Words& words) {
    if (words.empty()) throw UsageError("no command");
    const std::vector<const Command*> meant = Meant(line, words);
    if (meant.empty()) {
        const bool isGroup = words.size() > 1 && !Meant(line, {words.front()}).empty();
        throw UsageError("unknown command " + words.front() + (isGroup ? " " + words[1] : Text()));
    }
    const auto length = std::count(meant.front()->Name.begin(), meant.front()->Name.end(), ' ') + 1;
    if (words.size() < static_cast<size_t>(length)) throw UsageError(words.front() + " needs a second word");
    words.erase(words.begin(), words.begin() + length);
    return *meant.front();
}

void Run(const CommandLine& line, Words words) {
    const auto help = std::find(words.begin(), words.end(), "--help");
    if (help != words.end()) return WriteStandardOutput(HelpFor(line, Words(words.begin(), help)));
    // Only alone: some commands have an option of that name, with a value.
    const Words version{"--version"};
    if (words != version) {
        const Command& command = Take(line, words);
        if (words != version) return command.Run(words);
    }
    WriteStandardOutput(line.Program + " " + line.Version + "\n");
}

}  // namespace

int RunCommandLine(const CommandLine& line, const Words& words) {
    try {
        Run(line, words);
        FlushStandardOutput();
        return 0;
    } catch (const RuntimeError& error) {
        WriteStandardError(line.Program, error.Description);
        if (error.Number != UsageErrorNumber) return 1;
        std::fputs(HelpFor(line, words).c_str(), stderr);
        return 2;
    } catch (const std::exception& error) {
        WriteStandardError(line.Program, error.what());
        return 1;
    }
}

void WriteStandardError(const Text& program, const Text& message) {
    std::fputs(Visible(program + ": " + message + "\n").c_str(), stderr);
}

}  // namespace tb
